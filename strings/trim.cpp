// Trimming at both ends, in place.
#include <korvel/strings.h>

#include <cstddef>
#include <cstring>

namespace {

// What an int character argument equals when it equals a byte of text at all.
bool isTextByte(int c) { return c >= -128 && c <= 127 && c != 0; }

int trimEnd(char *s, char c) {
  const std::size_t whole = std::strlen(s);
  std::size_t length = whole;
  while (length > 0 && s[length - 1] == c) --length;
  if (length < whole) s[length] = '\0';
  return static_cast<int>(length);
}

int trimStart(char *s, char c) {
  const char *kept = s;
  while (*kept == c) ++kept;
  const std::size_t length = std::strlen(kept);
  if (kept != s) std::memmove(s, kept, length + 1);
  return static_cast<int>(length);
}

}  // namespace

int chelibl_f(char *s) { return s == nullptr ? 0 : trimEnd(s, ' '); }

int chelibl_d(char *s) { return s == nullptr ? 0 : trimStart(s, ' '); }

int chelicar_f(char *s, int c) {
  if (s == nullptr) return 0;
  if (!isTextByte(c)) return static_cast<int>(std::strlen(s));
  return trimEnd(s, static_cast<char>(c));
}

int chelicar_d(char *s, int c) {
  if (s == nullptr) return 0;
  if (!isTextByte(c)) return static_cast<int>(std::strlen(s));
  return trimStart(s, static_cast<char>(c));
}
