// SPDX-License-Identifier: MIT
// The disk's process answers the kernel's requests for one file, one after another: the order of
// the recording is the order in which the disk took them.
#include "tests/power/disk.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <span>
#include <vector>

#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvel::test {

namespace {

constexpr std::size_t kSector = sizeof(Sector);
constexpr std::uint32_t kMaxWrite = 1U << 20;

class Server {
 public:
  Server(int device, Sectors content, off_t size, Recording &recording)
      : device_(device),
        content_(std::move(content)),
        size_(static_cast<std::uint64_t>(size)),
        recording_(recording),
        request_(kMaxWrite + kSector) {}

  void run() {
    for (;;) {
      const ssize_t got = read(device_, request_.data(), request_.size());
      if (got > 0) {
        serve();
      } else if (errno != EINTR && errno != ENOENT && errno != EAGAIN) {
        return;  // unmounted
      }
    }
  }

 private:
  const fuse_in_header &header() const {
    return *reinterpret_cast<const fuse_in_header *>(request_.data());
  }
  template <typename Argument>
  const Argument &argument() const {
    return *reinterpret_cast<const Argument *>(request_.data() + sizeof(fuse_in_header));
  }

  void serve() {
    switch (header().opcode) {
      case FUSE_FORGET:
      case FUSE_BATCH_FORGET:
      case FUSE_INTERRUPT:
        return;
      case FUSE_INIT:
        return begin();
      case FUSE_GETATTR:
        return giveAttributes();
      case FUSE_OPEN:
        return openUncached();
      case FUSE_READ:
        return readSectors(argument<fuse_read_in>());
      case FUSE_WRITE:
        return writeSectors(argument<fuse_write_in>());
      case FUSE_FSYNC:
        return answerError(record(true, 0, {}) ? 0 : EIO);
      case FUSE_RELEASE:
        return answerError(0);
      default:
        return answerError(ENOSYS);
    }
  }

  void begin() {
    fuse_init_out out = {};
    out.major = FUSE_KERNEL_VERSION;
    out.minor = 31;
    out.flags = FUSE_BIG_WRITES | FUSE_MAX_PAGES;
    out.max_write = kMaxWrite;
    out.max_pages = kMaxWrite / 4096;
    answer(out);
  }

  void giveAttributes() {
    fuse_attr_out out = {};
    out.attr_valid = 1U << 30;
    out.attr.ino = FUSE_ROOT_ID;
    out.attr.size = size_;
    out.attr.mode = S_IFREG | 0600;
    out.attr.nlink = 1;
    out.attr.blksize = kSector;
    answer(out);
  }

  // Nothing of the file is kept outside this process.
  void openUncached() {
    fuse_open_out out = {};
    out.open_flags = FOPEN_DIRECT_IO;
    answer(out);
  }

  void readSectors(const fuse_read_in &wish) {
    const std::uint64_t first = wish.offset / kSector;
    if (wish.offset % kSector != 0 || wish.size % kSector != 0) return answerError(EINVAL);
    reading_.assign(wish.size, '\0');
    for (auto at = content_.lower_bound(first);
         at != content_.end() && at->first < first + wish.size / kSector; ++at)
      std::memcpy(&reading_[(at->first - first) * kSector], at->second.data(), kSector);
    answer(0, reading_);
  }

  void writeSectors(const fuse_write_in &wish) {
    const char *bytes = reinterpret_cast<const char *>(&wish + 1);
    if (wish.offset % kSector != 0 || wish.size % kSector != 0) return answerError(EINVAL);
    const std::uint64_t first = wish.offset / kSector;
    for (std::uint64_t i = 0; i < wish.size / kSector; ++i) {
      Sector &sector = content_[first + i];
      std::memcpy(sector.data(), bytes + i * kSector, kSector);
      if (!record(false, first + i, sector)) return answerError(EIO);
    }
    fuse_write_out out = {};
    out.size = wish.size;
    answer(out);
  }

  bool record(bool isFlush, std::uint64_t number, const Sector &content) {
    if (recording_.count == Recording::kRoom) return false;
    recording_.requests[recording_.count] = {isFlush, recording_.answers, number, content};
    ++recording_.count;
    return true;
  }

  template <typename Result>
  void answer(const Result &result) {
    answer(0, {reinterpret_cast<const char *>(&result), sizeof result});
  }
  void answerError(int error) { answer(error, {}); }
  void answer(int error, std::span<const char> bytes) {
    fuse_out_header out = {.len = static_cast<std::uint32_t>(sizeof out + bytes.size()),
                           .error = -error,
                           .unique = header().unique};
    const iovec parts[] = {{&out, sizeof out}, {const_cast<char *>(bytes.data()), bytes.size()}};
    // Nobody waits any more when it fails.
    static_cast<void>(writev(device_, parts, 2));
  }

  int device_;
  Sectors content_;
  std::uint64_t size_;
  Recording &recording_;
  std::vector<char> request_;
  std::vector<char> reading_;
};

// Like fork(), with a copy of the mounts.
pid_t forkWithOwnMounts() {
  return static_cast<pid_t>(
      syscall(SYS_clone, CLONE_NEWNS | SIGCHLD, nullptr, nullptr, nullptr, nullptr));
}

}  // namespace

Sectors sectorsOf(int file) {
  Sectors sectors;
  Sector sector = {};
  const Sector zeros = {};
  for (off_t at = lseek(file, 0, SEEK_DATA); at >= 0; at = lseek(file, at, SEEK_DATA)) {
    if (pread(file, sector.data(), kSector, at) != static_cast<ssize_t>(kSector)) break;
    if (sector != zeros) sectors[static_cast<std::uint64_t>(at) / kSector] = sector;
    at += static_cast<off_t>(kSector);
  }
  return sectors;
}

bool writeTo(int file, const Sectors &sectors) {
  for (const auto &[number, content] : sectors) {
    if (pwrite(file, content.data(), kSector, static_cast<off_t>(number * kSector)) !=
        static_cast<ssize_t>(kSector))
      return false;
  }
  return true;
}

bool Disk::start(const Sectors &content, off_t size, const std::string &fuse,
                 const std::string &at) {
  void *shared = mmap(nullptr, sizeof(Recording), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (shared == MAP_FAILED) return false;
  recording_ = static_cast<Recording *>(shared);
  const int device = open(fuse.c_str(), O_RDWR | O_CLOEXEC);
  if (device < 0) return false;
  const std::string options =
      "fd=" + std::to_string(device) + ",rootmode=100600,user_id=0,group_id=0";
  if (mount("disk", at.c_str(), "fuse", MS_NOSUID | MS_NODEV, options.c_str()) == 0) {
    at_ = at;
    server_ = forkWithOwnMounts();
    if (server_ == 0) {
      // Only the mounts of the parent hold the disk.
      umount2(at.c_str(), MNT_DETACH);
      // What is allocated here must not wait for a write to this disk.
      prctl(PR_SET_IO_FLUSHER, 1, 0, 0, 0);
      Server(device, content, size, *recording_).run();
      _exit(0);
    }
  }
  const int error = errno;
  close(device);
  errno = error;
  if (server_ > 0) file_ = open(at.c_str(), O_RDWR | O_CLOEXEC);
  return file_ >= 0;
}

Disk::~Disk() {
  if (file_ >= 0) close(file_);
  if (!at_.empty()) umount2(at_.c_str(), MNT_DETACH);
  if (server_ > 0) {
    kill(server_, SIGKILL);
    waitpid(server_, nullptr, 0);
  }
  if (recording_ != nullptr) munmap(recording_, sizeof *recording_);
}

}  // namespace korvel::test
