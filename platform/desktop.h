// SPDX-License-Identifier: MIT
// For dialogs/, draw/, messages/ and platform/: the seam between library and desktop.
//
// All windows pass through these classes, with their numbered items and their modal run, and so do
// all ports to draw on (drawing.h). No rule of the library (validity, numbering, layout factors,
// wrapping) lives below the seam, and no toolkit type appears above it. It is implemented by the Qt
// module (platform/qt/), which platform/loader.h loads when a desktop is first needed, and by the
// scripted desktop of the tests.
//
// Text crosses the seam in the screen set (platform/screentext.h). Text read back from an item has
// the bytes that typing it gives, whichever bytes were shown: the Mac bytes of à ç è é and the
// degree sign, the CP1252 bytes of all other characters.
//
// Everything runs on the interface thread. No method throws. With an item number or a row that does
// not exist, a method does nothing and returns an empty value.
#ifndef KORVEL_PLATFORM_DESKTOP_H
#define KORVEL_PLATFORM_DESKTOP_H

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <korvel/types.h>

#include "platform/drawing.h"
#include "platform/geometry.h"

namespace korvel::platform {

// An item's rectangle is the inside of an edit field: the desktop draws the frame around it.
enum class ItemKind { None, PushButton, CheckBox, ListBox, PopUp, EditText };

// Items with a role of their own in a modal run.
constexpr int kOkItem = 1;
constexpr int kCancelItem = 2;

enum class Run { Continue, Stop };

// Receives the hits of a modal run, in order and one at a time: the next key or click is taken only
// when the call has returned.
class HitHandler {
 public:
  virtual Run hit(int item) = 0;

 protected:
  ~HitHandler() = default;
};

// What is to be entered into a field, for the words that tell why it is not acceptable. Some come
// with a bound: a number of characters, or a value.
enum class Expected { Text, TextUpTo, Date, Integer, IntegerFrom, Number, NumberFrom, NumberAbove };

// The last click in a list box.
struct ListClick {
  int row = -1;  // from 0; -1: none yet
  bool isDouble = false;
};

// The desktop's own icons of messages, in the numbers of the classic system.
enum class AlertIcon { Stop = 0, Note = 1, Caution = 2 };

// The font and the places of a message's lines, in pixels. A font that the desktop does not know
// (see drawing.h) is replaced by its own.
struct MessageStyle {
  std::string_view fontName;
  int fontSize;
  int firstBaseline;  // below the top of the pane
  int linePitch;
};

// A dialog window with numbered items: from 1 in the order in which they are added, or as numbered
// by the template that it was made from. Its destructor takes it off the screen.
class Dialog {
 public:
  virtual ~Dialog() = default;

  // Valid as long as the dialog.
  virtual WindowRef window() = 0;
  virtual void setTitle(std::string_view title) = 0;

  // Adds an item and returns its number. `title` is the label of a push button or check box; other
  // kinds do not use it. A new check box is off, a new pop-up or list has no entries. No kind is no
  // item, and 0.
  virtual int addItem(ItemKind kind, const Rect &rect, std::string_view title) = 0;

  // Decoration, which has no number and is never hit. A group box lies behind all items. Static
  // text is left-aligned and wrapped at words. An icon is a picture file, scaled into its
  // rectangle with its proportions kept; a file that cannot be read shows nothing.
  virtual void addGroupBox(const Rect &rect, std::string_view title) = 0;
  virtual void addStaticText(const Rect &rect, std::string_view text) = 0;
  virtual void addIcon(const Rect &rect, const std::string &path) = 0;

  // Makes the dialog a message box, with the message in a pane of its own; to be called once, after
  // the buttons are added. The lines end at carriage returns, start at the pane's left edge and are
  // never wrapped, and cannot be selected or changed. What does not fit into the pane is reached by
  // scrolling: by wheel, and by Up, Down, Page Up, Page Down, Home and End wherever the focus is.
  // Assistive software learns title and text. The run of a message box starts with the focus on the
  // default item; arrow keys move it between the buttons, Return presses the button with the focus,
  // and Alt with its first letter presses a button. Run out of a hit, it is answered by no key that
  // was pressed before it had the focus: those go to the dialog of the hit, after it.
  virtual void addMessage(const Rect &pane, std::string_view text, const MessageStyle &style) = 0;
  virtual void addAlertIcon(const Rect &rect, AlertIcon icon) = 0;

