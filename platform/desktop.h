// For dialogs/, draw/, messages/ and platform/ only: the seam between the library and a desktop.
//
// Everything that touches a screen passes through these classes: windows with numbered items and
// their modal run. No rule of the library (validity, numbering, layout factors, wrapping) lives
// below the seam, and no toolkit type appears above it. The implementations are the Qt module
// (platform/qt/), loaded by platform/loader.h when a desktop is first needed, and the scripted
// desktop of the tests.
//
// Text crosses the seam in the screen set (platform/screentext.h). What is read back from an item
// is what a person who had typed it would have entered: à ç è é and the degree sign as their Mac
// bytes, every other character as its CP1252 byte, whichever byte had been shown.
//
// Everything runs on the interface thread. No method throws; a method given an item number or a
// row that does not exist does nothing and returns an empty value.
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

// An item's rectangle is the classic one: the inside of an edit frame, which the desktop draws
// around it.
enum class ItemKind { None, PushButton, CheckBox, ListBox, PopUp, EditText };

// Items with a part of their own in a modal run.
constexpr int kOkItem = 1;
constexpr int kCancelItem = 2;

enum class Run { Continue, Stop };

// Receives the hits of a modal run, in the order in which they happened, one at a time: the next
// key or click is taken only when the call has returned.
class HitHandler {
 public:
  virtual Run hit(int item) = 0;

 protected:
  ~HitHandler() = default;
};

// The last click in a list box.
struct ListClick {
  int row = -1;  // from 0; -1: none yet
  bool isDouble = false;
};

// The desktop's own icons for what a message is about, as the classic system numbers them.
enum class AlertIcon { Stop = 0, Note = 1, Caution = 2 };

// How the lines of a message are set: in a font of that name where the desktop knows it (as in
// drawing.h), else in its own. Pixels.
struct MessageStyle {
  std::string_view fontName;
  int fontSize;
  int firstBaseline;  // below the top of the pane
  int linePitch;
};

// A dialog window with numbered items: from 1 in the order in which they are added, or as the
// template that it was made from numbers them. Destroying it takes it off the screen.
class Dialog {
 public:
  virtual ~Dialog() = default;

  // Valid as long as the dialog.
  virtual WindowRef window() = 0;
  virtual void setTitle(std::string_view title) = 0;

  // Adds an item and returns its number. `title` is the label of a push button or check box, and
  // not used by the other kinds. A new check box is off, a new pop-up or list has no entries.
  virtual int addItem(ItemKind kind, const Rect &rect, std::string_view title) = 0;

  // Decoration, which has no number and is never hit. A group box lies behind all items. Static
  // text is left-aligned and wrapped at words. An icon is a picture file, scaled into its
  // rectangle with its proportions kept; a file that cannot be read shows nothing.
  virtual void addGroupBox(const Rect &rect, std::string_view title) = 0;
  virtual void addStaticText(const Rect &rect, std::string_view text) = 0;
  virtual void addIcon(const Rect &rect, const std::string &path) = 0;

  // A message, in a pane of its own, makes the dialog a message box; to be added once, after the
  // buttons. Its lines end at carriage returns, start at the pane's left edge and are never
  // wrapped. Nobody can select or change them. What does not fit into the pane is reached by
  // scrolling: by wheel, and by Up, Down, Page Up, Page Down, Home and End wherever the focus is.
  // Assistive software is told title and text. In a message box the run starts with the focus on
  // the default item, arrow keys move it between the buttons, Return stands for the button that has
  // it, and Alt with its first letter presses a button.
  virtual void addMessage(const Rect &pane, std::string_view text, const MessageStyle &style) = 0;
  virtual void addAlertIcon(const Rect &rect, AlertIcon icon) = 0;

  // The push button that Return stands for; shown as such. Return does nothing while it is
  // disabled, nor while the focus is in a list without rows.
  virtual void setDefaultItem(int item) = 0;

  virtual ItemKind kind(int item) const = 0;

  // Content of an edit-text item. Setting it is no hit, and keeps the cursor's place and the
  // selection as far as the new text allows. `selectText` selects it all.
  virtual std::string text(int item) const = 0;
  virtual void setText(int item, std::string_view text) = 0;
  virtual void selectText(int item) = 0;

  // Says that an edit-text item stands for a secret: what is typed into it is never shown before
  // its hit was handled, nor kept for undoing, nor offered to an input method.
  virtual void setSecret(int item) = 0;

  // Check box: 0 or 1. Pop-up: number of the chosen entry, from 1; 0 for none; a number beyond its
  // entries is not taken. Setting is no hit.
  virtual int value(int item) const = 0;
  virtual void setValue(int item, int value) = 0;

  // Entries of a pop-up or rows of a list box, numbered from 0 here; a template may bring some.
  // Setting them leaves nothing chosen. `entry` is the text as it would be read back.
  virtual void setEntries(int item, const std::vector<std::string> &entries) = 0;
  virtual int entryCount(int item) const = 0;
  virtual std::string entry(int item, int index) const = 0;
  virtual ListClick lastClick(int item) const = 0;

  // A disabled item is greyed and cannot be hit.
  virtual void setEnabled(int item, bool enabled) = 0;

