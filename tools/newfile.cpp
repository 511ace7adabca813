// SPDX-License-Identifier: MIT
// Makes a file beside its place, syncs it and renames it.
#include "tools/newfile.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits.h>

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tools/failure.h"

namespace korvel::tools {
namespace {

// The one file that is being made, for the signals.
char unfinished[PATH_MAX];

extern "C" void removeAndEnd(int signal) {
  unlink(unfinished);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

void removeAtSignals(const std::string &path) {
  std::strncpy(unfinished, path.c_str(), sizeof unfinished - 1);
  for (const int signal : kEndingSignals) {
    // What runs on at a hang-up still does.
    if (std::signal(signal, removeAndEnd) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

// Has these signals wait for the end of the object, so that none comes between a file and its name.
class SignalsWait {
 public:
  SignalsWait() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : kEndingSignals) sigaddset(&signals, signal);
    sigprocmask(SIG_BLOCK, &signals, &before_);
  }
  ~SignalsWait() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsWait(const SignalsWait &) = delete;
  SignalsWait &operator=(const SignalsWait &) = delete;

 private:
  sigset_t before_;
};

// Whether the place is taken. Throws unless what is there may give way.
bool isTaken(const std::string &place, struct stat &status) {
  if (stat(place.c_str(), &status) != 0) {
    if (errno == ENOENT) return false;
    throw fileFailure(place);
  }
  if (S_ISDIR(status.st_mode)) throw fileFailure(place, EISDIR);
  if (!S_ISREG(status.st_mode)) throw Failure(kFailed, place + ": is no regular file");
  if (access(place.c_str(), W_OK) != 0) throw fileFailure(place);
  return true;
}

constexpr const char *kAccessList = "system.posix_acl_access";

bool isKept(std::string_view attribute) {
  return attribute.starts_with("user.") || attribute == kAccessList ||
         attribute == "security.selinux";
}

bool copyAttribute(const std::string &from, int to, const char *name) {
  std::string value(XATTR_SIZE_MAX, '\0');
  const ssize_t length = getxattr(from.c_str(), name, value.data(), value.size());
  return length >= 0 && fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0) == 0;
}

// A folder may give every new file an access list; it goes where the old file has none. Returns
// false for one that cannot be copied.
bool copyAttributes(const std::string &from, int to) {
  std::string names(XATTR_LIST_MAX, '\0');
  const ssize_t length = listxattr(from.c_str(), names.data(), names.size());
  names.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  bool hasAccessList = false;
  bool isCopied = true;
  for (std::size_t i = 0; i < names.size(); i = names.find('\0', i) + 1) {
    const char *const name = names.c_str() + i;
    if (!isKept(name)) continue;
    const bool copied = copyAttribute(from, to, name);
    if (std::strcmp(name, kAccessList) != 0) continue;
    hasAccessList = true;
    isCopied = copied;
  }
  if (!hasAccessList) fremovexattr(to, kAccessList);
  return isCopied;
}

}  // namespace

mode_t usualMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

NewFile::NewFile(const std::string &place, mode_t modeIfNew) : place_(place) {
  const std::string folder = place.substr(0, place.rfind('/') + 1);
  path_ = folder + std::string(kPattern);
  struct stat old;
  const bool taken = isTaken(place, old);
  {
    const SignalsWait wait;
    file_ = mkostemp(path_.data(), O_CLOEXEC);
    if (file_ < 0) throw fileFailure(folder);
    removeAtSignals(path_);
  }
  if (taken) {
    resemble(old);
  } else {
    fchmod(file_, modeIfNew);
  }
}

// Without the old group or access list the group gets no more rights than everyone has. The mode
// comes last: the others change it.
void NewFile::resemble(const struct stat &old) const {
  const bool hasGroup = fchown(file_, old.st_uid, old.st_gid) == 0 ||
                        fchown(file_, static_cast<uid_t>(-1), old.st_gid) == 0;
  const bool hasAccessList = copyAttributes(place_, file_);
  const mode_t everyones = old.st_mode & S_IRWXO;
  const mode_t groups = hasGroup && hasAccessList ? S_IRWXG : everyones << 3;
  fchmod(file_, old.st_mode & (S_IRWXU | groups | S_IRWXO));
}

NewFile::~NewFile() {
  if (file_ >= 0) close(file_);
  unlink(path_.c_str());
}

void NewFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw fileFailure(place_);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void NewFile::finish() {
  if (fsync(file_) != 0) throw fileFailure(place_);
  const int closed = close(file_);
  file_ = -1;
  if (closed != 0) throw fileFailure(place_);
}

void NewFile::commit() {
  finish();
  if (std::rename(path_.c_str(), place_.c_str()) != 0) throw fileFailure(place_);
  const std::string folder = place_.substr(0, place_.rfind('/') + 1);
  const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (opened < 0) return;
  fsync(opened);
  close(opened);
}

}  // namespace korvel::tools
