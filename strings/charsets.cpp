// SPDX-License-Identifier: MIT
// The two character-set conversions. Each changes few characters, so it needs no table and goes by
// vectors.
#include "strings/charsets.h"

#include <cstring>

#include <korvel/strings.h>

#include "strings/misuse.h"
#include "strings/vectors.h"

namespace korvel::strings {

namespace {

// The exclusive or of `from` and `to`.
Vector difference(char from, char to) { return Vector::broadcast(static_cast<char>(from ^ to)); }

// Combines each byte with its change by an exclusive or; most bytes have the change 0.
template <typename ChangesOf>
void change(std::span<char> text, ChangesOf changesOf) {
  overVectors(text.data(), text.size(), [changesOf](char *place, std::size_t count) {
    const Vector b = Vector::load(place, count);
    (b ^ changesOf(b)).store(place, count);
  });
}

}  // namespace

// The e with grave and the e with acute share a change; so do the e with circumflex and the i with
// diaeresis.
void convertToMac(std::span<char> text) {
  change(text, [](Vector b) {
    return ((b == '\xB0') & difference('\xB0', '\xA1')) |
           ((b == '\xE0') & difference('\xE0', '\x88')) |
           ((b == '\xE7') & difference('\xE7', '\x8D')) |
           (((b == '\xE8') | (b == '\xE9')) & difference('\xE8', '\x8F')) |
           (((b == '\xEA') | (b == '\xEF')) & difference('\xEA', '\x90'));
  });
}

// Kept: e circumflex and i diaeresis go to the Mac set and are never brought back.
void convertToWindows(std::span<char> text) {
  change(text, [](Vector b) {
    return ((b == '\xA1') & difference('\xA1', '\xB0')) |
           ((b == '\x88') & difference('\x88', '\xE0')) |
           ((b == '\x8D') & difference('\x8D', '\xE7')) |
           (((b == '\x8F') | (b == '\x8E')) & difference('\x8F', '\xE8'));
  });
}

std::string toMac(std::string_view text) {
  std::string converted(text);
  convertToMac(converted);
  return converted;
}

std::string toWindows(std::string text) {
  convertToWindows(text);
  return text;
}

}  // namespace korvel::strings

using namespace korvel::strings;

void w2mstr(char *s) {
  lookForMisuse([=] { Call("w2mstr", {s}).needsAll(); });
  if (s != nullptr) convertToMac({s, std::strlen(s)});
}

void m2wstr(char *s) {
  lookForMisuse([=] { Call("m2wstr", {s}).needsAll(); });
  if (s != nullptr) convertToWindows({s, std::strlen(s)});
}