  // Makes the dialog the window of a work that goes on: adds a bar, empty at first, which has the
  // focus, so that no key that is typed meanwhile presses a button; to be called once.
  virtual void addProgressBar(const Rect &rect) = 0;
  // How much of the bar is filled. With a total below 1 it moves without an end; outside 0 to
  // `total`, `done` counts as the nearer of the two.
  virtual void setProgress(int done, int total) = 0;

  // The push button that Return presses, shown as such. Return does nothing while the button is
  // disabled or the focus is in a list without rows.
  virtual void setDefaultItem(int item) = 0;

  virtual ItemKind kind(int item) const = 0;

  // Content of an edit-text item. In one with room for two lines, unless it is secret, the text is
  // wrapped at words and scrolls; nothing else differs. Setting it makes no hit, and keeps the
  // cursor's place and the selection where the new text allows. `selectText` selects all of it.
  virtual std::string text(int item) const = 0;
  virtual void setText(int item, std::string_view text) = 0;
  virtual void selectText(int item) = 0;

  // Marks an edit-text item as secret: what is typed into it is not shown before its hit was
  // handled, nor kept for undo, nor offered to an input method.
  virtual void setSecret(int item) = 0;

  // Check box: 0 or 1. Pop-up: number of the chosen entry, from 1; 0 for none; a number beyond its
  // entries is ignored. Setting makes no hit.
  virtual int value(int item) const = 0;
  virtual void setValue(int item, int value) = 0;

  // Entries of a pop-up or rows of a list box, numbered from 0 here; a template may bring some.
  // Setting them leaves nothing chosen. `entry` has the bytes of text that is read back.
  virtual void setEntries(int item, const std::vector<std::string> &entries) = 0;
  virtual int entryCount(int item) const = 0;
  virtual std::string entry(int item, int index) const = 0;
  virtual ListClick lastClick(int item) const = 0;

  // A disabled item is greyed and cannot be hit.
  virtual void setEnabled(int item, bool enabled) = 0;

  // Says whether the content of a field (edit text, pop-up or list box) can be accepted; at first
  // it can. An unacceptable field is marked, quietly on the screen and in words for screen readers
  // and where the mouse rests. Nothing else about it changes. While kOkItem is disabled, such words
  // name the first unacceptable field in the order of the Tab key.
  virtual void setAcceptable(int item, bool acceptable) = 0;

  // Says what is to be entered, at first a text; a field that is marked tells it from then on.
  virtual void setExpected(int item, Expected expected, int bound) = 0;

  // Says that three edit-text items are the parts of one date.
  virtual void setDateParts(int day, int month, int year) = 0;

  // The name by which screen readers tell an item; without one, they tell the text nearby. The
  // parts of a date are named by the day's name.
  virtual void setName(int item, std::string_view name) = 0;

  // Shows the window and blocks the application's other windows; the first edit-text item in the
  // order of the Tab key has the focus, with all of its text selected. Calls `handler` once per hit
  // until it answers Stop. Returns also when the desktop goes down.
  //
  // A hit is: one change of an edit-text item by the user, however it was made (a key, a paste, an
  // undo, a composed character); a press of an enabled push button, also by Return (the default
  // item), Escape or the window's close box (both kCancelItem); a click on a check box, which does
  // not change its value; an entry chosen in a pop-up, whose value then is that entry; a row
  // selected in a list box by click, double click or key (arrows, ends, pages, the letters that it
  // begins with). A double click is two hits, the second with `lastClick().isDouble`. An edit that
  // would bring in a character without a byte is refused as a whole and makes no hit. Actions
  // through a screen reader or the like make the same hits.
  //
  // Alt with a letter presses a push button or clicks a check box: the first letter of its label,
  // without its accent, that no label before it has, items 1 and 2 first, and that a form does not
  // mark for something else. With Alt nothing is typed.
  virtual void runModal(HitHandler &handler) = 0;

  // A step of such a run that gives the program its turn: shows the window at the first one, takes
  // the events that wait, and returns. The window stays, and blocks the others, until the handler,
  // which has to live as long, has answered Stop, or the desktop goes down: then it is off the
  // screen, and further steps do nothing.
  virtual void runStep(HitHandler &handler) = 0;
};

class Desktop {
 public:
  virtual ~Desktop() = default;

