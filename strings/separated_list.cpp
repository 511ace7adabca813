// Separated lists: one text whose items stand between '+', ',' and '-'.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#include <korvel/strings.h>

namespace {

// What Get_item_liste gives out; large enough for every item an application lists.
constexpr std::size_t kItemCapacity = 64;
char currentItem[kItemCapacity];

bool isSeparator(char c) { return c == '+' || c == ',' || c == '-'; }

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

int holdsItem(std::string_view list, std::string_view wanted) {
  Items items(list);
  std::string_view item;
  for (bool more = true; more;) {
    more = items.next(item);
    if (item == wanted) return 1;
  }
  return 0;
}

}  // namespace

int Teste_liste(const char *list) {
  if (list == nullptr) return 0;
  const std::string_view text(list);
  return static_cast<int>(std::count_if(text.begin(), text.end(), isSeparator)) + 1;
}

int Teste_item_liste(const char *list, const char *item, int n) {
  if (list == nullptr || item == nullptr || n < 0) return 0;
  return holdsItem(list, {item, static_cast<std::size_t>(n)});
}

int Teste_item_szliste(const char *list, int listLength, const char *item, int n) {
  if (list == nullptr || item == nullptr || listLength < 0 || n < 0) return 0;
  return holdsItem({list, static_cast<std::size_t>(listLength)},
                   {item, static_cast<std::size_t>(n)});
}

char *Get_item_liste(const char *list, int index) {
  if (list == nullptr || index < 0) return nullptr;
  Items items(list);
  std::string_view item;
  bool more = items.next(item);
  for (; more && index > 0; --index) more = items.next(item);
  if (index > 0) return nullptr;
  // The list may stand in the buffer itself, given out by the call before.
  const std::size_t length = std::min(item.size(), kItemCapacity - 1);
  std::memmove(currentItem, item.data(), length);
  currentItem[length] = '\0';
  return currentItem;
}
