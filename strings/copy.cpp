// Copies of counted byte runs, with and without terminator.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

namespace {

bool isCopy(const char *d, int capacity, const char *source, int n) {
  return d != nullptr && source != nullptr && capacity > 0 && n >= 0;
}

// Copies what fits, right even where both overlap. Returns 1 when all n bytes fit.
int copyBytes(char *d, int capacity, const char *source, int n) {
  if (!isCopy(d, capacity, source, n)) return 0;
  std::memmove(d, source, static_cast<std::size_t>(std::min(n, capacity)));
  return n <= capacity ? 1 : 0;
}

// Copies what fits in front of a terminator; 1 <= room. Returns 1 when all n bytes fit.
int copyTerminated(char *d, int room, const char *source, int n) {
  const int copied = std::min(n, room - 1);
  std::memmove(d, source, static_cast<std::size_t>(copied));
  d[copied] = '\0';
  return copied == n ? 1 : 0;
}

// Length of the text in d, capacity when nothing within it ends the text.
int boundedLength(const char *d, int capacity) {
  return static_cast<int>(strnlen(d, static_cast<std::size_t>(capacity)));
}

}  // namespace

int szcnum(char *p, int n) {
  if (p == nullptr) return 1;
  for (int i = 0; i < n; ++i) p[i] = p[i] == ' ' ? '0' : p[i];
  return 1;
}

int szcopy(char *d, int capacity, const char *source, int n) {
  return copyBytes(d, capacity, source, n);
}

int szcopy_overlap(char *d, int capacity, const char *source, int n) {
  return copyBytes(d, capacity, source, n);
}

int szcopy_0t(char *d, int capacity, const char *source, int n) {
  return isCopy(d, capacity, source, n) ? copyTerminated(d, capacity, source, n) : 0;
}

int szconcat_0t(char *d, int capacity, const char *source, int n) {
  if (!isCopy(d, capacity, source, n)) return 0;
  const int length = boundedLength(d, capacity);
  if (length == capacity) {
    d[capacity - 1] = '\0';
    return 0;
  }
  return copyTerminated(d + length, capacity - length, source, n);
}

void secure_lstrcpy(char *d, int capacity, const char *source) {
  if (!isCopy(d, capacity, source, 0)) return;
  const std::size_t length = std::strlen(source);
  if (length < static_cast<std::size_t>(capacity)) std::memmove(d, source, length + 1);
}

void secure_lstrcat(char *d, int capacity, const char *source) {
  if (!isCopy(d, capacity, source, 0)) return;
  const int used = boundedLength(d, capacity);
  const std::size_t length = std::strlen(source);
  const auto room = static_cast<std::size_t>(capacity - used);
  if (length < room) std::memmove(d + used, source, length + 1);
}
