// SPDX-License-Identifier: MIT
// Gives out the letters, and presses what they stand for. Shortcuts of the toolkit would pass by
// the queue in which a dialog holds back keys, underline at all times, and know no accents.
#include "platform/qt/altletters.h"

#include <algorithm>

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QTabBar>

namespace korvel::platform::qt {
namespace {

// With the Alt key alone. Where Alt makes characters, as on some keyboards, the toolkit tells
// another key.
bool isWithAlt(const QKeyEvent &key) {
  const Qt::KeyboardModifiers others = Qt::ControlModifier | Qt::MetaModifier;
  return (key.modifiers() & (others | Qt::AltModifier)) == Qt::AltModifier;
}

bool typesSomething(const QKeyEvent &key) {
  return !key.text().isEmpty() && key.text().front().isPrint();
}

// -1 for a label without a letter that is free.
qsizetype firstFree(const QString &label, const QString &taken) {
  const auto *found = std::find_if(label.begin(), label.end(), [&](QChar character) {
    const QChar letter = plainLetter(character);
    return !letter.isNull() && !taken.contains(letter);
  });
  return found == label.end() ? -1 : found - label.begin();
}

// Null for a label without a mark.
QChar marked(const QString &label) {
  for (qsizetype at = label.indexOf(u'&'); at >= 0 && at + 1 < label.size();
       at = label.indexOf(u'&', at + 2))
    if (label.at(at + 1) != u'&') return label.at(at + 1);
  return {};
}

}  // namespace

QString markedLetters(const QWidget &window) {
  QString letters;
  const auto add = [&letters](const QString &label) { letters += plainLetter(marked(label)); };
  for (const auto *button : window.findChildren<QAbstractButton *>()) add(button->text());
  for (const auto *box : window.findChildren<QGroupBox *>()) add(box->title());
  for (const auto *label : window.findChildren<QLabel *>())
    if (label->buddy() != nullptr) add(label->text());
  for (const auto *tabs : window.findChildren<QTabBar *>())
    for (int tab = 0; tab < tabs->count(); ++tab) add(tabs->tabText(tab));
  return letters;
}

QChar plainLetter(QChar character) {
  if (character.isNull()) return {};
  const QString parts = QString(character).normalized(QString::NormalizationForm_D);
  const QChar letter = parts.front().toUpper();
  return letter >= u'A' && letter <= u'Z' ? letter : QChar();
}

void AltLetters::give(const std::vector<Item *> &buttons, QString taken) {
  letters_.clear();
  for (Item *item : buttons) {
    auto *button = qobject_cast<QAbstractButton *>(item->widget());
    if (button == nullptr || !marked(button->text()).isNull()) continue;
    const QString label = button->text();
    const qsizetype at = firstFree(label, taken);
    if (at < 0) continue;
    const QChar letter = plainLetter(label.at(at));
    taken += letter;
    letters_.push_back({letter, at, item, button});
  }
}

bool AltLetters::take(const QKeyEvent &key) {
  if (key.key() == Qt::Key_Alt) underline(key.type() == QEvent::KeyPress);
  if (key.type() == QEvent::KeyRelease || !isWithAlt(key) || !typesSomething(key)) return false;
  // An open pop-up or menu has the keys.
  if (!key.isAutoRepeat() && QApplication::activePopupWidget() == nullptr)
    press(plainLetter(key.text().front()));
  return true;
}

void AltLetters::underline(bool isShown) {
  if (isShown == isUnderlined_) return;
  isUnderlined_ = isShown;
  for (const Letter &each : letters_) each.item->underline(isShown ? each.at : -1);
}

// A check box gets the focus, as by a click.
void AltLetters::press(QChar letter) {
  const auto found = std::find_if(letters_.begin(), letters_.end(),
                                  [letter](const Letter &each) { return each.letter == letter; });
  if (found == letters_.end() || !found->button->isEnabled() || !found->button->isVisible()) return;
  if (found->item->kind() == ItemKind::CheckBox) found->button->setFocus(Qt::ShortcutFocusReason);
  found->button->click();
}

}  // namespace korvel::platform::qt
