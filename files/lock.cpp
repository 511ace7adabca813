// SPDX-License-Identifier: MIT
// Locks of whole files by flock(), fair between processes.
#include "files/lock.h"

#include <atomic>
#include <cerrno>
#include <chrono>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/posix.h"

namespace korvel::files {

constinit int lockPatience = 5000;

namespace {

long long microseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

// The locks that this process took lately: when the last one was released, since when each followed
// the one before without a pause, and whether the last one had to be waited for.
constinit std::atomic<long long> released = 0;
constinit std::atomic<long long> withoutPauseSince = 0;
constinit std::atomic<bool> hasWaited = false;

// Others try for a lock only now and then. Between two locks taken in quick succession they would
// never find it free.
void letOthersIn() {
  constexpr useconds_t kPause = 2000;
  constexpr long long kTurn = 100000;
  const long long now = microseconds();
  if (now - released < kPause) {
    if (!hasWaited && now - withoutPauseSince < kTurn) return;
    usleep(kPause);
  }
  withoutPauseSince = microseconds();
}

// What a path names now, compared with a file that was opened there.
enum class Named { Ours, Another, Nothing };

Named namedBy(const char *path, const struct stat &ours) {
  struct stat now;
  if (stat(path, &now) != 0) return Named::Nothing;
  return base::isSameFile(now, ours) ? Named::Ours : Named::Another;
}

// Returns false when somebody else holds the lock throughout. Where the file system has no locks
// there is nothing to wait for.
bool lockWithin(Patience &patience, int file) {
  while (tryLock(file) == LockTry::Held) {
    if (!patience.wait()) return false;
  }
  return true;
}

// Locks over a network need a descriptor for writing.
int openRegular(const char *path, struct stat &status) {
  const int file =
      base::retried([&] { return open(path, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
  if (file < 0) return -1;
  if (fstat(file, &status) == 0) {
    if (S_ISREG(status.st_mode)) return file;
    errno = EINVAL;
  }
  const int error = errno;
  close(file);
  errno = error;
  return -1;
}

}  // namespace

LockTry tryLock(int file) {
  if (base::retried([&] { return flock(file, LOCK_EX | LOCK_NB); }) == 0) return LockTry::Taken;
  // Shares that pass locks on may say either.
  return errno == EWOULDBLOCK || errno == EACCES ? LockTry::Held : LockTry::NoLocks;
}

bool Patience::lasts() {
  const auto now = Clock::now();
  if (!begin_) begin_ = now;
  waited_ = std::chrono::duration_cast<std::chrono::milliseconds>(now - *begin_);
  if (waited_.count() < lockPatience) return true;
  errno = ETIMEDOUT;
  return false;
}

// Whoever has waited long tries more often, and so is likelier to be next than a newcomer. The
// pauses vary, or two that wait might keep step.
bool Patience::wait() {
  if (!lasts()) return false;
  constexpr long long kFirst = 1000;  // microseconds
  constexpr std::chrono::milliseconds kHalved{50};
  const long long longest = kFirst * kHalved / (kHalved + waited_);
  const long long ticks = Clock::now().time_since_epoch().count();
  usleep(static_cast<useconds_t>(longest / 2 + ticks % (longest / 2 + 1)));
  return true;
}

bool FileLock::take(const char *path) {
  Patience patience;
  return take(path, patience);
}

bool FileLock::take(const char *path, Patience &patience) {
  release();
  letOthersIn();
  Taking taking = takeOnce(path, patience);
  while (taking == Taking::Replaced && patience.lasts()) taking = takeOnce(path, patience);
  hasWaited = patience.hasBegun();
  return taking == Taking::Done;
}

// Replaced: another file has taken the place of the one that was opened.
FileLock::Taking FileLock::takeOnce(const char *path, Patience &patience) {
  struct stat opened;
  // EWOULDBLOCK: a file server has a lease on the file, and was just asked to give it back.
  do {
    file_ = openRegular(path, opened);
  } while (file_ < 0 && errno == EWOULDBLOCK && patience.wait());
  if (file_ < 0) return Taking::Failed;
  Taking taking = Taking::Failed;
  if (lockWithin(patience, file_)) {
    const Named now = namedBy(path, opened);
    if (now == Named::Ours) return Taking::Done;
    if (now == Named::Another) taking = Taking::Replaced;
  }
  release();
  return taking;
}

void FileLock::release() {
  if (file_ < 0) return;
  const int error = errno;
  // A child forked meanwhile shares the lock, and would keep it.
  flock(file_, LOCK_UN);
  close(file_);
  file_ = -1;
  released = microseconds();
  errno = error;
}

bool FileLock::isAt(const char *path) const {
  struct stat ours;
  return file_ >= 0 && fstat(file_, &ours) == 0 && namedBy(path, ours) == Named::Ours;
}

}  // namespace korvel::files
