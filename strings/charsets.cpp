// The two character-set conversions. Their loops are in charset_blocks.h, where the tests reach
// them for each type of block.
#include "strings/charsets.h"

#include <cstring>

#include <korvel/strings.h>

#include "strings/charset_blocks.h"

namespace korvel::strings {

void convertToMac(std::span<char> text) { convertBlocksToMac<Block>(text.data(), text.size()); }

void convertToWindows(std::span<char> text) {
  convertBlocksToWindows<Block>(text.data(), text.size());
}

std::string toMac(std::string_view text) {
  std::string converted(text);
  convertToMac(converted);
  return converted;
}

std::string toWindows(std::string_view text) {
  std::string converted(text);
  convertToWindows(converted);
  return converted;
}

}  // namespace korvel::strings

using namespace korvel::strings;

void w2mstr(char *s) {
  if (s != nullptr) convertToMac({s, std::strlen(s)});
}

void m2wstr(char *s) {
  if (s != nullptr) convertToWindows({s, std::strlen(s)});
}
