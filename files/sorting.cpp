// SPDX-License-Identifier: MIT
// Lists of files sorted by name or by size, with the number of exchanges that bubble sort would
// make.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <span>

#include <korvel/files.h>

#include "files/handles.h"
#include "files/inversions.h"
#include "files/misuse.h"
#include "files/rows.h"

namespace korvel::files {
namespace {

constexpr std::size_t kKeySize = sizeof(std::uint64_t);

char *rowAt(char *list, std::uint64_t row) { return list + row * kRowSize; }
const char *rowAt(const char *list, std::uint64_t row) { return list + row * kRowSize; }

// The length of the longest text that all rows begin with.
std::size_t commonPrefix(const char *list, std::size_t rows) {
  std::size_t prefix = rowText(list).size();
  for (std::size_t row = 1; row < rows && prefix > 0; ++row) {
    const char *text = rowAt(list, row);
    if (std::memcmp(list, text, prefix) == 0) continue;
    prefix = static_cast<std::size_t>(std::mismatch(list, list + prefix, text).first - list);
  }
  return prefix;
}

// The 8 bytes of a row from `begin` on, up to the terminator, as a number that sorts like signed
// characters.
std::uint64_t keyAt(const char *row, std::size_t begin) {
  constexpr std::uint64_t kSignBits = 0x8080808080808080u;
  std::uint64_t key = 0;
  int shift = 64;
  for (std::size_t i = begin; shift > 0 && i < kRowSize && row[i] != '\0'; ++i) {
    shift -= 8;
    key |= std::uint64_t{static_cast<unsigned char>(row[i])} << shift;
  }
  return key ^ kSignBits;
}

// Whether the row ends within its key.
bool keyHoldsEnd(std::uint64_t key) { return (key & 0xFF) == 0x80; }

// Compares two rows that are equal up to `begin`, in the order of chcomp.
int compareFrom(const char *a, const char *b, std::size_t begin) {
  for (std::size_t i = begin; i < kRowSize; ++i) {
    const int difference = static_cast<signed char>(a[i]) - static_cast<signed char>(b[i]);
    if (difference != 0 || a[i] == '\0') return difference;
  }
  return 0;
}

// Copies a row's text and terminator; the target's bytes after that stay.
void copyText(char *to, const char *from) {
  const std::string_view text = rowText(from);
  std::memcpy(to, text.data(), text.size());
  to[text.size()] = '\0';
}

// Gives row i the text of row order[i].row, following each cycle of the permutation, so that every
// text moves once. Overwrites `order`.
void permuteRows(char *list, std::span<SortItem> order) {
  char first[kRowSize];
  for (std::size_t start = 0; start < order.size(); ++start) {
    if (order[start].row == start) continue;
    copyText(first, rowAt(list, start));
    std::size_t to = start;
    while (order[to].row != start) {
      const std::size_t from = order[to].row;
      copyText(rowAt(list, to), rowAt(list, from));
      order[to].row = to;
      to = from;
    }
    copyText(rowAt(list, to), first);
    order[to].row = to;
  }
}

// Sorts the rows by the key of each, and by `before` between equal keys.
template <typename KeyOf, typename Before>
int sortRows(char *list, int rows, KeyOf keyOf, Before before) {
  const auto count = static_cast<std::size_t>(rows);
  const std::unique_ptr<SortItem[]> memory(new (std::nothrow) SortItem[2 * count]);
  if (memory == nullptr) return 0;
  const std::span<SortItem> items(memory.get(), count);
  const std::span<SortItem> scratch(memory.get() + count, count);
  for (std::size_t row = 0; row < count; ++row) items[row] = {keyOf(rowAt(list, row)), row};
  const std::uint64_t inversions = sortCounting(items, scratch, before);
  if (inversions != 0) permuteRows(list, items);
  // Kept: the count of exchanges has 16 bits and a sign.
  return static_cast<std::int16_t>(inversions);
}

int sortByName(char *list, int rows) {
  const std::size_t prefix = commonPrefix(list, static_cast<std::size_t>(rows));
  const auto keyOf = [prefix](const char *row) { return keyAt(row, prefix); };
  const auto before = [list, prefix](const SortItem &a, const SortItem &b) {
    if (a.key != b.key || keyHoldsEnd(a.key)) [[likely]]
      return a.key < b.key;
    return compareFrom(rowAt(list, a.row), rowAt(list, b.row), prefix + kKeySize) < 0;
  };
  return sortRows(list, rows, keyOf, before);
}

int sortBySize(char *list, int rows) {
  const auto keyOf = [](const char *row) {
    char path[kRowSize];
    copyText(path, row);
    return std::numeric_limits<std::uint64_t>::max() - lengthOf(path);
  };
  const auto before = [](const SortItem &a, const SortItem &b) { return a.key < b.key; };
  return sortRows(list, rows, keyOf, before);
}

}  // namespace
}  // namespace korvel::files

using namespace korvel::files;

int Dir_SortFiles(char *list, int rows) {
  lookForMisuse([=] { needsRows(Call("Dir_SortFiles", {filled(list), rows}), list, rows); });
  return list == nullptr || rows < 2 ? 0 : sortByName(list, rows);
}

int Dir_SortSizeFiles(char *list, int rows) {
  lookForMisuse([=] { needsRows(Call("Dir_SortSizeFiles", {filled(list), rows}), list, rows); });
  return list == nullptr || rows < 2 ? 0 : sortBySize(list, rows);
}
