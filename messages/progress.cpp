// SPDX-License-Identifier: MIT
// The window of a long work, which the work's own loop keeps up to date: it is shown late, and what
// the person does is looked at now and then. Most calls only look at the clock.
#include "messages/progress.h"

#include <ctime>
#include <limits>
#include <memory>
#include <string>

#include <korvel/messages.h>

#include "base/guard.h"
#include "base/views.h"
#include "messages/layout.h"
#include "messages/misuse.h"
#include "platform/desktop.h"
#include "platform/loader.h"
#include "strings/charsets.h"

namespace korvel::messages {
namespace {

using platform::Desktop;
using platform::Dialog;
using platform::Run;

constexpr long long kQuickWork = 500;
constexpr long long kBetweenLooks = 50;
constexpr long long kNever = std::numeric_limits<long long>::max();

constexpr std::string_view kNoTitle = "Veuillez patienter";
constexpr std::size_t kLongestTitle = 255;

constexpr int kWidth = 360;
constexpr int kHeight = 82;
constexpr Rect kBar{20, 18, kWidth - 20, 36};

std::string shownTitle(std::string_view title) {
  return strings::toMac(title.empty() ? kNoTitle : title.substr(0, kLongestTitle));
}

class ProgressWindow;

// The work that is fed; at most one. What is left of it when the process ends is never destroyed:
// there is no desktop any more.
struct Work {
  bool hasBegun = false;
  bool isCancelled = false;
  bool isLookedAt = false;  // what happens meanwhile may feed it, too
  int done = 0;
  long long nextLook = 0;
  ProgressWindow *window = nullptr;
};
constinit Work work;

// Up until it is destroyed or its one button pressed.
class ProgressWindow final : public platform::HitHandler {
 public:
  static std::unique_ptr<ProgressWindow> make(Desktop &desktop, std::string_view title) {
    const WindowRef owner = desktop.frontWindow();
    const std::optional<Rect> ownerBounds = desktop.windowBounds(owner);
    auto dialog = desktop.newDialog(
        platform::centredOn(ownerBounds.value_or(desktop.screenBounds()), kWidth, kHeight, 0),
        ownerBounds ? owner : nullptr, shownTitle(title));
    if (dialog == nullptr) return nullptr;
    dialog->addItem(platform::ItemKind::PushButton, lastButton(kWidth, kHeight), "Annuler");
    dialog->addProgressBar(kBar);
    return std::make_unique<ProgressWindow>(std::move(dialog), title);
  }
  ProgressWindow(std::unique_ptr<Dialog> dialog, std::string_view title)
      : dialog_(std::move(dialog)), title_(title) {}

  void show(std::string_view title, int done, int total) {
    if (title != title_) {
      title_ = title;
      dialog_->setTitle(shownTitle(title));
    }
    dialog_->setProgress(done, total);
    dialog_->runStep(*this);
  }

  // Also between two looks, where the application runs an event loop of its own.
  Run hit(int) override {
    work.isCancelled = true;
    return Run::Stop;
  }

 private:
  const std::unique_ptr<Dialog> dialog_;
  std::string title_;
};

void closeWindow() {
  delete work.window;
  work.window = nullptr;
}

void endWork() {
  closeWindow();
  work = Work();
}

void beginWork(Clock clock) {
  work.hasBegun = true;
  work.nextLook = clock() + kQuickWork;
}

void openWindow(std::string_view title) {
  Desktop *desktop = platform::desktopWithScreen();
  if (desktop != nullptr) work.window = ProgressWindow::make(*desktop, title).release();
}

// Also out of an event handler of the application that throws.
struct Looking {
  Looking() { work.isLookedAt = true; }
  ~Looking() { work.isLookedAt = false; }
};

// Without a screen nothing is ever looked at again.
void look(std::string_view title, int done, int total) {
  if (work.window == nullptr) openWindow(title);
  if (work.window == nullptr) {
    work.nextLook = kNever;
    return;
  }
  work.window->show(title, done, total);
  if (work.isCancelled) closeWindow();
}

void lookIfDue(std::string_view title, int done, int total, Clock clock) {
  if (work.isCancelled || clock() < work.nextLook) return;
  const Looking looking;
  base::asFarAsMemoryAllows([&] { look(title, done, total); });
  if (work.nextLook != kNever) work.nextLook = clock() + kBetweenLooks;
}

bool isWhole(int done, int total) { return total >= 1 && done >= total; }

long long sinceStart() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return 1000LL * now.tv_sec + now.tv_nsec / 1'000'000;
}

}  // namespace

bool isCancelledIn(std::string_view title, int done, int total, Clock clock) {
  if (work.isLookedAt) return work.isCancelled;
  if (done < work.done) endWork();
  if (isWhole(done, total)) {
    const bool wasCancelled = work.isCancelled;
    endWork();
    return wasCancelled;
  }
  if (!work.hasBegun) beginWork(clock);
  work.done = done;
  lookIfDue(title, done, total, clock);
  return work.isCancelled;
}

}  // namespace korvel::messages

using namespace korvel::messages;

int KorvelProgress(const char *title, int done, int total) {
  lookForMisuse([=] {
    needsTitle(Call("KorvelProgress", {orNull(title), done, total}), korvel::base::textOf(title),
               kLongestTitle);
  });
  return isCancelledIn(korvel::base::textOf(title), done, total, sinceStart) ? 1 : 0;
}
