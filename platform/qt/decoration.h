// For platform/qt/ only: what stands in a dialog without being an item.
#ifndef KORVEL_PLATFORM_QT_DECORATION_H
#define KORVEL_PLATFORM_QT_DECORATION_H

#include <string>
#include <string_view>

#include <QGroupBox>
#include <QLabel>
#include <QPixmap>
#include <QString>
#include <QWidget>

#include "platform/qt/appearance.h"

namespace korvel::platform::qt {

// A frame whose upper line, at half the height of the title, the title interrupts: the classic
// form, which leaves its contents the place that they have in classic coordinates.
class GroupBox final : public QGroupBox {
 public:
  GroupBox(QWidget *window, const Appearance &appearance, const Rect &rect, std::string_view title);

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  const QString title_;
  const int titleTop_;
};

// One line that is too long for its rectangle runs on behind its neighbours; with room for more,
// the text is wrapped.
class StaticText final : public QLabel {
 public:
  StaticText(QWidget *window, const Appearance &appearance, const Rect &rect,
             std::string_view text);

 protected:
  void paintEvent(QPaintEvent *event) override;
};

// A picture as large as fits into its rectangle, in the middle.
class Icon final : public QWidget {
 public:
  Icon(QWidget *window, const Rect &rect, const std::string &path);

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  const std::string path_;
  QPixmap picture_;    // rendered for the screen on which it was last painted
  qreal readFor_ = 0;  // that screen's pixel ratio
};

}  // namespace korvel::platform::qt

#endif
