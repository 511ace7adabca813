// SPDX-License-Identifier: MIT
// For tests/platform/: the hits of a dialog's run as readable lines.
#ifndef KORVEL_TESTS_PLATFORM_RECORDED_HITS_H
#define KORVEL_TESTS_PLATFORM_RECORDED_HITS_H

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/desktop.h"
#include "tests/platform/dialog_world.h"

namespace korvel::test {

// Records "<item>" and the item's content at that time: `text é`, `value 2`, `row 1 b double`. OK
// and Cancel end the run by default. Texts are UTF-8.
class RecordedHits final : public platform::HitHandler {
 public:
  virtual ~RecordedHits() = default;

  // The application's reaction to a hit, after it was recorded.
  void on(int item, std::function<void()> reaction) { reactions_[item] = std::move(reaction); }
  void keepOpen(int item) { stopping_.erase(item); }
  void stopAt(int item) { stopping_.insert(item); }

  void record(platform::Dialog &dialog) {
    dialog_ = &dialog;
    dialog.runModal(*this);
  }
  void recordStep(platform::Dialog &dialog) {
    dialog_ = &dialog;
    dialog.runStep(*this);
  }
  // The lines up to the Escape by which the person then ends the dialog, which is left out.
  std::vector<std::string> recordUntilEscape(platform::Dialog &dialog, Person &person);
  const std::vector<std::string> &lines() const { return lines_; }

  platform::Run hit(int item) override;

 private:
  std::string described(int item) const;

  platform::Dialog *dialog_ = nullptr;
  std::vector<std::string> lines_;
  std::map<int, std::function<void()>> reactions_;
  std::set<int> stopping_ = {platform::kOkItem, platform::kCancelItem};
};

}  // namespace korvel::test

#endif
