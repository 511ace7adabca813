// SPDX-License-Identifier: MIT
// Draws the bar: a second after the program's beginning for the first time, then ten times a
// second.
#include "tools/progress.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include <unistd.h>

namespace korvel::tools {
namespace {

constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kPause = std::chrono::milliseconds(100);

const auto programsBeginning = std::chrono::steady_clock::now();
bool isBarShown = false;

}  // namespace

Progress::Progress(std::size_t total)
    : total_(total),
      isSeen_(total > 0 && isatty(STDERR_FILENO) == 1),
      next_(programsBeginning + kPatience) {}

Progress::~Progress() { hideBar(); }

void Progress::at(std::size_t done) {
  if (!isSeen_) return;
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  next_ = now + kPause;
  show(done);
}

// An edit takes about as long as the look at the table before it.
void Progress::beforeCall(std::size_t done) {
  next_ = std::min(next_, programsBeginning + kPatience / 2);
  at(done);
}

void Progress::show(std::size_t done) {
  constexpr std::size_t kWidth = 40;
  done = std::min(done, total_);  // a file may grow while it is read
  const std::size_t share = done * kWidth / total_;
  const std::string bar(share, '#');
  const std::string rest(kWidth - share, '.');
  std::fprintf(stderr, "\r[%s%s] %3zu %%", bar.c_str(), rest.c_str(), done * 100 / total_);
  isBarShown = true;
}

void hideBar() {
  if (isBarShown) std::fputs("\r\033[K", stderr);
  isBarShown = false;
}

}  // namespace korvel::tools
