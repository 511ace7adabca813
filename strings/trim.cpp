// SPDX-License-Identifier: MIT
// Trimming at both ends, in place.
#include "strings/trim.h"

#include <bit>
#include <cstddef>
#include <cstring>
#include <limits>

#include <korvel/strings.h>

#include "strings/bytes.h"
#include "strings/misuse.h"
#include "strings/vectors.h"

namespace korvel::strings {

namespace {

// The length of the n bytes at s without every c at their end.
std::size_t lengthWithoutTail(const char *s, std::size_t n, char c) {
  const Vector tail = Vector::broadcast(c);
  for (; n >= kVectorSize; n -= kVectorSize) {
    const unsigned others =
        ~(Vector::load(s + n - kVectorSize) == tail).moveMask() & Vector::kFullMask;
    if (others != 0) return n - kVectorSize + static_cast<std::size_t>(std::bit_width(others));
  }
  while (n > 0 && s[n - 1] == c) --n;
  return n;
}

// trimEnd has usually just stored the terminator. Processors predict for each load instruction
// whether it waits for such a store; memchr keeps the loads of strlen from being trained to wait.
std::size_t lengthToMove(const char *s) {
  constexpr std::size_t kUnlimited = std::numeric_limits<std::ptrdiff_t>::max();
  return static_cast<std::size_t>(static_cast<const char *>(std::memchr(s, '\0', kUnlimited)) - s);
}

}  // namespace

int trimEnd(char *s, int c) {
  const std::size_t whole = std::strlen(s);
  if (!isTextByte(c)) return static_cast<int>(whole);
  const std::size_t length = lengthWithoutTail(s, whole, static_cast<char>(c));
  if (length < whole) s[length] = '\0';
  return static_cast<int>(length);
}

int trimStart(char *s, int c) {
  if (!isTextByte(c)) return static_cast<int>(std::strlen(s));
  const char *kept = s;
  while (*kept == static_cast<char>(c)) ++kept;
  const std::size_t length = lengthToMove(kept);
  if (kept != s) std::memmove(s, kept, length + 1);
  return static_cast<int>(length);
}

}  // namespace korvel::strings

using namespace korvel::strings;

int chelibl_f(char *s) {
  lookForMisuse([=] { Call("chelibl_f", {s}).needsAll(); });
  return s == nullptr ? 0 : trimEnd(s, ' ');
}

int chelibl_d(char *s) {
  lookForMisuse([=] { Call("chelibl_d", {s}).needsAll(); });
  return s == nullptr ? 0 : trimStart(s, ' ');
}

int chelicar_f(char *s, int c) {
  lookForMisuse([=] { needsCharacter(Call("chelicar_f", {s, c}), c); });
  return s == nullptr ? 0 : trimEnd(s, c);
}

int chelicar_d(char *s, int c) {
  lookForMisuse([=] { needsCharacter(Call("chelicar_d", {s, c}), c); });
  return s == nullptr ? 0 : trimStart(s, c);
}
