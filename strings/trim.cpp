// Trimming at both ends, in place.
#include <cstddef>
#include <cstring>
#include <limits>

#include <korvel/strings.h>

#include "strings/bytes.h"
#include "strings/scan.h"

namespace {

using korvel::strings::Block;
using korvel::strings::isTextByte;
using korvel::strings::lengthWithoutTail;

int trimEnd(char *s, char c) {
  const std::size_t whole = std::strlen(s);
  const std::size_t length = lengthWithoutTail<Block>(s, whole, c);
  if (length < whole) s[length] = '\0';
  return static_cast<int>(length);
}

// Most often trimEnd has just written the terminator. A processor learns per load instruction
// whether it has to wait for such a store; memchr has loads of its own, so that what is learned
// here does not hold up every strlen.
std::size_t lengthToMove(const char *s) {
  constexpr std::size_t kUnlimited = std::numeric_limits<std::ptrdiff_t>::max();
  return static_cast<std::size_t>(static_cast<const char *>(std::memchr(s, '\0', kUnlimited)) - s);
}

int trimStart(char *s, char c) {
  const char *kept = s;
  while (*kept == c) ++kept;
  const std::size_t length = lengthToMove(kept);
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
