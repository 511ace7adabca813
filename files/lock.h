// For files/, tables/ and profile/ only: changes of one file wait for each other, also those of
// other processes and, where the file system passes locks on, of other machines.
//
// The lock is the file's own: nothing is left lying about, and a process that ends gives it back.
// As a change puts a new file in the old one's place, whoever has waited looks whether the path
// still leads to the file that it locked, and else tries again with the new one.
#ifndef KORVEL_FILES_LOCK_H
#define KORVEL_FILES_LOCK_H

#include <chrono>
#include <optional>

namespace korvel::files {

// The longest wait for a lock, in milliseconds. A variable for tests.
extern int lockPatience;

// What one try for the lock of an open file comes to. The lock lasts until the file is closed.
enum class LockTry { Taken, Held, NoLocks };
LockTry tryLock(int file);

// The time that one wait may last: lockPatience, from the first moment that is waited on.
class Patience {
 public:
  // Sleeps for a moment. Returns false when the time is over; errno is ETIMEDOUT then.
  bool wait();
  bool hasWaited() const { return begin_.has_value(); }

 private:
  std::optional<std::chrono::steady_clock::time_point> begin_;
};

class FileLock {
 public:
  FileLock() = default;
  ~FileLock() { release(); }
  FileLock(const FileLock &) = delete;
  FileLock &operator=(const FileLock &) = delete;

  // Waits until no one else changes the file at a POSIX path, for lockPatience at most. Returns
  // false, holding nothing, when it is no regular file that this process may read and write; errno
  // says why: ENOENT for a missing one, EINVAL for what is no regular file, ETIMEDOUT when the wait
  // was too long. Where the file system has no locks, returns true at once.
  // A process that takes one lock after another makes short pauses, so that others get theirs.
  bool take(const char *path);

  void release();

  // Whether a path still leads to the locked file.
  bool isAt(const char *path) const;

  // The locked file, open for reading and writing, at its beginning; -1 when none is. It stays the
  // lock's own.
  int descriptor() const { return file_; }

 private:
  int file_ = -1;
};

}  // namespace korvel::files

#endif
