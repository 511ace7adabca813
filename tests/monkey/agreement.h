// SPDX-License-Identifier: MIT
// For tests/monkey/: what agreement between a window and the tables is, by rules of its own.
#ifndef KORVEL_TESTS_MONKEY_AGREEMENT_H
#define KORVEL_TESTS_MONKEY_AGREEMENT_H

#include <memory>
#include <string>
#include <vector>

#include <QString>

class QAbstractItemView;
class QWidget;

namespace korvel::test {

// Compares what a window shows with the tables after an event. Made before the event, as a field
// that holds no value then keeps its values.
class Agreement {
 public:
  virtual ~Agreement() = default;
  virtual void check(bool withPaint) const = 0;
};

// For each window of the application, found by its title.
std::unique_ptr<Agreement> agreementOn(const QWidget *window, const std::vector<QWidget *> &items);
std::unique_ptr<Agreement> agreementOnFields(const std::vector<QWidget *> &items);
std::unique_ptr<Agreement> agreementOnMessage(const QWidget *window,
                                              const std::vector<QWidget *> &items);
std::unique_ptr<Agreement> agreementOnChooser(const std::vector<QWidget *> &items);

// The bytes of the tables for a text on the screen: CP1252; of 0x80 to 0x9F only what has a key or
// a place in the tests' texts.
std::string stored(const QString &shown);

// The rows of a list, and the chosen one where there is one.
std::vector<std::string> rowsOf(const QWidget *list);
void checkChosenRow(const QWidget *list, const char *text);

}  // namespace korvel::test

#endif
