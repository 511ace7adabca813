// Reals split into integral part and fraction, doubles as the writers split them.
#include "codecs/split.h"

#include <cmath>

#include <korvel/codecs.h>

namespace korvel::codecs {

namespace {

// From 2^23 on a single has no fraction. Infinities and NaN stay.
float truncated(float x) {
  return std::fabs(x) < 0x1p23F ? static_cast<float>(static_cast<int>(x)) : x;
}

template <typename Real>
void store(Real x, Real integralPart, Real *integral, Real *fraction) {
  *integral = integralPart;
  *fraction = x - integralPart;
}

}  // namespace

}  // namespace korvel::codecs

using namespace korvel::codecs;

void utrealds(const double *x, double *integral, double *fraction) {
  if (x == nullptr || integral == nullptr || fraction == nullptr) return;
  store(*x, integralPart(*x), integral, fraction);
}

void utrealfs(const float *x, float *integral, float *fraction) {
  if (x == nullptr || integral == nullptr || fraction == nullptr) return;
  store(*x, truncated(*x), integral, fraction);
}
