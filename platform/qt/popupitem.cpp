// SPDX-License-Identifier: MIT
// Pop-ups that tell a choice as a hit.
#include "platform/qt/popupitem.h"

#include <QStringListModel>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

#include "platform/qt/contrast.h"
#include "platform/qt/fieldaccess.h"
#include "platform/qt/outline.h"
#include "platform/qt/text.h"

namespace korvel::platform::qt {

PopUpItem::PopUpItem(QWidget *parent, HitSink &sink, int number)
    : QComboBox(parent), Item(sink, number, ItemKind::PopUp), choices_(new QStringListModel(this)) {
  setModel(choices_);
  connect(this, &QComboBox::activated, this, [this] { hit(); });
}

PopUpItem::PopUpItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
                     const Rect &rect)
    : PopUpItem(window, sink, number) {
  setGeometry(appearance.popUp(rect));
}

void PopUpItem::initStyleOption(QStyleOptionComboBox *option) const {
  QComboBox::initStyleOption(option);
  option->palette = shared(option->palette);
}

void PopUpItem::paintEvent(QPaintEvent *event) {
  QComboBox::paintEvent(event);
  if (hasFrame()) outlineField(*this, QPalette::Button);
  mark_.paint();
}

void PopUpItem::setValue(int value) {
  if (value >= 0 && value <= count()) setCurrentIndex(value - 1);
}

void PopUpItem::setEntries(const std::vector<std::string> &entries) {
  QStringList shown;
  shown.reserve(static_cast<qsizetype>(entries.size()));
  for (const std::string &entry : entries) shown << toQt(entry);
  choices_->setStringList(shown);
  setCurrentIndex(-1);
}

std::string PopUpItem::entry(int index) const { return fromQt(itemText(index)); }

void PopUpItem::chooseByPerson(int index) {
  if (index < 0 || index >= count() || !mayBeUsed(*this)) return;
  setCurrentIndex(index);
  hit();
}

void PopUpItem::wheelEvent(QWheelEvent *event) { event->ignore(); }

}  // namespace korvel::platform::qt
