// For tests/draw/ only: rich text drawn and measured step by step, as a reader of the rules would
// do it by hand, with a walk of its own for each of the two.
#ifndef KORVEL_TESTS_DRAW_LITERAL_TEXT_H
#define KORVEL_TESTS_DRAW_LITERAL_TEXT_H

#include <functional>
#include <string>

#include "platform/drawing.h"

namespace korvel::test {

class LiteralText {
 public:
  struct Extent {
    int result;
    long long cx;
    int cy;
  };

  // A picture that is none is null.
  using FindPicture = std::function<const platform::Picture *(const std::string &name)>;
  explicit LiteralText(FindPicture findPicture) : findPicture_(std::move(findPicture)) {}

  long long draw(platform::Port &port, int dy, int x, int y, int x0, int y0,
                 const std::string &text);
  Extent measure(const platform::Port &port, int x, const std::string &text);

 private:
  const FindPicture findPicture_;
  short penX_ = 0;
  short penY_ = 0;
  bool alignsRight_ = false;
  bool measuresRuns_ = true;
};

}  // namespace korvel::test

#endif
