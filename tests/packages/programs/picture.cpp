// SPDX-License-Identifier: MIT
// An application in C++17 that draws: a picture of the default resources, which needs the desktop
// module, the resources and the toolkit's plugin for SVG where the packages put them.
#include <iostream>
#include <optional>

#include <korvel/korvel.h>

namespace {

std::optional<RGBColor> middleOf(const char *picture) {
  int width = 0;
  int height = 0;
  if (BMP_affic_dimfond0(picture, &width, &height) != 0) return {};
  const CGrafPtr port = KorvelImagePort(width, height);
  RGBColor colour{};
  if (BMP_affic_desfond0(picture, port, 0, 0) != 0) return {};
  if (KorvelPortPixel(port, width / 2, height / 2, &colour) != 1) return {};
  KorvelPortRelease(port);
  return colour;
}

}  // namespace

int main() {
  const std::optional<RGBColor> colour = middleOf("puceb");
  if (!colour) return 1;
  const bool isBlue = colour->blue > colour->red;
  std::cout << (isBlue ? "blue" : "not blue") << '\n';
  return isBlue ? 0 : 1;
}
