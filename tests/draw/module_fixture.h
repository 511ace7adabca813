// SPDX-License-Identifier: MIT
// For tests/draw/: drawing on the desktop module itself, on its toolkit's platform without a
// screen, with the default pictures.
#ifndef KORVEL_TESTS_DRAW_MODULE_FIXTURE_H
#define KORVEL_TESTS_DRAW_MODULE_FIXTURE_H

#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "tests/draw/drawing_fixture.h"

namespace korvel::test {

class ModuleTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("KORVEL_DESKTOP", KORVEL_TEST_MODULE, 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("KORVEL_UNSEEN", "1", 1);
  }
  ModuleTest() { useResources(KORVEL_TEST_RESOURCES); }

  static void useResources(const char *resources) {
    std::memset(szResources, 0, sizeof szResources);
    std::strncpy(szResources, resources, sizeof szResources - 1);
  }

  DrawingGlobals globals;
};

// An image, released by the destructor.
class Image {
 public:
  Image(int width, int height) : port_(KorvelImagePort(width, height)) {
    EXPECT_NE(port_, nullptr);
  }
  ~Image() { KorvelPortRelease(port_); }
  Image(const Image &) = delete;
  Image &operator=(const Image &) = delete;

  CGrafPtr port() const { return port_; }

  // 0xRRGGBB; -1 outside.
  int pixel(int x, int y) const {
    RGBColor colour{};
    if (KorvelPortPixel(port_, x, y, &colour) == 0) return -1;
    return (colour.red >> 8) << 16 | (colour.green >> 8) << 8 | colour.blue >> 8;
  }

 private:
  const CGrafPtr port_;
};

}  // namespace korvel::test

#endif
