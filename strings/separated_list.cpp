// SPDX-License-Identifier: MIT
// Separated lists: items counted, looked for and copied out.
#include "strings/separated_list.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include <korvel/strings.h>

#include "base/views.h"
#include "strings/copy.h"
#include "strings/misuse.h"

namespace korvel::strings {

namespace {

// The buffer that Get_item_liste returns; large enough for every item that an application lists.
constexpr std::size_t kItemCapacity = 64;
char currentItem[kItemCapacity];

int countItems(std::string_view list) {
  return static_cast<int>(std::count_if(list.begin(), list.end(), isSeparator)) + 1;
}

bool holdsItem(std::string_view list, std::string_view wanted) {
  while (list.data() != nullptr) {
    if (cutItem(list) == wanted) return true;
  }
  return false;
}

// The list may be the buffer itself, the result of an earlier call.
char *copyItem(std::string_view list, int index) {
  for (; list.data() != nullptr && index > 0; --index) cutItem(list);
  if (list.data() == nullptr) return nullptr;
  copyTerminated(currentItem, cutItem(list));
  return currentItem;
}

}  // namespace

}  // namespace korvel::strings

using namespace korvel::base;
using namespace korvel::strings;

int Teste_liste(const char *list) {
  lookForMisuse([=] { Call("Teste_liste", {list}).needsAll(); });
  return list == nullptr ? 0 : countItems(list);
}

int Teste_item_liste(const char *list, const char *item, int n) {
  lookForMisuse([=] { needsLengths(Call("Teste_item_liste", {list, shownRun(item, n), n}), {n}); });
  if (list == nullptr || item == nullptr || n < 0) return 0;
  return holdsItem(list, bytesOf(item, n)) ? 1 : 0;
}

int Teste_item_szliste(const char *list, int listLength, const char *item, int n) {
  lookForMisuse([=] {
    needsLengths(
        Call("Teste_item_szliste", {shownRun(list, listLength), listLength, shownRun(item, n), n}),
        {listLength, n});
  });
  if (list == nullptr || item == nullptr || listLength < 0 || n < 0) return 0;
  return holdsItem(bytesOf(list, listLength), bytesOf(item, n)) ? 1 : 0;
}

char *Get_item_liste(const char *list, int index) {
  lookForMisuse([=] {
    needsItem(Call("Get_item_liste", {list, index}), list, index, kItemCapacity - 1);
  });
  return list == nullptr || index < 0 ? nullptr : copyItem(list, index);
}