  // True when this thread can show windows and somebody can see them. Never aborts; on false,
  // `problem` says why in one line. Once something was drawn without a screen, there is none for
  // the rest of the process.
  virtual bool hasScreen(std::string &problem) = 0;

  // The application's active window; while another application is active, the running dialog, else
  // the newest window that is shown. Null when there is none.
  virtual WindowRef frontWindow() = 0;
  // The content of a window in screen coordinates; nothing for null and for a window that is gone
  // or hidden.
  virtual std::optional<Rect> windowBounds(WindowRef window) = 0;
  // The part of the main screen that windows may cover.
  virtual Rect screenBounds() = 0;

  // A movable modal dialog, not yet visible, in front of `parent` (null: of everything). Its
  // content covers `bounds`, moved into view if that lies outside the screen. Null only when there
  // is no screen.
  //
  // A dialog larger than the free area of its screen scrolls, by the bars, by wheel, and by Page Up
  // and Page Down where the item with the focus has no use for them; that item comes into view when
  // it gets the focus by key or by the program, and when something is typed. Push buttons 1 and 2,
  // in a message box all of them, stand below the part that scrolls. Of what is drawn on a dialog
  // far larger than any screen, a part may be left out. The same holds for dialogs of templates.
  virtual std::unique_ptr<Dialog> newDialog(const Rect &bounds, WindowRef parent,
                                            std::string_view title) = 0;

  // The dialog that a template file describes, not yet visible, centred on `parent` (null: on the
  // screen) and in front of it. A template is a Qt Designer form. Its push buttons, check boxes,
  // list widgets, combo boxes, line edits and plain text edits are items, each under the number in
  // its dynamic property `item` (1 to 32767); the numbers may have gaps. A widget without a number
  // is shown and never hit. All else is decoration. Texts, fonts, style sheets, layout, order of
  // the Tab key and the first entries of pop-ups and lists are as designed; the default item is the
  // push button designed as the default one, else item 1. The form's connections enable and show
  // widgets and set what is not an item. Null when the file cannot be read or is no form, when two
  // widgets have the same number or one has an invalid number, and without a screen; `problem` then
  // says why in one line. A form brings no code in, reads no file but a label's picture in the
  // folder above its own, and does nothing to its window or to items 1 and 2.
  virtual std::unique_ptr<Dialog> newDialogFromTemplate(const std::string &path, WindowRef parent,
                                                        std::string &problem) = 0;

  // The window of a widget that the host application owns, in the toolkit's own type; null for
  // null. The desktop does not own the widget.
  virtual WindowRef hostWindow(void *widget) = 0;

  // A white surface off screen, available without a screen, too. Null with a side below 1 or above
  // 32767, with more than 2^28 pixels, without memory, and in a host application that cannot have
  // fonts.
  virtual std::unique_ptr<Port> newImage(int width, int height) = 0;
  // A port that draws through a painter of the toolkit, which the host application owns, as long as
  // that painter is active; null for null. Leaves the painter's own settings as they were.
  virtual std::unique_ptr<Port> painterPort(void *painter) = 0;
  // The port of a window, the same one at each call, valid as long as the window; null for null or
  // a window that is gone. What is drawn into it lies over the window's ground and under its items,
  // and stays until something else is drawn over it, whatever covers the window meanwhile.
  virtual Port *windowPort(WindowRef window) = 0;

  // A picture file, SVG or PNG, of at most 2^28 pixels. An SVG shows nothing of other files. A pipe
  // is never waited for. The picture may be drawn into every port of this desktop, which keep
  // nothing of it. Null when the file was not looked at, for want of memory or of an application.
  virtual std::unique_ptr<Picture> loadPicture(const std::string &path) = 0;
};

// The function that a desktop module exports under the name kModuleEntry. `version` is the version
// of the classes above: a module built for another one returns null. The desktop belongs to the
// module and lives until the process ends.
using ModuleEntry = Desktop *(*)(int version);
constexpr int kSeamVersion = 6;
constexpr const char *kModuleEntry = "korvel_desktop";

}  // namespace korvel::platform

#endif
