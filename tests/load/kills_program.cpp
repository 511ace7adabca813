// SPDX-License-Identifier: MIT
// kills_program [kills [seed]]: four processes write one table and one profile and are killed at
// any moment. Afterwards each file is byte for byte what the answers make it, with or without the
// edits that were going on, and the next replacement leaves no other file.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <signal.h>

#include <sys/wait.h>
#include <unistd.h>

#include "tests/load/practice.h"

namespace {

using korvel::load::Account;
using korvel::load::Clock;
using korvel::load::Practice;
using korvel::load::startWriting;
using korvel::load::Writer;

constexpr int kKilled = 4;
constexpr int kTidying = kKilled;  // the writer that is this process itself
constexpr useconds_t kLongestLife = 12000;

struct Figures {
  int kills = 0;
  int inAnEdit = 0;
  int leftAFile = 0;
};

// Whether the process was alive until now.
bool killed(pid_t process) {
  int status = 0;
  kill(process, SIGKILL);
  waitpid(process, &status, 0);
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

// Starts all writers, and kills one after the other.
bool killAll(Practice &practice, std::mt19937 &random, Figures &figures) {
  pid_t processes[kKilled];
  useconds_t lives[kKilled];
  for (int number = 0; number < kKilled; ++number) {
    practice.account(number).hasBegun = false;
    processes[number] = startWriting(practice, number, static_cast<unsigned>(random()));
    lives[number] = static_cast<useconds_t>(random()) % kLongestLife;
  }
  for (int number = 0; number < kKilled; ++number)
    while (!practice.account(number).hasBegun) usleep(100);
  std::sort(lives, lives + kKilled);
  std::shuffle(processes, processes + kKilled, random);
  bool isAlive = true;
  for (int n = 0; n < kKilled; ++n) {
    usleep(n == 0 ? lives[0] : lives[n] - lives[n - 1]);
    isAlive = killed(processes[n]) && isAlive;
    ++figures.kills;
  }
  for (int number = 0; number < kKilled; ++number)
    if (practice.account(number).current != Account::kNone) ++figures.inAnEdit;
  return isAlive;
}

bool survives(Practice &practice, std::mt19937 &random, Figures &figures) {
  if (!killAll(practice, random, figures)) return false;
  if (!practice.isTidy()) ++figures.leftAFile;
  if (!practice.settle()) return false;
  Writer tidying(practice, kTidying, 0);
  const int before = practice.account(kTidying).answered();
  return tidying.edit(korvel::load::kKey) && practice.account(kTidying).answered() > before &&
         practice.settle() && practice.isTidy();
}

// Returns how many edits were answered.
int tell(Practice &practice, const Figures &figures, double seconds) {
  int answered = 0;
  int refused = 0;
  for (int number = 0; number < kKilled; ++number) {
    answered += practice.account(number).answered();
    refused += practice.account(number).refused;
  }
  std::printf("%d kills in %.1f s (%.0f a second), %d of them in an edit, %d rounds left a file\n",
              figures.kills, seconds, figures.kills / seconds, figures.inAnEdit, figures.leftAFile);
  std::printf("%d edits answered (%.0f a second), %d refused\n", answered, answered / seconds,
              refused);
  return answered;
}

}  // namespace

int main(int argc, char **argv) {
  const int kills = argc > 1 ? std::atoi(argv[1]) : 1000;
  const unsigned seed =
      argc > 2 ? static_cast<unsigned>(std::atoll(argv[2])) : std::random_device{}();
  std::printf("seed %u\n", seed);
  std::fflush(stdout);
  std::mt19937 random(seed);
  Practice practice(kKilled + 1);
  Figures figures;
  const auto start = Clock::now();
  while (figures.kills < kills) {
    if (survives(practice, random, figures)) continue;
    std::fprintf(stderr, "after %d kills with seed %u:\n", figures.kills, seed);
    practice.complain();
    return 1;
  }
  const std::chrono::duration<double> took = Clock::now() - start;
  // Without answers, and without edits to be killed in, the kills say nothing.
  const bool wereAnswered = tell(practice, figures, took.count()) >= figures.kills;
  return wereAnswered && figures.inAnEdit > figures.kills / 4 ? 0 : 1;
}
