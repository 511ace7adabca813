// SPDX-License-Identifier: MIT
// The contract tests' world of the Qt module.
#include "tests/platform/dialog_world.h"
#include "tests/platform/qt_person.h"

namespace korvel::test {
namespace {

class QtWorld final : public DialogWorld {
 public:
  platform::Desktop &desktop() override { return qtDesktop(); }
  Person &expectDialog(std::string_view title) override {
    qtDesktop();
    person_ = std::make_unique<QtPerson>(title);
    return *person_;
  }
  void finish() override {
    if (person_) person_->finish();
  }

 private:
  std::unique_ptr<QtPerson> person_;
};

}  // namespace

std::unique_ptr<DialogWorld> makeDialogWorld() { return std::make_unique<QtWorld>(); }

}  // namespace korvel::test
