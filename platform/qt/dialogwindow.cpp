// SPDX-License-Identifier: MIT
// The window that never closes by itself, and that queues input during a hit.
#include "platform/qt/dialogwindow.h"

#include <algorithm>
#include <set>
#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QStyle>
#include <QWheelEvent>
#include <QWindow>

#include "platform/qt/contrast.h"

namespace korvel::platform::qt {
namespace {

// Room for a title bar: window managers tell its height only afterwards.
constexpr int kTitleBar = 28;

// The least height of a part that scrolls.
constexpr int kLeastBody = 100;

int movedInto(int low, int high, int begin, int length) {
  return std::max(low, std::min(begin, high - length));
}

// The free area of the screen around this point, for the content of a window.
QRect viewAt(const QPoint &point) {
  const QScreen *screen = QGuiApplication::screenAt(point);
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {0, 0, QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
  return screen->availableGeometry().adjusted(0, kTitleBar, 0, 0);
}

bool fits(const QSize &size, const QRect &view) {
  return size.width() <= view.width() && size.height() <= view.height();
}

QRect movedInto(const QRect &view, const QRect &rect) {
  return {movedInto(view.left(), view.right() + 1, rect.left(), rect.width()),
          movedInto(view.top(), view.bottom() + 1, rect.top(), rect.height()), rect.width(),
          rect.height()};
}

// What a key turns where the widget with the focus has no use for it.
QAbstractSlider::SliderAction pageOf(const QKeyEvent &key) {
  if (key.matches(QKeySequence::MoveToPreviousPage)) return QAbstractSlider::SliderPageStepSub;
  if (key.matches(QKeySequence::MoveToNextPage)) return QAbstractSlider::SliderPageStepAdd;
  return QAbstractSlider::SliderNoAction;
}

bool isFromAPerson(QEvent::Type type) {
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

bool isKey(QEvent::Type type) { return type == QEvent::KeyPress || type == QEvent::KeyRelease; }

// Not every platform tells that a key is of the keypad.
bool isPlainReturn(const QKeyEvent &event) {
  const bool isEnter = event.key() == Qt::Key_Enter;
  const Qt::KeyboardModifiers keypad = isEnter ? Qt::KeypadModifier : Qt::NoModifier;
  return (isEnter || event.key() == Qt::Key_Return) &&
         (event.modifiers() & ~keypad) == Qt::NoModifier;
}

bool isModifier(int key) {
  return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr ||
         key == Qt::Key_Super_L || key == Qt::Key_Super_R;
}

// The same for all that a key means, with Shift and without.
int keyOf(const QKeyEvent &event) {
  const auto place = static_cast<int>(event.nativeScanCode());
  return place != 0 ? -place : event.key();
}

bool isBehind(const QWindow *window, const QWindow &front) {
  const QWindow *behind = front.transientParent();
  while (behind != nullptr && behind != window) behind = behind->transientParent();
  return behind != nullptr;
}

}  // namespace

DialogWindow::DialogWindow()
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint) {
  setWindowModality(Qt::ApplicationModal);
  // The last window of an application, once closed, would end the loop of the next dialog.
  setAttribute(Qt::WA_QuitOnClose, false);
  adoptTheme();
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &DialogWindow::takeFocusFrom);
}

void DialogWindow::adoptTheme() {
  theme_ = QApplication::palette();
  setPalette(legible(theme_));
}

void DialogWindow::setContentRect(const QRect &rect) {
  view_ = viewAt(rect.center());
  middle_ = rect.center();
  if (fits(rect.size(), view_)) {
    setFixedSize(rect.size());
    setGeometry(movedInto(view_, rect));
  } else {
    scroll(rect.size());
  }
  winId();  // makes the window, without showing it
  windowHandle()->installEventFilter(this);
}

void DialogWindow::scroll(const QSize &size) {
  body_ = new ScrolledBody(this, size);
  foot_ = new Foot(this);
  fitIntoView();
  connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, const QWidget *focused) {
    // That of a window that is come back to was there before.
    if (focused == nullptr || focused->window() != this) return;
    if (std::exchange(lastFocused_, focused) != focused) follow(focused);
  });
}

