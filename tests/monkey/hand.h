// SPDX-License-Identifier: MIT
// For tests/monkey/: what the monkey touches keys and mouse with: the toolkit's test kit, or a real
// screen.
#ifndef KORVEL_TESTS_MONKEY_HAND_H
#define KORVEL_TESTS_MONKEY_HAND_H

#include <memory>

#include <QPoint>
#include <QString>
#include <QWidget>

namespace korvel::test {

// Each act has been taken to the application when it returns.
class Hand {
 public:
  virtual ~Hand() = default;
  // Whether its keys go to this window now.
  virtual bool reaches(const QWidget *window) const = 0;
  // The characters that it has keys for.
  virtual QString characters() const = 0;
  virtual void type(QWidget *window, QChar character) = 0;
  virtual void press(QWidget *window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) = 0;
  // In quick succession.
  virtual void click(QWidget *target, QPoint place, Qt::MouseButton button, int times) = 0;
  // What takes an input method to be typed; it may be given up half way.
  virtual void compose(const QString &text, bool isGivenUp) = 0;
  virtual void closeByFrame(QWidget *window) = 0;
  virtual void clickOnFrame(QWidget *window) = 0;
};

std::unique_ptr<Hand> kitHand();
std::unique_ptr<Hand> screenHand();

}  // namespace korvel::test

#endif
