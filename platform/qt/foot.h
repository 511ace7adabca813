// SPDX-License-Identifier: MIT
// For platform/qt/: the foot of a dialog that scrolls, with the buttons that are always in reach.
#ifndef KORVEL_PLATFORM_QT_FOOT_H
#define KORVEL_PLATFORM_QT_FOOT_H

#include <vector>

#include <QWidget>

namespace korvel::platform::qt {

// Its buttons stand side by side in the middle, in the order in which they were designed. They are
// shown and enabled with what they were designed in.
class Foot final : public QWidget {
 public:
  explicit Foot(QWidget *window) : QWidget(window) {}

  void add(const std::vector<QWidget *> &buttons);
  bool isEmpty() const { return buttons_.empty(); }
  // What the buttons need; nothing without any.
  QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  std::vector<QWidget *> buttons_;
};

}  // namespace korvel::platform::qt

#endif
