// SPDX-License-Identifier: MIT
// Misuse of drawing: ports that are gone, colours that are not in the palette, texts too long.
#include "draw/misuse.h"

#include <iterator>

#include <korvel/draw.h>

#include "base/views.h"
#include "draw/ports.h"
#include "draw/text.h"

namespace korvel::draw {

using base::Quoted;

namespace {

// A picture's name may be as long.
constexpr std::size_t kLongestName = 255;

bool isIndex(int colour) { return colour >= KorvelBlack && colour < KorvelColours; }

void needsIndex(const Call &call, int colour) {
  call.misusedIf(!isIndex(colour), {"there is no colour ", colour, ": 0 to ", KorvelColours - 1});
}

void needsSize(const Call &call, int size) {
  call.misusedIf(size < 1, {"a size of ", size, " points counts as 12"});
  call.misusedIf(size > 1000, {"a size of ", size, " points counts as 1000"});
}

bool isGone(CGrafPtr port) {
  return base::guarded(true, [&] { return surfaceOf(port) == nullptr; });
}

}  // namespace

void needsPort(const Call &call, CGrafPtr port) {
  call.needsAll();
  call.misusedIf(call && isGone(port), {"the port is given back, or gone with its window"});
}

void needsText(const Call &call, CGrafPtr port, const char *text, int len) {
  call.misusedIf(len < 0, {"there is no length ", len});
  needsPort(call, port);
  // One with an escape, whose byte 255 UTF-8 does not have, is not looked at.
  needsCp1252(call, "the text", base::bytesOf(text, len));
}

void needsRun(const Call &call, CGrafPtr port, const char *text, int len) {
  call.misusedIf(len > kLongestRun,
                 {"a text of ", len, " bytes is not drawn: at most ", kLongestRun, " are"});
  needsText(call, port, text, len);
}

void needsColour(const Call &call, CGrafPtr port, int colour) {
  needsPort(call, port);
  needsIndex(call, colour);
}

void needsStyle(const Call &call, CGrafPtr port, int fore, int back, int size) {
  needsColour(call, port, fore);
  if (back != KorvelTransparent) needsIndex(call, back);
  needsSize(call, size);
}

void needsFont(const Call &call, CGrafPtr port, const char *name, int fore, int back, int size) {
  const std::string_view text = base::textOf(name);
  if (name == nullptr) return call.needsAll();
  if (text.empty()) return;
  needsCp1252(call, "the name", text);
  needsFit(call, "the name", text.size(), std::size(ch_font_FontName) - 1);
  needsStyle(call, port, fore, back, size);
}

void needsPrinted(const Call &call, CGrafPtr port, const char *text, int fore, int back, int size) {
  needsStyle(call, port, fore, back, size);
  needsCp1252(call, "the text", base::textOf(text));
}

void needsCurrentPort(const Call &call) {
  call.misusedIf(isGone(currentPort()), {"no port is current: SetPort makes one so"});
}

void needsPen(const Call &call, CGrafPtr port, int width) {
  needsPort(call, port);
  call.misusedIf(width < 1, {"a line of ", width, " pixels shows nothing"});
}

void needsLine(const Call &call, CGrafPtr port, int colour, int width) {
  needsPen(call, port, width);
  needsIndex(call, colour);
}

void needsRectangle(const Call &call, CGrafPtr port, int cx, int cy, int colour) {
  needsColour(call, port, colour);
  call.misusedIf(cx < 1 || cy < 1, {"a rectangle of ", cx, " by ", cy, " pixels shows nothing"});
}

void needsImageSize(const Call &call, int width, int height) {
  constexpr int kLongestSide = 32767;
  constexpr long long kMostPixels = 1 << 28;
  for (const int side : {width, height}) {
    call.misusedIf(side < 1 || side > kLongestSide,
                   {"an image has no side of ", side, " pixels: 1 to ", kLongestSide});
  }
  const long long pixels = static_cast<long long>(width) * height;
  call.misusedIf(pixels > kMostPixels,
                 {"an image has at most ", kMostPixels, " pixels, and not ", pixels});
}

void needsMade(const Call &call, CGrafPtr port) {
  call.needsAll();
  call.misusedIf(port == nullptr, {"there is no such window, or no desktop"});
}

void needsOwnPort(const Call &call, CGrafPtr port, bool isOwn) {
  needsPort(call, port);
  call.misusedIf(!isOwn, {"a window's port belongs to its window"});
}

void needsPortOrNull(const Call &call, CGrafPtr port) {
  if (port != nullptr) needsPort(call, port);
}

void needsFile(const Call &call, CGrafPtr port, const char *path) {
  needsPort(call, port);
  needsPosixPath(call, base::textOf(path));
}

void needsSaved(const Call &call, bool isSaved) {
  call.misusedIf(!isSaved,
                 {"nothing is saved: the file cannot be written, or it is a painter's port"});
}

void needsPixel(const Call &call, int x, int y, bool isThere) {
  call.misusedIf(!isThere, {"the port has no pixel at ", x, ", ", y,
                            ", or it is a painter's: nothing is read"});
}

void needsPictureName(const Call &call, const char *name) {
  const std::string_view text = base::textOf(name);
  call.needsAll();
  call.misusedIf(text.size() > kLongestName,
                 {"a picture's name has at most ", kLongestName, " characters"});
  needsCp1252(call, "the name", text);
}

void needsPictureOn(const Call &call, const char *name, CGrafPtr port) {
  needsPictureName(call, name);
  needsPort(call, port);
}

void needsPicture(const Call &call, const char *name, bool isThere) {
  call.misusedIf(!isThere, {"there is no picture ", Quoted(base::textOf(name)),
                            " in the folder pictures of the resources"});
}

}  // namespace korvel::draw
