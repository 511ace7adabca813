// Paints the mark, and has screen readers tell it.
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

QString markDescription() { return QStringLiteral("À compléter ou à corriger"); }

void Mark::show(bool isShown) {
  if (isShown == isShown_) return;
  isShown_ = isShown;
  if (isShown) description_ = field_.accessibleDescription();
  field_.setAccessibleDescription(isShown ? markDescription() : description_);
  surface_.update();
}

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
