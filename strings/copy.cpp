// SPDX-License-Identifier: MIT
// Copies of counted runs and of terminated texts that never leave the buffer they fill.
#include "strings/copy.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

#include "base/views.h"
#include "strings/misuse.h"

namespace korvel::strings {

namespace {

// There is room to write, and `source` is no null pointer.
bool isCopy(std::span<char> d, std::string_view source) {
  return !d.empty() && source.data() != nullptr;
}

// Length of the text in d; d.size() where it has no terminator.
std::size_t textLength(std::span<char> d) { return d.empty() ? 0 : strnlen(d.data(), d.size()); }

bool copyBytes(std::span<char> d, std::string_view source) {
  if (!isCopy(d, source)) return false;
  std::memmove(d.data(), source.data(), std::min(source.size(), d.size()));
  return source.size() <= d.size();
}

bool appendTerminated(std::span<char> d, std::string_view source) {
  if (!isCopy(d, source)) return false;
  const std::size_t used = textLength(d);
  if (used < d.size()) return copyTerminated(d.subspan(used), source);
  d.back() = '\0';
  return false;
}

}  // namespace

bool copyTerminated(std::span<char> d, std::string_view source) {
  if (!isCopy(d, source)) return false;
  const std::size_t copied = std::min(source.size(), d.size() - 1);
  std::memmove(d.data(), source.data(), copied);
  d[copied] = '\0';
  return copied == source.size();
}

bool copyWhole(std::span<char> d, std::string_view source) {
  return source.size() < d.size() && copyTerminated(d, source);
}

bool appendWhole(std::span<char> d, std::string_view source) {
  return copyWhole(d.subspan(textLength(d)), source);
}

}  // namespace korvel::strings

using namespace korvel::base;
using namespace korvel::strings;

int szcnum(char *p, int n) {
  lookForMisuse([=] { needsLengths(Call("szcnum", {shownRun(p, n), n}), {n}); });
  std::ranges::replace(roomOf(p, n), ' ', '0');
  return 1;
}

int szcopy(char *d, int capacity, const char *source, int n) {
  lookForMisuse([=] {
    needsCopy(Call("szcopy", {filled(d), capacity, shownRun(source, n), n}), d, capacity, n, 0);
  });
  return copyBytes(roomOf(d, capacity), bytesOf(source, n)) ? 1 : 0;
}

int szcopy_overlap(char *d, int capacity, const char *source, int n) {
  lookForMisuse([=] {
    needsCopy(Call("szcopy_overlap", {filled(d), capacity, shownRun(source, n), n}), d, capacity, n,
              0);
  });
  return copyBytes(roomOf(d, capacity), bytesOf(source, n)) ? 1 : 0;
}

int szcopy_0t(char *d, int capacity, const char *source, int n) {
  lookForMisuse([=] {
    needsCopy(Call("szcopy_0t", {filled(d), capacity, shownRun(source, n), n}), d, capacity, n, 1);
  });
  return copyTerminated(roomOf(d, capacity), bytesOf(source, n)) ? 1 : 0;
}

int szconcat_0t(char *d, int capacity, const char *source, int n) {
  lookForMisuse([=] {
    needsAppended(Call("szconcat_0t", {filled(d), capacity, shownRun(source, n), n}), d, capacity,
                  n);
  });
  return appendTerminated(roomOf(d, capacity), bytesOf(source, n)) ? 1 : 0;
}

void secure_lstrcpy(char *d, int capacity, const char *source) {
  lookForMisuse([=] {
    needsWhole(Call("secure_lstrcpy", {filled(d), capacity, source}), d, capacity, source);
  });
  if (source != nullptr) copyWhole(roomOf(d, capacity), source);
}

void secure_lstrcat(char *d, int capacity, const char *source) {
  lookForMisuse([=] {
    needsWholeBehind(Call("secure_lstrcat", {filled(d), capacity, source}), d, capacity, source);
  });
  if (source != nullptr) appendWhole(roomOf(d, capacity), source);
}
