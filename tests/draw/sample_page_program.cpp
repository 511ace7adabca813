// SPDX-License-Identifier: MIT
// sample_page_program <png>: draws the sample page and saves it as the reference of its test:
//
//   build/release/tests/draw/sample_page_program tests/draw/pictures/sample_page.png
#include <cstdio>

#include <korvel/desktop.h>

#include "tests/draw/sample_page.h"

int main(int argc, char **argv) {
  using namespace korvel::test;
  if (argc != 2) return 2;
  CGrafPtr page = KorvelImagePort(kPageWidth, kPageHeight);
  drawSamplePage(page);
  if (KorvelPortSave(page, argv[1]) == 0) {
    std::fprintf(stderr, "cannot save %s\n", argv[1]);
    return 1;
  }
  KorvelPortRelease(page);
  return 0;
}
