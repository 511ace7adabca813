// SPDX-License-Identifier: MIT
// The scripted desktop as a world of the contract tests.
#include "tests/platform/dialog_world.h"
#include "tests/platform/scripted_desktop.h"

namespace korvel::test {
namespace {

class ScriptedPerson final : public Person {
 public:
  explicit ScriptedPerson(DialogScript &script) : script_(script) {}

  Person &type(int item, std::string_view text) override { return did(script_.type(item, text)); }
  Person &deleteBack(int item) override { return did(script_.deleteBack(item)); }
  Person &paste(int item, std::string_view text) override { return did(script_.paste(item, text)); }
  Person &moveTo(int item, int position) override { return did(script_.moveTo(item, position)); }
  Person &select(int item, int from, int to) override {
    return did(script_.select(item, from, to));
  }
  Person &choose(int item, std::string_view entry) override {
    return did(script_.choose(item, entry));
  }
  Person &clickRow(int item, int row) override { return did(script_.clickRow(item, row)); }
  Person &doubleClickRow(int item, int row) override {
    return did(script_.doubleClickRow(item, row));
  }
  Person &click(int item) override { return did(script_.click(item)); }
  Person &press(int item) override { return did(script_.press(item)); }
  Person &pressReturn() override { return did(script_.pressReturn()); }
  Person &pressEscape() override { return did(script_.pressEscape()); }
  Person &closeBox() override { return did(script_.closeBox()); }
  Person &check(std::function<void()> checks) override {
    return did(script_.check(std::move(checks)));
  }
  Person &goDown() override { return did(script_.goDown()); }

 private:
  Person &did(DialogScript &) { return *this; }

  DialogScript &script_;
};

class ScriptedWorld final : public DialogWorld {
 public:
  platform::Desktop &desktop() override { return desk_; }
  Person &expectDialog(std::string_view title) override {
    people_.push_back(std::make_unique<ScriptedPerson>(desk_.expectDialog(title)));
    return *people_.back();
  }
  void finish() override { desk_.finish(); }

 private:
  ScriptedDesktop desk_;
  std::vector<std::unique_ptr<ScriptedPerson>> people_;
};

}  // namespace

std::unique_ptr<DialogWorld> makeDialogWorld() { return std::make_unique<ScriptedWorld>(); }

}  // namespace korvel::test
