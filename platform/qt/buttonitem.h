// SPDX-License-Identifier: MIT
// For platform/qt/: push buttons and check boxes.
#ifndef KORVEL_PLATFORM_QT_BUTTONITEM_H
#define KORVEL_PLATFORM_QT_BUTTONITEM_H

#include <QCheckBox>
#include <QPushButton>

#include "platform/qt/appearance.h"
#include "platform/qt/hint.h"
#include "platform/qt/item.h"

namespace korvel::platform::qt {

class ButtonItem final : public QPushButton, public Item {
 public:
  ButtonItem(QWidget *parent, HitSink &sink, int number);
  ButtonItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
             const Rect &rect, std::string_view title);

  QWidget *widget() override { return this; }
  void setDefault(bool isDefault) override { QPushButton::setDefault(isDefault); }
  void underline(qsizetype at) override;
  void explain(const QString &words) override { hint_.tell(words); }

 protected:
  void initStyleOption(QStyleOptionButton *option) const override;
  void paintEvent(QPaintEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;

 private:
  qsizetype underlined_ = -1;
  Hint hint_{*this};
};

// A click is a hit and leaves the value to the program.
class CheckItem final : public QCheckBox, public Item {
 public:
  CheckItem(QWidget *parent, HitSink &sink, int number);
  CheckItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
            const Rect &rect, std::string_view title);

  QWidget *widget() override { return this; }
  int value() const override { return isChecked() ? 1 : 0; }
  void setValue(int value) override;
  void underline(qsizetype at) override;

 protected:
  void paintEvent(QPaintEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  // A box without a number belongs to the form alone, and keeps its own value.
  void nextCheckState() override;

 private:
  void refuseToggle(bool isOn);

  bool isSetOn_ = false;
  qsizetype underlined_ = -1;
};

}  // namespace korvel::platform::qt

#endif
