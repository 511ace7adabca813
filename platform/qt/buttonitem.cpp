#include "platform/qt/buttonitem.h"

#include <QKeyEvent>
#include <algorithm>

#include "platform/qt/fieldaccess.h"
#include "platform/qt/text.h"

namespace korvel::platform::qt {
namespace {

// Between a button's border and its title.
constexpr int kTitleMargin = 5;

// Return belongs to the default item and never to the button with the focus.
bool isReturn(const QKeyEvent &event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

ButtonItem::ButtonItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
                       const Rect &rect, std::string_view title)
    : QPushButton(withoutShortcuts(toQt(title)), window), Item(sink, number, ItemKind::PushButton) {
  setAutoDefault(false);
  setAccessibleName(toQt(title));
  setGeometry(appearance.pushButton(rect));
  setFont(narrowedToFit(appearance.font, toQt(title), rect.width() - 2 * kTitleMargin));
  connect(this, &QPushButton::clicked, this, [this] { hit(); });
}

void ButtonItem::keyPressEvent(QKeyEvent *event) {
  if (isReturn(*event))
    event->ignore();
  else
    QPushButton::keyPressEvent(event);
}

CheckItem::CheckItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
                     const Rect &rect, std::string_view title)
    : QCheckBox(withoutShortcuts(toQt(title)), window), Item(sink, number, ItemKind::CheckBox) {
  setAccessibleName(toQt(title));
  QRect place = appearance.checkBox(rect);
  place.setWidth(std::max(place.width(), sizeHint().width()));
  setGeometry(place);
  lower();  // a title that is wider than its rectangle stays behind its neighbours
  connect(this, &QCheckBox::clicked, this, [this] { hit(); });
  connect(this, &QCheckBox::toggled, this, [this](bool isOn) { refuseToggle(isOn); });
}

void CheckItem::setValue(int value) {
  isSetOn_ = value != 0;
  setChecked(isSetOn_);
}

// A screen reader toggles the box where the mouse would click on it.
void CheckItem::refuseToggle(bool isOn) {
  if (isOn == isSetOn_) return;
  setChecked(isSetOn_);
  if (mayBeUsed(*this)) hit();
}

void CheckItem::keyPressEvent(QKeyEvent *event) {
  if (isReturn(*event))
    event->ignore();
  else
    QCheckBox::keyPressEvent(event);
}

}  // namespace korvel::platform::qt
