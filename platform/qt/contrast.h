// SPDX-License-Identifier: MIT
// For platform/qt/: colours that are told apart on every desktop, whatever its theme.
#ifndef KORVEL_PLATFORM_QT_CONTRAST_H
#define KORVEL_PLATFORM_QT_CONTRAST_H

#include <initializer_list>

#include <QColor>
#include <QPalette>

namespace korvel::platform::qt {

// What the web accessibility guidelines ask for, of texts and of lines that carry a meaning.
constexpr qreal kTextContrast = 4.5;
constexpr qreal kLineContrast = 3;

// From 1, for colours of the same lightness, to 21, for black and white.
qreal contrast(const QColor &one, const QColor &other);

// `color`, made as much darker or lighter as it takes to stand out from all grounds.
QColor standingOut(const QColor &color, std::initializer_list<QColor> grounds, qreal least);

// The palette with its texts, those of disabled items too, told apart from their grounds. What is
// told apart already stays, and follows the desktop's palette when that changes.
QPalette legible(const QPalette &palette);

// One and the same palette for all that are equal. A style keeps pictures of what it draws by the
// palette's identity, and each widget has a palette of its own.
QPalette shared(const QPalette &palette);

// The colours of lines between a window and an item with this ground: Base for fields, Button for
// pop-ups and buttons. They are those of enabled items.
struct LineColors {
  QColor outline;
  QColor focus;
  QColor mark;
};
const LineColors &lineColors(const QPalette &palette, QPalette::ColorRole ground);

}  // namespace korvel::platform::qt

#endif
