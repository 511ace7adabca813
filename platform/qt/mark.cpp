// SPDX-License-Identifier: MIT
// Paints the mark, and finds the words for it.
#include "platform/qt/mark.h"

#include <QPainter>
#include <QWidget>

#include "platform/qt/contrast.h"
#include "platform/qt/outline.h"

namespace korvel::platform::qt {
namespace {

// A field has three pixels around its text; one stays free between bar and text.
constexpr int kBarWidth = 2;
// From the edge, where the style draws the field's frame, to the mark's frame.
constexpr int kInset = 1;
constexpr float kFrameStrength = 0.6F;

}  // namespace

QString markDescription(const QString &detail) {
  const QString words = QStringLiteral("À compléter ou à corriger");
  return detail.isEmpty() ? words : words + QStringLiteral("\u00A0: ") + detail;
}

QString wordsFor(Expected expected, int bound) {
  switch (expected) {
    case Expected::TextUpTo:
      return bound == 1 ? QStringLiteral("un seul caractère")
                        : QStringLiteral("%1 caractères au plus").arg(bound);
    case Expected::Date:
      return QStringLiteral("date (jour, mois, année à quatre chiffres)");
    case Expected::Integer:
      return QStringLiteral("nombre entier");
    case Expected::IntegerFrom:
      return QStringLiteral("nombre entier, %1 ou plus").arg(bound);
    case Expected::Number:
      return QStringLiteral("nombre (par exemple 36,5)");
    case Expected::NumberFrom:
      return QStringLiteral("nombre, %1 ou plus (par exemple 36,5)").arg(bound);
    case Expected::NumberAbove:
      return QStringLiteral("nombre supérieur à %1 (par exemple 36,5)").arg(bound);
    case Expected::Text:
      break;
  }
  return {};
}

void Mark::show(bool isShown) {
  if (isShown == isShown_) return;
  isShown_ = isShown;
  tell();
  surface_.update();
}

void Mark::setExpected(const QString &words) {
  expected_ = words;
  tell();
}

void Mark::tell() { hint_.tell(isShown_ ? markDescription(expected_) : QString()); }

void Mark::paint() const {
  if (!isShown_) return;
  const QColor color = lineColors(surface_.palette(), ground_).mark;
  QColor frameColor = color;
  frameColor.setAlphaF(kFrameStrength);
  QPainter painter(&surface_);
  PixelFrame frame(painter, surface_.rect());
  const int inset = frame.touched(kInset);
  frame.fillSides(inset, inset + frame.line(), frameColor);
  frame.fillLeft(frame.touched(kBarWidth), inset, color);
}

}  // namespace korvel::platform::qt
