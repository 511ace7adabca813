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

}  // namespace

Rect centredOn(const Rect &parent, int width, int height) {
  const auto left =
      static_cast<int>((static_cast<long long>(parent.left) + parent.right - width) / 2);
  const auto top =
      static_cast<int>((static_cast<long long>(parent.top) + parent.bottom - height) / 2);
  return {left, top, static_cast<int>(static_cast<long long>(left) + width),
          static_cast<int>(static_cast<long long>(top) + height)};
}

ButtonPair buttonPair(int width, int height, bool longLabels) {
  const int buttonWidth = longLabels ? kWideButtonWidth : kButtonWidth;
  const auto top = static_cast<int>(static_cast<long long>(height) - kButtonsAboveFoot);
  const int okLeft = width / 2 - buttonWidth - kButtonFromMiddle;
  const int cancelLeft = width / 2 + kButtonFromMiddle;
  const auto bottom = static_cast<int>(static_cast<long long>(top) + kButtonHeight);
  return {{okLeft, top, okLeft + buttonWidth, bottom},
          {cancelLeft, top, cancelLeft + buttonWidth, bottom}};
}

Rect fieldRect(const Family &family, int i) {
  const int left = Dlg_CoefX(family.x[i]);
  const int top = Dlg_CoefY(family.y[i]);
  return {left, top, left + Dlg_CoefCX(family.cx[i]), top + Dlg_CoefCY(family.cy[i])};
}

Rect popUpRect(int i) { return withHeight(fieldRect(kTexts, i), kPopUpHeight); }

std::array<Rect, 3> dateRects(int i) {
  const Rect whole = fieldRect(kDates, i);
  std::array<Rect, 3> rects;
  for (std::size_t part = 0; part < rects.size(); ++part) {
    rects[part] = {whole.left + kDateParts[part].from, whole.top, whole.left + kDateParts[part].to,
                   whole.bottom};
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
