// SPDX-License-Identifier: MIT
// For platform/qt/: the port of a window.
#ifndef KORVEL_PLATFORM_QT_WINDOWPORT_H
#define KORVEL_PLATFORM_QT_WINDOWPORT_H

#include <memory>

#include <QObject>
#include <QWidget>

#include "platform/qt/rasterport.h"

namespace korvel::platform::qt {

class ScrolledBody;

// Keeps what was drawn, in the pixels of the screen that the window is on, and shows it whenever
// the window paints itself: after the window's own background, before its children. It grows with
// the window and never shrinks. In a dialog that scrolls, the ground of the items is the window.
class WindowPort final : public QObject, public RasterPort {
 public:
  explicit WindowPort(QWidget *surface);

  std::optional<RGBColor> pixel(int x, int y) const override;

 protected:
  bool eventFilter(QObject *object, QEvent *event) override;
  Raster *prepared() override;
  const Raster *drawn() const override { return raster_.get(); }
  qreal scale() const override { return scale_; }
  void touched(const QRect &rect) override;

 private:
  void adopt(qreal scale);
  bool grow(const QSize &size);
  void show(const QRegion &region);

  QWidget *const window_;
  ScrolledBody *const body_;  // null in one that does not scroll
  qreal scale_;
  std::unique_ptr<Raster> raster_;  // from the first drawing on
  bool isInPaint_ = false;
};

// A reference is the address of the window's widget, dereferenced only while the toolkit knows the
// widget. Null for null.
WindowRef referenceTo(QWidget *window);

// Whether the window at this address had a port and was destroyed, and no reference to a new window
// there was given since.
bool isOfGoneWindow(WindowRef reference);

// The port of a living window, made at the first call and destroyed with the window.
WindowPort &portOf(QWidget *window);

// The same for an address where the window may be destroyed: null then, and when no port was made.
WindowPort *madePortOf(const void *window);

}  // namespace korvel::platform::qt

#endif
