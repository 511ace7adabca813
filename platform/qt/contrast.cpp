// SPDX-License-Identifier: MIT
// Measures contrasts as the web accessibility guidelines define them, and moves colours towards
// black or white until they have enough.
#include "platform/qt/contrast.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace korvel::platform::qt {
namespace {

qreal linear(qreal channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

qreal luminance(const QColor &color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

qreal leastContrast(const QColor &color, std::initializer_list<QColor> grounds) {
  qreal least = 21;
  for (const QColor &ground : grounds) least = std::min(least, contrast(color, ground));
  return least;
}

bool standsOut(const QColor &color, std::initializer_list<QColor> grounds, qreal least) {
  return leastContrast(color, grounds) >= least;
}

constexpr int kSteps = 40;

QColor mixed(const QColor &from, const QColor &to, int step) {
  const auto channel = [step](int begin, int end) { return begin + (end - begin) * step / kSteps; };
  return {channel(from.red(), to.red()), channel(from.green(), to.green()),
          channel(from.blue(), to.blue())};
}

// Amber is visible on light and dark grounds, and differs from a blue focus frame for colour-blind
// people too.
const QColor kAmber(0xC2, 0x78, 0x03);

// Of the toolkit's own frames around fields, over the window's colour.
constexpr int kFrameDarkness = 140;

// Where fields have the colour of the window, nothing but its outline tells where one is.
constexpr qreal kBareLineContrast = 7;

// Smooth edges take from the colour of thin strokes; most where letters are few and small, as in
// the title of a button.
constexpr qreal kSmoothTextContrast = 5.5;
constexpr qreal kSmoothSelectionContrast = 4.7;

struct Shades {
  QColor lightest, darkest;
};

// Of a button without a title, behind one: styles draw them from the palette's colour, each in its
// own way.
Shades shadesOfButtons(QPalette palette, QPalette::ColorGroup group) {
  constexpr QSize kSize(20, 22);
  QImage image(kSize, QImage::Format_RGB32);
  image.fill(palette.color(group, QPalette::Button));
  palette.setCurrentColorGroup(group);
  QStyleOptionButton option;
  option.rect = image.rect();
  option.palette = palette;
  option.state = QStyle::State_Raised;
  if (group != QPalette::Disabled) option.state |= QStyle::State_Enabled;
  QPainter painter(&image);
  QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter);
  const QColor top = image.pixelColor(kSize.width() / 2, 4);
  const QColor bottom = image.pixelColor(kSize.width() / 2, kSize.height() - 5);
  return luminance(top) < luminance(bottom) ? Shades{bottom, top} : Shades{top, bottom};
}

void tellText(QPalette &palette, QPalette::ColorGroup group, QPalette::ColorRole text,
              std::initializer_list<QColor> grounds) {
  const QColor before = palette.color(group, text);
  if (!standsOut(before, grounds, kTextContrast))
    palette.setColor(group, text, standingOut(before, grounds, kSmoothTextContrast));
}

// The shades of a dark button are light enough to leave no grey for a text on them.
void darkenDisabledButtons(QPalette &palette) {
  const QColor button = palette.color(QPalette::Disabled, QPalette::Button);
  if (luminance(button) < 0.2)
    palette.setColor(QPalette::Disabled, QPalette::Button, button.darker());
}

// Text on a selection keeps its colour, and the selection moves away from it.
void tellSelection(QPalette &palette, QPalette::ColorGroup group) {
  const QColor text = palette.color(group, QPalette::HighlightedText);
  const QColor ground = palette.color(group, QPalette::Highlight);
  if (!standsOut(ground, {text}, kSmoothSelectionContrast))
    palette.setColor(group, QPalette::Highlight,
                     standingOut(ground, {text}, kSmoothSelectionContrast));
}

void makeLegible(QPalette &palette, QPalette::ColorGroup group) {
  const Shades button = shadesOfButtons(palette, group);
  tellText(palette, group, QPalette::WindowText, {palette.color(group, QPalette::Window)});
  tellText(palette, group, QPalette::Text, {palette.color(group, QPalette::Base)});
  tellText(palette, group, QPalette::ButtonText, {button.lightest, button.darkest});
  tellSelection(palette, group);
}

LineColors linesFor(const QPalette &palette, QPalette::ColorRole role) {
  const auto color = [&](QPalette::ColorRole of) { return palette.color(QPalette::Active, of); };
  const QColor window = color(QPalette::Window);
  const bool isBare = window == color(QPalette::Base);
  const Shades shades = role == QPalette::Button ? shadesOfButtons(palette, QPalette::Active)
                                                 : Shades{color(role), color(role)};
  const std::initializer_list<QColor> grounds{window, shades.lightest, shades.darkest};
  return {standingOut(window.darker(kFrameDarkness), grounds,
                      isBare ? kBareLineContrast : kLineContrast),
          standingOut(color(QPalette::Highlight), grounds, kLineContrast),
          standingOut(kAmber, grounds, kLineContrast)};
}

}  // namespace

qreal contrast(const QColor &one, const QColor &other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor standingOut(const QColor &color, std::initializer_list<QColor> grounds, qreal least) {
  QColor best = color;
  for (int step = 0; step <= kSteps; ++step)
    for (const QColor &end : {QColor(Qt::black), QColor(Qt::white)}) {
      const QColor moved = mixed(color, end, step);
      if (leastContrast(moved, grounds) >= least) return moved;
      if (leastContrast(moved, grounds) > leastContrast(best, grounds)) best = moved;
    }
  return best;
}

// Kept for the palette last asked for, as every dialog asks.
QPalette legible(const QPalette &palette) {
  static QPalette asked, made;
  if (made.resolveMask() != 0 && asked == palette) return made;
  asked = made = palette;
  made.setResolveMask({});
  darkenDisabledButtons(made);
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
    makeLegible(made, group);
  return made;
}

QPalette shared(const QPalette &palette) {
  static QPalette kept;
  if (kept != palette) kept = palette;
  QPalette same = kept;
  same.setCurrentColorGroup(palette.currentColorGroup());
  return same;
}

// Kept for the colours last asked for, as fields ask at every key.
const LineColors &lineColors(const QPalette &palette, QPalette::ColorRole ground) {
  struct Kept {
    std::array<QColor, 4> of;
    LineColors colors;
  };
  static Kept fields, buttons;
  Kept &kept = ground == QPalette::Button ? buttons : fields;
  const auto color = [&](QPalette::ColorRole role) {
    return palette.color(QPalette::Active, role);
  };
  const std::array<QColor, 4> of{color(QPalette::Window), color(QPalette::Base), color(ground),
                                 color(QPalette::Highlight)};
  if (of != kept.of) kept = {of, linesFor(palette, ground)};
  return kept.colors;
}

}  // namespace korvel::platform::qt
