// SPDX-License-Identifier: MIT
// For tests/platform/: contrast as the web accessibility guidelines define it.
#ifndef KORVEL_TESTS_PLATFORM_CONTRAST_H
#define KORVEL_TESTS_PLATFORM_CONTRAST_H

#include <algorithm>
#include <cmath>

#include <QColor>

namespace korvel::test {

inline double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

inline double luminance(const QColor &color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

inline double contrast(const QColor &a, const QColor &b) {
  const double lighter = std::max(luminance(a), luminance(b));
  const double darker = std::min(luminance(a), luminance(b));
  return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace korvel::test

#endif
