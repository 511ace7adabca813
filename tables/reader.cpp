// Reads a table by blocks, with the slots of an application's own reading taken meanwhile.
#include "tables/reader.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

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
constexpr std::size_t kFront = 2 * TableReader::kMargin;
constexpr std::size_t kBufferSize = kFront + TableReader::kLargestBlock + TableReader::kMargin;

// Nearly every reading is over before the next one begins: they share one buffer, whose pages the
// system then gives only once. A reading inside another one gets a buffer of its own.
constinit char sharedBuffer[kBufferSize] = {};
constinit bool sharedBufferTaken = false;

ssize_t readSome(int descriptor, char *to, std::size_t count, off_t offset) {
  return base::retried([&] { return pread(descriptor, to, count, offset); });
}

// Returns false when there are not so many bytes.
bool readAll(int descriptor, char *to, int count) {
  for (int done = 0; done < count;) {
    const ssize_t got =
        readSome(descriptor, to + done, static_cast<std::size_t>(count - done), done);
    if (got <= 0) return false;
    done += static_cast<int>(got);
  }
  return true;
}

bool hasSameContent(const struct stat &a, const struct stat &b) {
  return a.st_size == b.st_size && a.st_mtim.tv_sec == b.st_mtim.tv_sec &&
         a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

// Writes a line end like the first line's in front of the lines.
void putLineEndBefore(char *lines, std::size_t size) {
  const auto *end = static_cast<const char *>(std::memchr(lines, kLineEnd, size));
  lines[-2] = kLineEnd;
  lines[-1] = end[1] == kIgnored ? kIgnored : kLineEnd;
}

}  // namespace

constinit std::size_t TableReader::blockSize = kLargestBlock;

bool TableReader::open(const char *path, Slots slots) {
  close();
  return start(files::openForReading(path), slots);
}

bool TableReader::openTable(const char *name, Slots slots) {
  close();
  const TablePlace place = tablePlace(name);
  if (!place.path) return false;
  const char *path = place.path.text;
  return start(place.folder == nullptr ? files::openForReading(path)
                                       : files::openInFolder(place.folder, path),
               slots);
}

// Goes on with the handle that an opening gave.
bool TableReader::start(int file, Slots slots) {
  if (file < 0) return false;
  file_ = file;
  descriptor_ = DATA_FILE_TAB[file].reference;
  size_ = DATA_FILE_TAB[file].size;
  if (slots == Slots::File || size_ == 0) measure();
  const bool complete = (slots == Slots::File || (memory_ = files::openMemoryFile(0, 0)) >= 0) &&
                        (slots == Slots::Memory ? load() : takeBuffer());
  if (!complete) close();
  return complete;
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
  Loaded loaded = Loaded::Not;
  for (int i = 0; i < kAttempts && loaded != Loaded::Whole; ++i) loaded = loadOnce();
  files::closeOwn(file_);
  file_ = descriptor_ = -1;
  return loaded != Loaded::Not;
}

TableReader::Loaded TableReader::loadOnce() {
  struct stat before;
  struct stat after;
  if (fstat(descriptor_, &before) != 0 || before.st_size > INT_MAX) return Loaded::Not;
  size_ = static_cast<int>(before.st_size);
  giveBackBuffer();
  buffer_ = static_cast<char *>(std::calloc(1, kFront + static_cast<std::size_t>(size_) + kMargin));
  if (buffer_ == nullptr || !readAll(descriptor_, buffer_ + kFront, size_)) return Loaded::Not;
  const bool same = fstat(descriptor_, &after) == 0 && hasSameContent(before, after);
  return same ? Loaded::Whole : Loaded::WholeButChanged;
}

// Where the block that is read next will be.
char *TableReader::nextBlock() const {
  return buffer_ + kFront + (descriptor_ < 0 ? position_ : 0);
}

std::string_view TableReader::next() {
  if (position_ >= size_) return {};
  char *block = nextBlock();
  auto size =
      static_cast<ssize_t>(std::min(static_cast<std::size_t>(size_ - position_), blockSize));
  if (descriptor_ >= 0) {
    size = readSome(descriptor_, block, static_cast<std::size_t>(size), position_);
    isWhole_ = isWhole_ && size > 0;
  }
  position_ = size > 0 ? position_ + static_cast<int>(size) : size_;
  return size > 0 ? std::string_view(block, static_cast<std::size_t>(size)) : std::string_view();
}

std::string_view TableReader::nextLines() {
  for (;;) {
    char *block = nextBlock();
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
