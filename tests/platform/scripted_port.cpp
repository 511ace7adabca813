// SPDX-License-Identifier: MIT
// A port in memory: measures worked out by rule, operations recorded.
#include "tests/platform/scripted_port.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>

#include "tests/platform/scripted_desktop.h"

namespace korvel::test {

using platform::FontMetrics;
using platform::Rect;

namespace {

bool areEqual(const RGBColor &a, const RGBColor &b) {
  return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

std::string nameOf(const RGBColor &colour) {
  static constexpr struct {
    const char *name;
    RGBColor colour;
  } kNamed[] = {
      {"black", {0, 0, 0}},
      {"white", {0xFFFF, 0xFFFF, 0xFFFF}},
      {"maroon", {0x8000, 0, 0}},
      {"green", {0, 0x8000, 0}},
      {"navy", {0, 0, 0x8000}},
      {"silver", {0xC000, 0xC000, 0xC000}},
      {"red", {0xFFFF, 0, 0}},
      {"lime", {0, 0xFFFF, 0}},
      {"yellow", {0xFFFF, 0xFFFF, 0}},
      {"blue", {0, 0, 0xFFFF}},
  };
  for (const auto &each : kNamed) {
    if (areEqual(each.colour, colour)) return each.name;
  }
  std::ostringstream out;
  out << std::hex << colour.red << '/' << colour.green << '/' << colour.blue;
  return out.str();
}

std::string printedFace(unsigned face) {
  static constexpr std::pair<unsigned, const char *> kBits[] = {
      {platform::kBold, " bold"},
      {platform::kItalic, " italic"},
      {platform::kUnderline, " underlined"},
      {platform::kCondense, " condensed"},
      {platform::kExtend, " extended"},
  };
  std::string names;
  for (const auto &[bit, name] : kBits) {
    if ((face & bit) != 0) names += name;
  }
  return names;
}

const char *nameOf(Operation::Kind kind) {
  static constexpr const char *kNames[] = {"text", "line", "fill", "frame", "picture"};
  return kNames[static_cast<int>(kind)];
}

bool isInside(const Rect &rect, int x, int y) {
  return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
}

std::array<int, 4> placesOf(const Rect &rect) {
  return {rect.left, rect.top, rect.right, rect.bottom};
}

}  // namespace

// ---- The record ----

std::string printed(const Operation &operation) {
  std::ostringstream out;
  const auto &[x1, y1, x2, y2] = operation.places;
  out << nameOf(operation.kind) << " (" << x1 << ',' << y1 << ')';
  switch (operation.kind) {
    case Operation::Kind::Text:
      out << " \"" << readable(operation.text) << "\" ";
      break;
    case Operation::Kind::Line:
      out << "-(" << x2 << ',' << y2 << ") " << operation.width << ' ';
      break;
    case Operation::Kind::Fill:
    case Operation::Kind::Frame:
      out << "-(" << x2 << ',' << y2 << ") ";
      break;
    case Operation::Kind::Picture:
      out << ' ' << operation.text;
      break;
  }
  out << operation.look;
  return out.str();
}

void PrintTo(const Operation &operation, std::ostream *out) { *out << printed(operation); }

std::string PortRecord::takeLines() {
  std::string lines;
  for (const Operation &each : std::exchange(operations, {})) lines += printed(each) + '\n';
  return lines;
}

// ---- The port ----

bool ScriptedPort::setFont(std::string_view family, unsigned face) {
  if (!fonts_->contains(family)) return false;
  family_ = family;
  face_ = face;
  return true;
}

void ScriptedPort::setFontSize(int points) { size_ = points < 1 ? 12 : std::min(points, 1000); }

FontMetrics ScriptedPort::fontMetrics() const {
  return {size_ * 3 / 4, size_ / 4, size_ / 6, size_};
}

int ScriptedPort::advanceOf(char character) const {
  const bool isNarrow = std::string_view("ijl.'").find(character) != std::string_view::npos;
  const bool isAscii = static_cast<unsigned char>(character) < 0x80;
  const bool isBold = (face_ & platform::kBold) != 0;
  return size_ / (isNarrow ? 4 : 2) + (isAscii ? 0 : 1) + (isBold ? 1 : 0);
}

int ScriptedPort::widthOf(std::string_view text) const {
  int width = 0;
  for (const char each : text) width += advanceOf(each);
  return width;
}

int ScriptedPort::textWidth(std::string_view text) const {
  record_->measured.emplace_back(text);
  return widthOf(text);
}

std::string ScriptedPort::textLook() const {
  std::string look = nameOf(foreground_);
  if (isOpaque_) look += " on " + nameOf(background_);
  return look + ", " + family_ + ' ' + std::to_string(size_) + printedFace(face_);
}

int ScriptedPort::drawText(int x, int y, std::string_view text) {
  record_->operations.push_back({Operation::Kind::Text, {x, y}, 0, std::string(text), textLook()});
  return widthOf(text);
}

void ScriptedPort::setForeground(const RGBColor &colour) { foreground_ = colour; }
void ScriptedPort::setBackground(const RGBColor &colour) { background_ = colour; }
void ScriptedPort::setOpaqueText(bool isOpaque) { isOpaque_ = isOpaque; }

void ScriptedPort::drawLine(int x1, int y1, int x2, int y2, int width) {
  if (width < 1) return;
  record_->operations.push_back(
      {Operation::Kind::Line, {x1, y1, x2, y2}, width, {}, nameOf(foreground_)});
}

void ScriptedPort::fillRect(const Rect &rect) {
  if (rect.left >= rect.right || rect.top >= rect.bottom) return;
  fills_.push_back({rect, foreground_});
  record_->operations.push_back(
      {Operation::Kind::Fill, placesOf(rect), 0, {}, nameOf(foreground_)});
}

void ScriptedPort::frameRect(const Rect &rect) {
  if (rect.left >= rect.right || rect.top >= rect.bottom) return;
  record_->operations.push_back(
      {Operation::Kind::Frame, placesOf(rect), 0, {}, nameOf(foreground_)});
}

bool ScriptedPort::drawPicture(const platform::Picture &picture, int x, int y) {
  const auto &scripted = static_cast<const ScriptedPicture &>(picture);
  record_->operations.push_back({Operation::Kind::Picture, {x, y}, 0, scripted.name(), {}});
  return true;
}

bool ScriptedPort::save(const std::string &path) const {
  if (surface_ == Surface::Borrowed) return false;
  record_->savedTo = path;
  return true;
}

// Only fills show in pixels.
std::optional<RGBColor> ScriptedPort::pixel(int x, int y) const {
  if (surface_ == Surface::Borrowed || !isInside({0, 0, width_, height_}, x, y)) return {};
  const auto last = std::find_if(fills_.rbegin(), fills_.rend(),
                                 [&](const Fill &fill) { return isInside(fill.rect, x, y); });
  if (last != fills_.rend()) return last->colour;
  if (surface_ == Surface::Window) return {};
  return RGBColor{0xFFFF, 0xFFFF, 0xFFFF};
}

}  // namespace korvel::test
