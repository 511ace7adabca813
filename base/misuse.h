// SPDX-License-Identifier: MIT
// For base/, shell/, strings/, codecs/, dates/, files/, profile/, tables/, platform/, draw/,
// messages/ and dialogs/: what an application's programmer did wrong, told in one line on standard
// error while the environment variable KORVEL_DEBUG is 1.
//
// Only exported functions tell, and no code of the library calls one: so a misuse is told once, by
// the function that the application called.
#ifndef KORVEL_BASE_MISUSE_H
#define KORVEL_BASE_MISUSE_H

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace korvel::base {

enum class Telling : signed char { Unasked, No, Yes };

// The answer of the environment, which is asked at the first use. A variable so that tests can ask
// again.
extern std::atomic<Telling> telling;
bool asksEnvironment();

// Whether misuse is told. Costs a look at one byte.
inline bool tellsMisuse() {
  const bool mayTell = telling.load(std::memory_order_relaxed) != Telling::No;
  return __builtin_expect(static_cast<long>(mayTell), 0) != 0 && asksEnvironment();
}

// What looking for a misuse does to errno is no concern of the application's.
class ErrnoKept {
 public:
  ErrnoKept() = default;
  ~ErrnoKept() { errno = before_; }
  ErrnoKept(const ErrnoKept &) = delete;
  ErrnoKept &operator=(const ErrnoKept &) = delete;

 private:
  const int before_ = errno;
};

// An argument as a line shows it: numbers as they are, texts in quotes and in UTF-8, all else as
// "..." or "null".
class Argument {
 public:
  enum class Kind : signed char { Number, Real, Text, Place, Words };

  Argument(int n) : kind(Kind::Number), number(n) {}
  Argument(unsigned n) : kind(Kind::Number), number(n) {}
  Argument(double n) : kind(Kind::Real), real(n) {}
  Argument(const char *s) : Argument(s == nullptr ? std::string_view() : std::string_view(s)) {}
  Argument(std::string_view run) : kind(Kind::Text), isNull(run.data() == nullptr), text(run) {}
  Argument(const void *place) : kind(Kind::Place), isNull(place == nullptr) {}

  Kind kind;
  bool isNull = false;
  bool mayBeNull = false;
  long long number = 0;
  double real = 0;
  std::string_view text = {};
};

// A buffer to fill, which may hold anything.
inline Argument filled(const void *buffer) { return buffer; }

// The n characters at p; of a length below 0 there are none to show.
inline Argument shownRun(const char *p, int n) {
  if (p == nullptr || n < 0) return filled(p);
  const auto size = static_cast<std::size_t>(n);
  return std::string_view(p, std::min(size, strnlen(p, size) + 1));
}

// A function of the application's.
template <typename Result, typename... Parameters>
Argument given(Result (*function)(Parameters...)) {
  return reinterpret_cast<const void *>(function);
}

// An argument that means something when it is null.
inline Argument orNull(Argument argument) {
  argument.mayBeNull = true;
  return argument;
}

// A part of the sentence that says what is wrong, and what would be right.
class Word : public Argument {
 public:
  Word(const char *words) : Argument(std::string_view(words)) { kind = Kind::Words; }
  Word(int n) : Argument(n) {}
  Word(std::size_t size) : Argument(0) { number = static_cast<long long>(size); }
  Word(long long wide) : Argument(0) { number = wide; }
};
// A text in quotes.
class Quoted : public Word {
 public:
  Quoted(std::string_view quoted) : Word("") {
    kind = Kind::Text;
    text = quoted;
  }
};

// One call of the application's, whose line is written at the first misuse that is found in it.
// It does nothing where misuse is not told.
class Call {
 public:
  Call(const char *function, std::initializer_list<Argument> arguments) {
    if (tellsMisuse()) begin(function, arguments);
  }
  Call(const Call &) = delete;
  Call &operator=(const Call &) = delete;

  // Whether a misuse would be told.
  explicit operator bool() const { return length_ != 0; }

  void misused(std::initializer_list<Word> what) const;
  void misusedIf(bool isMisuse, std::initializer_list<Word> what) const {
    if (isMisuse) misused(what);
  }

  // Tells of the first argument that is null and may not be.
  void needsAll() const;

 private:
  // Arguments have their share, so that the sentence stands whole behind them.
  static constexpr std::size_t kLongest = 1200;
  static constexpr std::size_t kLongestArguments = 500;

  void begin(const char *function, std::initializer_list<Argument> arguments);
  void needsFirstThread(const char *function) const;
  void addWords(std::string_view words) const;
  void addNumber(long long number) const;
  void addReal(double number) const;
  void addQuoted(std::string_view text, std::size_t end) const;
  void add(const Argument &argument, std::size_t end = kLongest) const;

  mutable std::size_t length_ = 0;  // 0: nothing is told, or no more
  int null_ = 0;                    // the number of the argument, from 1
  mutable char line_[kLongest];
};

// Does what is done where misuse is told. Out of line: a call for which nothing is told needs no
// room for a line.
template <typename Work>
[[gnu::noinline, gnu::cold]] auto outOfLine(Work work) {
  return work();
}

// Looks for a misuse where it is told.
template <typename Look>
void lookForMisuse(Look look) {
  if (tellsMisuse()) outOfLine(look);
}

// Whether all letters of a text beyond ASCII are UTF-8, and one of them is known to CP1252, or is
// an emoji: capitals in front of a no-break space look like UTF-8, too.
bool looksLikeUtf8(std::string_view text);

// Tells of a text that looks like UTF-8. `what`: "the text", say.
void needsCp1252(const Call &call, const char *what, std::string_view text);

// Tells of a path of the system where a colon path is meant: one with a '/' in front, or with '/'
// and without ':'.
void needsColonPath(const Call &call, std::string_view path);

// Tells of a colon path where a path of the system is meant.
void needsPosixPath(const Call &call, std::string_view path);

// Tells of a buffer that is null or has no room.
void needsRoom(const Call &call, const void *buffer, int capacity);

// Tells of a text that is longer than its room, in characters, and so is cut.
void needsFit(const Call &call, const char *what, std::size_t length, std::size_t room);

}  // namespace korvel::base

#endif
