// SPDX-License-Identifier: MIT
// For files/, tables/ and profile/: changes of one file wait for each other, those of other
// processes included and, where the file system passes locks on, those of other machines.
//
// The lock is the file's own: no lock file is left, and a process that ends gives it back. A
// change puts a new file in the old one's place: whoever has waited checks that the path still
// names the file that it locked, and else tries again with the new one.
#ifndef KORVEL_FILES_LOCK_H
#define KORVEL_FILES_LOCK_H

#include <chrono>
#include <optional>

namespace korvel::files {

// The longest wait for a lock, in milliseconds. A variable for tests.
extern int lockPatience;

// The outcome of one try for the lock of an open file. The lock lasts until the file is closed.
enum class LockTry { Taken, Held, NoLocks };
LockTry tryLock(int file);

// The time that a wait, or several in a row, may last: lockPatience from the first call.
class Patience {
 public:
  // Returns false when the time is over, with errno ETIMEDOUT.
  bool lasts();
  // The same, and sleeps for a moment.
  bool wait();
  bool hasBegun() const { return begin_.has_value(); }

 private:
  using Clock = std::chrono::steady_clock;

  std::optional<Clock::time_point> begin_;
  std::chrono::milliseconds waited_{0};
};

class FileLock {
 public:
  FileLock() = default;
  ~FileLock() { release(); }
  FileLock(const FileLock &) = delete;
  FileLock &operator=(const FileLock &) = delete;

  // Waits until nobody else changes the file at a POSIX path, as long as the patience lasts.
  // Returns false, holding nothing, unless it is a regular file that this process may read and
  // write; errno says why: ENOENT if it is missing, EINVAL if it is not regular, ETIMEDOUT after
  // too long a wait. Where the file system has no locks, returns true at once.
  // A process that takes one lock after another makes short pauses, so that others get theirs.
  bool take(const char *path);
  bool take(const char *path, Patience &patience);

  void release();

  // Whether a path still names the locked file.
  bool isAt(const char *path) const;

  // The locked file, open for reading and writing, at its beginning; -1 without one. The lock
  // closes it.
  int descriptor() const { return file_; }

 private:
  enum class Taking { Done, Replaced, Failed };
  Taking takeOnce(const char *path, Patience &patience);

  int file_ = -1;
};

}  // namespace korvel::files

#endif
