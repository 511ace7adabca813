// SPDX-License-Identifier: MIT
// A widget of the application's own in which the library draws: a person's name and timeline.
#ifndef REGISTER_BOOKLET_H
#define REGISTER_BOOKLET_H

#include <QWidget>

#include "person.h"

namespace registry {

class Booklet : public QWidget {
 public:
  using QWidget::QWidget;

  // Null shows nobody.
  void setPerson(const Person *person);

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  Person person_;
};

}  // namespace registry

#endif
