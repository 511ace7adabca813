// SPDX-License-Identifier: MIT
// A bar on the terminal for what takes more than a second.
#ifndef KORVEL_TOOLS_PROGRESS_H
#define KORVEL_TOOLS_PROGRESS_H

#include <chrono>
#include <cstddef>

namespace korvel::tools {

// Shows nothing where standard error is no terminal. The bar is gone when the object is. The second
// counts from the beginning of the program: a command may work through a table several times.
class Progress {
 public:
  // total: the number of steps; 0 where nobody knows, and nothing is shown.
  explicit Progress(std::size_t total);
  ~Progress();
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  // So many steps are done. Cheap enough to be called after each.
  void at(std::size_t done);
  // So many are, and the library is called, which does not tell how far it is: shows that at once,
  // unless what came before is short.
  void beforeCall(std::size_t done);

 private:
  using Clock = std::chrono::steady_clock;

  void show(std::size_t done);

  const std::size_t total_;
  const bool isSeen_;
  Clock::time_point next_;  // when it shows, or shows anew
};

// Takes the bar away, for a text that the terminal gets; it is drawn anew behind that.
void hideBar();

}  // namespace korvel::tools

#endif
