// SPDX-License-Identifier: MIT
// A model of rich text: pieces first, then what each of them draws or measures.
#include "tests/draw/literal_text.h"

#include <algorithm>
#include <map>

namespace korvel::test {
namespace {

constexpr RGBColor kBlack{0, 0, 0};
constexpr RGBColor kRed{0xFFFF, 0, 0};
constexpr int kRun = -1;  // the code of a piece without one

// The sizes of each escape's arguments in bytes; the pen's are text where nothing is drawn.
const std::map<int, std::vector<std::size_t>> kTabArguments = {
    {128, {1}}, {129, {1}}, {133, {2}}, {134, {2}}};
const std::map<int, std::vector<std::size_t>> kPenArguments = {
    {200, {1, 1}}, {202, {1, 1}}, {211, {1, 1}}, {213, {1, 1}},
    {201, {2, 2}}, {203, {2, 2}}, {212, {2, 2}}, {214, {2, 2}}};

const std::map<int, std::string> kPictures = {
    {148, "repferb"}, {149, "repouvb"}, {150, "repferr"}, {151, "repouvr"}, {152, "repferv"},
    {153, "repouvv"}, {154, "repferj"}, {155, "repouvj"}, {156, "repfero"}, {157, "repouvo"},
    {158, "repfebb"}, {159, "repfebr"}, {160, "repferl"}, {161, "repouvl"}, {168, "puceb"}};

const std::map<char, char> kMac = {{'\xB0', '\xA1'}, {'\xE0', '\x88'}, {'\xE7', '\x8D'},
                                   {'\xE8', '\x8F'}, {'\xE9', '\x8E'}, {'\xEA', '\x90'},
                                   {'\xEF', '\x95'}};

// A run on its way to the screen, where it is a C string.
std::string converted(const std::string &run) {
  std::string screen = run.substr(0, run.find('\0'));
  for (char &c : screen) c = kMac.contains(c) ? kMac.at(c) : c;
  return screen;
}

// The digits of an argument count 224 each, from the last.
int numberIn(const std::string &argument) {
  int number = 0;
  for (auto digit = argument.rbegin(); digit != argument.rend(); ++digit)
    number = number * 224 + static_cast<unsigned char>(*digit) - 32;
  return number;
}

std::vector<std::size_t> argumentsOf(int code, bool hasPen) {
  if (kTabArguments.contains(code)) return kTabArguments.at(code);
  return hasPen && kPenArguments.contains(code) ? kPenArguments.at(code)
                                                : std::vector<std::size_t>();
}

long long nextTabStop(long long x, int step) {
  if (step <= 0) return x;
  long long stop = 0;
  while (stop > x) stop -= step;
  while (stop <= x) stop += step;
  return stop;
}

int widthOf(const platform::Port &port, const std::string &run) {
  return run.size() > 255 ? 0 : port.textWidth(converted(run));
}

int unitOf(const platform::Port &port) { return std::max(widthOf(port, "X"), 8); }

void drawLine(platform::Port &port, int x1, int y1, int x2, int y2) {
  port.setForeground(kBlack);
  port.drawLine(x1, y1, x2, y2, 2);
}

void drawBullet(platform::Port &port, int x, int y, int side) {
  port.setForeground(kRed);
  port.fillRect({x, y, x + side, y + side});
  port.setForeground(kBlack);
  port.frameRect({x, y, x + side, y + side});
}

}  // namespace

// A run or an escape; of an escape's arguments those that are whole.
struct LiteralText::Piece {
  int code = kRun;
  std::string run = {};
  std::vector<int> arguments = {};
  bool isWhole = true;

  bool isTabTo() const { return code == 128 || code == 133; }
  bool isTabEvery() const { return code == 129 || code == 134; }
  bool isIcon() const { return code == 138 || kPictures.contains(code); }
  bool setsPen() const { return code == 200 || code == 201 || code == 211 || code == 212; }
  bool isLine() const { return code == 202 || code == 203; }
  bool isFrame() const { return code == 213 || code == 214; }

  // Where a tab leads from x.
  long long tabFrom(long long x, int cw) const {
    const auto place = static_cast<short>(cw * arguments[0] / 2);
    return isTabTo() ? std::max<long long>(x, place) : nextTabStop(x, place);
  }
};

struct LiteralText::Page {
  platform::Port &port;
  int dy;
  int y;
  int x0;
  int y0;
  int cw;
  int lh;
  long long x;

