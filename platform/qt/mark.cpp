#include "platform/qt/mark.h"

#include <QPainter>
#include <QWidget>

namespace korvel::platform::qt {
namespace {

// A field has three pixels around its text; one stays free between bar and text.
constexpr int kBarWidth = 2;
// From the edge, where a style draws the field's own frame, to the middle of the mark's line.
constexpr double kInset = 1.5;
constexpr float kFrameStrength = 0.6F;

}  // namespace

QColor markColor() { return {0xC2, 0x78, 0x03}; }

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
  QColor frame = markColor();
  frame.setAlphaF(kFrameStrength);
  QPainter painter(&surface_);
  painter.setPen(frame);
  painter.drawRect(QRectF(surface_.rect()).adjusted(kInset, kInset, -kInset, -kInset));
  painter.fillRect(0, 1, kBarWidth, surface_.height() - 2, markColor());
}

}  // namespace korvel::platform::qt
