// SPDX-License-Identifier: MIT
// Rectangles of the seam: empty ones, and those in the middle of others.
#include "platform/geometry.h"

#include <gtest/gtest.h>

namespace korvel::platform {
namespace {

TEST(Geometry, ARectangleOfNothingIsEmptyInTheCorner) {
  EXPECT_EQ(Rect{}, (Rect{0, 0, 0, 0}));
  EXPECT_EQ(Rect{}.width(), 0);
  EXPECT_EQ(Rect{}.height(), 0);
}

TEST(Geometry, HalvesOfWhatIsLeftAreTruncated) {
  EXPECT_EQ(centredOn({10, 20, 40, 80}, 20, 30), (Rect{15, 35, 35, 65}));
  EXPECT_EQ(centredOn({0, 0, 9, 9}, 4, 6), (Rect{2, 1, 6, 7}));
  EXPECT_EQ(centredOn({0, 0, 4, 4}, 9, 7), (Rect{-2, -1, 7, 6}));
}

TEST(Geometry, NoCornerIsBelowTheLeast) {
  EXPECT_EQ(centredOn({0, 0, 4, 4}, 9, 2, 0), (Rect{0, 1, 9, 3}));
  EXPECT_EQ(centredOn({0, 0, 4, 4}, 2, 9, 0), (Rect{1, 0, 3, 9}));
}

}  // namespace
}  // namespace korvel::platform
