// SPDX-License-Identifier: MIT
// For tests/: a buffer that proves what a function wrote and what it left alone.
#ifndef KORVEL_TESTS_SUPPORT_POISONED_BUFFER_H
#define KORVEL_TESTS_SUPPORT_POISONED_BUFFER_H

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace korvel::test {

// `capacity` writable bytes between two guard zones, everything filled with a pattern. The
// capacity is known at run time so that one test can walk over all of them.
class PoisonedBuffer {
 public:
  explicit PoisonedBuffer(std::size_t capacity)
      : capacity_(capacity), bytes_(capacity + 2 * kGuard.size(), kPoison) {
    std::copy(kGuard.begin(), kGuard.end(), bytes_.begin());
    std::copy(kGuard.begin(), kGuard.end(), data() + capacity);
  }
  // Holds `text` and its terminator; what is after that stays poisoned.
  PoisonedBuffer(std::size_t capacity, std::string_view text) : PoisonedBuffer(capacity) {
    std::copy(text.begin(), text.end(), data());
    if (text.size() < capacity) data()[text.size()] = '\0';
  }

  char *data() { return bytes_.data() + kGuard.size(); }
  int capacity() const { return static_cast<int>(capacity_); }

  // The text up to the first NUL within the capacity.
  std::string_view text() const {
    const char *begin = bytes_.data() + kGuard.size();
    return {begin, static_cast<std::size_t>(std::find(begin, begin + capacity_, '\0') - begin)};
  }
  // True while nothing before or after the capacity was written.
  bool guardsIntact() const {
    return std::equal(kGuard.begin(), kGuard.end(), bytes_.begin()) &&
           std::equal(kGuard.rbegin(), kGuard.rend(), bytes_.rbegin());
  }
  // True while no byte from `from` on (inside the capacity) was written.
  bool untouchedFrom(std::size_t from) const {
    const char *begin = bytes_.data() + kGuard.size();
    return std::all_of(begin + from, begin + capacity_, [](char c) { return c == kPoison; });
  }

 private:
  // All different: bytes that are moved over it change it.
  static constexpr std::string_view kGuard = "ABCDEFGHIJKLMNOPQRSTUVWXY1234567";
  static constexpr char kPoison = '\x5A';

  std::size_t capacity_;
  std::vector<char> bytes_;
};

}  // namespace korvel::test

#endif
