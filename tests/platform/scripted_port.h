// SPDX-License-Identifier: MIT
// For tests/draw/, tests/fuzz/ and tests/platform/: a port in memory that records what is drawn on
// it, with measures that are easy to work out.
//
// A character's width is half the font's size (a quarter for i, j, l, "." and "'"), and a pixel
// more beyond ASCII and in a bold face. The ascent is three quarters of the size, the descent one
// quarter, the leading a sixth; the widest character is as wide as the size. All are truncated to
// whole pixels.
#ifndef KORVEL_TESTS_PLATFORM_SCRIPTED_PORT_H
#define KORVEL_TESTS_PLATFORM_SCRIPTED_PORT_H

#include <array>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drawing.h"

namespace korvel::test {

// A drawing operation. Printed as `text (3,14) "abc" red on white, Arial 12 bold`,
// `line (0,0)-(9,0) 2 black`, `fill (0,0)-(9,9) red`, `frame (0,0)-(9,9) black`,
// `picture (4,5) puceb`.
struct Operation {
  enum class Kind { Text, Line, Fill, Frame, Picture };

  Kind kind;
  std::array<int, 4> places;  // two points, or one and zeros
  int width;                  // of the pen; else 0
  std::string text;           // screen set; the name of a picture
  std::string look;           // the colours and font used

  friend bool operator==(const Operation &, const Operation &) = default;
};
std::string printed(const Operation &operation);
void PrintTo(const Operation &operation, std::ostream *out);

// The operations of a port; outlives it, for tests to read.
struct PortRecord {
  std::vector<Operation> operations;
  std::vector<std::string> measured;  // texts, in the screen set
  std::string savedTo;
  bool isOpen = true;

  // The operations since the last call, a line for each.
  std::string takeLines();
};

class ScriptedPicture final : public platform::Picture {
 public:
  ScriptedPicture(std::string name, int width, int height)
      : name_(std::move(name)), width_(width), height_(height) {}
  int width() const override { return width_; }
  int height() const override { return height_; }
  const std::string &name() const { return name_; }

 private:
  const std::string name_;
  const int width_;
  const int height_;
};

using FontNames = std::set<std::string, std::less<>>;

class ScriptedPort final : public platform::Port {
 public:
  // A borrowed surface can neither be saved nor read.
  enum class Surface { Image, Window, Borrowed };

  ScriptedPort(std::shared_ptr<PortRecord> record, std::shared_ptr<const FontNames> fonts,
               Surface surface, int width, int height)
      : record_(std::move(record)),
        fonts_(std::move(fonts)),
        surface_(surface),
        width_(width),
        height_(height) {}
  ~ScriptedPort() override { record_->isOpen = false; }

  bool setFont(std::string_view family, unsigned face) override;
  void setFontSize(int points) override;
  platform::FontMetrics fontMetrics() const override;
  int textWidth(std::string_view text) const override;
  int drawText(int x, int y, std::string_view text) override;
  void setForeground(const RGBColor &colour) override;
  void setBackground(const RGBColor &colour) override;
  void setOpaqueText(bool isOpaque) override;
  void drawLine(int x1, int y1, int x2, int y2, int width) override;
  void fillRect(const platform::Rect &rect) override;
  void frameRect(const platform::Rect &rect) override;
  bool drawPicture(const platform::Picture &picture, int x, int y) override;
  bool save(const std::string &path) const override;
  std::optional<RGBColor> pixel(int x, int y) const override;

 private:
  int advanceOf(char character) const;
  int widthOf(std::string_view text) const;
  std::string textLook() const;

  struct Fill {
    platform::Rect rect;
    RGBColor colour;
  };

  const std::shared_ptr<PortRecord> record_;
  const std::shared_ptr<const FontNames> fonts_;
  const Surface surface_;
  const int width_;
  const int height_;
  std::vector<Fill> fills_;
  std::string family_ = "system";
  unsigned face_ = 0;
  int size_ = 12;
  RGBColor foreground_{};
  RGBColor background_{0xFFFF, 0xFFFF, 0xFFFF};
  bool isOpaque_ = false;
};

}  // namespace korvel::test

#endif
