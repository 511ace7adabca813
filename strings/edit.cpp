// Insertion and deletion in place.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

namespace {

// The place of an insertion: in front for a negative position, at the end for one past it.
std::size_t insertionPoint(int p, std::size_t length) {
  return p < 0 ? 0 : std::min(static_cast<std::size_t>(p), length);
}

// The place of a deletion is always a character of the text, which is not empty.
std::size_t deletionPoint(int p, std::size_t length) { return insertionPoint(p, length - 1); }

bool fits(std::size_t length, int capacity) {
  return capacity > 0 && length < static_cast<std::size_t>(capacity);
}

int insertBytes(char *d, int size, const char *bytes, std::size_t count, int p) {
  const std::size_t length = std::strlen(d);
  if (!fits(length + count, size)) return 0;
  char *place = d + insertionPoint(p, length);
  const std::size_t tail = static_cast<std::size_t>(d + length + 1 - place);
  std::memmove(place + count, place, tail);
  std::memmove(place, bytes, count);
  return static_cast<int>(count);
}

}  // namespace

void chdelch(char *s, int n, int p) {
  if (s == nullptr || n < 1) return;
  const std::size_t length = std::strlen(s);
  const auto wanted = static_cast<std::size_t>(n);
  // Kept: more than the whole length is refused even where cutting it would make it harmless.
  if (wanted > length) return;
  const std::size_t place = deletionPoint(p, length);
  const std::size_t count = std::min(wanted, length - place);
  std::memmove(s + place, s + place + count, length + 1 - place - count);
}

int chinsch(char *d, int size, const char *s, int p) {
  if (d == nullptr || s == nullptr || size <= 0) return 0;
  return insertBytes(d, size, s, std::strlen(s), p);
}

int chinsch_c(char *d, int size, int c, int p) {
  if (d == nullptr || size <= 0) return 0;
  const char byte = static_cast<char>(c);
  return insertBytes(d, size, &byte, 1, p);
}
