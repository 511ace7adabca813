// SPDX-License-Identifier: MIT
// For tests/: a desktop in memory; what the person does is written down in advance.
//
//   ScriptedDesktop desk;
//   desk.expectDialog("Fiche").type(3, "12a").deleteBack(3).press(kOkItem);
//   EXPECT_EQ(ZRVDlgBoxEx("Fiche", nullptr), 1);
//   desk.finish();  // fails for anything that did not happen
//
// Texts of the script and of records are UTF-8, as a person reads them on the screen. Any departure
// from the script fails the test at once: an unexpected dialog or title, a press of a disabled
// button, a choice that is not offered, steps left when the dialog has ended, a dialog still open
// when the steps are used up.
#ifndef KORVEL_TESTS_PLATFORM_SCRIPTED_DESKTOP_H
#define KORVEL_TESTS_PLATFORM_SCRIPTED_DESKTOP_H

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop.h"
#include "tests/platform/scripted_port.h"

namespace korvel::test {

class ScriptedDialog;

// What the person does in one dialog, step by step. A step is one hit unless noted.
class DialogScript {
 public:
  explicit DialogScript(std::string title) : title_(std::move(title)) {}

  // Into an edit-text item, at its cursor, replacing the selection. One hit per character; a
  // character without a byte is refused without a hit.
  DialogScript &type(int item, std::string_view text);
  // The character before the cursor, or the selection; no hit with nothing to delete.
  DialogScript &deleteBack(int item, int times = 1);
  DialogScript &deleteForward(int item, int times = 1);
  // One hit in all; refused as a whole if it holds a character without a byte.
  DialogScript &paste(int item, std::string_view text);
  // selectAll and paste (or, for an empty text, deleteBack).
  DialogScript &replace(int item, std::string_view text);

  // Cursor and selection of an edit-text item; no hits. Positions count characters from 0.
  DialogScript &moveTo(int item, int position);
  DialogScript &moveToEnd(int item);
  DialogScript &select(int item, int from, int to);
  DialogScript &selectAll(int item);

  DialogScript &choose(int item, std::string_view entry);  // in a pop-up, the first of that text
  DialogScript &clickRow(int item, int row);               // in a list
  DialogScript &doubleClickRow(int item, int row);         // two hits, as long as the dialog is up
  DialogScript &click(int item);                           // on a check box
  DialogScript &press(int item);                           // a push button
  DialogScript &pressReturn();                             // no hit while the button is disabled
  DialogScript &pressEscape();
  DialogScript &closeBox();

  DialogScript &hit(int item);                        // any number, whether such an item exists
  DialogScript &check(std::function<void()> checks);  // no hit: looks at the screen
  DialogScript &goDown();                             // the desktop goes away under the dialog

 private:
  friend class ScriptedDialog;
  friend class ScriptedDesktop;

  struct Step {
    std::string description;
    std::function<void(ScriptedDialog &)> act;
  };
  DialogScript &add(std::string description, std::function<void(ScriptedDialog &)> act);

  std::string title_;
  std::deque<Step> steps_;
};

// An item of a template, as its form describes it. Texts are UTF-8.
struct TemplateItem {
  int number;
  platform::ItemKind kind;
  std::string text = {};  // a title, or what an edit-text item starts with
  std::vector<std::string> entries = {};
  int value = 0;
};

// The content of a template file, as this desktop reads none.
struct Template {
  std::string title;
  std::vector<TemplateItem> items;  // in the order of the Tab key
  int defaultItem = platform::kOkItem;
  std::string problem = {};  // with the file, which then gives no dialog
};

// The library's desktop for the life of the object.
class ScriptedDesktop : public platform::Desktop {
 public:
  ScriptedDesktop();
  ~ScriptedDesktop() override;
  ScriptedDesktop(const ScriptedDesktop &) = delete;
  ScriptedDesktop &operator=(const ScriptedDesktop &) = delete;

  // Dialogs come in the order in which they are expected.
  DialogScript &expectDialog(std::string_view title);
  // Fails for each expectation that was not met. To be called at the end.
  void finish();

  // The content of the file <name>.ui, in any folder, from now on.
  void setTemplate(const std::string &name, Template described);

  // The surroundings: no screen at all, the screen's bounds, windows of the application.
  void takeScreenAway(std::string problem);
  void setScreenBounds(const platform::Rect &bounds) { screenBounds_ = bounds; }
  WindowRef addWindow(const platform::Rect &bounds);
  void closeWindow(WindowRef window);
  void setFrontWindow(WindowRef window) { frontWindow_ = window; }

