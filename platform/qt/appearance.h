// SPDX-License-Identifier: MIT
// For platform/qt/: the font of a dialog, and the places of its items' widgets.
//
// A classic rectangle is the inside of an item: a one-line field of 15 pixels leaves three pixels
// to each side for its frame. All sizes are device-independent pixels.
#ifndef KORVEL_PLATFORM_QT_APPEARANCE_H
#define KORVEL_PLATFORM_QT_APPEARANCE_H

#include <QFont>
#include <QMargins>
#include <QRect>

#include "platform/desktop.h"

class QStyle;

namespace korvel::platform::qt {

struct Appearance {
  // For the style in use. The font is the desktop's own family, in the largest size at which a line
  // of text, accents on capitals included, and the digits of a date fit.
  static Appearance ofDesktop();

  QFont font;
  // Of edit texts: larger where the desktop's is and a field has the room.
  QFont fieldFont;
  int lineHeight;
  int fieldLineHeight;
  // How far accents on capitals rise above a line, and descenders fall below it.
  int overhang;
  // Text margins of a line edit that put its text exactly into the classic rectangle.
  QMargins textMargins;

  QRect editText(const Rect &rect) const;
  QRect popUp(const Rect &rect) const;
  QRect pushButton(const Rect &rect) const;
  QRect checkBox(const Rect &rect) const;
  QRect listBox(const Rect &rect) const;
  // With the overhang above and below.
  QRect staticText(const Rect &rect) const;

  // True for a rectangle with room for two lines of text or more; of a field's text.
  bool hasSeveralLines(const Rect &rect) const { return rect.height() >= 2 * lineHeight; }
  bool fieldHasSeveralLines(const Rect &rect) const { return rect.height() >= 2 * fieldLineHeight; }
};

QRect toQt(const Rect &rect);

// `font`, as much narrower as needed (within reason) to get `text` into `width`.
QFont narrowedToFit(const QFont &font, const QString &text, int width);

}  // namespace korvel::platform::qt

#endif
