// For platform/qt/ only: pop-ups.
#ifndef KORVEL_PLATFORM_QT_POPUPITEM_H
#define KORVEL_PLATFORM_QT_POPUPITEM_H

#include <QComboBox>

#include "platform/qt/appearance.h"
#include "platform/qt/item.h"

class QStringListModel;

namespace korvel::platform::qt {

class PopUpItem final : public QComboBox, public Item {
 public:
  PopUpItem(QWidget *parent, HitSink &sink, int number);
  PopUpItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
            const Rect &rect);

  QWidget *widget() override { return this; }
  int value() const override { return currentIndex() + 1; }
  void setValue(int value) override;
  void setEntries(const std::vector<std::string> &entries) override;
  int entryCount() const override { return count(); }
  std::string entry(int index) const override;

 protected:
  // The wheel turns what lies under it, and never a choice.
  void wheelEvent(QWheelEvent *event) override;

 private:
  QStringListModel *const choices_;
};

}  // namespace korvel::platform::qt

#endif
