// What loading the library and one call cost a program: two small C programs that differ in
// nothing else are started in turns.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>

extern "C" char **environ;

namespace {

constexpr int kRuns = 400;
constexpr double kGoal = 0.3;  // milliseconds more than the empty program

double millisecondsOf(const char *program) {
  using Clock = std::chrono::steady_clock;
  char *arguments[] = {const_cast<char *>(program), nullptr};
  const Clock::time_point start = Clock::now();
  pid_t child = 0;
  int status = -1;
  if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0) return -1;
  waitpid(child, &status, 0);
  const std::chrono::duration<double, std::milli> elapsed = Clock::now() - start;
  return status == 0 ? elapsed.count() : -1;
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + kRuns / 2, values.end());
  return values[kRuns / 2];
}

}  // namespace

int main() {
  std::vector<double> empty;
  std::vector<double> loading;
  for (int n = 0; n < kRuns; ++n) {
    empty.push_back(millisecondsOf(KORVEL_EMPTY_PROGRAM));
    loading.push_back(millisecondsOf(KORVEL_LOADING_PROGRAM));
  }
  const bool hasFailed = *std::min_element(empty.begin(), empty.end()) < 0 ||
                         *std::min_element(loading.begin(), loading.end()) < 0;
  if (hasFailed) {
    std::fprintf(stderr, "a program could not be run\n");
    return 1;
  }
  const double more = median(loading) - median(empty);
  std::printf(
      "load the library and one call: %.3f ms, empty program: %.3f ms, more: %.3f ms "
      "(goal %.1f)%s\n",
      median(loading), median(empty), more, kGoal, more <= kGoal ? "" : "  above");
  return 0;
}
