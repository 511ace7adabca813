// Lists of strings: items one behind the other, each ended by a NUL, a second NUL at the end.
//
// Nothing behind the first NUL of an empty list or behind the second NUL of another is read: a list
// may fill its buffer to the last byte.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

namespace {

constexpr char kBindingSeparator = '+';

bool isEmpty(const char *item) { return item[0] == '\0'; }

// The NUL that ends a non-empty item.
template <typename Char>
Char *endOf(Char *item) {
  return item + std::strlen(item);
}

bool isLast(const char *end) { return end[1] == '\0'; }

// The bytes from item to the end of its list, the final NUL included.
std::size_t bytesToListEnd(const char *item) {
  const char *at = item;
  while (!isEmpty(at)) at = endOf(at) + 1;
  return static_cast<std::size_t>(at + 1 - item);
}

void bind(char *list, char separator) {
  if (list == nullptr || isEmpty(list)) return;
  char *end = endOf(list);
  while (!isLast(end)) {
    *end = separator;
    end = endOf(end + 1);
  }
}

// What an int character argument equals when it equals a byte of text at all.
bool isTextByte(int c) { return c >= -128 && c <= 127 && c != 0; }

}  // namespace

void ChCh_Put_00(char *buffer, int capacity) {
  if (buffer == nullptr || capacity < 1) return;
  const auto room = static_cast<std::size_t>(capacity);
  const std::size_t length = strnlen(buffer, room);
  if (length + 1 < room) {
    buffer[length + 1] = '\0';
    return;
  }
  buffer[room - 1] = '\0';
  if (room > 1) buffer[room - 2] = '\0';
}

int ChCh_Is_00(const char *item) {
  if (item == nullptr) return 1;
  return isEmpty(item) || isLast(endOf(item)) ? 1 : 0;
}

char *ChCh_Get_Next_Item(const char *item) {
  char *same = const_cast<char *>(item);
  return ChCh_Is_00(item) == 1 ? same : endOf(same) + 1;
}

int ChCh_Count_Item(const char *list) {
  // Kept: an empty list counts as one item.
  int count = 1;
  for (const char *item = list; ChCh_Is_00(item) == 0; item = endOf(item) + 1) ++count;
  return count;
}

void ChCh_Cut(char *s) {
  if (s == nullptr) return;
  // Kept: '-' separates the items of a separated list but is not cut at.
  std::replace_if(
      s, endOf(s), [](char c) { return c == '+' || c == ','; }, '\0');
}

void ChCh_Cut_sep(char *s, int separator) {
  if (s == nullptr || !isTextByte(separator)) return;
  std::replace(s, endOf(s), static_cast<char>(separator), '\0');
}

void ChCh_Bind(char *list) { bind(list, kBindingSeparator); }

void ChCh_Bind_sep(char *list, int separator) { bind(list, static_cast<char>(separator)); }

void ChCh_Delete_Item(char *item) {
  if (item == nullptr || isEmpty(item)) return;
  const char *rest = endOf(item) + 1;
  std::memmove(item, rest, bytesToListEnd(rest));
}
