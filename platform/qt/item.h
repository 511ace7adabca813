// SPDX-License-Identifier: MIT
// For platform/qt/: what the items of a dialog have in common.
#ifndef KORVEL_PLATFORM_QT_ITEM_H
#define KORVEL_PLATFORM_QT_ITEM_H

#include <string>
#include <string_view>
#include <vector>

#include <QtGlobal>

#include "platform/desktop.h"

class QString;
class QWidget;

namespace korvel::platform::qt {

class Mark;

class HitSink {
 public:
  // True when the hit was handled; false when it waits for the end of another one.
  virtual bool itemHit(int item) = 0;

 protected:
  ~HitSink() = default;
};

// An item is a widget as well, and belongs to the dialog's window as such. A kind of item ignores
// what it does not have, and returns it empty. An item of number 0 is never hit.
//
// Each kind has two constructors: one for a classic rectangle, with the appearance of its dialog,
// and one for a form, which then places the item and sets its properties.
class Item {
 public:
  Item(HitSink &sink, int number, ItemKind kind) : sink_(sink), number_(number), kind_(kind) {}
  Item(const Item &) = delete;
  Item &operator=(const Item &) = delete;
  virtual ~Item() = default;

  int number() const { return number_; }
  // For an item of a form, whose number is read after it is made.
  void setNumber(int number) { number_ = number; }
  ItemKind kind() const { return kind_; }

  virtual QWidget *widget() = 0;

  virtual std::string text() const { return {}; }
  virtual void setText(std::string_view) {}
  virtual void selectText() {}
  virtual void setSecret() {}

  virtual int value() const { return 0; }
  virtual void setValue(int) {}

  virtual void setEntries(const std::vector<std::string> &) {}
  virtual int entryCount() const { return 0; }
  virtual std::string entry(int) const { return {}; }
  virtual ListClick lastClick() const { return {}; }

  virtual void setDefault(bool) {}
  // Words that hold for a while; empty: none.
  virtual void explain(const QString &) {}

  virtual Mark *mark() { return nullptr; }

  // Underlines the letter at this place of the label; none for -1.
  virtual void underline(qsizetype) {}

 protected:
  bool hit() { return number_ <= 0 || sink_.itemHit(number_); }

 private:
  HitSink &sink_;
  int number_;
  const ItemKind kind_;
};

}  // namespace korvel::platform::qt

#endif
