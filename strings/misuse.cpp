// SPDX-License-Identifier: MIT
// Misuse of texts: lengths below 0, characters that no byte equals, buffers that are too small.
#include "strings/misuse.h"

#include <cstring>

#include "base/views.h"
#include "strings/separated_list.h"

namespace korvel::strings {

namespace {

std::size_t textLength(const char *d, int size) {
  return d == nullptr || size < 1 ? 0 : strnlen(d, static_cast<std::size_t>(size));
}

long long lengthOf(const char *text) { return static_cast<long long>(base::textOf(text).size()); }

}  // namespace

void needsCharacter(const Call &call, int c) {
  call.needsAll();
  call.misusedIf(c > 127 && c < 256,
                 {c, " equals no byte: bytes are signed, so this one is ", c - 256});
  call.misusedIf(c < -128 || c > 255, {c, " equals no byte: bytes are from -128 to 127"});
}

void needsLengths(const Call &call, std::initializer_list<int> lengths) {
  call.needsAll();
  for (const int n : lengths) call.misusedIf(n < 0, {"there is no length ", n});
}

void needsDeletion(const Call &call, const char *s, int n) {
  needsLengths(call, {n});
  call.misusedIf(n > lengthOf(s), {"nothing is deleted: ", n, " characters are more than the ",
                                   lengthOf(s), " of the text"});
}

void needsBytes(const Call &call, const void *buffer, int size, long long needed) {
  call.needsAll();
  needsRoom(call, buffer, size);
  call.misusedIf(size < needed,
                 {"a buffer of ", size, " bytes is too small: ", needed, " are needed"});
}

void needsCopy(const Call &call, const void *buffer, int size, int n, int more) {
  needsLengths(call, {n});
  needsBytes(call, buffer, size, static_cast<long long>(n) + more);
}

void needsAppended(const Call &call, const char *d, int size, int n) {
  needsLengths(call, {n});
  needsBytes(call, d, size, static_cast<long long>(textLength(d, size)) + n + 1);
}

void needsInserted(const Call &call, const char *d, int size, const char *s) {
  const long long length = size < 1 ? 0 : lengthOf(d);
  needsBytes(call, d, size, length + lengthOf(s) + 1);
}

void needsList(const Call &call, const char *buffer, int capacity) {
  needsBytes(call, buffer, capacity, static_cast<long long>(textLength(buffer, capacity)) + 2);
}

void needsWhole(const Call &call, const char *d, int size, const char *source) {
  needsBytes(call, d, size, lengthOf(source) + 1);
}

void needsWholeBehind(const Call &call, const char *d, int size, const char *source) {
  needsBytes(call, d, size, static_cast<long long>(textLength(d, size)) + lengthOf(source) + 1);
}

void needsGrowable(const Call &call, char *const *buf, const int *capacity, int used, int n) {
  needsLengths(call, {used, n});
  if (!call) return;
  const int available = *buf == nullptr ? 0 : *capacity;
  call.misusedIf(used > available, {used, " bytes cannot be in use: the buffer has ", available});
  call.misusedIf(available - used < n && used > 0 && (*capacity + 0LL + n) * 2 > 2147483647,
                 {"the buffer would have more than 2147483647 bytes"});
}

void needsItem(const Call &call, const char *list, int index, std::size_t longest) {
  call.needsAll();
  if (!call) return;
  std::string_view rest = list;
  std::string_view item;
  int items = 0;
  for (; rest.data() != nullptr; ++items) {
    const std::string_view each = cutItem(rest);
    if (items == index) item = each;
  }
  call.misusedIf(index < 0 || index >= items,
                 {"there is no item ", index, ": the list has ", items, ", from 0 to ", items - 1});
  needsFit(call, "the item", item.size(), longest);
}

void needsConversion(const Call &call, int size, std::size_t length) {
  call.needsAll();
  call.misused({"the converted text has no room in ", size, " bytes: ", length + 1, " are needed"});
}

}  // namespace korvel::strings
