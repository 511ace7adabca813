// SPDX-License-Identifier: MIT
// The palette of 16 colours.
#include <climits>

#include <gtest/gtest.h>

#include <korvel/draw.h>

namespace {

struct Entry {
  int index;
  unsigned short red, green, blue;
};

void PrintTo(const Entry &entry, std::ostream *out) { *out << "index " << entry.index; }

class Palette : public testing::TestWithParam<Entry> {};

TEST_P(Palette, HasTheColour) {
  const Entry &expected = GetParam();
  RGBColor colour{1, 2, 3};
  EXPECT_EQ(vga_col(&colour, expected.index), &colour);
  EXPECT_EQ(colour.red, expected.red);
  EXPECT_EQ(colour.green, expected.green);
  EXPECT_EQ(colour.blue, expected.blue);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, Palette,
    testing::Values(Entry{0, 0x0000, 0x0000, 0x0000}, Entry{1, 0x8000, 0x0000, 0x0000},
                    Entry{2, 0x0000, 0x8000, 0x0000}, Entry{3, 0x8000, 0x8000, 0x0000},
                    Entry{4, 0x0000, 0x0000, 0x8000}, Entry{5, 0x8000, 0x0000, 0x8000},
                    Entry{6, 0x0000, 0x8000, 0x8000}, Entry{7, 0x8000, 0x8000, 0x8000},
                    Entry{8, 0xC000, 0xC000, 0xC000}, Entry{9, 0xFFFF, 0x0000, 0x0000},
                    Entry{10, 0x0000, 0xFFFF, 0x0000}, Entry{11, 0xFFFF, 0xFFFF, 0x0000},
                    Entry{12, 0x0000, 0x0000, 0xFFFF}, Entry{13, 0xFFFF, 0x0000, 0xFFFF},
                    Entry{14, 0x0000, 0xFFFF, 0xFFFF}, Entry{15, 0xFFFF, 0xFFFF, 0xFFFF}));

INSTANTIATE_TEST_SUITE_P(IndexesWrap, Palette,
                         testing::Values(
                             // 16 is black again, 25 pure red.
                             Entry{16, 0x0000, 0x0000, 0x0000}, Entry{25, 0xFFFF, 0x0000, 0x0000},
                             Entry{255, 0xFFFF, 0xFFFF, 0xFFFF},
                             Entry{INT_MAX, 0xFFFF, 0xFFFF, 0xFFFF},
                             // Below 0, too: there is nothing in front of the table.
                             Entry{-1, 0xFFFF, 0xFFFF, 0xFFFF}, Entry{-7, 0xFFFF, 0x0000, 0x0000},
                             Entry{-16, 0x0000, 0x0000, 0x0000},
                             Entry{INT_MIN, 0x0000, 0x0000, 0x0000}));

TEST(PaletteNull, DoesNothing) { EXPECT_EQ(vga_col(nullptr, 3), nullptr); }

}  // namespace
