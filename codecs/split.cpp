// SPDX-License-Identifier: MIT
// Reals split into integral part and fraction, doubles as the writers split them.
#include "codecs/split.h"

#include <cmath>

#include <korvel/codecs.h>

#include "codecs/misuse.h"

namespace korvel::codecs {

namespace {

template <typename Real>
void store(Real x, Real integralPart, Real *integral, Real *fraction) {
  *integral = integralPart;
  *fraction = x - integralPart;
}

}  // namespace

}  // namespace korvel::codecs

using namespace korvel::codecs;

void utrealds(const double *x, double *integral, double *fraction) {
  lookForMisuse([=] {
    Call("utrealds", {filled(x), filled(integral), filled(fraction)}).needsAll();
  });
  if (x == nullptr || integral == nullptr || fraction == nullptr) return;
  store(*x, integralPart(*x), integral, fraction);
}

void utrealfs(const float *x, float *integral, float *fraction) {
  lookForMisuse([=] {
    Call("utrealfs", {filled(x), filled(integral), filled(fraction)}).needsAll();
  });
  if (x == nullptr || integral == nullptr || fraction == nullptr) return;
  // The sum makes a 0 of -0.
  store(*x, std::trunc(*x) + 0.0F, integral, fraction);
}
