// For platform/qt/ only: the mark of a field whose content cannot be accepted as it is.
#ifndef KORVEL_PLATFORM_QT_MARK_H
#define KORVEL_PLATFORM_QT_MARK_H

#include <QColor>
#include <QString>

class QWidget;

namespace korvel::platform::qt {

// Amber stands out from light and dark grounds alike, and from a blue focus frame also for people
// who do not see red or green.
QColor markColor();

// What a screen reader adds to the name of a marked field.
QString markDescription();

class Mark {
 public:
  // `surface` is the part of the field on which the mark is painted.
  Mark(QWidget &field, QWidget &surface) : field_(field), surface_(surface) {}

  bool isShown() const { return isShown_; }
  void show(bool isShown);

  // To be called while the surface is painted, after all else: a thin frame with a bar at its left
  // edge. A focus frame stays in view around it.
  void paint() const;

 private:
  QWidget &field_;
  QWidget &surface_;
  bool isShown_ = false;
  QString description_;  // the field's own, while the mark is shown
};

}  // namespace korvel::platform::qt

#endif
