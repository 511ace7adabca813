// Rich text drawn and measured step by step.
#include "tests/draw/literal_text.h"

#include <map>

namespace korvel::test {
namespace {

constexpr RGBColor kBlack{0, 0, 0};
constexpr RGBColor kRed{0xFFFF, 0, 0};

int byteAt(const std::string &text, std::size_t i) { return static_cast<unsigned char>(text[i]); }

// As the text goes to the screen; a run is a C string there.
std::string converted(const std::string &run) {
  static const std::map<int, int> kMac = {{0xB0, 0xA1}, {0xE0, 0x88}, {0xE7, 0x8D}, {0xE8, 0x8F},
                                          {0xE9, 0x8E}, {0xEA, 0x90}, {0xEF, 0x95}};
  std::string screen;
  for (std::size_t i = 0; i < run.size() && run[i] != '\0'; ++i) {
    const auto found = kMac.find(byteAt(run, i));
    screen += found == kMac.end() ? run[i] : static_cast<char>(found->second);
  }
  return screen;
}

int oneByte(const std::string &text, std::size_t i) { return byteAt(text, i) - 32; }
int twoBytes(const std::string &text, std::size_t i) {
  return byteAt(text, i) - 32 + 224 * (byteAt(text, i + 1) - 32);
}

long long nextTabStop(long long x, int step) {
  long long stop = 0;
  while (stop > x) stop -= step;
  while (stop <= x) stop += step;
  return stop;
}

const char *pictureOf(int code) {
  switch (code) {
    case 148:
      return "repferb";
    case 149:
      return "repouvb";
    case 150:
      return "repferr";
    case 151:
      return "repouvr";
    case 152:
      return "repferv";
    case 153:
      return "repouvv";
    case 154:
      return "repferj";
    case 155:
      return "repouvj";
    case 156:
      return "repfero";
    case 157:
      return "repouvo";
    case 158:
      return "repfebb";
    case 159:
      return "repfebr";
    case 160:
      return "repferl";
    case 161:
      return "repouvl";
    case 168:
      return "puceb";
    default:
      return nullptr;
  }
}

}  // namespace

int LiteralText::widthOf(const std::string &run) const {
  return run.size() > 255 ? 0 : port_.textWidth(converted(run));
}

void LiteralText::drawLine(int x1, int y1, int x2, int y2) {
  port_.setForeground(kBlack);
  port_.drawLine(x1, y1, x2, y2, 2);
  port_.setForeground(kBlack);
}

long long LiteralText::draw(int dy, int startX, int y, int x0, int y0, const std::string &text) {
  int cw = widthOf("X");
  if (cw < 8) cw = 8;
  const platform::FontMetrics font = port_.fontMetrics();
  const int lh = font.ascent + font.descent + font.leading;
  long long x = startX;
  long long total = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    if (byteAt(text, i) != 255) {
      std::string run;
      while (i < text.size() && byteAt(text, i) != 255) run += text[i++];
      if (alignsRight_) {
        x -= widthOf(run);
        total -= widthOf(run);
      }
      if (run.size() <= 255) {
        port_.drawText(static_cast<int>(x0 + x), y0 + y + dy, converted(run));
        x += widthOf(run);
        total += widthOf(run);
      }
      alignsRight_ = false;
      continue;
    }
    if (i + 1 == text.size()) break;
    const int code = byteAt(text, i + 1);
    i += 2;
    const std::size_t left = text.size() - i;
    if (code < 128 || code > 214) continue;

    if (code == 128 || code == 133) {
      const std::size_t size = code == 128 ? 1 : 2;
      if (left < size) break;
      const int h = size == 1 ? oneByte(text, i) : twoBytes(text, i);
      i += size;
      const auto p = static_cast<short>(cw * h / 2);
      if (x < p) {
        total += p - x;
        x = p;
      }
    } else if (code == 129 || code == 134) {
      const std::size_t size = code == 129 ? 1 : 2;
      if (left < size) break;
      const int h = size == 1 ? oneByte(text, i) : twoBytes(text, i);
      i += size;
      const auto s = static_cast<short>(cw * h / 2);
      if (s > 0) {
        total += nextTabStop(x, s) - x;
        x = nextTabStop(x, s);
      }
    } else if (code == 130) {
      alignsRight_ = false;
    } else if (code == 131) {
      alignsRight_ = true;
    } else if (code == 138) {
      const int bx = static_cast<int>(x0 + x + cw / 2);
      const int by = y0 + y + cw / 2;
      port_.setForeground(kRed);
      port_.fillRect({bx, by, bx + cw, by + cw});
      port_.setForeground(kBlack);
      port_.frameRect({bx, by, bx + cw, by + cw});
      x += 2 * cw;
      total += 2 * cw;
    } else if (pictureOf(code) != nullptr) {
      const platform::Picture *picture = findPicture_(pictureOf(code));
      if (picture != nullptr) port_.drawPicture(*picture, static_cast<int>(x0 + x), y0 + y + 1);
      x += 2 * cw;
      total += 2 * cw;
    } else if (code == 200 || code == 211 || code == 201 || code == 212) {
      const std::size_t size = code == 200 || code == 211 ? 1 : 2;
      if (left < size) break;
      penX_ = static_cast<short>(cw * (size == 1 ? oneByte(text, i) : twoBytes(text, i)) / 2);
      i += size;
      if (left < 2 * size) break;
      penY_ = static_cast<short>(lh * (size == 1 ? oneByte(text, i) : twoBytes(text, i)) / 4);
      i += size;
    } else if (code == 202 || code == 203 || code == 213 || code == 214) {
      const std::size_t size = code == 202 || code == 213 ? 1 : 2;
      if (left < 2 * size) break;
      const int h = cw * (size == 1 ? oneByte(text, i) : twoBytes(text, i)) / 2;
      i += size;
      const int v = lh * (size == 1 ? oneByte(text, i) : twoBytes(text, i)) / 4;
      i += size;
      if (code == 202 || code == 203) {
        drawLine(x0 + penX_, y0 + penY_, x0 + h, y0 + v);
        penX_ = static_cast<short>(h);
        penY_ = static_cast<short>(v);
      } else {
        drawLine(x0 + penX_, y0 + penY_, x0 + h, y0 + penY_);
        drawLine(x0 + h, y0 + penY_, x0 + h, y0 + v);
        drawLine(x0 + h, y0 + v, x0 + penX_, y0 + v);
        drawLine(x0 + penX_, y0 + v, x0 + penX_, y0 + penY_);
      }
    }
  }
  return total;
}

