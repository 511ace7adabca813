// SPDX-License-Identifier: MIT
// The hits of a dialog's run as readable lines.
#include "tests/platform/recorded_hits.h"

#include <gtest/gtest.h>

#include "tests/platform/scripted_desktop.h"

namespace korvel::test {

using platform::ItemKind;

platform::Run RecordedHits::hit(int item) {
  lines_.push_back(described(item));
  if (const auto found = reactions_.find(item); found != reactions_.end()) found->second();
  return stopping_.count(item) != 0 ? platform::Run::Stop : platform::Run::Continue;
}

std::vector<std::string> RecordedHits::recordUntilEscape(platform::Dialog &dialog, Person &person) {
  person.pressEscape();
  record(dialog);
  std::vector<std::string> lines = lines_;
  EXPECT_EQ(lines.back(), std::to_string(platform::kCancelItem));
  lines.pop_back();
  return lines;
}

std::string RecordedHits::described(int item) const {
  const std::string number = std::to_string(item);
  switch (dialog_->kind(item)) {
    case ItemKind::EditText: {
      const std::string text = readable(dialog_->text(item));
      return number + " text" + (text.empty() ? "" : " " + text);
    }
    case ItemKind::CheckBox:
    case ItemKind::PopUp:
      return number + " value " + std::to_string(dialog_->value(item));
    case ItemKind::ListBox: {
      const platform::ListClick click = dialog_->lastClick(item);
      return number + " row " + std::to_string(click.row) + " " +
             readable(dialog_->entry(item, click.row)) + (click.isDouble ? " double" : "");
    }
    default:
      return number;
  }
}

}  // namespace korvel::test
