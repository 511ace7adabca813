// SPDX-License-Identifier: MIT
// For tests/load/: one table and one profile that several processes write at once, what each of
// them was answered, and what the two files must hold byte for byte by that.
#ifndef KORVEL_TESTS_LOAD_PRACTICE_H
#define KORVEL_TESTS_LOAD_PRACTICE_H

#include <array>
#include <atomic>
#include <chrono>
#include <random>
#include <string>
#include <vector>

#include <sys/types.h>

namespace korvel::load {

// What a writer edits: two columns of its line of the table, by either way to write one; in the
// profile a key that changes, one that comes and goes, and a section that is written as a whole.
// The first writer also adds and removes a line of the table, and gives the table its title.
enum Target { kColumn, kFlushedColumn, kKey, kPassingKey, kSection, kLine, kTitle, kTargets };

// How often each target was edited with success.
using Rounds = std::array<int, kTargets>;

// What one writer was answered. It is in memory that all processes share, and outlives a kill.
struct Account {
  static constexpr int kNone = -1;

  std::atomic<int> rounds[kTargets];
  std::atomic<int> current;  // the target whose edit has not been answered; kNone between edits
  std::atomic<int> refused;  // edits that were answered with failure
  std::atomic<bool> hasBegun;

  int answered() const;
};

// The folder with both files; it is removed at the end, in the process that made it. While it
// lives, the library's paths lead there.
class Practice {
 public:
  explicit Practice(int writers);
  ~Practice();
  Practice(const Practice &) = delete;
  Practice &operator=(const Practice &) = delete;

  int writers() const { return writers_; }
  Account &account(int writer) { return accounts_[writer]; }

  // Whether both files are what all answers together make them. An edit of a writer that was killed
  // may have been made or not: what is found goes into its account.
  bool settle();

  // Whether nothing but the two files is in the folder.
  bool isTidy() const;

  // Says on standard error what was expected and what is there.
  void complain() const;

 private:
  std::vector<Rounds> answered() const;
  std::vector<int> interrupted() const;
  void enter(const std::vector<Rounds> &rounds);

  const int writers_;
  std::string folder_;
  Account *accounts_;
};

// One of the writers.
class Writer {
 public:
  Writer(Practice &practice, int number, unsigned seed)
      : practice_(practice), account_(practice.account(number)), number_(number), random_(seed) {}

  // Makes an edit of any target. Returns false when what was answered before is not there.
  bool editSomething();
  bool edit(Target target);

 private:
  bool isThere(Target target) const;
  bool make(Target target, int round) const;

  Practice &practice_;
  Account &account_;
  const int number_;
  std::mt19937 random_;
};

using Clock = std::chrono::steady_clock;

// Starts a process that edits until that time, or until this process ends. It ends with 0, or at
// once with 1 when something that was answered is not there.
pid_t startWriting(Practice &practice, int number, unsigned seed,
                   Clock::time_point end = Clock::time_point::max());

}  // namespace korvel::load

#endif
