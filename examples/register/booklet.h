// SPDX-License-Identifier: MIT
// A widget of the application's own in which the library draws: a person's name, remarks and
// timeline.
#ifndef REGISTER_BOOKLET_H
#define REGISTER_BOOKLET_H

#include <QWidget>

#include "person.h"

namespace registry {

class Booklet : public QWidget {
 public:
  Booklet();

  // Null shows nobody.
  void setPerson(const Person *person);

  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  Person person_;
};

}  // namespace registry

#endif
