// SPDX-License-Identifier: MIT
// The run of a dialog: filling its items, handling hits, ending.
#include "dialogs/run.h"

#include <algorithm>

#include <pthread.h>

#include "dialogs/marks.h"
#include "dialogs/misuse.h"
#include "dialogs/names.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"
#include "dialogs/stored_text.h"
#include "draw/ports.h"
#include "platform/loader.h"

constinit DialogRef DlgBox_hDlg = nullptr;

namespace korvel::dialogs {

namespace {

constexpr int kRedisplayCapacity = 32;

constexpr int kCancelled = 0;
constexpr int kAccepted = 1;

// The dialog that is up. An application may write DlgBox_hDlg, so the library does not rely on it.
constinit DialogRef current = nullptr;
constinit pthread_t currentThread = {};  // in which it was made
constinit bool isRunning = false;
constinit Screen *runningItems = nullptr;

class RunningDialog final : public platform::HitHandler {
 public:
  // Lets the application reach the items until the run has ended.
  explicit RunningDialog(platform::Dialog &dialog) : screen_(dialog) { runningItems = &screen_; }
  ~RunningDialog() { runningItems = nullptr; }
  RunningDialog(const RunningDialog &) = delete;
  RunningDialog &operator=(const RunningDialog &) = delete;

  void fill();
  int result() const { return result_; }

  // A hit that fails is given up: the dialog waits for the next one.
  platform::Run hit(int item) noexcept override {
    catchingAll([&] { handle(item); });
    if (hasEnded_) return platform::Run::Stop;
    followValidity();
    return platform::Run::Continue;
  }

 private:
  void fillField(const FieldType &type, int i);
  void handle(int item);
  void handleField(const FieldType &type, int i);
  void callGlobalAndRedisplay(const FieldType &type, int i);
  void redisplay(int identifier);
  void redisplayField(const FieldType &type, int i, bool isCleared);
  void followValidity() {
    const bool isValid = allValid();
    screen_.enableOk(isValid);
    if (!isValid) tellOfUnacceptable();
    marks_.follow(screen_);
  }
  void tellOfUnacceptable();
  void end(int result) {
    result_ = result;
    hasEnded_ = true;
  }

  Screen screen_;
  Marks marks_;
  bool hasEnded_ = false;
  int result_ = kCancelled;
};

void RunningDialog::fill() {
  if (HDB != 0) screen_.setTitle(boundedText(HDB_szHeader));
  forEachField([this](const FieldType &type, int i) { fillField(type, i); });
  showNames(screen_);
  followValidity();
}

// A value that was given may clear the flag, and never sets it.
void RunningDialog::fillField(const FieldType &type, int i) {
  if (type.fill != nullptr) type.fill(screen_, i);
  if (type.tell != nullptr) type.tell(screen_, i);
  if (type.flags.init != nullptr && type.flags.init[i] != 0 && !type.storedIsAcceptable(i))
    type.flags.valid[i] = 0;
}

// A callback may have changed what a field asks for.
void RunningDialog::tellOfUnacceptable() {
  forEachValidatedField([this](const FieldType &type, int i) {
    if (type.flags.valid[i] != 1 && type.tell != nullptr) type.tell(screen_, i);
  });
}

void RunningDialog::handle(int item) {
  if (item == platform::kOkItem) {
    if (callFinal(screen_.window()) != 0) end(kAccepted);
    return;
  }
  if (item == platform::kCancelItem) {
    end(kCancelled);
    return;
  }
  for (const FieldType *type : kFieldTypes) {
    if (const auto i = fieldOf(*type, identifierOf(item))) return handleField(*type, *i);
  }
}

void RunningDialog::handleField(const FieldType &type, int i) {
  switch (type.hit(screen_, i)) {
    case Hit::Accepted:
      end(kAccepted);
      [[fallthrough]];
    case Hit::Edited:
      followValidity();
      if (type.flags.valid[i] != 0) callGlobalAndRedisplay(type, i);
      return;
    case Hit::Changed:
      callGlobalAndRedisplay(type, i);
      return;
    case Hit::Refused:
      return;
  }
}

void RunningDialog::callGlobalAndRedisplay(const FieldType &type, int i) {
  int identifiers[kRedisplayCapacity] = {};
  const int written = callGlobal(DlgBoxGlobal_fonct, type, i, identifiers, kRedisplayCapacity);
  const int count = std::clamp(written, 0, kRedisplayCapacity);
  for (int n = 0; n < count; ++n) redisplay(identifiers[n]);
}

void RunningDialog::redisplay(int identifier) {
  const long long named = identifier < 0 ? -static_cast<long long>(identifier) : identifier;
  for (const FieldType *type : kFieldTypes) {
    if (type->show == nullptr) continue;
    if (const auto i = fieldOf(*type, named)) return redisplayField(*type, *i, identifier < 0);
  }
}

void RunningDialog::redisplayField(const FieldType &type, int i, bool isCleared) {
  (isCleared ? type.clear : type.show)(screen_, i);
  if (type.flags.valid == nullptr) return;
  const bool isValid = isCleared ? type.flags.mandatory[i] == 0 : type.storedIsAcceptable(i);
  type.flags.valid[i] = isValid ? 1 : 0;
}

int runToEnd(platform::Dialog &dialog) {
  RunningDialog running(dialog);
  running.fill();
  dialog.runModal(running);
  return running.result();
}

// Takes the current dialog off the screen.
void dispose() {
  isRunning = false;
  draw::leavePortOf(current->onScreen->window());
  DlgBox_hDlg = nullptr;
  delete current;
  current = nullptr;
}

}  // namespace

bool mayShowDialog() {
  if (current == nullptr) return true;
  if (pthread_equal(pthread_self(), currentThread) == 0) {
    base::asFarAsMemoryAllows(
        [] { reportNotShown("asked for in another thread than the first one"); });
  }
  return false;
}

void reportNotShown(const std::string &reason) { platform::report("dialog not shown: " + reason); }

DialogRef makeCurrent(std::unique_ptr<platform::Dialog> dialog) {
  if (dialog == nullptr) return nullptr;
  current = new KorvelDialog{std::move(dialog)};
  const auto port = [] { return draw::portOf(current->onScreen->window()); };
  draw::setCurrentPort(base::guarded(nullptr, port));
  currentThread = pthread_self();
  DlgBox_hDlg = current;
  return current;
}

// What is thrown while the items are filled leaves the dialog cancelled: nothing was entered.
int runCurrent(DialogRef dialog) {
  if (dialog == nullptr || dialog != current || isRunning) return kCancelled;
  isRunning = true;
  int result = kCancelled;
  catchingAll([&] { result = runToEnd(*dialog->onScreen); });
  endDefinition();
  dispose();
  return result;
}

Screen *runningScreen() { return runningItems; }

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int DlgBoxFunc(DialogRef dialog) {
  lookForMisuse([=] { needsNobody(Call("DlgBoxFunc", {filled(dialog)})); });
  return runCurrent(dialog);
}
