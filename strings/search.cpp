// Comparison and search in terminated texts.
#include <cstring>

#include <korvel/strings.h>

#include "strings/bytes.h"

namespace {

// Plain char is unsigned on some machines; order and differences here never are.
int signedByte(char c) { return static_cast<signed char>(c); }

int positionOrNone(const char *found, const char *s) {
  return found == nullptr ? -1 : static_cast<int>(found - s);
}

}  // namespace

int chcomp(const char *a, const char *b) {
  if (a == nullptr) a = "";
  if (b == nullptr) b = "";
  while (*a == *b && *a != '\0') {
    ++a;
    ++b;
  }
  return signedByte(*a) - signedByte(*b);
}

int chcher(const char *pattern, const char *s) {
  // Kept: nothing is found in an empty text, not even the empty pattern.
  if (pattern == nullptr || s == nullptr || *s == '\0') return -1;
  return positionOrNone(std::strstr(s, pattern), s);
}

int chcher_c(int c, const char *s) {
  if (s == nullptr || !korvel::strings::isTextByte(c)) return -1;
  return positionOrNone(std::strchr(s, c), s);
}
