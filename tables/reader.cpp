#include "tables/reader.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>

#include "files/handles.h"
#include "files/transfer.h"
#include "tables/path.h"

namespace korvel::tables {
namespace {

constexpr std::size_t kBufferSize =
    TableReader::kMargin + TableReader::kLargestBlock + TableReader::kMargin;

// Nearly every reading is over before the next one begins: they share one buffer, whose pages the
// system then gives only once. A reading inside another one gets a buffer of its own.
constinit char sharedBuffer[kBufferSize] = {};
constinit bool sharedBufferTaken = false;

ssize_t readSome(int descriptor, char *to, std::size_t count, off_t offset) {
  return files::retried([&] { return pread(descriptor, to, count, offset); });
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

bool sameContent(const struct stat &a, const struct stat &b) {
  return a.st_size == b.st_size && a.st_mtim.tv_sec == b.st_mtim.tv_sec &&
         a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
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

// Goes on with a file that was opened, or not.
bool TableReader::start(int file, Slots slots) {
  if (file < 0) return false;
  file_ = file;
  descriptor_ = DATA_FILE_TAB[file].reference;
  size_ = File_Size(file);
  if (slots == Slots::File) measure();
  const bool complete = (slots == Slots::File || (memory_ = MFil_Open("", 0, 0)) >= 0) &&
                        (slots == Slots::Memory ? load() : takeBuffer());
  if (!complete) close();
  return complete;
}

void TableReader::readThrough(int descriptor) {
  descriptor_ = descriptor;
  measure();
}

// The handle's size is 0 also where the system does not tell it.
void TableReader::measure() {
  struct stat status;
  isWhole_ = fstat(descriptor_, &status) == 0 && status.st_size <= INT_MAX;
  size_ = isWhole_ ? static_cast<int>(status.st_size) : 0;
}

// What changes while it is read is read again, as long as that may help.
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
  buffer_ =
      static_cast<char *>(std::calloc(1, kMargin + static_cast<std::size_t>(size_) + kMargin));
  if (buffer_ == nullptr || !readAll(descriptor_, buffer_ + kMargin, size_)) return Loaded::Not;
  const bool same = fstat(descriptor_, &after) == 0 && sameContent(before, after);
  return same ? Loaded::Whole : Loaded::WholeButChanged;
}

std::string_view TableReader::next() {
  if (position_ >= size_) return {};
  const auto wish = std::min(static_cast<std::size_t>(size_ - position_), blockSize);
  if (descriptor_ < 0) {
    const std::string_view block(buffer_ + kMargin + position_, wish);
    position_ += static_cast<int>(wish);
    return block;
  }
  char *block = buffer_ + kMargin;
  const ssize_t got = readSome(descriptor_, block, wish, position_);
  isWhole_ = isWhole_ && got > 0;
  position_ = got > 0 ? position_ + static_cast<int>(got) : size_;
  return got > 0 ? std::string_view(block, static_cast<std::size_t>(got)) : std::string_view();
}

void TableReader::close() {
  if (file_ >= 0) files::closeOwn(file_);
  if (memory_ >= 0) MFil_Close(memory_);
  giveBackBuffer();
  file_ = memory_ = descriptor_ = -1;
  size_ = position_ = 0;
  isWhole_ = true;
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

bool LineReader::takeFromBlock(std::string_view &kept) {
  const std::size_t end = block_.find(kLineEnd);
  const bool whole = end != std::string_view::npos;
  const std::string_view raw = block_.substr(0, end);
  block_.remove_prefix(whole ? end + 1 : block_.size());
  if (whole && !unfinished_) {
    kept = keptOf(raw, gathered_, size_);
    return true;
  }
  if (!unfinished_) gathered_.clear();
  gathered_.append(raw);
  unfinished_ = !whole;
  kept = gathered_.kept();
  return whole;
}

bool LineReader::next(std::string_view &kept) {
  for (;;) {
    if (block_.empty()) block_ = table_.next();
    if (block_.empty()) break;
    if (takeFromBlock(kept)) return true;
  }
  const bool last = unfinished_ && !gathered_.empty();
  unfinished_ = false;
  kept = gathered_.kept();
  return last;
}

}  // namespace korvel::tables
