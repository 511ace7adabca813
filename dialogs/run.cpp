// The run of a dialog: filling, waiting for hits, ending.
#include "dialogs/run.h"

#include <algorithm>

#include <pthread.h>

#include <korvel/desktop.h>

#include "base/guard.h"
#include "dialogs/callbacks.h"
#include "dialogs/field_items.h"
#include "dialogs/marks.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"
#include "dialogs/stored_text.h"
#include "platform/loader.h"

constinit DialogRef DlgBox_hDlg = nullptr;

namespace korvel::dialogs {

namespace {

// In the order in which hits and identifiers are tried, and fields filled.
constexpr const FieldType *kTypes[] = {&kTextType, &kBoolType, &kIntType,
                                       &kNumType,  &kDateType, &kPushType};

constexpr int kRedisplayCapacity = 32;

constexpr int kCancelled = 0;
constexpr int kAccepted = 1;

// The dialog that is up. An application may write DlgBox_hDlg, so the library does not rely on it.
constinit DialogRef current = nullptr;
constinit pthread_t currentThread = {};  // in which it was made
constinit bool isRunning = false;
constinit Screen *runningItems = nullptr;

class Session final : public platform::HitHandler {
 public:
  explicit Session(platform::Dialog &dialog) : screen_(dialog) {}

  void fill();
  int result() const { return hasEnded_ ? result_ : kCancelled; }
  Screen &screen() { return screen_; }

  // The toolkit below must not be unwound: a hit that fails for want of memory, or in a callback,
  // is given up, and the next one waited for.
  platform::Run hit(int item) noexcept override {
    try {
      handle(item);
    } catch (...) {
    }
    if (hasEnded_) return platform::Run::Stop;
    followValidity();
    return platform::Run::Continue;
  }

 private:
  void handle(int item);
  void handleField(const FieldType &type, int i);
  void callGlobalFor(const Family &family, int i);
  void redisplay(int identifier);
  void followValidity() {
    screen_.enableOk(allValid());
    marks_.follow(screen_);
  }
  void end(int result) {
    result_ = result;
    hasEnded_ = true;
  }

  Screen screen_;
  Marks marks_;
  bool hasEnded_ = false;
  int result_ = kCancelled;
};

void Session::fill() {
  if (HDB != 0) screen_.setTitle(boundedText(HDB_szHeader));
  for (const FieldType *type : kTypes) {
    if (type->fill == nullptr) continue;
    for (int i = 0; isInUse(*type->family, i); ++i) type->fill(screen_, i);
  }
  followValidity();
}

void Session::handle(int item) {
  if (item == platform::kOkItem) {
    if (callFinal(screen_.window()) != 0) end(kAccepted);
    return;
  }
  if (item == platform::kCancelItem) {
    end(kCancelled);
    return;
  }
  for (const FieldType *type : kTypes) {
    if (const auto i = fieldOf(*type->family, identifierOf(item))) {
      handleField(*type, *i);
      return;
    }
  }
}

void Session::handleField(const FieldType &type, int i) {
  switch (type.handle(screen_, i)) {
    case Hit::Accepted:
      end(kAccepted);
      [[fallthrough]];
    case Hit::Edited:
      followValidity();
      if (type.family->valid[i] != 0) callGlobalFor(*type.family, i);
      return;
    case Hit::Changed:
      callGlobalFor(*type.family, i);
      return;
    case Hit::Refused:
      return;
  }
}

// Each of a date's three items tells the identifier of the date.
void Session::callGlobalFor(const Family &family, int i) {
  int identifiers[kRedisplayCapacity] = {};
  const int written = callGlobal(DlgBoxGlobal_fonct, static_cast<int>(identifierOf(family, i)),
                                 identifiers, kRedisplayCapacity);
  const int count = std::clamp(written, 0, kRedisplayCapacity);
  for (int n = 0; n < count; ++n) redisplay(identifiers[n]);
}

void Session::redisplay(int identifier) {
  const long long named = identifier < 0 ? -static_cast<long long>(identifier) : identifier;
  for (const FieldType *type : kTypes) {
    if (type->show == nullptr) continue;
    if (const auto i = fieldOf(*type->family, named)) {
      (identifier < 0 ? type->clear : type->show)(screen_, *i);
      return;
    }
  }
}

// A window that comes to stand at the same address would have the dialog's port.
void leavePort(WindowRef window) {
  CGrafPtr port = nullptr;
  GetPort(&port);
  if (port == GetWindowPort(window)) SetPort(nullptr);
}

// Takes the current dialog off the screen.
void dispose() {
  isRunning = false;
  leavePort(current->onScreen->window());
  DlgBox_hDlg = nullptr;
  delete current;
  current = nullptr;
}

// Lets the application reach the items of a session as long as it lives.
class Reachable {
 public:
  explicit Reachable(Session &session) { runningItems = &session.screen(); }
  ~Reachable() { runningItems = nullptr; }
  Reachable(const Reachable &) = delete;
  Reachable &operator=(const Reachable &) = delete;
};

int runToEnd(platform::Dialog &dialog) {
  Session session(dialog);
  const Reachable reachable(session);
  session.fill();
  dialog.runModal(session);
  return session.result();
}

}  // namespace

bool mayShowDialog() {
  if (current == nullptr) return true;
  if (pthread_equal(pthread_self(), currentThread) == 0) {
    base::asFarAsMemoryAllows([] {
      platform::report("dialog not shown: asked for in another thread than the first one");
    });
  }
  return false;
}

Screen *runningScreen() { return runningItems; }

DialogRef makeCurrent(std::unique_ptr<platform::Dialog> dialog) {
  current = new KorvelDialog{std::move(dialog)};
  SetPort(GetWindowPort(current->onScreen->window()));
  currentThread = pthread_self();
  DlgBox_hDlg = current;
  return current;
}

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int DlgBoxFunc(DialogRef dialog) {
  if (dialog == nullptr || dialog != current || isRunning) return kCancelled;
  isRunning = true;
  int result = kCancelled;
  try {
    result = runToEnd(*dialog->onScreen);
  } catch (...) {
    // Out of memory while filling: nothing was entered.
  }
  endDefinition();
  dispose();
  return result;
}
