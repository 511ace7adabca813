// SPDX-License-Identifier: MIT
// Sizes and places in pixels, of dialogs, button pairs and fields.
#include "dialogs/layout.h"

#include <algorithm>

namespace korvel::dialogs {

namespace {

constexpr int kButtonWidth = 80;
constexpr int kWideButtonWidth = 100;
constexpr int kButtonHeight = 20;
constexpr int kButtonsAboveFoot = 34;
constexpr int kButtonFromMiddle = 10;

int buttonWidth(bool longLabels) { return longLabels ? kWideButtonWidth : kButtonWidth; }

int shownSide(long long pixels, int roomForButtons) {
  return pixels <= 0 ? roomForButtons : static_cast<int>(std::min<long long>(pixels, kLargestSide));
}

void hold(int &from, int &to) {
  const int length = std::clamp(to - from, 0, kLargestSide);
  from = std::clamp(from, 0, kLargestSide - length);
  to = from + length;
}

}  // namespace

Size shownSize(int cx, int cy, bool longLabels) {
  const int roomAcross = 2 * (buttonWidth(longLabels) + 2 * kButtonFromMiddle);
  const int roomDown = 2 * kButtonsAboveFoot - kButtonHeight;
  return {shownSide(2LL * cx, roomAcross), shownSide(7LL * cy / 4, roomDown)};
}

Rect heldInside(Rect rect, const Size &dialog) {
  if (dialog.width == kLargestSide) hold(rect.left, rect.right);
  if (dialog.height == kLargestSide) hold(rect.top, rect.bottom);
  return rect;
}

ButtonPair buttonPair(const Size &dialog, bool longLabels) {
  const int width = buttonWidth(longLabels);
  const int top = dialog.height - kButtonsAboveFoot;
  const int bottom = top + kButtonHeight;
  const int left = dialog.width / 2 - width - kButtonFromMiddle;
  const int right = dialog.width / 2 + kButtonFromMiddle;
  return {{left, top, left + width, bottom}, {right, top, right + width, bottom}};
}

Rect fieldRect(const FieldType &type, int i) {
  const int left = pixelsAcross(type.place.x[i]);
  const int top = pixelsDown(type.place.y[i]);
  return {left, top, left + pixelsAcross(type.place.cx[i]), top + pixelsHigh(type.place.cy[i])};
}

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int Dlg_CoefX(int x) { return pixelsAcross(x); }
int Dlg_CoefCX(int cx) { return pixelsAcross(cx); }
int Dlg_CoefY(int y) { return pixelsDown(y); }
int Dlg_CoefCY(int cy) { return pixelsHigh(cy); }
