// SPDX-License-Identifier: MIT
// Plain lines are found many at a time, by a look at their ends alone.
#include "strings/plain_lines.h"

#include "strings/vectors.h"

namespace korvel::strings {

namespace {

// How far a search looks ahead: the most that an odd line costs.
constexpr std::size_t kLookAhead = std::size_t{1} << 18;

// Set in the bytes that are a line feed but not after a carriage return, or the other way round.
Vector oddLineEnds(const char *at) {
  return (Vector::load(at) == '\n') ^ (Vector::load(at - 1) == '\r');
}

std::string_view withoutOddLineEnds(std::string_view text) {
  std::size_t at = 1;
  for (; at + 4 * kVectorSize <= text.size(); at += 4 * kVectorSize) {
    const char *p = text.data() + at;
    const Vector odd = (oddLineEnds(p) | oddLineEnds(p + kVectorSize)) |
                       (oddLineEnds(p + 2 * kVectorSize) | oddLineEnds(p + 3 * kVectorSize));
    if (odd.moveMask() != 0) break;
  }
  while (at < text.size() && (text[at] == '\n') == (text[at - 1] == '\r')) ++at;
  return text.substr(0, at);
}

// The lines in front of the first of more than `limit` characters; they are plain otherwise.
std::string_view withoutLongLines(std::string_view lines, std::size_t limit) {
  const std::size_t longest = limit + 2;
  std::size_t begin = 0;
  while (lines.size() - begin > longest) {
    const std::size_t end = lines.rfind('\n', begin + longest - 1) + 1;
    if (end == begin) return lines.substr(0, begin);
    begin = end;
  }
  return lines;
}

}  // namespace

std::string_view plainLines(std::string_view lines, std::size_t limit) {
  if (lines.starts_with('\n')) return {};
  const std::string_view even = withoutOddLineEnds(lines.substr(0, kLookAhead));
  return withoutLongLines(even.substr(0, even.rfind('\n') + 1), limit);
}

}  // namespace korvel::strings
