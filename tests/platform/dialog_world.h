// SPDX-License-Identifier: MIT
// For tests/platform/: a desktop with a person who uses its dialogs, so that one file of tests
// holds every desktop to the same contract.
#ifndef KORVEL_TESTS_PLATFORM_DIALOG_WORLD_H
#define KORVEL_TESTS_PLATFORM_DIALOG_WORLD_H

#include <functional>
#include <memory>
#include <string_view>

#include "platform/desktop.h"

namespace korvel::test {

// Steps happen in order while the dialog runs. Texts are UTF-8.
class Person {
 public:
  virtual ~Person() = default;

  virtual Person &type(int item, std::string_view text) = 0;
  virtual Person &deleteBack(int item) = 0;
  virtual Person &paste(int item, std::string_view text) = 0;
  virtual Person &moveTo(int item, int position) = 0;
  virtual Person &select(int item, int from, int to) = 0;
  virtual Person &choose(int item, std::string_view entry) = 0;
  virtual Person &clickRow(int item, int row) = 0;
  virtual Person &doubleClickRow(int item, int row) = 0;
  virtual Person &click(int item) = 0;
  virtual Person &press(int item) = 0;
  virtual Person &pressReturn() = 0;
  virtual Person &pressEscape() = 0;
  virtual Person &closeBox() = 0;
  virtual Person &check(std::function<void()> checks) = 0;
  virtual Person &goDown() = 0;
};

class DialogWorld {
 public:
  virtual ~DialogWorld() = default;
  virtual platform::Desktop &desktop() = 0;
  virtual Person &expectDialog(std::string_view title) = 0;
  // Fails for each expectation that was not met.
  virtual void finish() = 0;
};

// The world of this test program.
std::unique_ptr<DialogWorld> makeDialogWorld();

}  // namespace korvel::test

#endif
