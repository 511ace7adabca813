// SPDX-License-Identifier: MIT
// For platform/qt/: the part that scrolls of a dialog larger than the free area of its screen.
#ifndef KORVEL_PLATFORM_QT_SCROLLEDBODY_H
#define KORVEL_PLATFORM_QT_SCROLLEDBODY_H

#include <vector>

#include <QAbstractScrollArea>
#include <QAbstractSlider>

namespace korvel::platform::qt {

// Shows a part of a ground as large as the whole dialog, on which all items lie in their places.
// The toolkit keeps pixels of what is shown alone.
class ScrolledBody final : public QAbstractScrollArea {
 public:
  // Takes in what the window holds, and its layout.
  ScrolledBody(QWidget *window, const QSize &size);
  // The body whose ground this is; null for any other widget.
  static ScrolledBody *withGround(const QWidget &widget);

  QWidget *ground() const { return ground_; }
  // What is reached by scrolling.
  QSize wholeSize() const;

  // For buttons that are to stand elsewhere: nothing is reached below their upper edge where
  // nothing else lies there. To be called before they go; settle() is, after it.
  void leaveOut(const std::vector<QWidget *> &buttons);
  void settle();
  // What was drawn on the ground down to here is reached as well.
  void reachTo(int bottom);

  // Only as far as needed. An item larger than what is shown stays where it fills that.
  void bringIntoView(const QWidget &item);
  void turn(QAbstractSlider::SliderAction page);
  // As over the body itself.
  void wheel(QWheelEvent &event) { wheelEvent(&event); }

 protected:
  bool event(QEvent *event) override;
  void scrollContentsBy(int dx, int dy) override;
  void keyPressEvent(QKeyEvent *event) override;
  // The wheel scrolls over a spin box, a slider and tabs, too, where the toolkit's would change
  // them.
  bool eventFilter(QObject *object, QEvent *event) override;

 private:
  void takeIn(QWidget &window);
  void keepFromWheel();
  QSize shownSize() const;
  void measure();

  QWidget *const ground_;
  int itemsReach_;
  int drawnReach_ = 0;
};

}  // namespace korvel::platform::qt

#endif
