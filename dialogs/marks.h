// For dialogs/ only: which items are marked on the screen because they keep OK disabled.
#ifndef KORVEL_DIALOGS_MARKS_H
#define KORVEL_DIALOGS_MARKS_H

#include <vector>

namespace korvel::dialogs {

class Screen;

class Marks {
 public:
  Marks();

  // Marks the items of the fields whose flags keep OK disabled, and no others. The screen is told
  // only of what has changed.
  void follow(Screen &screen) noexcept;

 private:
  // Items in ascending order, each once, in room for all fields that have flags.
  std::vector<int> marked_;
  std::vector<int> wanted_;
};

}  // namespace korvel::dialogs

#endif
