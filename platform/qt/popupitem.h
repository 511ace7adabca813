// SPDX-License-Identifier: MIT
// For platform/qt/: pop-ups.
#ifndef KORVEL_PLATFORM_QT_POPUPITEM_H
#define KORVEL_PLATFORM_QT_POPUPITEM_H

#include <QComboBox>

#include "platform/qt/appearance.h"
#include "platform/qt/item.h"
#include "platform/qt/mark.h"

class QStringListModel;

namespace korvel::platform::qt {

class PopUpItem final : public QComboBox, public Item {
 public:
  PopUpItem(QWidget *parent, HitSink &sink, int number);
  PopUpItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
            const Rect &rect);

  QWidget *widget() override { return this; }
  Mark *mark() override { return &mark_; }
  int value() const override { return currentIndex() + 1; }
  void setValue(int value) override;
  void setEntries(const std::vector<std::string> &entries) override;
  int entryCount() const override { return count(); }
  std::string entry(int index) const override;

  // As if a person had chosen the entry, numbered from 0: a hit, unless there is no such entry, or
  // the dialog takes no input now.
  void chooseByPerson(int index);

 protected:
  void initStyleOption(QStyleOptionComboBox *option) const override;
  void paintEvent(QPaintEvent *event) override;
  // The wheel scrolls what is under the pop-up; it never changes the choice.
  void wheelEvent(QWheelEvent *event) override;

 private:
  QStringListModel *const choices_;
  Mark mark_{*this, *this, QPalette::Button};
};

}  // namespace korvel::platform::qt

#endif
