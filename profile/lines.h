// SPDX-License-Identifier: MIT
// For profile/: the lines of a profile and their characters.
//
// A line ends at a carriage return or at the end of the text. Line feeds are skipped everywhere:
// they are not characters. Only so many first characters of a line count, the rest is ignored.
#ifndef KORVEL_PROFILE_LINES_H
#define KORVEL_PROFILE_LINES_H

#include <cstddef>
#include <string_view>

namespace korvel::profile {

// How many characters of a line count when a value is looked for and when a file is rewritten. The
// value itself is read to the end of its line.
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
  const char *next;  // the beginning of the next line, after the "\r" and a "\n" right after it

  std::size_t size() const { return static_cast<std::size_t>(end - begin); }
};

// The line that begins at `begin`.
Line lineAt(const char *begin, const char *textEnd);

// The characters of a line, consumed from the front.
class Characters {
 public:
  Characters(const Line &line, std::size_t limit) : at_(line.begin), end_(line.end), left_(limit) {}

  // Consumes these characters if they come next. Returns whether they do.
  bool take(std::string_view expected);
  // Consumes everything up to the next '['. Returns whether there is one.
  bool takeToBracket();
  // Copies what is left, at most `capacity` characters. Returns their number.
  std::size_t copyTo(char *destination, std::size_t capacity);
  // Consumes the next characters that are contiguous in memory; empty at the end.
  std::string_view takeRun();

 private:
  void passLineFeeds();

  const char *at_;
  const char *end_;
  std::size_t left_;  // characters that still count
};

// Skips lines that do not matter to the search for a key: those that hold no '[', do not begin with
// `key` and '=', and have a line feed only after their carriage return. Returns the beginning of a
// line; may skip fewer lines than it could, and skips none for an empty key. `text` is the whole
// text, `from` the beginning of a line; the key holds no '\r', '\n' or '['.
const char *passPlainLines(Stretch text, const char *from, std::string_view key);

}  // namespace korvel::profile

#endif
