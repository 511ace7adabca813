// SPDX-License-Identifier: MIT
// For dialogs/: the marks on the screen of items that keep OK disabled.
#ifndef KORVEL_DIALOGS_MARKS_H
#define KORVEL_DIALOGS_MARKS_H

#include <vector>

namespace korvel::dialogs {

class Screen;

class Marks {
 public:
  Marks();

  // Marks the items of the fields whose flags keep OK disabled, and no others. Only changes go to
  // the screen.
  void follow(Screen &screen) noexcept;

 private:
  // Items in ascending order, each once. There is room for those of all fields that have flags.
  std::vector<int> marked_;
  std::vector<int> wanted_;
};

}  // namespace korvel::dialogs

#endif
