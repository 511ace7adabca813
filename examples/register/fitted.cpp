// SPDX-License-Identifier: MIT
// The library draws and measures texts of up to 255 bytes: none here is longer.
#include "fitted.h"

#include <algorithm>

#include <korvel/draw.h>

#include "text.h"

namespace registry {
namespace {

constexpr QChar kMore = u'…';
constexpr int kLongest = 255 - 1;  // kMore still follows

int draw(CGrafPtr port, int x, int y, const QString &text) {
  const std::string bytes = toBytes(text);
  return TextOut_0(port, x, y, bytes.c_str(), static_cast<int>(bytes.size()));
}

int widthOf(CGrafPtr port, const QString &text) {
  const std::string bytes = toBytes(text);
  return GetTextExtent_0(port, bytes.c_str(), static_cast<int>(bytes.size()), nullptr, nullptr);
}

// How many of its first characters there is room for.
qsizetype fitting(CGrafPtr port, int width, const QString &text) {
  const QString most = text.left(kLongest);
  const auto fits = [&](const QChar &last) {
    return widthOf(port, most.left(&last - most.begin() + 1)) <= width;
  };
  return std::partition_point(most.begin(), most.end(), fits) - most.begin();
}

}  // namespace

int drawFitted(CGrafPtr port, int x, int y, int width, const QString &text) {
  if (fitting(port, width, text) == text.size()) return draw(port, x, y, text);
  return draw(port, x, y, text.left(fitting(port, width - widthOf(port, kMore), text)) + kMore);
}

int drawWrapped(CGrafPtr port, int x, int y, int width, const QString &text) {
  constexpr int kLine = 16;
  const int top = y;
  for (QString rest = text; !rest.isEmpty(); y += kLine) {
    qsizetype end = std::max<qsizetype>(fitting(port, width, rest), 1);
    if (const qsizetype blank = rest.lastIndexOf(u' ', end); end < rest.size() && blank > 0)
      end = blank;
    draw(port, x, y, rest.left(end));
    rest = rest.mid(end).trimmed();
  }
  return y - top;
}

}  // namespace registry
