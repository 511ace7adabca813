// SPDX-License-Identifier: MIT
// Builds a dialog, item by item or from a form, and runs it: gives the initial focus, queues hits,
// ends.
#include "platform/qt/qtdialog.h"

#include <algorithm>
#include <utility>

#include <QAccessible>
#include <QApplication>
#include <QHash>
#include <QLayout>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QThread>
#include <QWindow>

#include "platform/qt/alerticon.h"
#include "platform/qt/buttonitem.h"
#include "platform/qt/decoration.h"
#include "platform/qt/fieldaccess.h"
#include "platform/qt/formloader.h"
#include "platform/qt/listitem.h"
#include "platform/qt/mark.h"
#include "platform/qt/popupitem.h"
#include "platform/qt/text.h"
#include "platform/qt/textitem.h"
#include "platform/qt/windowport.h"
#include "platform/qt/xserver.h"

namespace korvel::platform::qt {
namespace {

// Has assistive software read a message out without being asked.
void announce(QWidget &window) {
  QAccessibleEvent alert(&window, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

// Not for long: it may be on another desktop of the screen.
void waitUntilSeen(QWidget &window, const XServerWatch &watch) {
  constexpr int kTries = 40;
  constexpr unsigned long kPause = 5;  // ms
  const auto isUnseen = [&] {
    return !watch.hasSeenItGo() && window.isVisible() && !window.windowHandle()->isExposed();
  };
  for (int n = 0; n < kTries && isUnseen(); ++n) {
    QThread::msleep(kPause);
    QCoreApplication::processEvents();
  }
}

// The dialog whose hit is being handled.
constinit DialogWindow *inHit = nullptr;

// Far larger than any screen.
constexpr QSize kLargest(4096, 4096);

// Also before the window is shown. An item on a hidden page cannot.
bool canHaveFocus(Item &item) {
  return item.widget()->isEnabled() && item.widget()->focusPolicy() != Qt::NoFocus &&
         item.widget()->isVisibleTo(item.widget()->window());
}

// Whether the item has a content that a label names.
bool isField(const Item &item) {
  return item.kind() == ItemKind::EditText || item.kind() == ItemKind::PopUp ||
         item.kind() == ItemKind::ListBox;
}

}  // namespace

QtDialog::QtDialog() : appearance_(Appearance::ofDesktop()) {
  installFieldAccess();
  window_.onReturn = [this] { pressDefault(); };
  window_.onCancel = [this] { pressCancel(); };
}

QtDialog::QtDialog(const Rect &bounds, QWidget *parent, std::string_view title) : QtDialog() {
  window_.setFont(appearance_.font);
  window_.setContentRect(toQt(bounds));
  window_.setFrontOf(parent);
  setTitle(title);
}

std::unique_ptr<QtDialog> QtDialog::fromTemplate(const std::string &path, QWidget *parent,
                                                 std::string &problem) {
  std::unique_ptr<QtDialog> dialog(new QtDialog);
  DialogWindow &window = dialog->window_;
  LoadedForm loaded;
  if (!loadForm(path, window, *dialog, loaded, problem)) return nullptr;
  dialog->items_ = std::move(loaded.items);
  dialog->followTabOrder();
  dialog->setDefaultItem(loaded.defaultItem > 0 ? loaded.defaultItem : kOkItem);
  dialog->showTitle(window.windowTitle());
  dialog->place(window.testAttribute(Qt::WA_Resized) ? window.size() : QSize(), parent);
  window.standBelow(dialog->buttonsInReach());
  return dialog;
}

// A layout is given the room that it needs.
void QtDialog::place(QSize designed, QWidget *parent) {
  const QLayout *layout = window_.layout();
  const QSize needed = layout != nullptr ? layout->totalMinimumSize() : QSize(1, 1);
  if (designed.isEmpty()) designed = layout != nullptr ? layout->totalSizeHint() : QSize(1, 1);
  const QSize size = designed.expandedTo(needed).boundedTo(kLargest);
  const QScreen *screen = QGuiApplication::primaryScreen();
  QRect around = screen != nullptr ? screen->availableGeometry() : QRect();
  if (parent != nullptr && parent->isVisible()) around = parent->geometry();
  QRect content(QPoint(), size);
  content.moveCenter(around.center());
  window_.setContentRect(content);
  if (parent != nullptr && parent->isVisible()) window_.setFrontOf(parent);
}

// In a dialog that scrolls: the pair, or all buttons of a message.
std::vector<QWidget *> QtDialog::buttonsInReach() const {
  std::vector<QWidget *> buttons;
  for (Item *item : tabOrder_) {
    const bool isOfThePair = item->number() == kOkItem || item->number() == kCancelItem;
    if (item->kind() == ItemKind::PushButton && (isOfThePair || message_ != nullptr))
      buttons.push_back(item->widget());
  }
  return buttons;
}

void QtDialog::followTabOrder() {
  QHash<QWidget *, Item *> items;
  for (Item *item : items_)
    if (item != nullptr) items.insert(item->widget(), item);
  for (QWidget *next = window_.nextInFocusChain(); next != &window_;
       next = next->nextInFocusChain())
    if (Item *item = items.value(next)) tabOrder_.push_back(item);
}

WindowRef QtDialog::window() { return referenceTo(&window_); }

void QtDialog::setTitle(std::string_view title) { showTitle(toQt(title)); }

void QtDialog::showTitle(QString title) {
  // "[*]" alone is Qt's mark of a changed document.
  window_.setWindowTitle(title.replace(QLatin1String("[*]"), QLatin1String("[*][*]")));
  if (bar_ != nullptr) bar_->setAccessibleName(window_.windowTitle());
}

Item *QtDialog::makeItem(ItemKind kind, int number, const Rect &rect, std::string_view title) {
  switch (kind) {
    case ItemKind::PushButton:
      return new ButtonItem(window_.ground(), *this, number, appearance_, rect, title);
    case ItemKind::CheckBox:
      return new CheckItem(window_.ground(), *this, number, appearance_, rect, title);
    case ItemKind::ListBox:
      return new ListItem(window_.ground(), *this, number, appearance_, rect);
    case ItemKind::PopUp:
      return new PopUpItem(window_.ground(), *this, number, appearance_, rect);
    case ItemKind::EditText:
      if (appearance_.fieldHasSeveralLines(rect))
        return new LinesItem(window_.ground(), *this, number, appearance_, rect);
      return new LineItem(window_.ground(), *this, number, appearance_, rect);
    case ItemKind::None:
      break;
  }
  return nullptr;
}

int QtDialog::addItem(ItemKind kind, const Rect &rect, std::string_view title) {
  const int number = static_cast<int>(items_.size()) + 1;
  Item *item = makeItem(kind, number, rect, title);
  if (item == nullptr) return 0;
  items_.push_back(item);
  tabOrder_.push_back(item);
  return number;
}

void QtDialog::addGroupBox(const Rect &rect, std::string_view title) {
  new GroupBox(window_.ground(), appearance_, rect, title);
}

void QtDialog::addStaticText(const Rect &rect, std::string_view text) {
  new StaticText(window_.ground(), appearance_, rect, text);
}

void QtDialog::addIcon(const Rect &rect, const std::string &path) {
  new Icon(window_.ground(), rect, path);
}

void QtDialog::addMessage(const Rect &pane, std::string_view text, const MessageStyle &style) {
  if (message_ != nullptr) return;
  message_ = new MessagePane(window_.ground(), pane, text, style);
  window_.setAccessibleDescription(message_->text());
  actAsMessageBox();
}

void QtDialog::addAlertIcon(const Rect &rect, AlertIcon icon) {
  new AlertIconWidget(window_.ground(), rect, icon);
}

void QtDialog::addProgressBar(const Rect &rect) {
  if (bar_ == nullptr) bar_ = new ProgressBar(window_.ground(), toQt(rect));
}

void QtDialog::setProgress(int done, int total) {
  if (bar_ != nullptr) bar_->show(done, total);
}

Item *QtDialog::find(int item) const {
  const bool exists = item >= 1 && static_cast<std::size_t>(item) <= items_.size();
  return exists ? items_[static_cast<std::size_t>(item) - 1] : nullptr;
}

void QtDialog::setDefaultItem(int item) {
  if (Item *before = find(default_)) before->setDefault(false);
  default_ = item;
  if (Item *found = find(item)) found->setDefault(true);
}

ItemKind QtDialog::kind(int item) const {
  const Item *found = find(item);
  return found == nullptr ? ItemKind::None : found->kind();
}

std::string QtDialog::text(int item) const {
  const Item *found = find(item);
  return found == nullptr ? std::string() : found->text();
}

void QtDialog::setText(int item, std::string_view text) {
  if (Item *found = find(item)) found->setText(text);
}

void QtDialog::selectText(int item) {
  if (Item *found = find(item)) found->selectText();
}

void QtDialog::setSecret(int item) {
  if (Item *found = find(item)) found->setSecret();
}

int QtDialog::value(int item) const {
  const Item *found = find(item);
  return found == nullptr ? 0 : found->value();
}

void QtDialog::setValue(int item, int value) {
  if (Item *found = find(item)) found->setValue(value);
}

void QtDialog::setEntries(int item, const std::vector<std::string> &entries) {
  if (Item *found = find(item)) found->setEntries(entries);
}

int QtDialog::entryCount(int item) const {
  const Item *found = find(item);
  return found == nullptr ? 0 : found->entryCount();
}

std::string QtDialog::entry(int item, int index) const {
  const Item *found = find(item);
  return found == nullptr ? std::string() : found->entry(index);
}

ListClick QtDialog::lastClick(int item) const {
  const Item *found = find(item);
  return found == nullptr ? ListClick() : found->lastClick();
}

void QtDialog::setEnabled(int item, bool enabled) {
  Item *found = find(item);
  if (found == nullptr) return;
  // An item inside a widget that a form disables is enabled with that widget, unless it is disabled
  // itself.
  const bool isDisabled = found->widget()->testAttribute(Qt::WA_ForceDisabled);
  if (isDisabled != enabled) return;
  if (!enabled) keepFocusFrom(found->widget());
  found->widget()->setEnabled(enabled);
}

void QtDialog::setAcceptable(int item, bool acceptable) {
  if (Mark *mark = markOf(item)) mark->show(!acceptable);
}

void QtDialog::setExpected(int item, Expected expected, int bound) {
  if (Mark *mark = markOf(item)) mark->setExpected(wordsFor(expected, bound));
}

void QtDialog::setDateParts(int day, int month, int year) {
  dates_.push_back({day, month, year});
  for (const int part : {day, month, year}) setExpected(part, Expected::Date, 0);
}

// Null for an item that cannot be marked.
Mark *QtDialog::markOf(int item) const {
  Item *found = find(item);
  return found != nullptr ? found->mark() : nullptr;
}

// Fields are named when the dialog is complete.
void QtDialog::setName(int item, std::string_view name) {
  Item *found = find(item);
  if (found == nullptr) return;
  if (isField(*found)) {
    names_[found->widget()] = toQt(name);
  } else {
    found->widget()->setAccessibleName(toQt(name));
  }
}

QWidget *QtDialog::fieldWidget(int item) const {
  Item *found = find(item);
  return found != nullptr && isField(*found) ? found->widget() : nullptr;
}

void QtDialog::giveNames() {
  std::vector<QWidget *> fields;
  for (Item *item : tabOrder_)
    if (isField(*item)) fields.push_back(item->widget());
  std::vector<DateFields> dates;
  for (const DateItems &date : dates_)
    dates.push_back({fieldWidget(date.day), fieldWidget(date.month), fieldWidget(date.year)});
  nameFields(window_, fields, dates, names_);
}

// The pair chooses first.
void QtDialog::giveLetters() {
  if (message_ != nullptr || bar_ != nullptr) return;
  std::vector<Item *> buttons;
  for (const int item : {kOkItem, kCancelItem})
    if (Item *found = find(item)) buttons.push_back(found);
  for (QWidget *next = window_.nextInFocusChain(); next != &window_;
       next = next->nextInFocusChain()) {
    auto *item = dynamic_cast<Item *>(next);
    const bool isOfThePair =
        item != nullptr && (item->number() == kOkItem || item->number() == kCancelItem);
    if (item != nullptr && !isOfThePair) buttons.push_back(item);
  }
  window_.letters().give(buttons, markedLetters(window_));
}

Item *QtDialog::firstEnabled(ItemKind kind) const {
  const auto found = std::find_if(tabOrder_.begin(), tabOrder_.end(), [kind](Item *item) {
    return item->kind() == kind && canHaveFocus(*item);
  });
  return found == tabOrder_.end() ? nullptr : *found;
}

Item *QtDialog::firstField() const {
  const auto found = std::find_if(tabOrder_.begin(), tabOrder_.end(), [](Item *item) {
    return item->kind() != ItemKind::PushButton && canHaveFocus(*item);
  });
  return found == tabOrder_.end() ? nullptr : *found;
}

Item *QtDialog::itemForInitialFocus() const {
  if (message_ != nullptr) return find(default_);
  if (Item *first = firstEnabled(ItemKind::EditText)) return first;
  if (Item *first = firstField()) return first;
  return firstEnabled(ItemKind::PushButton);
}

void QtDialog::giveInitialFocus() {
  if (bar_ != nullptr) return bar_->setFocus(Qt::TabFocusReason);
  Item *first = itemForInitialFocus();
  if (first == nullptr) return;
  first->widget()->setFocus(Qt::TabFocusReason);
  first->selectText();
}

// A date as a whole, whose parts are marked together.
QString QtDialog::nameOf(Item &field) const {
  const QString name = field.widget()->accessibleName();
  const bool isPart = std::any_of(dates_.begin(), dates_.end(), [&](const DateItems &date) {
    return field.number() == date.day || field.number() == date.month ||
           field.number() == date.year;
  });
  return isPart ? nameWithoutPart(name) : name;
}

QString QtDialog::whyOkIsGrey() const {
  const auto first = std::find_if(tabOrder_.begin(), tabOrder_.end(), [](Item *item) {
    return item->mark() != nullptr && item->mark()->isShown();
  });
  return markDescription(first != tabOrder_.end() ? nameOf(**first) : QString());
}

void QtDialog::explainOk() {
  Item *ok = find(kOkItem);
  if (ok == nullptr) return;
  const bool isGrey = ok->widget()->testAttribute(Qt::WA_ForceDisabled);
  ok->explain(isGrey ? whyOkIsGrey() : QString());
}

void QtDialog::actAsMessageBox() {
  std::vector<QPushButton *> buttons;
  for (Item *item : tabOrder_) {
    auto *button = qobject_cast<QPushButton *>(item->widget());
    if (button == nullptr) continue;
    button->setAutoDefault(true);  // looks like the default while it has the focus
    button->setText(withShortcut(button->text()));
    buttons.push_back(button);
  }
  message_->serve(buttons);
}

// Qt would move the focus of a disabled button to the next button, which the next key could press.
void QtDialog::keepFocusFrom(QWidget *disabled) {
  if (window_.focusWidget() != disabled) return;
  for (Item *item : tabOrder_) {
    const bool isField = item->kind() == ItemKind::EditText;
    if (!isField || item->widget() == disabled || !canHaveFocus(*item)) continue;
    item->widget()->setFocus(Qt::TabFocusReason);
    return;
  }
}

int QtDialog::returnItem() const {
  if (message_ == nullptr && bar_ == nullptr) return default_;
  const auto focused = std::find_if(tabOrder_.begin(), tabOrder_.end(), [](Item *item) {
    return item->kind() == ItemKind::PushButton && item->widget()->hasFocus();
  });
  return focused == tabOrder_.end() ? default_ : (*focused)->number();
}

void QtDialog::pressDefault() {
  Item *item = find(returnItem());
  if (item != nullptr && item->widget()->isEnabled()) itemHit(item->number());
}

// A dialog without a cancel item can be cancelled too, and one whose form disables a widget around
// the item.
void QtDialog::pressCancel() {
  Item *item = find(kCancelItem);
  if (item == nullptr || !item->widget()->testAttribute(Qt::WA_ForceDisabled)) itemHit(kCancelItem);
}

// A hit that comes during another one, because its source cannot be held back, is reported after
// it.
bool QtDialog::itemHit(int item) {
  waiting_.push_back(item);
  if (isInHit_) return false;
  while (handler_ != nullptr && !waiting_.empty()) {
    const int next = waiting_.front();
    waiting_.pop_front();
    tell(next);
  }
  waiting_.clear();
  return true;
}

void QtDialog::tell(int item) {
  isInHit_ = true;
  window_.holdInput();
  DialogWindow *outer = std::exchange(inHit, &window_);
  const Run run = handler_->hit(item);
  inHit = outer;
  isInHit_ = false;
  if (run == Run::Continue) {
    explainOk();
    window_.releaseInput();
    return;
  }
  handler_ = nullptr;
  hasStopped_ = true;
  window_.dropInput();
  if (loop_ != nullptr) return loop_->quit();
  leaveScreen();
}

void QtDialog::comeUp(HitHandler &handler) {
  before_ = QApplication::activeWindow();
  handler_ = &handler;
  window_.standBelow(buttonsInReach());
  giveNames();
  giveLetters();
  explainOk();
  giveInitialFocus();
  DialogWindow *behind = QApplication::activeModalWidget() == inHit ? inHit : nullptr;
  window_.show();
  window_.showFocus();
  if (behind != nullptr) window_.leaveKeysTo(*behind);
  window_.activateWindow();
  if (message_ != nullptr) announce(window_);
}

void QtDialog::leaveScreen() {
  window_.blockBehind();
  window_.hide();
  if (before_ != nullptr) before_->activateWindow();
  before_ = nullptr;
}

void QtDialog::runModal(HitHandler &handler) {
  if (loop_ != nullptr) return;
  comeUp(handler);

  QEventLoop loop;
  loop_ = &loop;
  {
    const XServerWatch watch([&loop] { loop.quit(); });
    loop.exec();
  }
  loop_ = nullptr;
  handler_ = nullptr;

  leaveScreen();
}

// The next step may be long in coming: at the first one the window is seen.
void QtDialog::runStep(HitHandler &handler) {
  if (hasStopped_ || loop_ != nullptr) return;
  const bool isFirst = handler_ == nullptr;
  if (isFirst) comeUp(handler);
  const XServerWatch watch([this] { goDown(); });
  QCoreApplication::processEvents();
  if (isFirst) waitUntilSeen(window_, watch);
}

// There is nobody any more who could stop it.
void QtDialog::goDown() {
  handler_ = nullptr;
  hasStopped_ = true;
  leaveScreen();
}

}  // namespace korvel::platform::qt
