// The two character-set conversions and the upper-casing, in place.
#include "strings/charsets.h"

#include <korvel/strings.h>

#include <cstring>

using korvel::strings::Block;

void w2mstr(char *s) {
  if (s != nullptr) korvel::strings::convertToMac<Block>(s, std::strlen(s));
}

void m2wstr(char *s) {
  if (s != nullptr) korvel::strings::convertFromMac<Block>(s, std::strlen(s));
}

char *strupr(char *s) {
  if (s != nullptr) korvel::strings::capitalise<Block>(s, std::strlen(s));
  return s;
}
