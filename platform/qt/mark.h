// SPDX-License-Identifier: MIT
// For platform/qt/: the mark of a field whose content cannot be accepted as it is.
#ifndef KORVEL_PLATFORM_QT_MARK_H
#define KORVEL_PLATFORM_QT_MARK_H

#include <QPalette>
#include <QString>

#include "platform/desktop.h"
#include "platform/qt/hint.h"

class QWidget;

namespace korvel::platform::qt {

// What is told of a marked field. `detail` may be empty.
QString markDescription(const QString &detail);

// A detail of it: what is to be entered.
QString wordsFor(Expected expected, int bound);

class Mark {
 public:
  // `surface` is the part of the field on which the mark is painted, `ground` its colour.
  Mark(QWidget &field, QWidget &surface, QPalette::ColorRole ground = QPalette::Base)
      : surface_(surface), ground_(ground), hint_(field) {}

  bool isShown() const { return isShown_; }
  void show(bool isShown);
  // What the field is to hold, told with the mark.
  void setExpected(const QString &words);

  // Paints a thin frame with a bar at its left edge; a focus frame stays visible around it. To be
  // called last while the surface is painted.
  void paint() const;

 private:
  void tell();

  QWidget &surface_;
  const QPalette::ColorRole ground_;
  Hint hint_;
  bool isShown_ = false;
  QString expected_;
};

}  // namespace korvel::platform::qt

#endif