QWidget *DialogWindow::ground() { return body_ != nullptr ? body_->ground() : this; }

void DialogWindow::standBelow(const std::vector<QWidget *> &buttons) {
  if (body_ == nullptr || !foot_->isEmpty()) return;
  body_->leaveOut(buttons);
  foot_->add(buttons);
  body_->settle();
  fitIntoView();
}

// A bar along one side takes no room from the other.
void DialogWindow::fitIntoView() {
  const QSize foot = foot_->sizeHint();
  const QSize whole = body_->wholeSize() + QSize(0, foot.height());
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  QSize size = whole;
  if (whole.height() > view_.height()) size.rwidth() += bar;
  if (whole.width() > view_.width()) size.rheight() += bar;
  setMaximumSize(size);
  size = size.boundedTo(view_.size());
  setMinimumSize(QSize(foot.width(), foot.height() + kLeastBody).boundedTo(size));
  QRect content(QPoint(), size);
  content.moveCenter(middle_);
  setGeometry(movedInto(view_, content));
}

void DialogWindow::resizeEvent(QResizeEvent *event) {
  QDialog::resizeEvent(event);
  if (body_ == nullptr) return;
  const int below = foot_->sizeHint().height();
  body_->setGeometry(0, 0, width(), height() - below);
  foot_->setGeometry(0, height() - below, width(), below);
}

void DialogWindow::showFocus() { follow(focusWidget()); }

// A click finds what it was aimed at where it is.
void DialogWindow::follow(const QWidget *focused) {
  const bool isClick = buttons_ != Qt::NoButton || QGuiApplication::mouseButtons() != Qt::NoButton;
  if (body_ != nullptr && focused != nullptr && !isClick) body_->bringIntoView(*focused);
}

// Over the foot and beside the part that scrolls.
void DialogWindow::wheelEvent(QWheelEvent *event) {
  event->ignore();
  if (body_ != nullptr) body_->wheel(*event);
}

bool DialogWindow::turnsPage(const QKeyEvent &event) {
  const QAbstractSlider::SliderAction page = pageOf(event);
  if (body_ == nullptr || page == QAbstractSlider::SliderNoAction) return false;
  body_->turn(page);
  return true;
}

void DialogWindow::setFrontOf(QWidget *window) {
  if (window != nullptr && window->windowHandle() != nullptr)
    windowHandle()->setTransientParent(window->windowHandle());
}

void DialogWindow::takeFocusFrom(QWindow *window) {
  if (window == nullptr || QApplication::activeModalWidget() != this) return;
  if (leavesKeys_ && behind_ != nullptr && window == behind_->windowHandle()) blockBehind();
  if (isBehind(window, *windowHandle())) activateWindow();
}

void DialogWindow::keyPressEvent(QKeyEvent *event) {
  if (event->matches(QKeySequence::Cancel)) {
    onCancel();
  } else if (isPlainReturn(*event)) {
    onReturn();
  } else if (!turnsPage(*event)) {
    event->ignore();
  }
}

// An accepted end has hidden the window already.
void DialogWindow::closeEvent(QCloseEvent *event) {
  event->ignore();
  onCancel();
  if (!isVisible() || input_ == Input::Dropped) event->accept();
}

// The window has no such button, but window managers have keys and menus for it.
void DialogWindow::changeEvent(QEvent *event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && theme_ != QApplication::palette()) adoptTheme();
  if (event->type() != QEvent::WindowStateChange || !isMinimized()) return;
  const QWindow *behind = windowHandle() == nullptr ? nullptr : windowHandle()->transientParent();
  const bool isParentMinimized =
      behind != nullptr && behind->windowStates().testFlag(Qt::WindowMinimized);
  if (!isParentMinimized) setWindowState(windowState() & ~Qt::WindowMinimized);
}

