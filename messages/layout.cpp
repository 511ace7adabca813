// SPDX-License-Identifier: MIT
// A message's lines and the layout of its box, by themselves, so that tests need no desktop.
#include "messages/layout.h"

#include <algorithm>

namespace korvel::messages {
namespace {

constexpr int kWidestColumn = 50;
constexpr int kLeastLines = 2;
constexpr char kLineEnd = '\r';

constexpr int kNarrow = 400;
constexpr int kWide = 540;
constexpr std::size_t kLongText = 51;

constexpr int kButtonWidth = 80;
constexpr int kFirstFromRight = 200;
constexpr int kLastFromRight = 100;
constexpr int kNarrowest = kFirstFromRight + kLastFromRight - kButtonWidth;
constexpr int kButtonTopFromBottom = 32;
constexpr int kButtonFoot = 12;

constexpr int kTextLeft = 80;
// As near to the lines and the buttons as possible: two lines remain whole above a scroll bar.
constexpr int kPaneTop = 12;
constexpr int kPaneRightMargin = 8;
constexpr int kPaneFoot = 35;

// Room for the window's frame: no desktop says beforehand how high that is.
constexpr int kTitleBar = 32;

bool isLineEnd(char character) { return character == '\r' || character == '\n'; }

// French sets a space before a colon; a line must not begin with the colon or with a comma.
bool mayNotBeginLine(char character) { return character == ':' || character == ','; }

Rect buttonAt(int left, int height) {
  return {left, height - kButtonTopFromBottom, left + kButtonWidth, height - kButtonFoot};
}

}  // namespace

int wrapLines(std::string &text) {
  int lines = 1;
  int column = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    // Kept: a carriage return and line feed pair ends two lines, and a line end is itself counted
    // in the column.
    if (isLineEnd(text[i])) {
      text[i] = kLineEnd;
      ++lines;
      column = 0;
    }
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (text[i] == ' ' && !mayNotBeginLine(next) && column > kWidestColumn) {
      text[i] = kLineEnd;
      ++lines;
      column = 1;
    } else {
      ++column;
    }
  }
  return std::max(lines, kLeastLines);
}

int boxWidth(std::size_t captionLength, std::size_t textLength, int most) {
  const int width = std::max(captionLength, textLength) < kLongText ? kNarrow : kWide;
  return most < 1 ? width : std::min(width, std::max(most, kNarrowest));
}

int boxHeight(Kind kind, int lines, int most) {
  const int perLine = kind == Kind::Question ? 20 : 14;
  const int more = kind == Kind::Question ? 50 : 62;
  const long long height = 1LL * std::max(lines, 1) * perLine + more;
  return static_cast<int>(std::min<long long>(height, std::max(most, perLine + more)));
}

int tallestOn(const Rect &screen) { return screen.height() - kTitleBar; }

Rect firstOfTwoButtons(int width, int height) { return buttonAt(width - kFirstFromRight, height); }

Rect lastButton(int width, int height) { return buttonAt(width - kLastFromRight, height); }

Rect textPane(int width, int height) {
  return {kTextLeft, kPaneTop, width - kPaneRightMargin, height - kPaneFoot};
}

}  // namespace korvel::messages
