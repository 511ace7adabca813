// SPDX-License-Identifier: MIT
// For files/sorting.cpp: a stable sort that counts the inversions.
//
// Bubble sort makes exactly one exchange of neighbours per inversion, a pair of elements in the
// wrong order. A merge sort gives the same order and counts them faster: an element that is merged
// in front of n others ends n inversions.
#ifndef KORVEL_FILES_INVERSIONS_H
#define KORVEL_FILES_INVERSIONS_H

#include <algorithm>
#include <cstdint>
#include <span>

namespace korvel::files {

// An element to sort: `key` decides or, between equal keys, the content of row number `row`.
struct SortItem {
  std::uint64_t key;
  std::uint64_t row;
};

template <typename Before>
std::uint64_t insertionSort(SortItem *items, std::size_t count, Before before) {
  std::uint64_t inversions = 0;
  for (std::size_t i = 1; i < count; ++i) {
    const SortItem item = items[i];
    std::size_t place = i;
    for (; place > 0 && before(item, items[place - 1]); --place) items[place] = items[place - 1];
    items[place] = item;
    inversions += i - place;
  }
  return inversions;
}

// Merges two sorted neighbours, [left, right) and [right, end), into `out`. Branch-free: which side
// comes next is random in real data.
template <typename Before>
std::uint64_t mergeNeighbours(const SortItem *left, const SortItem *right, const SortItem *end,
                              SortItem *out, Before before) {
  const SortItem *const middle = right;
  std::uint64_t inversions = 0;
  while (left < middle && right < end) {
    const bool takesRight = before(*right, *left);
    *out++ = *(takesRight ? right : left);
    inversions += static_cast<std::uint64_t>(middle - left) & (0 - std::uint64_t{takesRight});
    right += takesRight;
    left += !takesRight;
  }
  out = std::copy(left, middle, out);
  std::copy(right, end, out);
  return inversions;
}

// Sorts `items` with the help of as much `scratch` and returns the number of inversions. `before`
// is a strict order.
template <typename Before>
std::uint64_t sortCounting(std::span<SortItem> items, std::span<SortItem> scratch, Before before) {
  constexpr std::size_t kRun = 8;
  const std::size_t count = items.size();
  std::uint64_t inversions = 0;
  for (std::size_t i = 0; i < count; i += kRun)
    inversions += insertionSort(items.data() + i, std::min(kRun, count - i), before);
  SortItem *from = items.data();
  SortItem *to = scratch.data();
  for (std::size_t width = kRun; width < count; width *= 2, std::swap(from, to)) {
    for (std::size_t i = 0; i < count; i += 2 * width) {
      const SortItem *middle = from + std::min(i + width, count);
      const SortItem *end = from + std::min(i + 2 * width, count);
      inversions += mergeNeighbours(from + i, middle, end, to + i, before);
    }
  }
  if (from != items.data()) std::copy(from, from + count, items.data());
  return inversions;
}

}  // namespace korvel::files

#endif
