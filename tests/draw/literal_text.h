// SPDX-License-Identifier: MIT
// For tests/draw/: a model of rich text. It takes a text apart into a list of pieces first, by a
// table, and then draws or adds up the list; the library does both in one walk.
#ifndef KORVEL_TESTS_DRAW_LITERAL_TEXT_H
#define KORVEL_TESTS_DRAW_LITERAL_TEXT_H

#include <functional>
#include <string>
#include <vector>

#include "platform/drawing.h"

namespace korvel::test {

class LiteralText {
 public:
  struct Extent {
    int result;
    long long cx;
    int cy;
  };

  // Null for a picture that is missing.
  using FindPicture = std::function<const platform::Picture *(const std::string &name)>;
  explicit LiteralText(FindPicture findPicture) : findPicture_(std::move(findPicture)) {}

  long long draw(platform::Port &port, int dy, int x, int y, int x0, int y0,
                 const std::string &text);
  Extent measure(const platform::Port &port, int x, const std::string &text);

 private:
  struct Page;
  struct Piece;

  static std::vector<Piece> piecesOf(const std::string &text, bool hasPen);
  void drawPiece(Page &page, const Piece &piece);
  void drawRun(Page &page, const std::string &run);
  void usePen(const Page &page, const Piece &piece);

  const FindPicture findPicture_;
  short penX_ = 0;
  short penY_ = 0;
  bool alignsRight_ = false;
  bool measuresRuns_ = true;
};

}  // namespace korvel::test

#endif
