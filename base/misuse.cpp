// SPDX-License-Identifier: MIT
// Lines about misuse: built in a buffer of fixed size, so that they need no memory, and written at
// once, so that those of several processes do not mix.
#include "base/misuse.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdlib.h>

#include <pthread.h>
#include <unistd.h>

#include "base/cp1252.h"
#include "base/posix.h"

namespace korvel::base {

constinit std::atomic<Telling> telling = Telling::Unasked;

namespace {

constexpr std::size_t kLongestShown = 60;  // characters of a text

// The character of a byte; 0 where it has none that can be seen.
unsigned shownCharacter(unsigned char byte) {
  const unsigned c = characterOfCp1252(byte);
  return c < ' ' || (c >= 0x7F && c < 0xA0) ? 0 : c;
}

// A byte as a line shows it, in UTF-8 or as C writes it.
class ShownByte {
 public:
  explicit ShownByte(unsigned char byte) {
    const unsigned c = shownCharacter(byte);
    if (c == 0) {
      length_ = static_cast<std::size_t>(std::snprintf(bytes_, sizeof bytes_, "\\x%02X", byte));
      return;
    }
    if (c == '"' || c == '\\') put('\\');
    if (c < 0x80) {
      put(c);
    } else if (c < 0x800) {
      put(0xC0 | c >> 6);
      put(0x80 | (c & 0x3F));
    } else {
      put(0xE0 | c >> 12);
      put(0x80 | (c >> 6 & 0x3F));
      put(0x80 | (c & 0x3F));
    }
  }
  std::string_view view() const { return {bytes_, length_}; }

 private:
  void put(unsigned byte) { bytes_[length_++] = static_cast<char>(byte); }

  char bytes_[8];
  std::size_t length_ = 0;
};

// The thread of the first call that was looked at, and the function that it called.
struct FirstThread {
  pthread_t thread;
  const char *function;
};
std::atomic<const FirstThread *> firstThread = nullptr;

// How many bytes follow the first one of a character in UTF-8; -1: it is none.
int followers(unsigned char byte) {
  if (byte < 0x80) return 0;
  if (byte < 0xC2 || byte > 0xF4) return -1;
  return byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
}

bool isFollower(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

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
  for (const Argument &argument : arguments) {
    if (++number > 1) addWords(", ");
    add(argument);
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
  static_cast<void>(retried([this] { return write(STDERR_FILENO, line_, length_); }) < 0);
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

void Call::addQuoted(std::string_view text) const {
  addWords("\"");
  for (const char c : text.substr(0, kLongestShown))
    addWords(ShownByte(static_cast<unsigned char>(c)).view());
  addWords(text.size() > kLongestShown ? "\"..." : "\"");
}

void Call::add(const Argument &argument) const {
  if (argument.isNull) return addWords("null");
  switch (argument.kind) {
    case Argument::Kind::Number:
      return addNumber(argument.number);
    case Argument::Kind::Real:
      return addReal(argument.real);
    case Argument::Kind::Text:
      return addQuoted(argument.text);
    case Argument::Kind::Words:
      return addWords(argument.text);
    case Argument::Kind::Place:
      return addWords("...");
  }
}

bool looksLikeUtf8(std::string_view text) {
  bool hasLetter = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    int following = followers(lead);
    if (following < 0) return false;
    const bool isLetter = following > 0;
    char32_t number = lead & (0x3FU >> following);
    for (; following > 0; --following) {
      if (++i == text.size() || !isFollower(text[i])) return false;
      number = number << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    hasLetter = hasLetter || (isLetter && (lead >= 0xF0 || cp1252ByteOf(number)));
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
