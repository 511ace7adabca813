// The two character-set conversions and the upper-casing, in place.
#include "strings/charsets.h"

#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

#include "strings/capitals.h"

using korvel::strings::Block;

void w2mstr(char *s) {
  if (s != nullptr) korvel::strings::convertToMac<Block>(s, std::strlen(s));
}

void m2wstr(char *s) {
  if (s != nullptr) korvel::strings::convertFromMac<Block>(s, std::strlen(s));
}

char *strupr(char *s) {
  if (s == nullptr) return nullptr;
  const std::size_t length = std::strlen(s);
  const std::size_t done = korvel::strings::capitaliseWide(s, length);
  korvel::strings::capitalise<Block>(s + done, length - done);
  return s;
}
