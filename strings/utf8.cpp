// SPDX-License-Identifier: MIT
// UTF-8, in which sources are written, to CP1252, which the library reads, and back. Both measure
// first: a buffer that is too small stays as it was, and one buffer can be both.
#include "base/utf8.h"

#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

#include <korvel/strings.h>

#include "base/cp1252.h"
#include "base/views.h"
#include "strings/misuse.h"

namespace korvel::strings {

namespace {

using namespace korvel::base;

constexpr int kTooSmall = -1;

template <typename Use>
void eachCharacter(std::string_view text, Use use) {
  while (!text.empty()) {
    const Utf8Character first = firstCharacter(text);
    use(first.number);
    text.remove_prefix(first.length);
  }
}

std::size_t lengthFromUtf8(std::string_view text) {
  std::size_t length = 0;
  eachCharacter(text, [&](char32_t) { ++length; });
  return length;
}

// The number of characters without a byte. From the front: what is written is never in front of
// what is still to be read, in one buffer.
int fromUtf8(std::string_view text, std::span<char> out) {
  if (lengthFromUtf8(text) >= out.size()) return kTooSmall;
  int lost = 0;
  char *place = out.data();
  eachCharacter(text, [&](char32_t character) {
    const auto byte = cp1252ByteOf(character);
    if (!byte) ++lost;
    *place++ = static_cast<char>(byte.value_or('?'));
  });
  *place = '\0';
  return lost;
}

char16_t characterOf(char byte) { return characterOfCp1252(static_cast<unsigned char>(byte)); }

std::size_t lengthToUtf8(std::string_view text) {
  std::size_t length = 0;
  for (const char byte : text) length += utf8Length(characterOf(byte));
  return length;
}

// From the end: what is written is never behind what was read already, in one buffer.
int toUtf8(std::string_view text, std::span<char> out) {
  const std::size_t needed = lengthToUtf8(text);
  if (needed >= out.size()) return kTooSmall;
  char *place = out.data() + needed;
  *place = '\0';
  for (; !text.empty(); text.remove_suffix(1)) place = putInFront(place, characterOf(text.back()));
  return 0;
}

}  // namespace

}  // namespace korvel::strings

using namespace korvel::base;
using namespace korvel::strings;

int KorvelFromUtf8(const char *utf8, char *out, int size) {
  const int lost = utf8 != nullptr ? fromUtf8(utf8, roomOf(out, size)) : kTooSmall;
  lookForMisuse([=] {
    const Call call("KorvelFromUtf8", {filled(utf8), filled(out), size});
    if (lost < 0) needsConversion(call, size, lengthFromUtf8(textOf(utf8)));
  });
  return lost;
}

int KorvelToUtf8(const char *text, char *out, int size) {
  const auto work = [=] { return text != nullptr ? toUtf8(text, roomOf(out, size)) : kTooSmall; };
  if (tellsMisuse())
    return outOfLine([=] {
      const Call call("KorvelToUtf8", {text, filled(out), size});
      needsCp1252(call, "the text", textOf(text));
      const int result = work();
      if (result < 0) needsConversion(call, size, lengthToUtf8(textOf(text)));
      return result;
    });
  return work();
}
