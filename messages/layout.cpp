#include "messages/layout.h"

#include <algorithm>

namespace korvel::messages {
namespace {

constexpr int kNarrow = 400;
constexpr int kWide = 540;
constexpr std::size_t kLongText = 51;

struct Heights {
  int ofLine;
  int more;
};
constexpr Heights kQuestionHeights{20, 50};
constexpr Heights kNoteHeights{14, 62};

constexpr int kButtonWidth = 80;
constexpr int kYesFromRight = 200;
constexpr int kLastFromRight = 100;  // "Non", and the one button of a note
constexpr int kNarrowest = kYesFromRight + kLastFromRight - kButtonWidth;
constexpr int kButtonTopFromBottom = 32;
constexpr int kButtonFoot = 12;

constexpr int kTextLeft = 80;
// As near to the lines and to the buttons as can be: two lines stay whole above a scroll bar.
constexpr int kPaneTop = 12;
constexpr int kPaneRightMargin = 8;
constexpr int kPaneFoot = 35;

// For the frame around a box, whose height no desktop tells beforehand.
constexpr int kTitleBar = 32;

Rect buttonAt(int fromRight, int width, int height) {
  const int left = width - fromRight;
  return {left, height - kButtonTopFromBottom, left + kButtonWidth, height - kButtonFoot};
}

// The corner on one axis; the sum of two edges may be beyond an int.
int centredCorner(int from, int to, int length) {
  return static_cast<int>(std::max(0LL, (0LL + from + to - length) / 2));
}

}  // namespace

int boxWidth(std::size_t captionLength, std::size_t textLength, int most) {
  const int told = captionLength < kLongText && textLength < kLongText ? kNarrow : kWide;
  return most < 1 ? told : std::min(told, std::max(most, kNarrowest));
}

int boxHeight(Kind kind, int lines, int most) {
  const Heights &heights = kind == Kind::Question ? kQuestionHeights : kNoteHeights;
  const long long told = 1LL * std::max(lines, 1) * heights.ofLine + heights.more;
  const int least = heights.ofLine + heights.more;
  return static_cast<int>(std::min<long long>(told, std::max(most, least)));
}

Rect centredOn(const Rect &owner, int width, int height) {
  const int left = centredCorner(owner.left, owner.right, width);
  const int top = centredCorner(owner.top, owner.bottom, height);
  return {left, top, left + width, top + height};
}

int tallestOn(const Rect &screen) { return screen.height() - kTitleBar; }

ButtonPair questionButtons(int width, int height) {
  return {buttonAt(kYesFromRight, width, height), buttonAt(kLastFromRight, width, height)};
}

Rect noteButton(int width, int height) { return buttonAt(kLastFromRight, width, height); }

Rect textPane(int width, int height) {
  return {kTextLeft, kPaneTop, width - kPaneRightMargin, height - kPaneFoot};
}

}  // namespace korvel::messages
