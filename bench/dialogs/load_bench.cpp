// SPDX-License-Identifier: MIT
// What loading the library and one call cost a program: two small C programs that differ in
// nothing else are started in turns, with their functions bound at first use and at load.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

extern "C" char **environ;

namespace {

constexpr int kRuns = 400;
constexpr double kGoal = 0.3;  // milliseconds more than the empty program

// In milliseconds. On a busy machine the processor's time says more than that of the clock, and the
// least of it most.
struct Times {
  std::vector<double> clock;
  std::vector<double> processor;
};

double milliseconds(const timeval &time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

void start(const char *program, Times &times) {
  using Clock = std::chrono::steady_clock;
  char *arguments[] = {const_cast<char *>(program), nullptr};
  const Clock::time_point begin = Clock::now();
  pid_t child = 0;
  int status = -1;
  rusage used{};
  if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) == 0)
    wait4(child, &status, 0, &used);
  const std::chrono::duration<double, std::milli> elapsed = Clock::now() - begin;
  if (status != 0) {
    std::fprintf(stderr, "%s could not be run\n", program);
    std::exit(1);
  }
  times.clock.push_back(elapsed.count());
  times.processor.push_back(milliseconds(used.ru_utime) + milliseconds(used.ru_stime));
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + kRuns / 2, values.end());
  return values[kRuns / 2];
}

double least(const std::vector<double> &values) {
  return *std::min_element(values.begin(), values.end());
}

void tell(const char *binding, const char *what, double loading, double empty) {
  const double more = loading - empty;
  std::printf("%-14s %-10s %10.3f %10.3f %10.3f %6.1f%s\n", binding, what, loading, empty, more,
              kGoal, more <= kGoal ? "" : "  above");
}

void compare(const char *binding) {
  Times empty;
  Times loading;
  for (int n = 0; n < kRuns; ++n) {
    start(KORVEL_EMPTY_PROGRAM, empty);
    start(KORVEL_LOADING_PROGRAM, loading);
  }
  tell(binding, "clock", median(loading.clock), median(empty.clock));
  tell(binding, "processor", median(loading.processor), median(empty.processor));
  tell(binding, "at least", least(loading.processor), least(empty.processor));
}

}  // namespace

int main() {
  std::printf("%-14s %-10s %10s %10s %10s %6s\n", "bound", "ms of the", "loading", "empty", "more",
              "goal");
  unsetenv("LD_BIND_NOW");
  compare("at first use");
  setenv("LD_BIND_NOW", "1", 1);
  compare("at load");
  return 0;
}
