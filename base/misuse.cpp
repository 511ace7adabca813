// SPDX-License-Identifier: MIT
// Lines about misuse: built in a buffer of fixed size, so that they need no memory, and written at
// once, so that those of several processes do not mix.
#include "base/misuse.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <stdlib.h>

#include <pthread.h>
#include <unistd.h>

#include "base/cp1252.h"
#include "base/posix.h"
#include "base/sigpipe.h"
#include "base/utf8.h"

namespace korvel::base {

constinit std::atomic<Telling> telling = Telling::Unasked;

namespace {

constexpr std::size_t kLongestShown = 60;  // characters of a text

// The character of a byte; 0 where it has none that can be seen.
char16_t shownCharacter(unsigned char byte) {
  const char16_t c = characterOfCp1252(byte);
  return c < ' ' || (c >= 0x7F && c < 0xA0) ? u'\0' : c;
}

// A byte as a line shows it, in UTF-8 or as C writes it.
class ShownByte {
 public:
  explicit ShownByte(unsigned char byte) {
    const char16_t c = shownCharacter(byte);
    if (c == 0) {
      const int length = std::snprintf(bytes_, sizeof bytes_, "\\x%02X", byte);
      shown_ = {bytes_, static_cast<std::size_t>(length)};
      return;
    }
    char *begin = putInFront(std::end(bytes_), c);
    if (c == '"' || c == '\\') *--begin = '\\';
    shown_ = {begin, std::end(bytes_)};
  }
  ShownByte(const ShownByte &) = delete;
  ShownByte &operator=(const ShownByte &) = delete;

  std::string_view view() const { return shown_; }

 private:
  char bytes_[8];
  std::string_view shown_;
};

// The thread of the first call that was looked at, and the function that it called.
struct FirstThread {
  pthread_t thread;
  const char *function;
};
std::atomic<const FirstThread *> firstThread = nullptr;

}  // namespace

bool asksEnvironment() {
  if (telling.load(std::memory_order_relaxed) == Telling::Unasked) {
    const char *debug = secure_getenv("KORVEL_DEBUG");
    const bool isAsked = debug != nullptr && std::strcmp(debug, "1") == 0;
    telling.store(isAsked ? Telling::Yes : Telling::No, std::memory_order_relaxed);
  }
  return telling.load(std::memory_order_relaxed) == Telling::Yes;
}

void Call::begin(const char *function, std::initializer_list<Argument> arguments) {
  addWords("korvel: ");
  addWords(function);
  addWords("(");
  int number = 0;
  std::size_t left = arguments.size();
  for (const Argument &argument : arguments) {
    if (++number > 1) addWords(", ");
    // What short ones leave is for those behind them.
    add(argument, length_ + (kLongestArguments - std::min(length_, kLongestArguments)) / left--);
    if (argument.isNull && !argument.mayBeNull && null_ == 0) null_ = number;
  }
  addWords("): ");
  needsFirstThread(function);
}

// A thread is told of once.
void Call::needsFirstThread(const char *function) const {
  static FirstThread first;
  static std::atomic_flag isTaken = ATOMIC_FLAG_INIT;
  static constinit thread_local bool isTold = false;
  if (!isTaken.test_and_set()) {
    first = {pthread_self(), function};
    firstThread.store(&first);
  }
  const FirstThread *known = firstThread.load();
  if (isTold || known == nullptr || pthread_equal(pthread_self(), known->thread) != 0) return;
  isTold = true;
  misused(
      {"called in a second thread: the library may be called from one only, as here from that "
       "of ",
       known->function});
}

void Call::misused(std::initializer_list<Word> what) const {
  if (length_ == 0) return;
  const ErrnoKept kept;
  for (const Word &word : what) add(word);
  line_[length_++] = '\n';
  SigpipeHeldBack sigpipe;
  const auto written = retried([this] { return write(STDERR_FILENO, line_, length_); });
  if (written < 0 && errno == EPIPE) sigpipe.raised();
  length_ = 0;
}

void Call::needsAll() const { misusedIf(null_ != 0, {"argument ", null_, " is null"}); }

// The last byte is that of the line end.
void Call::addWords(std::string_view words) const {
  const std::size_t added = std::min(words.size(), kLongest - 1 - length_);
  std::memcpy(line_ + length_, words.data(), added);
  length_ += added;
}

void Call::addNumber(long long number) const {
  char digits[24];
  std::snprintf(digits, sizeof digits, "%lld", number);
  addWords(digits);
}

// With a point, whatever the locale.
void Call::addReal(double number) const {
  char digits[32];
  std::snprintf(digits, sizeof digits, "%g", number);
  std::replace(digits, digits + std::strlen(digits), ',', '.');
  addWords(digits);
}

// Cut where the text behind it, its mark included, would pass `end`.
void Call::addQuoted(std::string_view text, std::size_t end) const {
  constexpr std::string_view kEndOfCut = "\"...";
  addWords("\"");
  std::size_t shown = 0;
  for (; shown < std::min(text.size(), kLongestShown); ++shown) {
    const ShownByte byte(static_cast<unsigned char>(text[shown]));
    if (length_ + byte.view().size() + kEndOfCut.size() > end) break;
    addWords(byte.view());
  }
  addWords(shown < text.size() ? kEndOfCut : "\"");
}

void Call::add(const Argument &argument, std::size_t end) const {
  if (argument.isNull) return addWords("null");
  switch (argument.kind) {
    case Argument::Kind::Number:
      return addNumber(argument.number);
    case Argument::Kind::Real:
      return addReal(argument.real);
    case Argument::Kind::Text:
      return addQuoted(argument.text, end);
    case Argument::Kind::Words:
      return addWords(argument.text);
    case Argument::Kind::Place:
      return addWords("...");
  }
}

bool looksLikeUtf8(std::string_view text) {
  constexpr char32_t kFirstEmoji = 0x10000;
  bool hasLetter = false;
  while (!text.empty()) {
    const Utf8Character first = firstCharacter(text);
    if (isStray(first)) return false;
    const bool isKnown = first.number >= kFirstEmoji || cp1252ByteOf(first.number);
    hasLetter = hasLetter || (first.length > 1 && isKnown);
    text.remove_prefix(first.length);
  }
  return hasLetter;
}

void needsCp1252(const Call &call, const char *what, std::string_view text) {
  if (call && looksLikeUtf8(text)) call.misused({what, " looks like UTF-8: texts are CP1252"});
}

void needsColonPath(const Call &call, std::string_view path) {
  const bool isPosix =
      path.starts_with('/') || (path.find('/') != path.npos && path.find(':') == path.npos);
  call.misusedIf(isPosix, {Quoted(path),
                           " is a path of the system, and a colon path is meant: "
                           "\"Volume:folder:file\""});
}

void needsPosixPath(const Call &call, std::string_view path) {
  const bool isColonPath = path.find(':') != path.npos && path.find('/') == path.npos;
  call.misusedIf(isColonPath, {Quoted(path),
                               " is a colon path, and a path of the system is meant: "
                               "\"/folder/file\""});
}

void needsRoom(const Call &call, const void *buffer, int capacity) {
  call.misusedIf(buffer == nullptr, {"there is no buffer to fill"});
  call.misusedIf(capacity < 1, {"a buffer of ", capacity, " bytes holds nothing"});
}

void needsFit(const Call &call, const char *what, std::size_t length, std::size_t room) {
  call.misusedIf(length > room, {what, " has ", length, " characters and is cut to ", room});
}

}  // namespace korvel::base
