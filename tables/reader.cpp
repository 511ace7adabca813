// SPDX-License-Identifier: MIT
// Reads a table by blocks, with the slots of an application's own reading taken meanwhile.
#include "tables/reader.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>

#include "base/posix.h"
#include "files/handles.h"
#include "files/memory.h"
#include "tables/path.h"

namespace korvel::tables {
namespace {

// In front of a block: the margin, and room for the beginning of a line.
constexpr std::size_t kFront = 2 * kMargin;
constexpr std::size_t kBufferSize = kFront + TableReader::kLargestBlock + kMargin;

// Nearly every reading is over before the next one begins: they share one buffer, whose pages the
// system then gives only once. A reading inside another one gets a buffer of its own.
constinit char sharedBuffer[kBufferSize] = {};
constinit bool sharedBufferTaken = false;

}  // namespace

constinit std::size_t TableReader::blockSize = kLargestBlock;

bool TableReader::open(const char *path, Slots slots) {
  close();
  struct stat status;
  const int file = files::openForReading(path, status);
  return start(file, slots, status);
}

bool TableReader::openTable(const char *name, Slots slots) {
  close();
  const TablePlace place = tablePlace(name);
  if (!place.path) return false;
  const char *path = place.path.text;
  struct stat status;
  const int file = place.folder == nullptr ? files::openForReading(path, status)
                                           : files::openInFolder(place.folder, path, status);
  return start(file, slots, status);
}

// Goes on with the handle that an opening gave.
bool TableReader::start(int file, Slots slots, const struct stat &status) {
  if (file < 0) return false;
  file_ = file;
  descriptor_ = DATA_FILE_TAB[file].reference;
  size_ = DATA_FILE_TAB[file].size;
  if (slots == Slots::File || size_ == 0) measure();
  const bool complete = (slots == Slots::File || (memory_ = files::openMemoryFile(0, 0)) >= 0) &&
                        (slots == Slots::Memory ? load() : prepare(slots, status));
  if (!complete) close();
  return complete;
}

bool TableReader::prepare(Slots slots, const struct stat &status) {
  const KeptTable *kept = slots == Slots::FileAndMemory ? keptTable(descriptor_, status) : nullptr;
  if (kept == nullptr) return takeBuffer();
  loaded_ = kept->table.lines();
  index_ = &kept->index;
  return true;
}

void TableReader::readThrough(int descriptor) {
  descriptor_ = descriptor;
  measure();
}

// The handle's size is 0 where the system does not tell it.
void TableReader::measure() {
  struct stat status;
  isWhole_ = fstat(descriptor_, &status) == 0 && status.st_size <= INT_MAX;
  size_ = isWhole_ ? static_cast<int>(status.st_size) : 0;
}

// A file that changes while it is read is read again, up to three times in all.
bool TableReader::load() {
  constexpr int kAttempts = 3;
  bool isLoaded = false;
  for (int i = 0; i < kAttempts; ++i) {
    struct stat before;
    struct stat after;
    isLoaded = fstat(descriptor_, &before) == 0 && before.st_size <= INT_MAX &&
               own_.read(descriptor_, static_cast<std::size_t>(before.st_size));
    if (isLoaded && fstat(descriptor_, &after) == 0 && isUnchanged(before, after)) break;
  }
  files::closeOwn(file_);
  file_ = descriptor_ = -1;
  loaded_ = own_.lines();
  return isLoaded;
}

std::string_view TableReader::next() {
  if (buffer_ == nullptr || position_ >= size_) return {};
  char *block = buffer_ + kFront;
  const auto wish = std::min(static_cast<std::size_t>(size_ - position_), blockSize);
  const ssize_t size = base::retried([&] { return pread(descriptor_, block, wish, position_); });
  isWhole_ = isWhole_ && size > 0;
  position_ = size > 0 ? position_ + static_cast<int>(size) : size_;
  return size > 0 ? std::string_view(block, static_cast<std::size_t>(size)) : std::string_view();
}

std::string_view TableReader::nextLines() {
  if (buffer_ == nullptr) return std::exchange(loaded_, {});
  for (;;) {
    char *block = buffer_ + kFront;
    const std::string_view begun = keptOf(begun_, scratch_);
    char *begin = block - begun.size();
    if (!begun.empty()) std::memmove(begin, begun.data(), begun.size());
    std::size_t size = next().size();
    if (size == 0) {
      begun_ = {};
      // What was begun when the reading broke off is no line.
      if (begun.empty() || !isWhole_) return {};
      *block = kLineEnd;
      size = 1;
    }
    char *end = block + size;
    while (begin != end && *begin == kIgnored) ++begin;
    const auto *lastEnd = static_cast<const char *>(memrchr(block, kLineEnd, size));
    const char *rest = lastEnd == nullptr ? begin : lastEnd + 1;
    begun_ = {rest, static_cast<std::size_t>(end - rest)};
    if (lastEnd == nullptr) continue;
    const auto length = static_cast<std::size_t>(rest - begin);
    putLineEndBefore(begin, length);
    return {begin, length};
  }
}

void TableReader::close() {
  if (file_ >= 0) files::closeOwn(file_);
  if (memory_ >= 0) files::closeMemoryFile(memory_);
  giveBackBuffer();
  file_ = memory_ = descriptor_ = -1;
  size_ = position_ = 0;
  isWhole_ = true;
  begun_ = {};
  loaded_ = {};
  index_ = nullptr;
}

void TableReader::leaveOpen() {
  files::leaveOpen(file_);
  file_ = descriptor_ = -1;
  close();
}

bool TableReader::takeBuffer() {
  if (!sharedBufferTaken) {
    sharedBufferTaken = true;
    buffer_ = sharedBuffer;
  } else {
    buffer_ = static_cast<char *>(std::calloc(1, kBufferSize));
  }
  return buffer_ != nullptr;
}

void TableReader::giveBackBuffer() {
  if (buffer_ == sharedBuffer) {
    sharedBufferTaken = false;
  } else {
    std::free(buffer_);
  }
  buffer_ = nullptr;
}

bool LineReader::next(std::string_view &kept) {
  if (lines_.empty()) lines_ = table_.nextLines();
  if (lines_.empty()) return false;
  const std::size_t end = lines_.find(kLineEnd);
  kept = keptOf(lines_.substr(0, end), scratch_, size_);
  lines_.remove_prefix(end + 1);
  return true;
}

}  // namespace korvel::tables
