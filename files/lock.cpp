#include "files/lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

#include "files/transfer.h"

namespace korvel::files {

constinit int lockPatience = 5000;

namespace {

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

bool Patience::wait() {
  const auto now = std::chrono::steady_clock::now();
  if (!end_) end_ = now + std::chrono::milliseconds(lockPatience);
  if (now >= *end_) {
    errno = ETIMEDOUT;
    return false;
  }
  // Moments of unequal length, or two who wait might keep step.
  constexpr useconds_t kShortest = 100;
  constexpr useconds_t kLongest = 1000;
  const auto count = static_cast<unsigned long long>(now.time_since_epoch().count());
  usleep(kShortest + static_cast<useconds_t>(count % (kLongest - kShortest)));
  return true;
}

bool FileLock::take(const char *path) {
  Patience patience;
  Lead lead = Lead::ToAnother;
  while (lead == Lead::ToAnother) {
    release();
    struct stat status;
    file_ = openRegular(path, status);
    if (file_ < 0 || !lockWithin(patience, file_)) break;
    lead = leadOf(path, status);
  }
  if (lead != Lead::ToOurs) release();
  return lead == Lead::ToOurs;
}

void FileLock::release() {
  const int error = errno;
  if (file_ >= 0) close(file_);
  file_ = -1;
  errno = error;
}

}  // namespace korvel::files
