// SPDX-License-Identifier: MIT
// For platform/qt/: the parts of a dialog that are not items.
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

// Of a discreet line, on light and dark desktops alike.
QColor lineColor(const QPalette &palette);

// A frame whose upper line is at half the title's height, interrupted by the title. This classic
// form leaves the contents at their classic coordinates.
class GroupBox final : public QGroupBox {
 public:
  GroupBox(QWidget *window, const Appearance &appearance, const Rect &rect, std::string_view title);

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  const QString title_;
  const int titleTop_;
};

// A single line too long for its rectangle runs on behind its neighbours; with room for more lines,
// the text wraps.
class StaticText final : public QLabel {
 public:
  StaticText(QWidget *window, const Appearance &appearance, const Rect &rect,
             std::string_view text);

 protected:
  void paintEvent(QPaintEvent *event) override;
};

// A picture scaled to fit its rectangle, centred.
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
