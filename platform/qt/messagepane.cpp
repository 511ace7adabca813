// SPDX-License-Identifier: MIT
// Lays out the lines of a message at their own baselines, and scrolls them where they need it.
#include "platform/qt/messagepane.h"

#include <algorithm>

#include <QApplication>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include "platform/qt/appearance.h"
#include "platform/qt/screenfont.h"
#include "platform/qt/scrollbar.h"
#include "platform/qt/text.h"

namespace korvel::platform::qt {
namespace {

constexpr int kTab = 4;  // blanks

// Blank space below the lines, where there is no scroll bar.
constexpr int kAirBelow = 5;

// A bar under the lines is slim, to leave them their room.
class SlimBar final : public ScrollBar {
 public:
  explicit SlimBar(QWidget *parent) : ScrollBar(Qt::Horizontal, parent) {}

  QSize sizeHint() const override { return {ScrollBar::sizeHint().width(), kHeight}; }

 private:
  static constexpr int kHeight = 8;
};

// Text as it is drawn: a carriage return breaks the line; a tab is blanks, and any other control
// character, a line feed too, is one blank.
QString inLines(std::string_view screenText) {
  QString text = toQt(screenText);
  text.replace(u'\t', QString(kTab, u' '));
  for (QChar &character : text) {
    if (character == u'\r') {
      character = u'\n';
    } else if (character.category() == QChar::Other_Control) {
      character = u' ';
    }
  }
  return text;
}

QFont fontOf(const MessageStyle &style) {
  QFont font = QApplication::font();
  if (const auto family = familyAnswering(style.fontName)) font.setFamily(*family);
  font.setPixelSize(std::max(1, style.fontSize));
  return font;
}

int widthOf(const QFont &font, const QStringList &lines) {
  const QFontMetrics metrics(font);
  int widest = 0;
  for (const QString &line : lines) widest = std::max(widest, metrics.horizontalAdvance(line));
  return widest;
}

// Narrows no more than needed. Advances round to whole pixels, so a line may still be too wide.
// Below kNarrowest the text would be hard to read, so the font keeps its width.
QFont narrowedInto(int room, const QFont &font, const QStringList &lines) {
  constexpr int kNarrowest = 80;  // percent
  const int needed = widthOf(font, lines);
  if (needed <= room || needed == 0) return font;
  QFont narrow = font;
  for (int percent = 100 * room / needed; percent >= kNarrowest; --percent) {
    narrow.setStretch(percent);
    if (widthOf(narrow, lines) <= room) return narrow;
  }
  return font;
}

}  // namespace

MessageLines::MessageLines(const QString &text, const MessageStyle &style, const QSize &room)
    : lines_(text.split(u'\n')), firstBaseline_(style.firstBaseline), linePitch_(style.linePitch) {
  setTextFormat(Qt::PlainText);
  setTextInteractionFlags(Qt::NoTextInteraction);
  setText(text);
  const QFont font = fontOf(style);
  const int height = baseline(lines_.size() - 1) + QFontMetrics(font).descent();
  const int bar =
      height > room.height() ? this->style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0;
  setFont(narrowedInto(room.width() - bar, font, lines_));
  setFixedSize(std::min(widthOf(this->font(), lines_), QWIDGETSIZE_MAX), height);
}

// A text may have more lines than a widget can be high.
int MessageLines::baseline(qsizetype line) const {
  constexpr qsizetype kLowest = QWIDGETSIZE_MAX - 100;
  return static_cast<int>(std::min(firstBaseline_ + line * linePitch_, kLowest));
}

void MessageLines::paintEvent(QPaintEvent *event) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  const QFontMetrics metrics(font());
  for (qsizetype line = 0; line < lines_.size(); ++line) {
    const int y = baseline(line);
    if (y + metrics.descent() < event->rect().top()) continue;
    if (y - 2 * metrics.ascent() > event->rect().bottom()) break;
    painter.drawText(0, y, lines_[line]);
  }
}

MessagePane::MessagePane(QWidget *window, const Rect &rect, std::string_view text,
                         const MessageStyle &style)
    : QScrollArea(window) {
  setFrameShape(NoFrame);
  setHorizontalScrollBar(new SlimBar(this));
  setVerticalScrollBar(new ScrollBar(Qt::Vertical, this));
  setWidget(new MessageLines(inLines(text), style, toQt(rect).size()));
  widget()->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  for (QScrollBar *bar : {horizontalScrollBar(), verticalScrollBar()})
    bar->setSingleStep(style.linePitch);
  const bool hasBarBelow = widget()->width() > rect.width();
  setGeometry(toQt(rect).adjusted(0, 0, 0, hasBarBelow ? 0 : -kAirBelow));
  setFocusPolicy(scrolls() ? Qt::TabFocus : Qt::NoFocus);
}

bool MessagePane::scrolls() const {
  return widget()->width() > width() || widget()->height() > height();
}

void MessagePane::serve(const std::vector<QPushButton *> &buttons) {
  buttons_ = buttons;
  for (QPushButton *button : buttons_) button->installEventFilter(this);
}

bool MessagePane::scrollUpOrDown(int key) {
  constexpr struct {
    int key;
    QAbstractSlider::SliderAction action;
  } kKeys[] = {{Qt::Key_Up, QAbstractSlider::SliderSingleStepSub},
               {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
               {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub},
               {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
               {Qt::Key_Home, QAbstractSlider::SliderToMinimum},
               {Qt::Key_End, QAbstractSlider::SliderToMaximum}};
  if (!scrolls()) return false;
  const auto *found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                   [key](const auto &each) { return each.key == key; });
  if (found == std::end(kKeys)) return false;
  verticalScrollBar()->triggerAction(found->action);
  return true;
}

// Moves the focus from a button to the one before or after it, wrapping around.
bool MessagePane::moveFrom(QObject *button, int key) {
  const bool isBack = key == Qt::Key_Left || key == Qt::Key_Up;
  if (!isBack && key != Qt::Key_Right && key != Qt::Key_Down) return false;
  const auto at = std::find(buttons_.begin(), buttons_.end(), button);
  if (at == buttons_.end()) return false;
  const auto count = buttons_.size();
  const auto from = static_cast<std::size_t>(at - buttons_.begin());
  buttons_[(from + (isBack ? count - 1 : 1)) % count]->setFocus(isBack ? Qt::BacktabFocusReason
                                                                       : Qt::TabFocusReason);
  return true;
}

bool MessagePane::eventFilter(QObject *object, QEvent *event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (scrollUpOrDown(key) || moveFrom(object, key)) return true;
  }
  return QScrollArea::eventFilter(object, event);
}

void MessagePane::keyPressEvent(QKeyEvent *event) {
  if (!scrollUpOrDown(event->key())) QScrollArea::keyPressEvent(event);
}

// Draws the focus frame on the viewport, behind the lines.
void MessagePane::paintEvent(QPaintEvent *) {
  if (!hasFocus()) return;
  QPainter painter(viewport());
  QStyleOptionFocusRect option;
  option.initFrom(viewport());
  option.state |= QStyle::State_KeyboardFocusChange;
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, viewport());
}

}  // namespace korvel::platform::qt