// The toolkit drops the keys of a window that a modal one blocks. Setting a transient parent, even
// the same, has it work out anew which windows are blocked.
void DialogWindow::leaveKeysTo(DialogWindow &behind) {
  if (QGuiApplication::focusWindow() == windowHandle()) return;
  leavesKeys_ = true;
  behind_ = &behind;
  behind.setInput(Input::KeysHeld);
  parent_ = windowHandle()->transientParent();
  windowHandle()->setTransientParent(nullptr);
  windowHandle()->setModality(Qt::WindowModal);
  behind.windowHandle()->setTransientParent(behind.windowHandle()->transientParent());
}

void DialogWindow::blockBehind() {
  if (!std::exchange(leavesKeys_, false)) return;
  windowHandle()->setTransientParent(parent_);
  windowHandle()->setModality(Qt::ApplicationModal);
  if (behind_ == nullptr) return;
  behind_->windowHandle()->setTransientParent(behind_->windowHandle()->transientParent());
  if (behind_->input_ != Input::KeysHeld) return;
  behind_->endHeldKeys();
  behind_->setInput(Input::Held);
}

// A key that is down when the focus goes is released in another window: a button would wait for it.
void DialogWindow::endHeldKeys() {
  std::set<int> down;
  for (const std::unique_ptr<QEvent> &event : held_) {
    if (!isKey(event->type())) continue;
    const int key = static_cast<const QKeyEvent &>(*event).key();
    if (event->type() == QEvent::KeyPress) {
      down.insert(key);
    } else {
      down.erase(key);
    }
  }
  for (const int key : down)
    held_.push_back(std::make_unique<QKeyEvent>(QEvent::KeyRelease, key, Qt::NoModifier));
}

void DialogWindow::setInput(Input input) { input_ = input; }

void DialogWindow::holdInput() { setInput(Input::Held); }

void DialogWindow::releaseInput() {
  setInput(Input::Taken);
  for (std::unique_ptr<QEvent> &event : held_)
    QCoreApplication::postEvent(windowHandle(), event.release());
  held_.clear();
}

void DialogWindow::dropInput() {
  setInput(Input::Dropped);
  held_.clear();
}

bool DialogWindow::closedAPopUp(const QEvent &event) {
  const bool isOpen = QApplication::activePopupWidget() != nullptr;
  if (event.type() == QEvent::ShortcutOverride) hadPopUp_ = isOpen;
  return event.type() == QEvent::KeyPress && std::exchange(hadPopUp_, false) && !isOpen;
}

bool DialogWindow::eventFilter(QObject *object, QEvent *event) {
  if (object != windowHandle()) return QDialog::eventFilter(object, event);
  if (closedAPopUp(*event)) return true;
  if (event->type() == QEvent::FocusIn) blockBehind();
  if (event->type() == QEvent::FocusOut) letters_.underline(false);
  if (input_ == Input::Taken)
    if (const auto *mouse = dynamic_cast<const QMouseEvent *>(event)) buttons_ = mouse->buttons();
  if (input_ == Input::Taken || !isFromAPerson(event->type())) return isUsedUp(*event);
  if (event->type() == QEvent::Close) event->ignore();
  if (input_ == Input::Held || (input_ == Input::KeysHeld && isKey(event->type())))
    held_.emplace_back(event->clone());
  return true;
}

// A key that was held down already when the window came up, and its letters with Alt.
bool DialogWindow::isUsedUp(const QEvent &event) {
  if (!isKey(event.type())) return false;
  const auto &key = static_cast<const QKeyEvent &>(event);
  const bool isPress = key.type() == QEvent::KeyPress && !key.isAutoRepeat();
  if (isPress && !isModifier(key.key())) {
    pressed_ = keyOf(key);
    if (pageOf(key) == QAbstractSlider::SliderNoAction) showFocus();
  }
  return (key.isAutoRepeat() && keyOf(key) != pressed_) || letters_.take(key);
}

}  // namespace korvel::platform::qt
