// For platform/qt/ only: what the items of a dialog have in common.
#ifndef KORVEL_PLATFORM_QT_ITEM_H
#define KORVEL_PLATFORM_QT_ITEM_H

#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop.h"

class QWidget;

namespace korvel::platform::qt {

class HitSink {
 public:
  // True when the hit was handled, false when it will be after the one that is being handled.
  virtual bool itemHit(int item) = 0;

 protected:
  ~HitSink() = default;
};

// An item is a widget as well, and belongs to the dialog's window as such. What a kind of item
// does not have, it ignores and returns empty. One of number 0 is never hit.
//
// Each kind is made in two ways: in a classic rectangle, with the appearance of a dialog of such,
// and by a form, which then places it and gives it its properties.
class Item {
 public:
  Item(HitSink &sink, int number, ItemKind kind) : sink_(sink), number_(number), kind_(kind) {}
  Item(const Item &) = delete;
  Item &operator=(const Item &) = delete;
  virtual ~Item() = default;

  int number() const { return number_; }
  // Of one that a form makes, whose number is told after it.
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
  virtual void setAcceptable(bool) {}

 protected:
  bool hit() { return number_ <= 0 || sink_.itemHit(number_); }

 private:
  HitSink &sink_;
  int number_;
  const ItemKind kind_;
};

}  // namespace korvel::platform::qt

#endif