  int left() const { return static_cast<int>(x0 + x); }
  int top() const { return y0 + y; }
};

std::vector<LiteralText::Piece> LiteralText::piecesOf(const std::string &text, bool hasPen) {
  std::vector<Piece> pieces;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t escape = std::min(text.find('\xFF', i), text.size());
    if (escape > i) pieces.push_back({kRun, text.substr(i, escape - i)});
    if (escape + 1 >= text.size()) break;
    Piece piece{static_cast<unsigned char>(text[escape + 1])};
    i = escape + 2;
    for (const std::size_t size : argumentsOf(piece.code, hasPen)) {
      const std::string argument = text.substr(std::min(i, text.size()), size);
      i += size;
      if (argument.size() == size) {
        piece.arguments.push_back(numberIn(argument));
      } else {
        piece.isWhole = false;
      }
    }
    pieces.push_back(piece);
  }
  return pieces;
}

void LiteralText::drawRun(Page &page, const std::string &run) {
  const int width = widthOf(page.port, run);
  if (alignsRight_) page.x -= width;
  if (run.size() <= 255) page.port.drawText(page.left(), page.top() + page.dy, converted(run));
  page.x += width;
  alignsRight_ = false;
}

void LiteralText::usePen(const Page &page, const Piece &piece) {
  const std::size_t count = piece.arguments.size();
  const int h = count > 0 ? page.cw * piece.arguments[0] / 2 : 0;
  const int v = count > 1 ? page.lh * piece.arguments[1] / 4 : 0;
  const int left = page.x0 + penX_;
  const int top = page.y0 + penY_;
  const int right = page.x0 + h;
  const int bottom = page.y0 + v;
  if (piece.isWhole && piece.isLine()) drawLine(page.port, left, top, right, bottom);
  if (piece.isWhole && piece.isFrame()) {
    drawLine(page.port, left, top, right, top);
    drawLine(page.port, right, top, right, bottom);
    drawLine(page.port, right, bottom, left, bottom);
    drawLine(page.port, left, bottom, left, top);
  }
  const bool movesPen = piece.setsPen() || (piece.isWhole && piece.isLine());
  if (movesPen && count > 0) penX_ = static_cast<short>(h);
  if (movesPen && count > 1) penY_ = static_cast<short>(v);
}

void LiteralText::drawPiece(Page &page, const Piece &piece) {
  if (piece.code == kRun) drawRun(page, piece.run);
  if (piece.code == 130 || piece.code == 131) alignsRight_ = piece.code == 131;
  if (piece.isWhole && (piece.isTabTo() || piece.isTabEvery())) {
    page.x = piece.tabFrom(page.x, page.cw);
  }
  if (piece.code == 138) {
    drawBullet(page.port, page.left() + page.cw / 2, page.top() + page.cw / 2, page.cw);
  }
  if (kPictures.contains(piece.code)) {
    const platform::Picture *picture = findPicture_(kPictures.at(piece.code));
    if (picture != nullptr) page.port.drawPicture(*picture, page.left(), page.top() + 1);
  }
  if (piece.isIcon()) page.x += 2 * page.cw;
  if (kPenArguments.contains(piece.code)) usePen(page, piece);
}

long long LiteralText::draw(platform::Port &port, int dy, int x, int y, int x0, int y0,
                            const std::string &text) {
  const platform::FontMetrics font = port.fontMetrics();
  const int lh = font.ascent + font.descent + font.leading;
  Page page{port, dy, y, x0, y0, unitOf(port), lh, x};
  for (const Piece &piece : piecesOf(text, true)) drawPiece(page, piece);
  return page.x - x;
}

LiteralText::Extent LiteralText::measure(const platform::Port &port, int startX,
                                         const std::string &text) {
  const int cw = unitOf(port);
  Extent extent{1, 0, 0};
  for (const Piece &piece : piecesOf(text, false)) {
    if (piece.code == 130 || piece.code == 131) measuresRuns_ = piece.code == 130;
    if (piece.code == kRun && measuresRuns_) extent.cx += widthOf(port, piece.run);
    if (piece.isIcon()) {
      extent.cx += 2 * cw;
      extent.cy = 2 * cw;
    }
    if (piece.isWhole && (piece.isTabTo() || piece.isTabEvery())) {
      extent.cx = piece.tabFrom(startX + extent.cx, cw) - startX;
      extent.result = 0;
    }
  }
  return extent;
}

}  // namespace korvel::test
