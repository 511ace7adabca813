// SPDX-License-Identifier: MIT
// Lists of strings: walks, and edits in place.
#include "strings/string_list.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

#include "base/views.h"
#include "strings/bytes.h"
#include "strings/misuse.h"

namespace korvel::strings {

namespace {

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

bool isLastItem(const char *item) { return isEmpty(item) || isLast(endOf(item)); }

int countItems(const char *list) {
  // Kept: an empty list counts as one item.
  int count = 1;
  for (const char *item = list; !isLastItem(item); item = nextItem(item)) ++count;
  return count;
}

}  // namespace

void endList(std::span<char> buffer) {
  const std::size_t room = buffer.size();
  const std::size_t length = strnlen(buffer.data(), room);
  if (length + 1 < room) {
    buffer[length + 1] = '\0';
    return;
  }
  buffer[room - 1] = '\0';
  if (room > 1) buffer[room - 2] = '\0';
}

const char *nextItem(const char *item) {
  if (isEmpty(item)) return item;
  const char *end = endOf(item);
  return isLast(end) ? item : end + 1;
}

void cutItems(char *s) {
  // Kept: '-' separates the items of a separated list but is not cut at.
  std::replace_if(
      s, endOf(s), [](char c) { return c == '+' || c == ','; }, '\0');
}

void bindItems(char *list, char separator) {
  if (isEmpty(list)) return;
  for (char *end = endOf(list); !isLast(end); end = endOf(end + 1)) *end = separator;
}

void deleteItem(char *item) {
  if (isEmpty(item)) return;
  const char *rest = endOf(item) + 1;
  std::memmove(item, rest, bytesToListEnd(rest));
}

}  // namespace korvel::strings

using namespace korvel::base;
using namespace korvel::strings;

void ChCh_Put_00(char *buffer, int capacity) {
  lookForMisuse([=] {
    needsList(Call("ChCh_Put_00", {filled(buffer), capacity}), buffer, capacity);
  });
  if (buffer != nullptr && capacity > 0) endList(roomOf(buffer, capacity));
}

int ChCh_Is_00(const char *item) {
  lookForMisuse([=] { Call("ChCh_Is_00", {item}).needsAll(); });
  return item == nullptr || isLastItem(item) ? 1 : 0;
}

char *ChCh_Get_Next_Item(const char *item) {
  lookForMisuse([=] { Call("ChCh_Get_Next_Item", {item}).needsAll(); });
  return const_cast<char *>(item == nullptr ? nullptr : nextItem(item));
}

int ChCh_Count_Item(const char *list) {
  lookForMisuse([=] { Call("ChCh_Count_Item", {list}).needsAll(); });
  return countItems(list != nullptr ? list : "");
}

void ChCh_Cut(char *s) {
  lookForMisuse([=] { Call("ChCh_Cut", {s}).needsAll(); });
  if (s != nullptr) cutItems(s);
}

void ChCh_Cut_sep(char *s, int separator) {
  lookForMisuse([=] { needsCharacter(Call("ChCh_Cut_sep", {s, separator}), separator); });
  if (s == nullptr || !isTextByte(separator)) return;
  std::replace(s, endOf(s), static_cast<char>(separator), '\0');
}

void ChCh_Bind(char *list) {
  lookForMisuse([=] { Call("ChCh_Bind", {list}).needsAll(); });
  if (list != nullptr) bindItems(list, '+');
}

void ChCh_Bind_sep(char *list, int separator) {
  lookForMisuse([=] { Call("ChCh_Bind_sep", {list, separator}).needsAll(); });
  if (list != nullptr) bindItems(list, static_cast<char>(separator));
}

void ChCh_Delete_Item(char *item) {
  lookForMisuse([=] { Call("ChCh_Delete_Item", {item}).needsAll(); });
  if (item != nullptr) deleteItem(item);
}
