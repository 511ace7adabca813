// For platform/qt/: the mark of a field whose content cannot be accepted as it is.
#ifndef KORVEL_PLATFORM_QT_MARK_H
#define KORVEL_PLATFORM_QT_MARK_H

#include <QPalette>
#include <QString>

class QWidget;

namespace korvel::platform::qt {

// What a screen reader adds to the name of a marked field.
QString markDescription();

class Mark {
 public:
  // `surface` is the part of the field on which the mark is painted, `ground` its colour.
  Mark(QWidget &field, QWidget &surface, QPalette::ColorRole ground = QPalette::Base)
      : field_(field), surface_(surface), ground_(ground) {}

  bool isShown() const { return isShown_; }
  void show(bool isShown);

  // Paints a thin frame with a bar at its left edge; a focus frame stays visible around it. To be
  // called last while the surface is painted.
  void paint() const;

 private:
  QWidget &field_;
  QWidget &surface_;
  const QPalette::ColorRole ground_;
  bool isShown_ = false;
  QString description_;  // the field's own, while the mark is shown
};

}  // namespace korvel::platform::qt

#endif
