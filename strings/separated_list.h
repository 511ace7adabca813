// For strings/ and codecs/: separated lists, texts whose items are separated by '+', ',' or '-'.
#ifndef KORVEL_STRINGS_SEPARATED_LIST_H
#define KORVEL_STRINGS_SEPARATED_LIST_H

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace korvel::strings {

inline bool isSeparator(char c) { return c == '+' || c == ',' || c == '-'; }

// Walks over the items of a list; there is always at least one.
class Items {
 public:
  explicit Items(std::string_view list) : rest_(list) {}

  // Cuts the next item off. True when it is not the last.
  bool next(std::string_view &item) {
    const auto end = std::find_if(rest_.begin(), rest_.end(), isSeparator);
    const auto length = static_cast<std::size_t>(end - rest_.begin());
    item = rest_.substr(0, length);
    if (length == rest_.size()) return false;
    rest_.remove_prefix(length + 1);
    return true;
  }

 private:
  std::string_view rest_;
};

}  // namespace korvel::strings

#endif
