// SPDX-License-Identifier: MIT
// For platform/qt/: the text of a message box, and the keys that scroll it.
#ifndef KORVEL_PLATFORM_QT_MESSAGEPANE_H
#define KORVEL_PLATFORM_QT_MESSAGEPANE_H

#include <string_view>
#include <vector>

#include <QLabel>
#include <QScrollArea>
#include <QStringList>

#include "platform/desktop.h"

class QPushButton;

namespace korvel::platform::qt {

// The lines, each at its own baseline; the widget is as large as all of them.
class MessageLines final : public QLabel {
 public:
  // Narrows the font, within reason, if that fits the longest line into the room.
  MessageLines(const QString &text, const MessageStyle &style, const QSize &room);

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  int baseline(qsizetype line) const;

  const QStringList lines_;
  const int firstBaseline_;
  const int linePitch_;
};

// Scrolls where the lines need it; the keys that scroll work from the buttons as well.
class MessagePane final : public QScrollArea {
 public:
  MessagePane(QWidget *window, const Rect &rect, std::string_view text, const MessageStyle &style);

  QString text() const { return static_cast<const MessageLines *>(widget())->text(); }

  // The buttons between which arrow keys move, in their order.
  void serve(const std::vector<QPushButton *> &buttons);

 protected:
  void keyPressEvent(QKeyEvent *event) override;
  bool eventFilter(QObject *object, QEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  bool scrolls() const;
  bool scrollUpOrDown(int key);
  bool moveFrom(QObject *button, int key);

  std::vector<QPushButton *> buttons_;
};

}  // namespace korvel::platform::qt

#endif
