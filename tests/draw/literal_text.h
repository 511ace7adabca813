// For tests/draw/ only: rich text drawn and measured step by step, as a reader of the rules would
// do it by hand, with a walk of its own for each of the two.
#ifndef TESTS_DRAW_LITERAL_TEXT_H
#define TESTS_DRAW_LITERAL_TEXT_H

#include "platform/drawing.h"

#include <functional>
#include <string>

namespace korvel::test {

class LiteralText {
 public:
  struct Extent {
    int result;
    long long cx;
    int cy;
  };

  // Draws on `port`; a picture that is none is null.
  using FindPicture = std::function<const platform::Picture *(const std::string &name)>;
  LiteralText(platform::Port &port, FindPicture findPicture)
      : port_(port), findPicture_(std::move(findPicture)) {}

  long long draw(int dy, int x, int y, int x0, int y0, const std::string &text);
  Extent measure(int x, const std::string &text);

 private:
  int widthOf(const std::string &run) const;
  void drawLine(int x1, int y1, int x2, int y2);

  platform::Port &port_;
  const FindPicture findPicture_;
  short penX_ = 0;
  short penY_ = 0;
  bool alignsRight_ = false;
  bool measuresRuns_ = true;
};

}  // namespace korvel::test

#endif
