// SPDX-License-Identifier: MIT
// For dialogs/: the dialog's items as the kinds of fields see them. Texts are CP1252 on this side,
// and in the screen's set on the other.
#ifndef KORVEL_DIALOGS_SCREEN_H
#define KORVEL_DIALOGS_SCREEN_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop.h"

namespace korvel::dialogs {

// Item numbers come from tables that may hold anything: what an item cannot do does nothing, and
// what it does not have is empty.
class Screen {
 public:
  explicit Screen(platform::Dialog &dialog) : dialog_(dialog) {}

  WindowRef window() { return dialog_.window(); }
  platform::ItemKind kind(int item) const { return dialog_.kind(item); }
  void setTitle(std::string_view title);

  // Edit-text items.
  std::string text(int item) const;
  void setText(int item, std::string_view text);
  void setMask(int item, std::size_t length);  // one star per character
  void keepSecret(int item);
  void select(int item);

  bool isChecked(int item) const;
  void setChecked(int item, bool checked);

  // Entries of a pop-up. Setting them leaves nothing chosen. Those added come after the template's
  // own; of those equal to `chosen` the last is chosen; if none is, the choice stays.
  void setChoices(int item, const std::vector<std::string_view> &choices);
  void addChoices(int item, const std::vector<std::string_view> &choices, std::string_view chosen);
  void choose(int item, std::string_view choice);  // the last equal one, or none
  void chooseNumber(int item, int number);         // from 1; 0 for none
  std::string choice(int item) const;

  // Rows of a list box, which go to the screen without conversion. Those added come before the
  // template's own.
  void setRows(int item, const std::vector<std::string_view> &rows);
  void addRows(int item, const std::vector<std::string_view> &rows);
  std::string clickedRow(int item) const;
  bool wasDoubleClicked(int item) const;

  void enableOk(bool enabled);
  void setAcceptable(int item, bool acceptable) { dialog_.setAcceptable(item, acceptable); }
  void setName(int item, std::string_view name);
  void setExpected(int item, platform::Expected expected, int bound = 0) {
    dialog_.setExpected(item, expected, bound);
  }
  void setDateParts(int day) { dialog_.setDateParts(day, day + 1, day + 2); }

 private:
  bool is(int item, platform::ItemKind kind) const { return dialog_.kind(item) == kind; }

  // What the item shows, as it reads back.
  std::vector<std::string> entries(int item) const;
  // The number, from 1, of the last entry after the first `passedOver` that reads as this text; 0
  // for none.
  int numberOf(int item, std::string_view choice, int passedOver = 0) const;

  platform::Dialog &dialog_;
  std::vector<bool> secrets_;
  enum class Ok { Unknown, Enabled, Disabled } ok_ = Ok::Unknown;
};

}  // namespace korvel::dialogs

#endif
