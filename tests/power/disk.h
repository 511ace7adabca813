// SPDX-License-Identifier: MIT
// For tests/power/: a disk that remembers what was asked of it, so that it can be told what is left
// after a loss of power at any moment.
#ifndef KORVEL_TESTS_POWER_DISK_H
#define KORVEL_TESTS_POWER_DISK_H

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include <sys/types.h>

namespace korvel::test {

// What a disk writes as a whole, or not at all.
using Sector = std::array<char, 4096>;

// The content of a disk by the number of the sector; zeros elsewhere.
using Sectors = std::map<std::uint64_t, Sector>;

inline void put(const Sectors &from, Sectors &to) {
  for (const auto &[number, content] : from) to.insert_or_assign(number, content);
}

Sectors sectorsOf(int file);
// Returns whether all could be written.
bool writeTo(int file, const Sectors &sectors);

struct Request {
  bool isFlush;  // keep all that was written before; else a sector is written
  int answers;   // that the library had given by then
  std::uint64_t number;
  Sector content;
};

// Shared with the process that is the disk.
struct Recording {
  static constexpr std::size_t kRoom = 65536;

  std::atomic<int> answers;
  std::atomic<std::size_t> count;
  Request requests[kRoom];
};

// A file that is served by a process of its own: a loop device over it is a disk with a cache, as
// it hands flushes on. The process ends when the last mount of the file has gone, in whatever way.
class Disk {
 public:
  Disk() = default;
  ~Disk();
  Disk(const Disk &) = delete;
  Disk &operator=(const Disk &) = delete;

  // fuse: the path of the device for file systems in processes; at: that of an existing file, whose
  // place the disk takes. Returns false with errno.
  bool start(const Sectors &content, off_t size, const std::string &fuse, const std::string &at);

  // Open for reading and writing.
  int file() const { return file_; }
  Recording &recording() { return *recording_; }

 private:
  Recording *recording_ = nullptr;
  std::string at_;
  pid_t server_ = -1;
  int file_ = -1;
};

}  // namespace korvel::test

#endif
