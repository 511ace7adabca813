// SPDX-License-Identifier: MIT
// Draws the bar: a second after the beginning for the first time, then ten times a second.
#include "tools/progress.h"

#include <cstdio>
#include <string>

#include <unistd.h>

namespace korvel::tools {
namespace {

constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kPause = std::chrono::milliseconds(100);

}  // namespace

Progress::Progress(std::size_t total)
    : total_(total), isSeen_(isatty(STDERR_FILENO) == 1), next_(Clock::now() + kPatience) {}

Progress::~Progress() {
  if (isShown_) std::fputs("\r\033[K", stderr);
}

void Progress::at(std::size_t done) {
  if (!isSeen_) return;
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  next_ = now + kPause;
  show(done);
}

void Progress::show(std::size_t done) {
  constexpr std::size_t kWidth = 40;
  const std::size_t share = total_ == 0 ? kWidth : done * kWidth / total_;
  const std::string bar(share, '#');
  const std::string rest(kWidth - share, '.');
  const std::size_t percent = total_ == 0 ? 100 : done * 100 / total_;
  std::fprintf(stderr, "\r[%s%s] %3zu %%", bar.c_str(), rest.c_str(), percent);
  isShown_ = true;
}

}  // namespace korvel::tools
