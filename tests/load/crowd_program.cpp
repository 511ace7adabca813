// SPDX-License-Identifier: MIT
// crowd_program [seconds [processes [seed]]]: processes write one table and one profile at once.
// No edit that was answered is missing, to its own writer at any time and to all in the end.
#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include <sys/wait.h>

#include "tests/load/practice.h"

namespace {

using korvel::load::Account;
using korvel::load::Clock;
using korvel::load::Practice;
using korvel::load::startWriting;

// Whether all ended well.
bool writeAtOnce(Practice &practice, std::chrono::seconds duration, unsigned seed) {
  const Clock::time_point end = Clock::now() + duration;
  std::vector<pid_t> processes;
  for (int number = 0; number < practice.writers(); ++number)
    processes.push_back(startWriting(practice, number, seed + static_cast<unsigned>(number), end));
  bool allWell = true;
  for (const pid_t process : processes) {
    int status = -1;
    waitpid(process, &status, 0);
    allWell = allWell && status == 0;
  }
  return allWell;
}

// Returns the fewest edits that one writer was answered.
int tell(Practice &practice, std::chrono::seconds duration) {
  int all = 0;
  int refused = 0;
  int fewest = INT_MAX;
  int most = 0;
  for (int number = 0; number < practice.writers(); ++number) {
    const Account &account = practice.account(number);
    all += account.answered();
    refused += account.refused;
    fewest = std::min(fewest, account.answered());
    most = std::max(most, account.answered());
  }
  std::printf("%d processes: %d edits answered (%.0f a second), %d to %d a process, %d refused\n",
              practice.writers(), all, all / static_cast<double>(duration.count()), fewest, most,
              refused);
  return fewest;
}

}  // namespace

int main(int argc, char **argv) {
  const std::chrono::seconds duration(argc > 1 ? std::atoi(argv[1]) : 20);
  Practice practice(argc > 2 ? std::atoi(argv[2]) : 16);
  const unsigned seed =
      argc > 3 ? static_cast<unsigned>(std::atoll(argv[3])) : std::random_device{}();
  std::printf("seed %u\n", seed);
  std::fflush(stdout);
  const bool allWell = writeAtOnce(practice, duration, seed);
  const int fewest = tell(practice, duration);
  if (allWell && practice.settle() && practice.isTidy()) return fewest > 0 ? 0 : 1;
  practice.complain();
  return 1;
}
