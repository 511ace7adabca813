// SPDX-License-Identifier: MIT
// Picture files of any bytes, read and drawn.
#include <string>

#include "tests/fuzz/module.h"
#include "tests/fuzz/target.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {
namespace {

constexpr long long kMostPixels = 1 << 28;

void draw(const platform::Picture &picture, int x) {
  static platform::Port &port = *module().newImage(64, 64).release();
  port.drawPicture(picture, x, x);
  require(port.pixel(63, 63).has_value());
}

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace korvel::test;
  if (size == 0) return 0;
  static auto &folder = *new TemporaryFolder;
  const bool isSvg = data[0] == '<';
  const std::string path =
      folder.add(isSvg ? "picture.svg" : "picture.png", std::string(data, data + size));
  const auto picture = module().loadPicture(path);
  if (picture == nullptr) return 0;
  const long long width = picture->width();
  const long long height = picture->height();
  require(width >= 0 && height >= 0 && (width == 0) == (height == 0));
  require(width * height <= kMostPixels);
  draw(*picture, 0);
  draw(*picture, -3);
  return 0;
}
