#include "profile/lines.h"

#include <algorithm>
#include <cstring>

namespace korvel::profile {
namespace {

// How many bytes are looked at between two branches. The loops over a chunk are written so that
// compilers turn them into vector code.
constexpr std::size_t kChunk = 128;

// How far a search for plain lines looks ahead, so that an odd line never costs more than this.
constexpr std::size_t kLookAhead = std::size_t{1} << 18;

using Flag = unsigned char;

const char *find(const char *begin, const char *end, char c) {
  const auto size = static_cast<std::size_t>(end - begin);
  return static_cast<const char *>(std::memchr(begin, static_cast<unsigned char>(c), size));
}

const char *findLast(const char *begin, const char *end, char c) {
  const auto size = static_cast<std::size_t>(end - begin);
  return static_cast<const char *>(memrchr(begin, static_cast<unsigned char>(c), size));
}

// Set where a line feed follows no carriage return, or where none follows one.
Flag oddLineEnd(const char *at) { return static_cast<Flag>((at[0] == '\n') ^ (at[-1] == '\r')); }

// What a byte shows when it is the '=' behind a key at the beginning of a line: four bytes that are
// compared before the whole key is.
class KeyProbe {
 public:
  explicit KeyProbe(std::string_view key)
      : key_(key),
        back_(static_cast<std::ptrdiff_t>(key.size()) + 1),
        last_(key.empty() ? '\n' : key.back()),
        lastButOne_(key.empty()       ? '\r'
                    : key.size() == 1 ? '\n'
                                      : key[key.size() - 2]) {}

  // How many bytes before a byte are looked at.
  std::ptrdiff_t reach() const { return std::max(back_, std::ptrdiff_t{2}); }

  Flag mayEndAt(const char *at) const {
    return static_cast<Flag>((at[0] == '=') & (at[-1] == last_) & (at[-2] == lastButOne_) &
                             (at[-back_] == '\n'));
  }
  bool endsAt(const char *at) const {
    return mayEndAt(at) != 0 && std::memcmp(at - key_.size(), key_.data(), key_.size()) == 0;
  }

 private:
  std::string_view key_;
  std::ptrdiff_t back_;
  char last_;
  char lastButOne_;
};

// The beginning of the line that holds the byte before `at`, all line feeds in front of it being
// those of line ends.
const char *lineBefore(const char *from, const char *at) {
  const char *feed = at == from ? nullptr : findLast(from, at - 1, '\n');
  return feed == nullptr ? from : feed + 1;
}

const char *firstOddLineEnd(const char *at, const char *end) {
  for (; static_cast<std::size_t>(end - at) >= kChunk; at += kChunk) {
    Flag odd = 0;
    for (std::size_t i = 0; i < kChunk; ++i) odd |= oddLineEnd(at + i);
    if (odd != 0) break;
  }
  while (at != end && oddLineEnd(at) == 0) ++at;
  return at;
}

// Where the first line of more characters than count begins, among lines that are plain otherwise.
const char *firstLongLine(const char *begin, const char *end, std::size_t limit) {
  const std::size_t longest = limit + kLineEnd.size();
  while (static_cast<std::size_t>(end - begin) > longest) {
    const char *feed = findLast(begin, begin + longest, '\n');
    if (feed == nullptr) return begin;
    begin = feed + 1;
  }
  return end;
}

}  // namespace

Line lineAt(const char *begin, const char *textEnd) {
  const char *end = find(begin, textEnd, '\r');
  if (end == nullptr) return {begin, textEnd, textEnd};
  const char *next = end + 1;
  if (next != textEnd && *next == '\n') ++next;
  return {begin, end, next};
}

bool isFirstCharacter(const char *at, const char *textBegin) {
  while (at != textBegin && at[-1] == '\n') --at;
  return at == textBegin || at[-1] == '\r';
}

void Characters::passLineFeeds() {
  while (at_ != end_ && *at_ == '\n') ++at_;
}

bool Characters::take(std::string_view expected) {
  if (expected.size() > left_) return false;
  for (const char c : expected) {
    passLineFeeds();
    if (at_ == end_ || *at_ != c) return false;
    ++at_;
  }
  left_ -= expected.size();
  return true;
}

std::string_view Characters::takeRun() {
  passLineFeeds();
  const std::size_t most = std::min(left_, static_cast<std::size_t>(end_ - at_));
  const char *begin = at_;
  const char *feed = find(begin, begin + most, '\n');
  at_ = feed == nullptr ? begin + most : feed;
  const auto size = static_cast<std::size_t>(at_ - begin);
  left_ -= size;
  return {begin, size};
}

bool Characters::takeToBracket() {
  for (std::string_view run = takeRun(); !run.empty(); run = takeRun()) {
    if (find(run.data(), run.data() + run.size(), '[') != nullptr) return true;
  }
  return false;
}

std::size_t Characters::copyTo(char *destination, std::size_t capacity) {
  left_ = std::min(left_, capacity);
  std::size_t copied = 0;
  for (std::string_view run = takeRun(); !run.empty(); run = takeRun()) {
    std::memcpy(destination + copied, run.data(), run.size());
    copied += run.size();
  }
  return copied;
}

const char *plainLinesEnd(Stretch lines, std::size_t limit) {
  const char *begin = lines.begin;
  if (begin == lines.end || *begin == '\n') return begin;
  const char *end = begin + std::min(lines.size(), kLookAhead);
  const char *odd = firstOddLineEnd(begin + 1, end);
  const char *feed = findLast(begin, odd, '\n');
  return feed == nullptr ? begin : firstLongLine(begin, feed + 1, limit);
}

const char *passPlainLines(Stretch text, const char *from, std::string_view key) {
  const KeyProbe probe(key);
  if (from - text.begin < probe.reach() || from[-1] != '\n') return from;
  const char *at = from;
  for (; static_cast<std::size_t>(text.end - at) >= kChunk; at += kChunk) {
    Flag any = 0;
    for (std::size_t i = 0; i < kChunk; ++i) {
      const char *byte = at + i;
      any |= static_cast<Flag>(oddLineEnd(byte) | (*byte == '[') | probe.mayEndAt(byte));
    }
    if (any == 0) continue;
    for (std::size_t i = 0; i < kChunk; ++i) {
      const char *byte = at + i;
      if (oddLineEnd(byte) != 0 || *byte == '[' || probe.endsAt(byte))
        return lineBefore(from, byte);
    }
  }
  return lineBefore(from, at);
}

}  // namespace korvel::profile
