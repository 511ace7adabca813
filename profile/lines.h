// For profile/ and its tests only: how the bytes of a profile fall into lines and characters.
//
// A line ends at a carriage return or where the text ends. A line feed is no character: it is
// passed over wherever it stands. Of a line only the first so many characters count, as if nothing
// stood behind them.
#ifndef KORVEL_PROFILE_LINES_H
#define KORVEL_PROFILE_LINES_H

#include <cstddef>
#include <string_view>

namespace korvel::profile {

// How many characters of a line count when a value is looked for, and when a file is rewritten. The
// value itself is read to its end.
inline constexpr std::size_t kReadLine = 1023;
inline constexpr std::size_t kRewriteLine = 16383;

inline constexpr std::string_view kLineEnd = "\r\n";

// A stretch of a profile's bytes, as its two ends.
struct Stretch {
  const char *begin;
  const char *end;

  std::size_t size() const { return static_cast<std::size_t>(end - begin); }
  std::string_view bytes() const { return {begin, size()}; }
};

inline Stretch stretchOf(std::string_view text) { return {text.data(), text.data() + text.size()}; }

struct Line {
  const char *begin;
  const char *end;   // its carriage return, or the end of the text
  const char *next;  // where the next line begins: behind a line feed that follows at once

  std::size_t size() const { return static_cast<std::size_t>(end - begin); }
};

// The line that begins at `begin`.
Line lineAt(const char *begin, const char *textEnd);

// True when `at` is the first character of a line, in the text that begins at textBegin.
bool isFirstCharacter(const char *at, const char *textBegin);

// The characters of a line, taken from the front.
class Characters {
 public:
  Characters(const Line &line, std::size_t limit) : at_(line.begin), end_(line.end), left_(limit) {}

  // True when the next characters are these; they are then behind.
  bool take(std::string_view expected);
  // True when a '[' is among what is left; takes everything up to it.
  bool takeToBracket();
  // Copies what is left, capacity characters at most. Returns how many there were.
  std::size_t copyTo(char *destination, std::size_t capacity);
  // The next characters that stand side by side in memory; empty at the end.
  std::string_view takeRun();

 private:
  void passLineFeeds();

  const char *at_;
  const char *end_;
  std::size_t left_;  // characters that still count
};

// The plain lines at the front of a stretch: ended by "\r\n", without a line feed elsewhere and
// with no more characters than count. Returns where they end; not all of them need be found, but
// when the first line is plain at least that one is. The stretch begins with a line.
const char *plainLinesEnd(Stretch lines, std::size_t limit);

// Passes over lines that do not matter to the search for a key: without a '[', without `key` and
// '=' in front, without a line feed but behind their carriage return. Returns the beginning of a
// line between `from` and the end before which all lines are so; may stop early. `from` is the
// beginning of a line, `text` the whole text; key holds none of '\r', '\n', '['; no
// line is passed over for an empty one.
const char *passPlainLines(Stretch text, const char *from, std::string_view key);

}  // namespace korvel::profile

#endif
