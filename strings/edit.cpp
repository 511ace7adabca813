// SPDX-License-Identifier: MIT
// Insertion and deletion in terminated texts, in place.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#include <korvel/strings.h>

#include "strings/misuse.h"

namespace korvel::strings {

namespace {

// The place of an insertion: in front for a negative position, at the end for one past it.
std::size_t insertionPoint(int p, std::size_t length) {
  return p < 0 ? 0 : std::min(static_cast<std::size_t>(p), length);
}

// The place of a deletion is always a character of the text, which is not empty.
std::size_t deletionPoint(int p, std::size_t length) { return insertionPoint(p, length - 1); }

void deleteBytes(char *s, std::size_t n, int p) {
  const std::size_t length = std::strlen(s);
  // Kept: more than the whole length is refused even where cutting it would make it harmless.
  if (n > length) return;
  const std::size_t place = deletionPoint(p, length);
  const std::size_t count = std::min(n, length - place);
  std::memmove(s + place, s + place + count, length + 1 - place - count);
}

int insertBytes(char *d, int size, std::string_view bytes, int p) {
  const std::size_t length = std::strlen(d);
  if (length + bytes.size() >= static_cast<std::size_t>(size)) return 0;
  char *place = d + insertionPoint(p, length);
  const std::size_t tail = static_cast<std::size_t>(d + length + 1 - place);
  std::memmove(place + bytes.size(), place, tail);
  std::memmove(place, bytes.data(), bytes.size());
  return static_cast<int>(bytes.size());
}

}  // namespace

}  // namespace korvel::strings

using namespace korvel::strings;

void chdelch(char *s, int n, int p) {
  lookForMisuse([=] { needsDeletion(Call("chdelch", {s, n, p}), s, n); });
  if (s != nullptr && n > 0) deleteBytes(s, static_cast<std::size_t>(n), p);
}

int chinsch(char *d, int size, const char *s, int p) {
  lookForMisuse([=] {
    needsInserted(Call("chinsch", {shownBuffer(d, size), size, s, p}), d, size, s);
  });
  return d == nullptr || s == nullptr || size <= 0 ? 0 : insertBytes(d, size, s, p);
}

int chinsch_c(char *d, int size, int c, int p) {
  lookForMisuse([=] {
    needsInserted(Call("chinsch_c", {shownBuffer(d, size), size, c, p}), d, size, "c");
  });
  const char byte = static_cast<char>(c);
  return d == nullptr || size <= 0 ? 0 : insertBytes(d, size, {&byte, 1}, p);
}
