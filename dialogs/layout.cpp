// Places in pixels. A unit is 2 pixels across; down it is 7/4 of a pixel in places and 5/4 in
// heights, truncated toward zero.
#include "dialogs/layout.h"

#include <algorithm>

int Dlg_CoefX(int x) { return static_cast<int>(2LL * x); }
int Dlg_CoefCX(int cx) { return Dlg_CoefX(cx); }
int Dlg_CoefY(int y) { return static_cast<int>(7LL * y / 4); }
int Dlg_CoefCY(int cy) { return static_cast<int>(5LL * cy / 4); }

namespace korvel::dialogs {

namespace {

constexpr int kButtonWidth = 80;
constexpr int kWideButtonWidth = 100;
constexpr int kButtonHeight = 20;
constexpr int kButtonsAboveFoot = 34;
constexpr int kButtonFromMiddle = 10;
constexpr int kPopUpHeight = 14;
constexpr int kLowestStaticText = 15;

struct Span {
  int from;
  int to;
};
constexpr Span kDateParts[] = {{0, 20}, {30, 50}, {60, 100}};

Rect withHeight(Rect rect, int height) {
  rect.bottom = rect.top + height;
  return rect;
}

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
  const int okLeft = dialog.width / 2 - width - kButtonFromMiddle;
  const int cancelLeft = dialog.width / 2 + kButtonFromMiddle;
  const int bottom = top + kButtonHeight;
  return {{okLeft, top, okLeft + width, bottom}, {cancelLeft, top, cancelLeft + width, bottom}};
}

Rect fieldRect(const Family &family, int i) {
  const int left = Dlg_CoefX(family.x[i]);
  const int top = Dlg_CoefY(family.y[i]);
  return {left, top, left + Dlg_CoefCX(family.cx[i]), top + Dlg_CoefCY(family.cy[i])};
}

Rect popUpRect(int i) { return withHeight(fieldRect(kTexts, i), kPopUpHeight); }

Rect dateRect(int i) {
  Rect rect = fieldRect(kDates, i);
  rect.right = rect.left + kDateParts[2].to;
  return rect;
}

std::array<Rect, 3> dateParts(const Rect &date) {
  std::array<Rect, 3> rects;
  for (std::size_t part = 0; part < rects.size(); ++part) {
    rects[part] = {date.left + kDateParts[part].from, date.top, date.left + kDateParts[part].to,
                   date.bottom};
  }
  return rects;
}

Rect groupBoxRect(int i) {
  const Rect rect = fieldRect(kStatics, i);
  return withHeight(rect, rect.height() * 14 / 10);
}

Rect staticTextRect(int i) {
  const Rect rect = fieldRect(kStatics, i);
  return withHeight(rect, std::max(rect.height(), kLowestStaticText));
}

Rect iconRect(int i) { return withHeight(fieldRect(kStatics, i), 2 * SDB_cy[i]); }

}  // namespace korvel::dialogs
