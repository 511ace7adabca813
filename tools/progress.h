// SPDX-License-Identifier: MIT
// A bar on the terminal for what takes more than a second.
#ifndef KORVEL_TOOLS_PROGRESS_H
#define KORVEL_TOOLS_PROGRESS_H

#include <chrono>
#include <cstddef>

namespace korvel::tools {

// Shows nothing where standard error is no terminal. The bar is gone when the object is.
class Progress {
 public:
  // total: the number of steps.
  explicit Progress(std::size_t total);
  ~Progress();
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  // So many steps are done. Cheap enough to be called after each.
  void at(std::size_t done);

 private:
  using Clock = std::chrono::steady_clock;

  void show(std::size_t done);

  const std::size_t total_;
  const bool isSeen_;
  Clock::time_point next_;  // when it shows, or shows anew
  bool isShown_ = false;
};

}  // namespace korvel::tools

#endif
