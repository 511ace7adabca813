// SPDX-License-Identifier: MIT
// The steps of a replacement, in the order of files/replace.h.
#include "files/replace.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <new>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "base/posix.h"
#include "files/lock.h"
#include "files/transfer.h"

namespace korvel::files {

constinit ReplaceFault replaceFault = nullptr;
constinit int abandonedAfter = 60;

namespace {

constexpr mode_t kOpenToAll = 0777;
constexpr mode_t kPermissions = 0777;
constexpr mode_t kPermissionsAndSetId = 07777;
constexpr int kMaxLinks = 40;  // as many as the kernel follows
constexpr int kNames = 8;      // of temporaries in one folder
constexpr const char *kDescriptors = "/proc/self/fd";
constexpr const char *kAccessList = "system.posix_acl_access";

// Whether a test wants this step to fail. Sets errno.
bool faulty(ReplaceStep step) {
  if (replaceFault == nullptr) return false;
  const int error = replaceFault(step);
  if (error == 0) return false;
  errno = error;
  return true;
}

void closeIfOpen(int &descriptor) {
  if (descriptor >= 0) close(descriptor);
  descriptor = -1;
}

// The refusals of devices and file systems that cannot sync; there is nothing to wait for then.
bool cannotSync(int error) { return error == EINVAL || error == ENOTSUP || error == EROFS; }

bool synced(int descriptor) {
  return base::retried([&] { return fsync(descriptor); }) == 0 || cannotSync(errno);
}

// Whether the folder, not the file, is the obstacle.
bool folderRefuses(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

bool hasNoUnnamedFiles(int error) {
  return error == EOPNOTSUPP || error == EISDIR || error == EINVAL || error == ENOSYS ||
         error == ENOENT;
}

// Replaces the path of a symbolic link by the path of its target.
bool followLink(char (&path)[PATH_MAX]) {
  char target[PATH_MAX];
  const ssize_t length = readlink(path, target, sizeof target);
  if (length <= 0 || length == static_cast<ssize_t>(sizeof target)) return false;
  std::size_t folder = 0;
  if (target[0] != '/') {
    if (const char *slash = std::strrchr(path, '/'))
      folder = static_cast<std::size_t>(slash - path) + 1;
  }
  if (folder + static_cast<std::size_t>(length) >= sizeof path) return false;
  std::memcpy(path + folder, target, static_cast<std::size_t>(length));
  path[folder + static_cast<std::size_t>(length)] = '\0';
  return true;
}

template <std::size_t size>
void nameTemporary(int number, char (&name)[size]) {
  std::snprintf(name, size, ".korvel-%d", number);
}

// Whether the name is the open file's.
bool isNameOf(int folder, const char *name, int file) {
  struct stat named;
  struct stat own;
  return fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 && fstat(file, &own) == 0 &&
         base::isSameFile(named, own);
}

bool isOld(int folder, const char *name) {
  struct stat status;
  return fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         time(nullptr) - status.st_ctime >= abandonedAfter;
}

// file: the temporary, or -1 if it cannot be opened. Once locked here it stays so until it is
// closed: meanwhile nobody else removes it and gives its name to another one.
bool isAbandoned(int folder, const char *name, int file) {
  const LockTry tried = file < 0 ? LockTry::NoLocks : tryLock(file);
  if (tried == LockTry::NoLocks) return isOld(folder, name);
  return tried == LockTry::Taken && isNameOf(folder, name, file);
}

// Locks over a network need a descriptor for writing.
void removeIfAbandoned(int folder, const char *name) {
  int file = base::retried([&] {
    return openat(folder, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  });
  if (file < 0 && errno == ENOENT) return;
  if (isAbandoned(folder, name, file)) unlinkat(folder, name, 0);
  closeIfOpen(file);
}

// Advances the vectors by the bytes that were written.
void skipWritten(iovec *&first, int &count, std::size_t written) {
  while (count > 0 && written >= first->iov_len) {
    written -= first->iov_len;
    ++first;
    --count;
  }
  if (count == 0) return;
  first->iov_base = static_cast<char *>(first->iov_base) + written;
  first->iov_len -= written;
}

bool gatheredWrite(int descriptor, iovec *first, int count) {
  while (count > 0) {
    if (faulty(ReplaceStep::Write)) return false;
    const ssize_t written = base::retried([&] { return writev(descriptor, first, count); });
    if (written <= 0) return false;
    skipWritten(first, count, static_cast<std::size_t>(written));
  }
  return true;
}

bool isKeptAttribute(std::string_view name) {
  return name.starts_with("user.") || name == kAccessList || name == "security.selinux";
}

bool copyAttribute(int from, int to, const char *name) {
  char value[65536];  // no attribute is longer
  const ssize_t length = fgetxattr(from, name, value, sizeof value);
  return length >= 0 && fsetxattr(to, name, value, static_cast<std::size_t>(length), 0) == 0;
}

// A folder may give every new file an access list; it is removed if the old file has none. Returns
// false when the old file has one that cannot be copied.
bool copyAttributes(int from, int to) {
  char names[65536];
  const ssize_t length = flistxattr(from, names, sizeof names);
  bool hasAccessList = false;
  bool keepsAccessList = true;
  for (const char *name = names; length > 0 && name < names + length;
       name += std::strlen(name) + 1) {
    if (!isKeptAttribute(name)) continue;
    const bool copied = copyAttribute(from, to, name);
    if (std::strcmp(name, kAccessList) == 0) {
      hasAccessList = true;
      keepsAccessList = copied;
    }
  }
  if (!hasAccessList) fremovexattr(to, kAccessList);
  return keepsAccessList;
}

struct Kept {
  bool owner;
  bool group;
};

Kept copyOwner(const struct stat &from, int to) {
  struct stat made;
  if (fstat(to, &made) != 0) return {false, false};
  if (made.st_uid == from.st_uid && made.st_gid == from.st_gid) return {true, true};
  if (fchown(to, from.st_uid, from.st_gid) == 0) return {true, true};
  const bool sameOwner = made.st_uid == from.st_uid;
  const bool sameGroup =
      made.st_gid == from.st_gid || fchown(to, static_cast<uid_t>(-1), from.st_gid) == 0;
  return {sameOwner, sameGroup};
}

mode_t modeFor(const struct stat &from, Kept kept) {
  mode_t mode = from.st_mode & (kept.owner && kept.group ? kPermissionsAndSetId : kPermissions);
  if (!kept.group) mode &= ~((~mode & S_IRWXO) << 3);
  return mode;
}

// A share whose files all belong to one user refuses every change of mode and gives all files the
// same one.
bool setMode(int file, mode_t mode) {
  if (fchmod(file, mode) == 0) return true;
  const int error = errno;
  struct stat made;
  const bool hasIt = fstat(file, &made) == 0 && (made.st_mode & kPermissionsAndSetId) == mode;
  errno = error;
  return hasIt;
}

// The mode comes last: changes of the owner and the access list alter it.
bool adopt(int old, int made) {
  if (faulty(ReplaceStep::Adopt)) return false;
  if (old < 0) {
    fchmod(made, kOpenToAll);  // has no effect where the file system has no modes
    return true;
  }
  struct stat status;
  if (fstat(old, &status) != 0) return false;
  Kept kept = copyOwner(status, made);
  // With an access list the mode's group rights are the most that anyone in the list has; without
  // it they would be the group's own.
  if (!copyAttributes(old, made)) kept.group = false;
  return setMode(made, modeFor(status, kept));
}

// The folder of a path. One that may be changed but not read cannot be synced; see syncFolder().
int openFolderOf(const char *path) {
  char folder[PATH_MAX] = ".";
  if (const char *slash = std::strrchr(path, '/')) {
    const auto length = static_cast<std::size_t>(slash - path) + 1;
    if (length >= sizeof folder) return -1;
    std::memcpy(folder, path, length);
    folder[length] = '\0';
  }
  const int descriptor =
      base::retried([&] { return open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (descriptor >= 0 || errno != EACCES) return descriptor;
  return open(folder, O_PATH | O_DIRECTORY | O_CLOEXEC);
}

// Errors are ignored: the content has its name.
void syncFolder(int folder, int content) {
  if (faulty(ReplaceStep::Folder)) return;
  if (base::retried([&] { return fsync(folder); }) != 0 && errno == EBADF) syncfs(content);
}

// Copies the bytes [begin, end) to the same place in another file.
bool copyStretch(int from, int to, off_t begin, off_t end) {
  constexpr off_t kBlock = 262144;
  const auto block = std::unique_ptr<char, decltype(&std::free)>(
      static_cast<char *>(std::malloc(kBlock)), &std::free);
  if (block == nullptr) return false;
  while (begin < end) {
    if (faulty(ReplaceStep::Overwrite)) return false;
    const auto wish = static_cast<std::size_t>(std::min(kBlock, end - begin));
    const ssize_t got = base::retried([&] { return pread(from, block.get(), wish, begin); });
    if (got <= 0) return false;
    for (ssize_t done = 0; done < got;) {
      const ssize_t put = base::retried([&] {
        return pwrite(to, block.get() + done, static_cast<std::size_t>(got - done), begin + done);
      });
      if (put <= 0) return false;
      done += put;
    }
    begin += got;
  }
  return true;
}

}  // namespace

void syncFolderOf(const char *path, int content) {
  int folder = openFolderOf(path);
  syncFolder(folder, content);
  closeIfOpen(folder);
}

bool Replacement::begin(const char *path, IfMissing ifMissing, ReplaceRules rules) {
  discard();
  rules_ = rules;
  if (path == nullptr || faulty(ReplaceStep::Open)) return false;
  const bool ready = findFile(path, ifMissing) && openFolder() && openOld(ifMissing) &&
                     (openTemporary() || (mayOverwrite() && openAside()));
  if (!ready) discard();
  return ready;
}

// Sets path_ and name_ to the file at the end of all symbolic links.
bool Replacement::findFile(const char *path, IfMissing ifMissing) {
  const std::size_t length = std::strlen(path);
  if (length == 0 || length >= sizeof path_) return false;
  std::memcpy(path_, path, length + 1);
  struct stat status;
  for (int links = 0;; ++links) {
    if (lstat(path_, &status) != 0) {
      if (errno != ENOENT || ifMissing == IfMissing::Fail) return false;
      break;
    }
    if (rules_.anew && S_ISLNK(status.st_mode)) break;
    if (!S_ISLNK(status.st_mode)) {
      // Opening a device or a pipe may do something: it is not even tried.
      if (!S_ISREG(status.st_mode)) return false;
      break;
    }
    if (links == kMaxLinks || !followLink(path_)) return false;
  }
  const char *slash = std::strrchr(path_, '/');
  name_ = slash == nullptr ? path_ : slash + 1;
  return *name_ != '\0';
}

bool Replacement::openFolder() {
  folder_ = openFolderOf(path_);
  return folder_ >= 0;
}

// Opening tells whether this process may write the file. Reading is needed only to overwrite it in
// place.
bool Replacement::openOld(IfMissing ifMissing) {
  if (rules_.anew) return true;
  const auto openFor = [this](int access) {
    return base::retried(
        [&] { return openat(folder_, name_, access | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); });
  };
  old_ = openFor(O_RDWR);
  if (old_ < 0 && errno == EACCES) old_ = openFor(O_WRONLY);
  if (old_ < 0) return errno == ENOENT && ifMissing == IfMissing::Create;
  struct stat status;
  return fstat(old_, &status) == 0 && S_ISREG(status.st_mode);
}

// Removes the temporaries that kills left in the folder.
void Replacement::sweep() const {
  char name[sizeof temporary_];
  for (int number = 0; number < kNames; ++number) {
    nameTemporary(number, name);
    removeIfAbandoned(folder_, name);
  }
}

bool Replacement::openTemporary() {
  sweep();
  // Through the list of descriptors a nameless file gets its name.
  if (access(kDescriptors, X_OK) != 0) return openNamed();
  place_ = Place::Unnamed;
  if (!faulty(ReplaceStep::Temporary)) {
    content_ =
        base::retried([&] { return openat(folder_, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600); });
  }
  if (content_ < 0) return hasNoUnnamedFiles(errno) && openNamed();
  tryLock(content_);
  return true;
}

bool Replacement::openNamed() {
  place_ = Place::Named;
  return takeName([this] {
    content_ = base::retried(
        [&] { return openat(folder_, temporary_, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600); });
    if (content_ < 0) return false;
    // Somebody may have removed it, as left over, before it was locked.
    if (tryLock(content_) != LockTry::Held && isNameOf(folder_, temporary_, content_)) return true;
    closeIfOpen(content_);
    errno = EEXIST;
    return false;
  });
}

// Sets temporary_ to a name with which make() succeeds; for a name in use it fails with EEXIST.
template <typename Make>
bool Replacement::takeName(Make make) {
  Patience patience;
  do {
    for (int number = 0; number < kNames; ++number) {
      nameTemporary(number, temporary_);
      if (make()) return true;
      temporary_[0] = '\0';
      if (errno != EEXIST) return false;
    }
    sweep();
  } while (patience.wait());
  return false;
}

bool Replacement::openAside() {
  place_ = Place::Aside;
  content_ = memfd_create("korvel", MFD_CLOEXEC);
  return content_ >= 0;
}

bool Replacement::append(std::span<const std::string_view> pieces) {
  constexpr int kBatch = 64;
  if (content_ < 0 || failed_) return false;
  iovec batch[kBatch];
  int count = 0;
  for (std::size_t i = 0; i < pieces.size() && !failed_; ++i) {
    if (!pieces[i].empty())
      batch[count++] = {const_cast<char *>(pieces[i].data()), pieces[i].size()};
    if (count == kBatch || i + 1 == pieces.size()) {
      failed_ = !gatheredWrite(content_, batch, count);
      count = 0;
    }
  }
  return !failed_;
}

bool Replacement::commit(const std::function<bool()> &stillWanted) {
  if (content_ < 0) return false;
  bool done = !failed_;
  if (place_ == Place::Aside) {
    done = done && overwrite();
  } else if (done) {
    done = exchange(stillWanted) || (mayOverwrite() && overwrite());
  }
  discard();
  return done;
}

bool Replacement::commitAs(const char *path) {
  const bool done = appearAs(AT_FDCWD, path);
  const int error = errno;
  if (done) syncFolderOf(path, content_);
  discard();
  errno = error;
  return done;
}

bool Replacement::commitNew() {
  errno = EEXIST;
  const bool done = old_ < 0 && appearAs(folder_, name_);
  const int error = errno;
  if (done) syncFolder(folder_, content_);
  discard();
  errno = error;
  return done;
}

bool Replacement::appearAs(int folder, const char *name) {
  if (content_ < 0 || failed_ || place_ == Place::Aside) {
    errno = EINVAL;
    return false;
  }
  if (!settle() || faulty(ReplaceStep::Link)) return false;
  return place_ == Place::Unnamed ? linkedAs(folder, name) : renamedAs(folder, name);
}

// Makes the content ready for its name.
bool Replacement::settle() {
  return adopt(old_ >= 0 ? old_ : rules_.like, content_) && !faulty(ReplaceStep::Sync) &&
         synced(content_);
}

bool Replacement::exchange(const std::function<bool()> &stillWanted) {
  if (!settle()) return false;
  if (place_ == Place::Unnamed && !giveName()) return false;
  if (faulty(ReplaceStep::Rename) || !stillNamed()) return false;
  if (stillWanted && !stillWanted()) {
    errno = ESTALE;
    return false;
  }
  if (renameat(folder_, temporary_, folder_, name_) != 0) return false;
  temporary_[0] = '\0';
  syncFolder(folder_, content_);
  return true;
}

// Where locks cannot tell, the temporary of a process that was stopped for a minute may have been
// taken for left over, and its name given to another one.
bool Replacement::stillNamed() {
  if (isNameOf(folder_, temporary_, content_)) return true;
  temporary_[0] = '\0';
  errno = ENOENT;
  return false;
}

bool Replacement::giveName() {
  return !faulty(ReplaceStep::Link) && takeName([this] { return linkedAs(folder_, temporary_); });
}

bool Replacement::linkedAs(int folder, const char *name) {
  char descriptor[sizeof "/proc/self/fd/" + 3 * sizeof(int)];
  std::snprintf(descriptor, sizeof descriptor, "%s/%d", kDescriptors, content_);
  return linkat(AT_FDCWD, descriptor, folder, name, AT_SYMLINK_FOLLOW) == 0;
}

// A file system that cannot rename without replacing may have links, which never replace; discard()
// then removes the temporary's own name. With neither, all that is left is to stat first.
bool Replacement::renamedAs(int folder, const char *name) {
  if (!stillNamed()) return false;
  int result = renameat2(folder_, temporary_, folder, name, RENAME_NOREPLACE);
  if (result != 0 && (errno == EINVAL || errno == ENOSYS)) {
    if (linkat(folder_, temporary_, folder, name, 0) == 0) return true;
    struct stat status;
    if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0) errno = EEXIST;
    if (errno == ENOENT) result = renameat(folder_, temporary_, folder, name);
  }
  if (result == 0) temporary_[0] = '\0';
  return result == 0;
}

// Called when a step of the exchange has just failed.
bool Replacement::mayOverwrite() const {
  return old_ >= 0 && rules_.inPlace && folderRefuses(errno);
}

// The bytes by which the file grows are written and synced first: a full disk shows while every old
// byte is in place. After a failure the file is cut back to its old length.
bool Replacement::overwrite() {
  struct stat made;
  struct stat old;
  if (fstat(content_, &made) != 0 || fstat(old_, &old) != 0) return false;
  const off_t size = made.st_size;
  const off_t oldSize = old.st_size;
  const bool grown =
      size <= oldSize || (copyStretch(content_, old_, oldSize, size) && synced(old_));
  if (!grown || !overwriteBeginning(std::min(size, oldSize))) {
    base::retried([&] { return ftruncate(old_, oldSize); });
    return false;
  }
  return base::retried([&] { return ftruncate(old_, size); }) == 0 && synced(old_);
}

// The disk may still be full where the file has holes or its file system writes every block to a
// new place: the old bytes are then restored, if they may be read.
bool Replacement::overwriteBeginning(off_t size) {
  const auto count = static_cast<std::size_t>(size);
  const std::unique_ptr<char[]> before(new (std::nothrow) char[count]);
  if (before == nullptr) return false;
  const bool kept = readAll(old_, before.get(), count) == count;
  if (copyStretch(content_, old_, 0, size)) return true;
  if (kept && lseek(old_, 0, SEEK_SET) == 0) writeAll(old_, before.get(), count);
  return false;
}

void Replacement::discard() {
  if (temporary_[0] != '\0' && stillNamed()) unlinkat(folder_, temporary_, 0);
  temporary_[0] = '\0';
  if (content_ >= 0) flock(content_, LOCK_UN);  // a child forked meanwhile would keep it
  closeIfOpen(content_);
  closeIfOpen(old_);
  closeIfOpen(folder_);
  failed_ = false;
}

}  // namespace korvel::files
