// Reals split into integral part and fraction.
#include "codecs/split.h"

#include <bit>
#include <cstdint>

#include <korvel/codecs.h>

namespace {

constexpr unsigned kMantissaBits = 23;
constexpr std::uint32_t kMantissaMask = (1U << kMantissaBits) - 1;

// The mantissa bits below the radix point cleared, by the exponent of the value.
float clearedBelowPoint(float x) {
  const auto bits = std::bit_cast<std::uint32_t>(x);
  const int exponent = static_cast<int>((bits >> kMantissaBits) & 0xFFU) - 127;
  if (exponent < 0) return 0.0F;
  if (exponent >= static_cast<int>(kMantissaBits)) return x;
  return std::bit_cast<float>(bits & ~(kMantissaMask >> static_cast<unsigned>(exponent)));
}

}  // namespace

void utrealds(const double *x, double *integral, double *fraction) {
  if (x == nullptr || integral == nullptr || fraction == nullptr) return;
  const double whole = *x;
  const double part = korvel::codecs::integralPart(whole);
  *integral = part;
  *fraction = whole - part;
}

void utrealfs(const float *x, float *integral, float *fraction) {
  if (x == nullptr || integral == nullptr || fraction == nullptr) return;
  const float whole = *x;
  const float part = clearedBelowPoint(whole);
  *integral = part;
  *fraction = whole - part;
}
