#include "tables/lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace korvel::tables {
namespace {

enum class Lead { ToOurs, ToAnother, Nowhere };

Lead leadOf(const char *path, const struct stat &ours) {
  struct stat now;
  if (stat(path, &now) != 0) return Lead::Nowhere;
  return now.st_dev == ours.st_dev && now.st_ino == ours.st_ino ? Lead::ToOurs : Lead::ToAnother;
}

// Whether waiting is over; with an error when the file system has no locks.
void waitForLock(int file) {
  while (flock(file, LOCK_EX) != 0 && errno == EINTR) {
  }
}

}  // namespace

bool TableLock::take(const char *path) {
  Lead lead = Lead::ToAnother;
  while (lead == Lead::ToAnother) {
    release();
    // Locks that go over a network want a descriptor for writing.
    file_ = open(path, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    struct stat status;
    if (file_ < 0 || fstat(file_, &status) != 0 || !S_ISREG(status.st_mode)) break;
    waitForLock(file_);
    lead = leadOf(path, status);
  }
  if (lead != Lead::ToOurs) release();
  return lead == Lead::ToOurs;
}

void TableLock::release() {
  if (file_ >= 0) close(file_);
  file_ = -1;
}

}  // namespace korvel::tables
