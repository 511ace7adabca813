// For files/ only: sorting that counts the exchanges of neighbours which it saves.
//
// Passes of exchanges between neighbours, repeated until nothing is out of order, make exactly one
// exchange for each pair of elements whose order is wrong, and keep equal elements in their order.
// A stable merge sort gives the same order, and while it merges it sees how many elements each one
// overtakes: it counts the pairs without making the exchanges.
#ifndef KORVEL_FILES_EXCHANGES_H
#define KORVEL_FILES_EXCHANGES_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

namespace korvel::files {

// An element to sort: `key` decides, and only where two keys are equal, what `row` stands for.
struct SortItem {
  std::uint64_t key;
  std::uint64_t row;
};

// Sorts by insertion; every step of an element to the front is an exchange.
template <typename Before>
std::uint64_t insertAll(SortItem *items, std::size_t count, Before before) {
  std::uint64_t exchanges = 0;
  for (std::size_t i = 1; i < count; ++i) {
    const SortItem item = items[i];
    std::size_t place = i;
    for (; place > 0 && before(item, items[place - 1]); --place) items[place] = items[place - 1];
    items[place] = item;
    exchanges += i - place;
  }
  return exchanges;
}

// Merges two sorted neighbours, [left, right) and [right, end), into `out`. Which side comes next
// is as good as random, so it is computed, not branched on.
template <typename Before>
std::uint64_t mergeNeighbours(const SortItem *left, const SortItem *right, const SortItem *end,
                              SortItem *out, Before before) {
  const SortItem *const middle = right;
  std::uint64_t exchanges = 0;
  while (left < middle && right < end) {
    const bool takesRight = before(*right, *left);
    *out++ = *(takesRight ? right : left);
    exchanges += static_cast<std::uint64_t>(middle - left) & (0 - std::uint64_t{takesRight});
    right += takesRight;
    left += !takesRight;
  }
  out = std::copy(left, middle, out);
  std::copy(right, end, out);
  return exchanges;
}

// Sorts `items` with the help of as much `scratch` and returns the number of exchanges. `before`
// tells whether its first argument must stand before its second.
template <typename Before>
std::uint64_t sortCounting(std::span<SortItem> items, std::span<SortItem> scratch, Before before) {
  constexpr std::size_t kInserted = 8;
  const std::size_t count = items.size();
  std::uint64_t exchanges = 0;
  for (std::size_t i = 0; i < count; i += kInserted)
    exchanges += insertAll(items.data() + i, std::min(kInserted, count - i), before);
  SortItem *from = items.data();
  SortItem *to = scratch.data();
  for (std::size_t width = kInserted; width < count; width *= 2, std::swap(from, to)) {
    for (std::size_t i = 0; i < count; i += 2 * width) {
      const SortItem *middle = from + std::min(i + width, count);
      const SortItem *end = from + std::min(i + 2 * width, count);
      exchanges += mergeNeighbours(from + i, middle, end, to + i, before);
    }
  }
  if (from != items.data()) std::copy(from, from + count, items.data());
  return exchanges;
}

}  // namespace korvel::files

#endif