  // Whether the content of a field (edit text, pop-up or list box) can be accepted as it is; that
  // of a new item can. A field with other content is marked, quietly on the screen and in words
  // for people who hear a dialog read out. Nothing else about it changes.
  virtual void setAcceptable(int item, bool acceptable) = 0;

  // Says that three edit-text items are the parts of one date, for people who hear their names
  // read out.
  virtual void setDateParts(int day, int month, int year) = 0;

  // Shows the window, with the focus in the first edit-text item in the order of the Tab key (all
  // of its text selected) and the application's other windows blocked, and calls `handler` once per
  // hit until it answers Stop. Returns also when the desktop goes down.
  //
  // A hit is: one change of an edit-text item by the user, however it was made (a key, a paste, an
  // undo, a composed character); a press of an enabled push button, also by Return (the default
  // item), Escape or the window's close box (both kCancelItem); a click on a check box, which does
  // not change its value; an entry chosen in a pop-up, whose value then is that entry; a row
  // selected in a list box by click, double click or key (arrows, ends, pages, the letters that it
  // begins with). A double click is two hits, the second with `lastClick().isDouble`. An edit that
  // would bring in a character which has no byte is refused whole and is no hit. What a person does
  // by way of a screen reader or the like is a hit in the same way.
  virtual void runModal(HitHandler &handler) = 0;
};

class Desktop {
 public:
  virtual ~Desktop() = default;

  // True when windows can be shown, by this thread and to somebody. Never aborts; on false,
  // `problem` says why in one line. Once something was drawn where there was no screen, there is
  // none for the rest of the process.
  virtual bool hasScreen(std::string &problem) = 0;

  // The application's active window; while another application is the active one, the dialog that
  // runs, else the newest window that is shown. Null when there is none.
  virtual WindowRef frontWindow() = 0;
  // The content of a window in screen coordinates; nothing for null or a window that is gone or
  // hidden.
  virtual std::optional<Rect> windowBounds(WindowRef window) = 0;
  // The part of the main screen that windows may cover.
  virtual Rect screenBounds() = 0;

  // A movable modal dialog, not yet visible, whose content covers `bounds` (moved into view where
  // it would lie outside the screen; of one far larger than any screen a part may be left out), in
  // front of `parent` (null: of everything). Null only when there is no screen.
  virtual std::unique_ptr<Dialog> newDialog(const Rect &bounds, WindowRef parent,
                                            std::string_view title) = 0;

  // The dialog that a template file describes, not yet visible, centred on `parent` (null: on the
  // screen) and in front of it. A template is a Qt Designer form. Its push buttons, check boxes,
  // list widgets, combo boxes and line edits are items, each under the number in its dynamic
  // property `item` (1 to 32767); the numbers may have gaps. One without a number stands there and
  // is never hit. All else is decoration. Texts, fonts, style sheets, layout, order of the Tab key
  // and the first entries of pop-ups and lists are as designed, and the push button designed as the
  // default one is the default item, else item 1. The form's connections enable and show widgets
  // and set what is no item. Null when the file cannot be read or is no form, when two widgets have
  // the same number or one has a number that is none, and without a screen; `problem` then says
  // why, in one line. A form brings no code in, reads no file but a label's picture, which stands
  // in the folder above its own, and does nothing to its window and to items 1 and 2.
  virtual std::unique_ptr<Dialog> newDialogFromTemplate(const std::string &path, WindowRef parent,
                                                        std::string &problem) = 0;

  // The window of a widget that the host application owns, in the toolkit's own type; null for
  // null. The desktop does not own the widget.
  virtual WindowRef hostWindow(void *widget) = 0;

  // A white surface off screen, also where there is no screen. Null when it cannot be had (a side
  // below 1 or above 32767, more than 2^28 pixels, no memory, or a host application that cannot
  // have fonts).
  virtual std::unique_ptr<Port> newImage(int width, int height) = 0;
  // Draws where a painter that the host application owns draws, in the toolkit's own type, as long
  // as that painter is active; null for null. Leaves the painter's own settings as they were.
  virtual std::unique_ptr<Port> painterPort(void *painter) = 0;
  // The port of a window, the same one at each call, valid as long as the window; null for null or
  // a window that is gone. What is drawn into it lies over the window's ground and under its items,
  // and stays until something else is drawn over it, whatever covers the window meanwhile.
  virtual Port *windowPort(WindowRef window) = 0;

  // A picture file, SVG or PNG, of at most 2^28 pixels. An SVG shows nothing of other files. What
  // is no file, as a pipe, is never waited for. The picture may be drawn into every port of this
  // desktop, which keep nothing of it. Null when it could not be looked at, for want of memory or
  // of an application.
  virtual std::unique_ptr<Picture> loadPicture(const std::string &path) = 0;
};

// What a desktop module exports under kModuleEntry. The version is that of the classes above: a
// module built for another one returns null. The desktop belongs to the module and lives until the
// process ends.
using ModuleEntry = Desktop *(*)(int version);
constexpr int kSeamVersion = 5;
constexpr const char *kModuleEntry = "korvel_desktop";

}  // namespace korvel::platform

#endif