  // What the newest dialog shows, or showed last.
  std::string title() const;
  std::string message() const;   // lines ended by carriage returns; empty in any other dialog
  std::string progress() const;  // "3 of 10"; empty in any other dialog
  std::string text(int item) const;
  std::string selectedText(int item) const;
  int cursor(int item) const;
  int value(int item) const;
  bool isEnabled(int item) const;
  bool isSecret(int item) const;
  bool isAcceptable(int item) const;
  platform::Expected expected(int item) const;
  int bound(int item) const;             // of what is expected
  std::string name(int item) const;      // given by the program; else empty
  std::string datePart(int item) const;  // "day", "month" or "year"; else empty
  std::vector<std::string> entries(int item) const;
  // Its window, decoration and items as lines, for example `3 edit text (20,17)-(120,32)`.
  std::string layout() const;
  // The calls on its items since the last take, as lines: `3 text "12"`, `1 enabled no`.
  std::string takeWrites();
  // The items marked or unmarked since the last take: `3 unacceptable`.
  std::string takeMarks();

  // The known fonts; at first Arial, Courier New and Times New Roman.
  void setFonts(FontNames fonts) { *fonts_ = std::move(fonts); }
  // The record of a port, by the order in which they were made; the newest by default.
  PortRecord &drawn() { return *records_.back(); }
  PortRecord &drawn(std::size_t port) { return *records_.at(port); }
  // The picture files read, in order. A file holds its picture's size, as in "20x10".
  const std::vector<std::string> &picturesRead() const { return picturesRead_; }

  // How a hit reaches the library; a test may put something around it.
  static inline platform::Run (*handOver)(platform::HitHandler &handler, int item) =
      [](platform::HitHandler &handler, int item) { return handler.hit(item); };

  int dialogsShown() const { return dialogsShown_; }
  bool isDialogOpen() const { return open_ > 0; }
  // Hits that the newest dialog has delivered.
  int hits() const;

  bool hasScreen(std::string &problem) override;
  WindowRef frontWindow() override { return frontWindow_; }
  std::optional<platform::Rect> windowBounds(WindowRef window) override;
  platform::Rect screenBounds() override { return screenBounds_; }
  std::unique_ptr<platform::Dialog> newDialog(const platform::Rect &bounds, WindowRef parent,
                                              std::string_view title) override;
  std::unique_ptr<platform::Dialog> newDialogFromTemplate(const std::string &path, WindowRef parent,
                                                          std::string &problem) override;
  WindowRef hostWindow(void *widget) override;
  std::unique_ptr<platform::Port> newImage(int width, int height) override;
  std::unique_ptr<platform::Port> painterPort(void *painter) override;
  platform::Port *windowPort(WindowRef window) override;
  std::unique_ptr<platform::Picture> loadPicture(const std::string &path) override;

 private:
  friend class ScriptedDialog;

  std::unique_ptr<ScriptedDialog> makeDialog(const platform::Rect &bounds, WindowRef parent,
                                             std::string title);

  struct Window;
  struct Shown;
  WindowRef refOf(Window &window);
  std::unique_ptr<ScriptedPort> newPort(ScriptedPort::Surface surface, int width, int height);

  platform::Desktop *before_;
  std::deque<DialogScript> expected_;  // a deque, so that references to scripts stay valid
  std::size_t next_ = 0;
  bool hasFinished_ = false;
  std::string problem_;
  bool hasScreen_ = true;
  platform::Rect screenBounds_{0, 0, 1280, 1024};
  std::vector<std::unique_ptr<Window>> windows_;
  WindowRef frontWindow_ = nullptr;
  std::map<std::string, Template> templates_;  // by file name
  std::shared_ptr<Shown> newest_;
  int dialogsShown_ = 0;
  int open_ = 0;
  std::shared_ptr<FontNames> fonts_ =
      std::make_shared<FontNames>(FontNames{"Arial", "Courier New", "Times New Roman"});
  std::vector<std::shared_ptr<PortRecord>> records_;
  std::vector<std::string> picturesRead_;
};

// The UTF-8 of scripts and records, from the screen set and from characters.
std::string readable(std::string_view screenText);
std::string readable(std::u16string_view characters);

}  // namespace korvel::test

#endif
