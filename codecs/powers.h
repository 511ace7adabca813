// For codecs/: powers of ten in double precision, as repeated multiplication gives them.
#ifndef KORVEL_CODECS_POWERS_H
#define KORVEL_CODECS_POWERS_H

namespace korvel::codecs {

// The largest power of ten that a double holds is 10^kMaxPower.
inline constexpr int kMaxPower = 308;

// 10^n by n multiplications, infinite above kMaxPower; 1 for n below 1.
constexpr double tenTo(int n) {
  if (n > kMaxPower) n = kMaxPower + 1;
  double power = 1.0;
  for (int i = 0; i < n; ++i) power *= 10.0;
  return power;
}

}  // namespace korvel::codecs

#endif
