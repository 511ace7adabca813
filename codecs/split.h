// SPDX-License-Identifier: MIT
// For codecs/: the integral part of a real, for the writers and for splitting.
#ifndef KORVEL_CODECS_SPLIT_H
#define KORVEL_CODECS_SPLIT_H

namespace korvel::codecs {

inline constexpr double kIntegralMax = 2147483647.0;
inline constexpr double kIntegralMin = -2147483648.0;

// Truncated toward zero and clamped to 32 bits; 0 for NaN.
inline double integralPart(double x) {
  if (x >= kIntegralMax) return kIntegralMax;
  if (x <= kIntegralMin) return kIntegralMin;
  // x is now within the bounds, or NaN.
  return x == x ? static_cast<double>(static_cast<int>(x)) : 0.0;
}

}  // namespace korvel::codecs

#endif
