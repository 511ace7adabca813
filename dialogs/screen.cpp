// SPDX-License-Identifier: MIT
// The dialog's items as the kinds of fields see them.
#include "dialogs/screen.h"

#include <utility>

#include "platform/screentext.h"
#include "strings/charsets.h"

namespace korvel::dialogs {

using platform::ItemKind;

namespace {

constexpr std::size_t kLongestRow = 255;

// A stored text as it reads back from the screen, for comparison with choices there.
std::string comparable(std::string_view stored) {
  return strings::toWindows(platform::asReadBack(strings::toMac(stored)));
}

template <typename Values>
void growTo(Values &values, int item) {
  const auto size = static_cast<std::size_t>(item) + 1;
  if (values.size() < size) values.resize(size);
}

}  // namespace

void Screen::setTitle(std::string_view title) { dialog_.setTitle(strings::toMac(title)); }

std::string Screen::text(int item) const {
  return is(item, ItemKind::EditText) ? strings::toWindows(dialog_.text(item)) : std::string();
}

void Screen::setText(int item, std::string_view text) {
  if (is(item, ItemKind::EditText)) dialog_.setText(item, strings::toMac(text));
}

void Screen::setMask(int item, std::size_t length) {
  keepSecret(item);
  setText(item, std::string(length, '*'));
}

void Screen::keepSecret(int item) {
  if (!is(item, ItemKind::EditText)) return;
  growTo(secrets_, item);
  const auto index = static_cast<std::size_t>(item);
  if (!secrets_[index]) dialog_.setSecret(item);
  secrets_[index] = true;
}

void Screen::select(int item) {
  if (is(item, ItemKind::EditText)) dialog_.selectText(item);
}

bool Screen::isChecked(int item) const {
  return is(item, ItemKind::CheckBox) && dialog_.value(item) != 0;
}

void Screen::setChecked(int item, bool checked) {
  if (is(item, ItemKind::CheckBox)) dialog_.setValue(item, checked ? 1 : 0);
}

std::vector<std::string> Screen::entries(int item) const {
  std::vector<std::string> all;
  const int count = dialog_.entryCount(item);
  all.reserve(static_cast<std::size_t>(count));
  for (int index = 0; index < count; ++index) all.push_back(dialog_.entry(item, index));
  return all;
}

void Screen::setChoices(int item, const std::vector<std::string_view> &choices) {
  if (!is(item, ItemKind::PopUp)) return;
  std::vector<std::string> shown;
  shown.reserve(choices.size());
  for (const std::string_view choice : choices) shown.push_back(strings::toMac(choice));
  dialog_.setEntries(item, shown);
}

void Screen::addChoices(int item, const std::vector<std::string_view> &choices,
                        std::string_view chosen) {
  if (!is(item, ItemKind::PopUp)) return;
  const int before = dialog_.value(item);
  std::vector<std::string> shown = entries(item);
  const auto designed = static_cast<int>(shown.size());
  for (const std::string_view choice : choices) shown.push_back(strings::toMac(choice));
  dialog_.setEntries(item, shown);
  const int found = numberOf(item, chosen, designed);
  dialog_.setValue(item, found > 0 ? found : before);
}

int Screen::numberOf(int item, std::string_view choice, int passedOver) const {
  const std::string wanted = comparable(choice);
  int number = dialog_.entryCount(item);
  while (number > passedOver && strings::toWindows(dialog_.entry(item, number - 1)) != wanted)
    --number;
  return number > passedOver ? number : 0;
}

void Screen::choose(int item, std::string_view choice) {
  if (is(item, ItemKind::PopUp)) dialog_.setValue(item, numberOf(item, choice));
}

void Screen::chooseNumber(int item, int number) {
  if (is(item, ItemKind::PopUp)) dialog_.setValue(item, number);
}

std::string Screen::choice(int item) const {
  const int value = is(item, ItemKind::PopUp) ? dialog_.value(item) : 0;
  return value > 0 ? strings::toWindows(dialog_.entry(item, value - 1)) : std::string();
}

void Screen::setRows(int item, const std::vector<std::string_view> &rows) {
  if (!is(item, ItemKind::ListBox)) return;
  dialog_.setEntries(item, std::vector<std::string>(rows.begin(), rows.end()));
}

void Screen::addRows(int item, const std::vector<std::string_view> &rows) {
  if (!is(item, ItemKind::ListBox)) return;
  std::vector<std::string> shown(rows.begin(), rows.end());
  for (std::string &row : entries(item)) shown.push_back(std::move(row));
  dialog_.setEntries(item, shown);
}

std::string Screen::clickedRow(int item) const {
  const int row = is(item, ItemKind::ListBox) ? dialog_.lastClick(item).row : -1;
  if (row < 0) return {};
  std::string text = dialog_.entry(item, row);
  if (text.size() > kLongestRow) text.resize(kLongestRow);
  return strings::toWindows(std::move(text));
}

bool Screen::wasDoubleClicked(int item) const {
  return is(item, ItemKind::ListBox) && dialog_.lastClick(item).isDouble;
}

void Screen::setName(int item, std::string_view name) {
  dialog_.setName(item, strings::toMac(name));
}

void Screen::enableOk(bool enabled) {
  const Ok wanted = enabled ? Ok::Enabled : Ok::Disabled;
  if (ok_ == wanted) return;
  dialog_.setEnabled(platform::kOkItem, enabled);
  ok_ = wanted;
}

}  // namespace korvel::dialogs