LiteralText::Extent LiteralText::measure(int startX, const std::string &text) {
  int cw = widthOf("X");
  if (cw < 8) cw = 8;
  long long x = startX;
  Extent extent{1, 0, 0};
  std::size_t i = 0;
  while (i < text.size()) {
    if (byteAt(text, i) != 255) {
      std::string run;
      while (i < text.size() && byteAt(text, i) != 255) run += text[i++];
      if (measuresRuns_) {
        x += widthOf(run);
        extent.cx += widthOf(run);
      }
      continue;
    }
    if (i + 1 == text.size()) break;
    const int code = byteAt(text, i + 1);
    i += 2;
    const std::size_t left = text.size() - i;

    if (code == 128 || code == 133) {
      const std::size_t size = code == 128 ? 1 : 2;
      if (left < size) break;
      const int h = size == 1 ? oneByte(text, i) : twoBytes(text, i);
      i += size;
      extent.result = 0;
      const auto p = static_cast<short>(cw * h / 2);
      if (x < p) {
        extent.cx += p - x;
        x = p;
      }
    } else if (code == 129 || code == 134) {
      const std::size_t size = code == 129 ? 1 : 2;
      if (left < size) break;
      const int h = size == 1 ? oneByte(text, i) : twoBytes(text, i);
      i += size;
      extent.result = 0;
      const auto s = static_cast<short>(cw * h / 2);
      if (s > 0) {
        extent.cx += nextTabStop(x, s) - x;
        x = nextTabStop(x, s);
      }
    } else if (code == 130) {
      measuresRuns_ = true;
    } else if (code == 131) {
      measuresRuns_ = false;
    } else if (code == 138 || pictureOf(code) != nullptr) {
      x += 2 * cw;
      extent.cx += 2 * cw;
      if (extent.cy < 2 * cw) extent.cy = 2 * cw;
    }
  }
  return extent;
}

}  // namespace korvel::test
