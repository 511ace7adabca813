// SPDX-License-Identifier: MIT
// Looks at the system's account of what the threads of a process are at.
#include "tests/desktop/stillness.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "tests/desktop/screen_user.h"

namespace korvel::test {
namespace {

// Longer than the toolkit waits for further changes, and than two pictures of a screen take.
constexpr int kStillMilliseconds = 25, kTwoPictures = 40;

struct Thread {
  char state = 'X';
  std::string switches;  // how often it has gone on, and waited
};

Thread threadOf(const std::filesystem::path &folder) {
  Thread thread;
  std::ifstream file(folder / "status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("State:\t")) thread.state = line[7];
    if (line.find("voluntary_ctxt_switches:") != line.npos) thread.switches += line;
  }
  return thread;
}

// What the process has done so far; nothing while it has something to do.
std::optional<std::string> account(pid_t process) {
  std::string whole;
  std::error_code gone;
  const std::string folder = "/proc/" + std::to_string(process) + "/task";
  for (std::filesystem::directory_iterator each(folder, gone), end; !gone && each != end;
       each.increment(gone)) {
    const Thread thread = threadOf(each->path());
    if (thread.state == 'R' || thread.state == 'D') return std::nullopt;
    whole += each->path().string() + thread.switches;
  }
  return whole;
}

std::optional<std::string> account(const std::vector<pid_t> &processes) {
  std::string whole;
  for (const pid_t process : processes) {
    const auto own = account(process);
    if (!own) return std::nullopt;
    whole += *own;
  }
  return whole;
}

}  // namespace

bool isStopped(pid_t process) { return threadOf("/proc/" + std::to_string(process)).state == 'T'; }

void waitUntilAtRest(const std::vector<pid_t> &processes, pid_t ticking) {
  using std::chrono::steady_clock;
  constexpr std::chrono::seconds kLongest{20};
  const auto end = steady_clock::now() + kLongest;
  auto before = account(processes);
  while (steady_clock::now() < end) {
    rest(ticking == 0 ? kStillMilliseconds : kTwoPictures);
    // Before those that it wakes.
    const bool hasTicked = ticking == 0 || account(ticking).has_value();
    const auto now = account(processes);
    if (hasTicked && now && now == before) return;
    before = now;
  }
  // What the test asserts then shows whether it mattered.
  std::fputs("the screen is never at rest\n", stderr);
}

}  // namespace korvel::test
