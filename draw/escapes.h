// For draw/ only: the escapes of rich text, one row per code.
#ifndef KORVEL_DRAW_ESCAPES_H
#define KORVEL_DRAW_ESCAPES_H

#include <array>
#include <cstddef>

namespace korvel::draw {

constexpr unsigned char kEscape = 255;

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
  const char *picture = nullptr;
};

struct EscapeCode {
  unsigned char code;
  Escape escape;
};

constexpr EscapeCode kEscapeCodes[] = {
    {128, {Effect::TabTo, 1}},
    {129, {Effect::TabEvery, 1}},
    {130, {Effect::AlignOff}},
    {131, {Effect::AlignRight}},
    {133, {Effect::TabTo, 2}},
    {134, {Effect::TabEvery, 2}},
    {138, {Effect::Bullet}},
    {148, {Effect::Picture, 0, "repferb"}},
    {149, {Effect::Picture, 0, "repouvb"}},
    {150, {Effect::Picture, 0, "repferr"}},
    {151, {Effect::Picture, 0, "repouvr"}},
    {152, {Effect::Picture, 0, "repferv"}},
    {153, {Effect::Picture, 0, "repouvv"}},
    {154, {Effect::Picture, 0, "repferj"}},
    {155, {Effect::Picture, 0, "repouvj"}},
    {156, {Effect::Picture, 0, "repfero"}},
    {157, {Effect::Picture, 0, "repouvo"}},
    {158, {Effect::Picture, 0, "repfebb"}},
    {159, {Effect::Picture, 0, "repfebr"}},
    {160, {Effect::Picture, 0, "repferl"}},
    {161, {Effect::Picture, 0, "repouvl"}},
    {168, {Effect::Picture, 0, "puceb"}},
    {200, {Effect::SetPen, 1}},
    {201, {Effect::SetPen, 2}},
    {202, {Effect::Line, 1}},
    {203, {Effect::Line, 2}},
    {211, {Effect::SetPen, 1}},
    {212, {Effect::SetPen, 2}},
    {213, {Effect::Frame, 1}},
    {214, {Effect::Frame, 2}},
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
