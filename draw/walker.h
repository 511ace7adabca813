// SPDX-License-Identifier: MIT
// For draw/: the walk over a rich text, which drawing and measuring share.
//
// The walker follows the current x and reads the escapes. A visitor draws or measures what they
// mean; positions are pixels. It has
//
//   Pixels run(Pixels x, std::string_view text)        a run at x; returns how far x moves
//   void bullet(Pixels x), void picture(Pixels x, const char *name)
//   void alignRight(), void alignOff()
//   void tab()                                         called at every tab
//   static constexpr bool kHasPen                      false: pen escapes have no arguments
//
// and, if it has a pen,
//
//   int lineHeight()
//   void setPenAcross(Pixels x), void setPenDown(Pixels y)
//   void line(Point to), void frame(Point corner)
#ifndef KORVEL_DRAW_WALKER_H
#define KORVEL_DRAW_WALKER_H

#include <algorithm>
#include <optional>
#include <string_view>

#include "draw/escapes.h"
#include "draw/pixels.h"
#include "draw/primitives.h"

namespace korvel::draw {

template <typename Visitor>
class Walker {
 public:
  // `em` is the text's unit of width; `x` is where the text starts.
  Walker(Visitor &visitor, int em, Pixels x) : visitor_(visitor), em_(em), start_(x), x_(x) {}

  // Returns how far x has moved.
  Pixels walk(std::string_view text) {
    rest_ = text;
    while (!rest_.empty()) {
      if (isEscape(rest_.front())) {
        escape();
      } else {
        run();
      }
    }
    return x_ - start_;
  }

 private:
  static bool isEscape(char byte) { return static_cast<unsigned char>(byte) == KorvelEscape; }

  void run() {
    const std::size_t length = std::min(rest_.find(static_cast<char>(KorvelEscape)), rest_.size());
    x_ += visitor_.run(x_, rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  void escape() {
    rest_.remove_prefix(1);
    if (rest_.empty()) return;
    const Escape &found = kEscapes[takeByte()];
    switch (found.effect) {
      case Effect::None:
        return;
      case Effect::TabTo:
        return tabTo(found.argumentSize);
      case Effect::TabEvery:
        return tabEvery(found.argumentSize);
      case Effect::AlignRight:
        return visitor_.alignRight();
      case Effect::AlignOff:
        return visitor_.alignOff();
      case Effect::Bullet:
        return bullet();
      case Effect::Picture:
        return picture(found.picture);
      case Effect::SetPen:
      case Effect::Line:
      case Effect::Frame:
        if constexpr (Visitor::kHasPen) pen(found);
        return;
    }
  }

  void tabTo(int argumentSize) {
    const std::optional<int> position = takeArgument(argumentSize);
    if (!position) return;
    visitor_.tab();
    x_ = std::max(x_, Pixels{toShort(across(*position))});
  }

  // A step of 0 would loop for ever; it has no effect, nor has a negative one.
  void tabEvery(int argumentSize) {
    const std::optional<int> argument = takeArgument(argumentSize);
    if (!argument) return;
    visitor_.tab();
    const Pixels step = toShort(across(*argument));
    if (step > 0) x_ = nextMultiple(x_, step);
  }

  // The smallest multiple of `step` that is greater than x, also where x is negative.
  static Pixels nextMultiple(Pixels x, Pixels step) {
    const Pixels remainder = x % step;  // with the sign of x
    return x - remainder + (remainder < 0 ? 0 : step);
  }

  void bullet() {
    visitor_.bullet(x_);
    x_ += iconWidth();
  }
  void picture(const char *name) {
    visitor_.picture(x_, name);
    x_ += iconWidth();
  }
  Pixels iconWidth() const { return Pixels{2} * em_; }

  // The pen moves across even if the text ends before its way down.
  void pen(const Escape &escape) {
    const std::optional<int> h = takeArgument(escape.argumentSize);
    if (!h) return;
    if (escape.effect == Effect::SetPen) visitor_.setPenAcross(across(*h));
    const std::optional<int> v = takeArgument(escape.argumentSize);
    if (!v) return;
    if (escape.effect == Effect::SetPen) {
      visitor_.setPenDown(down(*v));
    } else if (escape.effect == Effect::Line) {
      visitor_.line({across(*h), down(*v)});
    } else {
      visitor_.frame({across(*h), down(*v)});
    }
  }

  // Half characters and quarter lines, in pixels.
  Pixels across(int argument) const { return Pixels{em_} * argument / 2; }
  Pixels down(int argument) const { return Pixels{visitor_.lineHeight()} * argument / 4; }

  // Nothing for an argument that the end of the text cuts off; what there is of it is dropped.
  std::optional<int> takeArgument(int size) {
    if (rest_.size() < static_cast<std::size_t>(size)) {
      rest_ = {};
      return std::nullopt;
    }
    const int low = takeByte() - kArgumentZero;
    return size == 1 ? low : low + kHighUnit * (takeByte() - kArgumentZero);
  }
  unsigned char takeByte() {
    const auto byte = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }

  static constexpr int kArgumentZero = 32;  // the byte for 0
  static constexpr int kHighUnit = 224;

  Visitor &visitor_;
  const int em_;
  const Pixels start_;
  Pixels x_;
  std::string_view rest_;
};

}  // namespace korvel::draw

#endif
