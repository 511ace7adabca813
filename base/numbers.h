// SPDX-License-Identifier: MIT
// For dates/, profile/, platform/ and draw/: numbers that have to fit an int.
#ifndef KORVEL_BASE_NUMBERS_H
#define KORVEL_BASE_NUMBERS_H

#include <algorithm>
#include <cstdint>
#include <limits>

namespace korvel::base {

// The nearest number that an int holds.
constexpr int clampToInt(std::int64_t number) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

}  // namespace korvel::base

#endif
