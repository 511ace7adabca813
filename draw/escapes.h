// SPDX-License-Identifier: MIT
// For draw/: the escapes of rich text. A new code is a new row.
#ifndef KORVEL_DRAW_ESCAPES_H
#define KORVEL_DRAW_ESCAPES_H

#include <array>
#include <cstddef>

#include <korvel/draw.h>

namespace korvel::draw {

enum class Effect : unsigned char {
  None,
  TabTo,
  TabEvery,
  AlignRight,
  AlignOff,
  Bullet,
  Picture,
  SetPen,
  Line,
  Frame,
};

struct Escape {
  Effect effect = Effect::None;
  unsigned char argumentSize = 0;  // bytes of each argument
  char picture[8] = "";  // its name; not an address, which would have to be put in at load
};

struct EscapeCode {
  unsigned char code;
  Escape escape;
};

constexpr EscapeCode kEscapeCodes[] = {
    {KorvelTabEscape, {Effect::TabTo, 1}},
    {KorvelTabEveryEscape, {Effect::TabEvery, 1}},
    {KorvelLeftAlignEscape, {Effect::AlignOff}},
    {KorvelRightAlignEscape, {Effect::AlignRight}},
    {KorvelWideTabEscape, {Effect::TabTo, 2}},
    {KorvelWideTabEveryEscape, {Effect::TabEvery, 2}},
    {KorvelBulletEscape, {Effect::Bullet}},
    {KorvelBlueFolderEscape, {Effect::Picture, 0, "repferb"}},
    {KorvelBlueOpenFolderEscape, {Effect::Picture, 0, "repouvb"}},
    {KorvelRedFolderEscape, {Effect::Picture, 0, "repferr"}},
    {KorvelRedOpenFolderEscape, {Effect::Picture, 0, "repouvr"}},
    {KorvelGreenFolderEscape, {Effect::Picture, 0, "repferv"}},
    {KorvelGreenOpenFolderEscape, {Effect::Picture, 0, "repouvv"}},
    {KorvelYellowFolderEscape, {Effect::Picture, 0, "repferj"}},
    {KorvelYellowOpenFolderEscape, {Effect::Picture, 0, "repouvj"}},
    {KorvelOrangeFolderEscape, {Effect::Picture, 0, "repfero"}},
    {KorvelOrangeOpenFolderEscape, {Effect::Picture, 0, "repouvo"}},
    {KorvelWhiteBlueFolderEscape, {Effect::Picture, 0, "repfebb"}},
    {KorvelWhiteRedFolderEscape, {Effect::Picture, 0, "repfebr"}},
    {KorvelLilacFolderEscape, {Effect::Picture, 0, "repferl"}},
    {KorvelLilacOpenFolderEscape, {Effect::Picture, 0, "repouvl"}},
    {KorvelDotEscape, {Effect::Picture, 0, "puceb"}},
    {KorvelPenEscape, {Effect::SetPen, 1}},
    {KorvelWidePenEscape, {Effect::SetPen, 2}},
    {KorvelLineEscape, {Effect::Line, 1}},
    {KorvelWideLineEscape, {Effect::Line, 2}},
    {KorvelOtherPenEscape, {Effect::SetPen, 1}},
    {KorvelOtherWidePenEscape, {Effect::SetPen, 2}},
    {KorvelFrameEscape, {Effect::Frame, 1}},
    {KorvelWideFrameEscape, {Effect::Frame, 2}},
};

constexpr std::size_t kCodes = 256;

constexpr std::array<Escape, kCodes> escapesByCode() {
  std::array<Escape, kCodes> escapes{};
  for (const EscapeCode &each : kEscapeCodes) escapes[each.code] = each.escape;
  return escapes;
}

// Indexed by the code; a code without a row has no arguments and no effect.
inline constexpr std::array<Escape, kCodes> kEscapes = escapesByCode();

}  // namespace korvel::draw

#endif
