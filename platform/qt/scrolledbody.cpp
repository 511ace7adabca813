// SPDX-License-Identifier: MIT
// Moves the ground under its window. The toolkit's own scroll area would take keys of its own, and
// scroll to the cursor of a field instead of to the field.
#include "platform/qt/scrolledbody.h"

#include <algorithm>

#include <QAbstractSpinBox>
#include <QEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QSlider>
#include <QTabBar>

#include "platform/qt/scrollbar.h"

namespace korvel::platform::qt {
namespace {

// Of the wheel and the arrows: about a row of fields.
constexpr int kStep = 25;
// Around an item that is brought into view: its frame, and a title above it.
constexpr int kAround = 24;

bool isChangedByWheel(const QObject *object) {
  return qobject_cast<const QAbstractSpinBox *>(object) != nullptr ||
         qobject_cast<const QSlider *>(object) != nullptr ||
         qobject_cast<const QTabBar *>(object) != nullptr;
}

// The place nearest to `place` from which `length` pixels show all between `begin` and `end`, or
// nothing else.
int nearest(int place, int begin, int end, int length) {
  const auto [low, high] = std::minmax({begin, end - length});
  return std::clamp(place, low, high);
}

// From the outside in, as a layout gives the widgets in it the room for theirs. The toolkit does so
// when a window is shown, but not for what is hidden then, as the other pages of tabs.
void layOut(QWidget &widget) {
  if (QLayout *layout = widget.layout()) layout->activate();
  for (QObject *child : widget.children())
    if (auto *inner = qobject_cast<QWidget *>(child)) layOut(*inner);
}

}  // namespace

ScrolledBody::ScrolledBody(QWidget *window, const QSize &size)
    : QAbstractScrollArea(window), ground_(new QWidget(viewport())), itemsReach_(size.height()) {
  setFrameShape(NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBar(new ScrollBar(Qt::Horizontal, this));
  setVerticalScrollBar(new ScrollBar(Qt::Vertical, this));
  // Its items look as on the window itself.
  viewport()->setAutoFillBackground(false);
  viewport()->setBackgroundRole(QPalette::NoRole);
  ground_->resize(size);
  takeIn(*window);
}

ScrolledBody *ScrolledBody::withGround(const QWidget &widget) {
  const QWidget *viewport = widget.parentWidget();
  auto *body =
      viewport != nullptr ? dynamic_cast<ScrolledBody *>(viewport->parentWidget()) : nullptr;
  return body != nullptr && body->ground_ == &widget ? body : nullptr;
}

// In the order in which they lie over each other.
void ScrolledBody::takeIn(QWidget &window) {
  if (window.layout() != nullptr) ground_->setLayout(window.layout());
  // Which change while they are taken.
  const QObjectList &children = window.children();
  const std::vector<QObject *> held(children.begin(), children.end());
  for (QObject *child : held) {
    auto *widget = qobject_cast<QWidget *>(child);
    if (widget != nullptr && widget != this) widget->setParent(ground_);
  }
}

// The wheel neither changes what is under it nor gives it the focus.
void ScrolledBody::keepFromWheel() {
  for (QWidget *each : ground_->findChildren<QWidget *>()) {
    if (isChangedByWheel(each)) each->installEventFilter(this);
    if (each->focusPolicy() == Qt::WheelFocus) each->setFocusPolicy(Qt::StrongFocus);
  }
}

QSize ScrolledBody::wholeSize() const {
  return {ground_->width(), std::max(itemsReach_, drawnReach_)};
}

void ScrolledBody::leaveOut(const std::vector<QWidget *> &buttons) {
  layOut(*ground_);
  int top = ground_->height();
  for (const QWidget *button : buttons)
    top = std::min(top, button->mapTo(ground_, QPoint(0, 0)).y());
  const auto liesBelow = [&](const QObject *child) {
    const auto *widget = qobject_cast<const QWidget *>(child);
    return widget != nullptr && !widget->isHidden() && widget->geometry().bottom() >= top &&
           std::find(buttons.begin(), buttons.end(), widget) == buttons.end();
  };
  const QObjectList &all = ground_->children();
  const bool isFree = top > 0 && std::none_of(all.begin(), all.end(), liesBelow);
  itemsReach_ = isFree ? top : ground_->height();
}

// A layout takes the room that it has.
void ScrolledBody::settle() {
  if (const QLayout *layout = ground_->layout()) {
    itemsReach_ = std::max(itemsReach_, layout->totalMinimumSize().height());
    ground_->resize(ground_->width(), itemsReach_);
  }
  keepFromWheel();
  measure();
}

void ScrolledBody::reachTo(int bottom) {
  const int reach = std::min(bottom, ground_->height());
  if (reach <= drawnReach_) return;
  drawnReach_ = reach;
  measure();
}

// A bar along one side may leave too little room for the other.
QSize ScrolledBody::shownSize() const {
  const QSize whole = wholeSize(), most = maximumViewportSize();
  const int bar = verticalScrollBar()->sizeHint().width();
  const bool isTooWide = whole.width() > most.width();
  const int right = whole.height() > most.height() - (isTooWide ? bar : 0) ? bar : 0;
  const int below = whole.width() > most.width() - right ? bar : 0;
  return most - QSize(right, below);
}

void ScrolledBody::measure() {
  const QSize whole = wholeSize(), shown = shownSize();
  const auto set = [](QScrollBar &bar, int length, int page) {
    bar.setSingleStep(kStep);
    bar.setPageStep(page);
    bar.setRange(0, length - page);
  };
  set(*horizontalScrollBar(), whole.width(), shown.width());
  set(*verticalScrollBar(), whole.height(), shown.height());
}

void ScrolledBody::bringIntoView(const QWidget &item) {
  if (!ground_->isAncestorOf(&item)) return;
  const QRect place = QRect(item.mapTo(ground_, QPoint(0, 0)), item.size())
                          .adjusted(-kAround, -kAround, kAround, kAround);
  const auto bring = [](QScrollBar &bar, int begin, int length) {
    bar.setValue(nearest(bar.value(), begin, begin + length, bar.pageStep()));
  };
  bring(*horizontalScrollBar(), place.left(), place.width());
  bring(*verticalScrollBar(), place.top(), place.height());
}

void ScrolledBody::turn(QAbstractSlider::SliderAction page) {
  verticalScrollBar()->triggerAction(page);
}

// Before the toolkit lays the bars out: it would show one that is no longer needed.
bool ScrolledBody::event(QEvent *event) {
  if (event->type() == QEvent::Resize) measure();
  return QAbstractScrollArea::event(event);
}

void ScrolledBody::scrollContentsBy(int, int) {
  ground_->move(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
}

// Arrows and page keys are the window's.
void ScrolledBody::keyPressEvent(QKeyEvent *event) { event->ignore(); }

bool ScrolledBody::eventFilter(QObject *object, QEvent *event) {
  if (event->type() != QEvent::Wheel || !isChangedByWheel(object))
    return QAbstractScrollArea::eventFilter(object, event);
  event->ignore();
  return true;
}

}  // namespace korvel::platform::qt
