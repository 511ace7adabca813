// SPDX-License-Identifier: MIT
// Takes buttons out of their places and lines them up below the part that scrolls.
#include "platform/qt/foot.h"

#include <algorithm>

#include <QEvent>
#include <QPainter>

#include "platform/qt/decoration.h"
#include "platform/qt/outline.h"

namespace korvel::platform::qt {
namespace {

// Between two buttons, and around all.
constexpr int kGap = 20;
constexpr int kAround = 13;

// A layout gives a button what room there is, and on a page of tabs only when that is shown. Here
// it has what it asks for.
QSize sizeOf(const QWidget &button) {
  if (button.parentWidget()->layout() == nullptr) return button.size();
  return button.sizeHint().expandedTo(button.minimumSize()).boundedTo(button.maximumSize());
}

// Holds a button, and follows the widget that the button was designed in: a form may enable or show
// that one later.
class Place final : public QWidget {
 public:
  Place(QWidget *foot, QWidget &button) : QWidget(foot), home_(*button.parentWidget()) {
    const QSize size = sizeOf(button);
    home_.installEventFilter(this);
    button.setParent(this);
    button.setGeometry(QRect(QPoint(0, 0), size));
    resize(size);
    follow();
  }

 protected:
  bool eventFilter(QObject *object, QEvent *event) override {
    const bool concernsIt = event->type() == QEvent::EnabledChange ||
                            event->type() == QEvent::Show || event->type() == QEvent::Hide;
    if (concernsIt) follow();
    return QWidget::eventFilter(object, event);
  }

 private:
  void follow() {
    setEnabled(home_.isEnabled());
    setVisible(home_.isVisibleTo(window()));
  }

  QWidget &home_;
};

int leftOf(const QWidget *button) { return button->mapTo(button->window(), QPoint(0, 0)).x(); }

}  // namespace

void Foot::add(const std::vector<QWidget *> &buttons) {
  std::vector<QWidget *> inOrder = buttons;
  std::stable_sort(inOrder.begin(), inOrder.end(),
                   [](const QWidget *a, const QWidget *b) { return leftOf(a) < leftOf(b); });
  for (QWidget *button : inOrder) buttons_.push_back(new Place(this, *button));
}

QSize Foot::sizeHint() const {
  if (isEmpty()) return {0, 0};
  QSize needed(-kGap, 0);
  for (const QWidget *button : buttons_) {
    needed.rwidth() += kGap + button->width();
    needed.setHeight(std::max(needed.height(), button->height()));
  }
  return needed + QSize(2 * kAround, 2 * kAround);
}

void Foot::resizeEvent(QResizeEvent *) {
  int left = kAround + (width() - sizeHint().width()) / 2;
  for (QWidget *button : buttons_) {
    button->move(left, (height() - button->height()) / 2);
    left += button->width() + kGap;
  }
}

void Foot::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  PixelFrame frame(painter, rect());
  frame.fillTop(frame.line(), lineColor(palette()));
}

}  // namespace korvel::platform::qt
