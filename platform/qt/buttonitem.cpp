// SPDX-License-Identifier: MIT
// Push buttons and check boxes that tell their clicks as hits.
#include "platform/qt/buttonitem.h"

#include <algorithm>

#include <QKeyEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

#include "platform/qt/contrast.h"
#include "platform/qt/fieldaccess.h"
#include "platform/qt/mostpixels.h"
#include "platform/qt/outline.h"
#include "platform/qt/text.h"

namespace korvel::platform::qt {
namespace {

// Between a button's border and its title.
constexpr int kTitleMargin = 5;

// Return belongs to the default item and never to the button with the focus.
bool isReturn(const QKeyEvent &event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

// As the style draws the button, with a letter of its label underlined.
void paintUnderlined(QWidget &button, QStyleOptionButton option, QStyle::ControlElement element,
                     qsizetype at) {
  if (at <= option.text.size()) option.text.insert(at, u'&');
  QStylePainter painter(&button);
  painter.drawControl(element, option);
}

}  // namespace

ButtonItem::ButtonItem(QWidget *parent, HitSink &sink, int number)
    : QPushButton(parent), Item(sink, number, ItemKind::PushButton) {
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, [this] { hit(); });
}

ButtonItem::ButtonItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
                       const Rect &rect, std::string_view title)
    : ButtonItem(window, sink, number) {
  QAbstractButton::setText(withoutShortcuts(toQt(title)));
  setAccessibleName(toQt(title));
  setGeometry(appearance.pushButton(rect));
  resize(withinMostPixels(size(), devicePixelRatioF()));
  setFont(narrowedToFit(appearance.font, toQt(title), rect.width() - 2 * kTitleMargin));
}

void ButtonItem::underline(qsizetype at) {
  underlined_ = at;
  update();
}

void ButtonItem::initStyleOption(QStyleOptionButton *option) const {
  QPushButton::initStyleOption(option);
  option->palette = shared(option->palette);
}

void ButtonItem::paintEvent(QPaintEvent *event) {
  if (underlined_ < 0) {
    QPushButton::paintEvent(event);
  } else {
    QStyleOptionButton option;
    initStyleOption(&option);
    paintUnderlined(*this, option, QStyle::CE_PushButton, underlined_);
  }
  if (isFlat() || isStyledByForm(*this)) return;
  paintOutline(*this, rect(), QPalette::Button, isEnabled() && (isDefault() || hasFocus()));
}

void ButtonItem::keyPressEvent(QKeyEvent *event) {
  if (isReturn(*event)) {
    event->ignore();
  } else {
    QPushButton::keyPressEvent(event);
  }
}

CheckItem::CheckItem(QWidget *parent, HitSink &sink, int number)
    : QCheckBox(parent), Item(sink, number, ItemKind::CheckBox) {
  connect(this, &QCheckBox::clicked, this, [this] { hit(); });
  connect(this, &QCheckBox::toggled, this, [this](bool isOn) { refuseToggle(isOn); });
}

CheckItem::CheckItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
                     const Rect &rect, std::string_view title)
    : CheckItem(window, sink, number) {
  QAbstractButton::setText(withoutShortcuts(toQt(title)));
  setAccessibleName(toQt(title));
  QRect place = appearance.checkBox(rect);
  place.setWidth(std::max(place.width(), sizeHint().width()));
  setGeometry(place);
  lower();  // a title that is wider than its rectangle stays behind its neighbours
}

void CheckItem::setValue(int value) {
  isSetOn_ = value != 0;
  setChecked(isSetOn_);
}

void CheckItem::underline(qsizetype at) {
  underlined_ = at;
  update();
}

void CheckItem::nextCheckState() {
  if (number() == 0) QCheckBox::nextCheckState();
}

// A screen reader toggles the box itself, where a mouse would click on it.
void CheckItem::refuseToggle(bool isOn) {
  if (isOn == isSetOn_) return;
  if (!isVisible() || number() == 0) {  // set by the form
    isSetOn_ = isOn;
    return;
  }
  setChecked(isSetOn_);
  if (mayBeUsed(*this)) hit();
}

void CheckItem::paintEvent(QPaintEvent *event) {
  QStyleOptionButton option;
  initStyleOption(&option);
  if (underlined_ < 0) {
    QCheckBox::paintEvent(event);
  } else {
    paintUnderlined(*this, option, QStyle::CE_CheckBox, underlined_);
  }
  if (isStyledByForm(*this)) return;
  const QRect box = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
  paintOutline(*this, box, QPalette::Base, hasFocus());
}

void CheckItem::keyPressEvent(QKeyEvent *event) {
  if (isReturn(*event)) {
    event->ignore();
  } else {
    QCheckBox::keyPressEvent(event);
  }
}

}  // namespace korvel::platform::qt
