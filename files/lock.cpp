#include "files/lock.h"

#include <atomic>
#include <cerrno>
#include <chrono>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/transfer.h"

namespace korvel::files {

constinit int lockPatience = 5000;

namespace {

long long microseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

// How this process came by its locks lately: when the last one was released, since when there was
// no pause between one and the next, and whether the last one had to be waited for.
constinit std::atomic<long long> released = 0;
constinit std::atomic<long long> withoutPauseSince = 0;
constinit std::atomic<bool> hasWaited = false;

// Others look for a lock now and then only. Between two that are taken at once one after the other
// there would be no moment in which they find it free.
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

enum class Lead { ToOurs, ToAnother, Nowhere };

Lead leadOf(const char *path, const struct stat &ours) {
  struct stat now;
  if (stat(path, &now) != 0) return Lead::Nowhere;
  return now.st_dev == ours.st_dev && now.st_ino == ours.st_ino ? Lead::ToOurs : Lead::ToAnother;
}

// Returns false when another one has the lock all the time. There is none to wait for where the
// file system has no locks.
bool lockWithin(Patience &patience, int file) {
  while (tryLock(file) == LockTry::Held) {
    if (!patience.wait()) return false;
  }
  return true;
}

// Locks that go over a network want a descriptor for writing.
int openRegular(const char *path, struct stat &status) {
  const int file = retried([&] { return open(path, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
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
  if (retried([&] { return flock(file, LOCK_EX | LOCK_NB); }) == 0) return LockTry::Taken;
  // Shares that pass locks on may say either.
  return errno == EWOULDBLOCK || errno == EACCES ? LockTry::Held : LockTry::NoLocks;
}

// Who has waited for long looks more often, and is more likely to be next than a newcomer. The
// moments are of unequal length, or two who wait might keep step.
bool Patience::wait() {
  using std::chrono::milliseconds;
  const auto now = std::chrono::steady_clock::now();
  if (!begin_) begin_ = now;
  const auto waited = std::chrono::duration_cast<milliseconds>(now - *begin_);
  if (waited >= milliseconds(lockPatience)) {
    errno = ETIMEDOUT;
    return false;
  }
  constexpr long long kFirst = 1000;  // microseconds
  constexpr milliseconds kHalved{50};
  const long long longest = kFirst * kHalved / (kHalved + waited);
  const long long ticks = now.time_since_epoch().count();
  usleep(static_cast<useconds_t>(longest / 2 + ticks % (longest / 2 + 1)));
  return true;
}

bool FileLock::take(const char *path) {
  release();
  letOthersIn();
  Patience patience;
  Lead lead = Lead::ToAnother;
  while (lead == Lead::ToAnother) {
    release();
    struct stat status;
    file_ = openRegular(path, status);
    // A file server has a lease on it, and was just asked to give it back.
    if (file_ < 0 && errno == EWOULDBLOCK && patience.wait()) continue;
    if (file_ < 0 || !lockWithin(patience, file_)) break;
    lead = leadOf(path, status);
  }
  hasWaited = patience.hasWaited();
  if (lead != Lead::ToOurs) release();
  return lead == Lead::ToOurs;
}

void FileLock::release() {
  if (file_ < 0) return;
  const int error = errno;
  // A child that was forked meanwhile has the same lock, and would keep it.
  flock(file_, LOCK_UN);
  close(file_);
  file_ = -1;
  released = microseconds();
  errno = error;
}

bool FileLock::isAt(const char *path) const {
  struct stat ours;
  return file_ >= 0 && fstat(file_, &ours) == 0 && leadOf(path, ours) == Lead::ToOurs;
}

}  // namespace korvel::files
