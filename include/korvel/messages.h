/* SPDX-License-Identifier: MIT */
/* Message boxes: a question with the buttons "Oui" and "Non", or a note with the button "OK". And a
   small window that tells how far a long work is, and can end it.

   A box is a movable modal window titled with its caption, in front of everything that the
   application shows, including a data-entry dialog whose callback opens it. It is 400
   pixels wide when caption and text are both shorter than 51 characters, else 540, and never wider
   than the screen; it cannot be minimised. Return presses the default button, or the other one once
   Tab or an arrow key has moved to it; Alt with its first letter presses a button; Escape and the
   window's close box answer "Non" or "OK". A text that does not fit scrolls, by wheel and by keys;
   caption and text can be read by a screen reader. Without a screen a box answers at once as Escape
   does, and standard error says why in one line.

   While a box is shown its port is the current one, and its text's font the chosen one (draw.h):
   ch_font_FontName becomes "Lucida Grande", at 13, and char_dy follows. Both stay so afterwards.

   Texts are CP1252, NUL-terminated; a null text counts as an empty one. */
#ifndef KORVEL_MESSAGES_H
#define KORVEL_MESSAGES_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Flags, to be added up; other bits are ignored. A box without one of its icon bits shows no icon.
   A warning before something is lost: KorvelQuestion | KorvelCautionIcon | KorvelDefaultNon. */
enum {
  KorvelNoteIcon = 0x01,         /* note: note icon, unless one of the next two is set */
  KorvelCautionIcon = 0x02,      /* question and note: caution icon */
  KorvelStopIcon = 0x04,         /* note: stop icon, unless KorvelCautionIcon is set */
  KorvelOtherCautionIcon = 0x08, /* question: caution icon, too */
  KorvelQuestion = 0x10,         /* MessageBox only: a question, else a note */
  KorvelDefaultOui = 0x20,       /* question: the default button is "Oui" even with the next bit */
  KorvelDefaultNon = 0x40        /* question: the default button is "Non", else "Oui" */
};

/* Answers. */
enum { KorvelOkAnswer = 1, KorvelOuiAnswer = 2, KorvelNonAnswer = 3 };

/* Shows a message, broken into lines by the library, and returns the answer.
   owner: the window on which the box is centred; null for the front window, or the screen if there
   is none. The port of that window is the current one afterwards; without a window there is none.
   text: at most 4095 characters; a line ends at a carriage return or a line feed (at both: twice),
   and at the first space beyond column 50 that is not followed by ":" or ",". caption: at most 255
   characters; when empty, the title is "Dialogue utilisateur". When either is longer, the box says
   "MessageBox impossible" under the title "Erreur interne" instead.
   Returns KorvelOuiAnswer (2) or KorvelNonAnswer (3) for a question, KorvelOkAnswer (1) for a
   note. */
KORVEL_API int MessageBox(WindowRef owner, const char *text, const char *caption, unsigned flags);

/* Shows a question whose text has its lines already, ended by carriage returns.
   owner: the window on which the box is centred; null for the screen. caption: as for MessageBox,
   without its limit. lines: sets the height, 20 pixels a line and 50 more; below 1 counts as 1, and
   the box is never higher than the screen. caption and text are only read. No port is current
   afterwards.
   Returns KorvelOuiAnswer (2) or KorvelNonAnswer (3). */
KORVEL_API int QuestionDialog(WindowRef owner, char *caption, char *text, int lines,
                              unsigned flags);

/* Shows a note; as QuestionDialog, but with 14 pixels a line and 62 more.
   Returns KorvelOkAnswer (1). */
KORVEL_API int NoteDialog(WindowRef owner, char *caption, char *text, int lines, unsigned flags);

/* Tells the person how far a long work is, and whether it is to go on. To be called in the work's
   own loop, as often as convenient: most calls only look at the clock. Half a second after the
   first call a small window comes up in front of everything that the application shows, also of a
   dialog whose callback does the work: a bar, and the button "Annuler", which Escape and the
   window's close box press. Quick work shows nothing. While the window is up, calls let the
   application's windows paint themselves and its timers run, some twenty times a second; its other
   windows take no keys and no clicks. title: the window's title, CP1252, cut at 255 characters; it
   may change from call to call. Null or empty: "Veuillez patienter". done: how much is done, never
   less than in the call before: a call with less begins another work. total: how much there is.
   Below 1 nobody knows: the bar moves without an end. With done at or above a total of 1 or more
   the work has ended: the window closes, and the next call begins another work. That call is to be
   made, too, by an application that leaves its loop earlier, or the window stays, and after a
   cancelled work the next one counts as cancelled, too, unless it begins with less done. Returns 1
   from the moment that the work is cancelled to its end, that call included; the window closes at
   once. Else returns 0, and always does so without a screen, which standard error says once in a
   long work, and once the screen has gone away. */
KORVEL_API int KorvelProgress(const char *title, int done, int total);

/* ---- The event filter of the boxes, for applications that keep window records of their own ----

   While a box is shown, windows of the desktop paint themselves and learn by themselves that they
   become active, and keys reach the box without the application's help. An application that passes
   events round in a loop of its own calls the filter with each of them, as it would in front of any
   modal dialog: its windows stay up to date, and keys mean what they mean in a box. */

/* What happened; other numbers are other events. */
enum {
  KorvelKeyEvent = 3,
  KorvelRepeatedKeyEvent = 5,
  KorvelUpdateEvent = 6,
  KorvelActivateEvent = 8
};

/* Keys of a box. */
enum { KorvelEnterKey = 3, KorvelReturnKey = 13, KorvelEscapeKey = 27 };

/* An event, made and owned by the application. */
typedef struct EventRecord {
  int what;         /* one of the numbers above */
  int key;          /* key events: one of the keys above, or any other character */
  WindowRef window; /* update and activate events: the window that is meant */
  void *reference;  /* the reference value of the window: the application's record of it, or null */
} EventRecord;

/* The handler in a window record, whose tenth pointer-sized field holds its address. */
typedef void (*WindowEvent_t)(EventRecord *event);

/* Filters one event for a message box.
   An update or activate event with a reference value goes to the handler in that window record (a
   null handler is not called), and counts as not handled. Return and Enter are the default button,
   Escape is "Non" or "OK": *itemHit becomes that button's number.
   dialog: the dialog that the event came to; not looked at, as only the newest box takes events
   (without a box: button 1 for Return, 2 for Escape). event: null counts as not handled. itemHit:
   may be null; untouched when the event is not handled.
   Returns 1 when the event is handled, else 0. */
KORVEL_API int MessageBoxFilter(DialogRef dialog, EventRecord *event, int *itemHit);

#ifdef __cplusplus
}
#endif

#endif
