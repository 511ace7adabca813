// SPDX-License-Identifier: MIT
// The palette of 16 colours, KorvelBlack to KorvelWhite: any number leads to one of them.
#include "draw/palette.h"

#include <iterator>

#include <korvel/draw.h>

#include "draw/misuse.h"

namespace korvel::draw {
namespace {

constexpr RGBColor kPalette[] = {
    {0x0000, 0x0000, 0x0000}, {0x8000, 0x0000, 0x0000},  //
    {0x0000, 0x8000, 0x0000}, {0x8000, 0x8000, 0x0000},  //
    {0x0000, 0x0000, 0x8000}, {0x8000, 0x0000, 0x8000},  //
    {0x0000, 0x8000, 0x8000}, {0x8000, 0x8000, 0x8000},  //
    {0xC000, 0xC000, 0xC000}, {0xFFFF, 0x0000, 0x0000},  //
    {0x0000, 0xFFFF, 0x0000}, {0xFFFF, 0xFFFF, 0x0000},  //
    {0x0000, 0x0000, 0xFFFF}, {0xFFFF, 0x0000, 0xFFFF},  //
    {0x0000, 0xFFFF, 0xFFFF}, {0xFFFF, 0xFFFF, 0xFFFF},
};
static_assert(std::size(kPalette) == KorvelColours);

}  // namespace

RGBColor paletteColour(int index) { return kPalette[static_cast<unsigned>(index) % KorvelColours]; }

}  // namespace korvel::draw

using namespace korvel::draw;

RGBColor *vga_col(RGBColor *out, int index) {
  lookForMisuse([=] { Call("vga_col", {filled(out), index}).needsAll(); });
  if (out != nullptr) *out = paletteColour(index);
  return out;
}
