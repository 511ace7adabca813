// SPDX-License-Identifier: MIT
// For strings/ and codecs/: separated lists, texts whose items are separated by '+', ',' or '-'.
#ifndef KORVEL_STRINGS_SEPARATED_LIST_H
#define KORVEL_STRINGS_SEPARATED_LIST_H

#include <algorithm>
#include <string_view>

namespace korvel::strings {

inline bool isSeparator(char c) { return c == '+' || c == ',' || c == '-'; }

// Cuts the first item off a list. Behind the last one, the list is left without data.
inline std::string_view cutItem(std::string_view &list) {
  const auto end = std::find_if(list.begin(), list.end(), isSeparator);
  const std::string_view item(list.begin(), end);
  list = end == list.end() ? std::string_view() : std::string_view(end + 1, list.end());
  return item;
}

}  // namespace korvel::strings

#endif
