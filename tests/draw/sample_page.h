// SPDX-License-Identifier: MIT
// For tests/draw/: a page that shows everything the drawing functions can do.
#ifndef KORVEL_TESTS_DRAW_SAMPLE_PAGE_H
#define KORVEL_TESTS_DRAW_SAMPLE_PAGE_H

#include <korvel/types.h>

namespace korvel::test {

constexpr int kPageWidth = 360;
constexpr int kPageHeight = 262;

void drawSamplePage(CGrafPtr port);

}  // namespace korvel::test

#endif
