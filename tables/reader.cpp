#include "tables/reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include <korvel/files.h>
#include "files/handles.h"
#include "tables/path.h"

namespace korvel::tables {
namespace {

constexpr std::size_t kBufferSize =
    TableReader::kMargin + TableReader::kLargestBlock + TableReader::kMargin;

// Nearly every reading is over before the next one begins: they share one buffer, whose pages the
// system then gives only once. A reading inside another one gets a buffer of its own.
constinit char sharedBuffer[kBufferSize] = {};
constinit bool sharedBufferTaken = false;

ssize_t readSome(int descriptor, char *to, std::size_t count) {
  ssize_t got = 0;
  do {
    got = read(descriptor, to, count);
  } while (got < 0 && errno == EINTR);
  return got;
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
  left_ = File_Size(file);
  const bool complete = (slots == Slots::File || (memory_ = MFil_Open("", 0, 0)) >= 0) &&
                        (slots != Slots::Memory || detachFile()) && takeBuffer();
  if (!complete) close();
  return complete;
}

// The file stays open under a descriptor of our own.
bool TableReader::detachFile() {
  descriptor_ = fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);
  files::closeOwn(file_);
  file_ = -1;
  return descriptor_ >= 0;
}

std::string_view TableReader::next() {
  if (left_ <= 0) return {};
  const auto wish = std::min(static_cast<std::size_t>(left_), blockSize);
  char *block = buffer_ + kMargin;
  const ssize_t got = readSome(descriptor_, block, wish);
  left_ = got > 0 ? left_ - static_cast<int>(got) : 0;
  isWhole_ = isWhole_ && got > 0;
  return got > 0 ? std::string_view(block, static_cast<std::size_t>(got)) : std::string_view();
}

void TableReader::close() {
  if (file_ >= 0) {
    files::closeOwn(file_);
  } else if (descriptor_ >= 0) {
    ::close(descriptor_);
  }
  if (memory_ >= 0) MFil_Close(memory_);
  giveBackBuffer();
  file_ = memory_ = descriptor_ = -1;
  left_ = 0;
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
