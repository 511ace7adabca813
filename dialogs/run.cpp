// The run of a dialog: filling, waiting for hits, ending.
#include "dialogs/run.h"

#include "dialogs/callbacks.h"
#include "dialogs/field_items.h"
#include "dialogs/marks.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"
#include "dialogs/stored_text.h"

#include <algorithm>

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
constinit bool isRunning = false;

class Session final : public platform::HitHandler {
 public:
  explicit Session(platform::Dialog &dialog) : screen_(dialog) {}

  void fill();
  int result() const { return hasEnded_ ? result_ : kCancelled; }

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
  void handleField(const FieldType &type, int i, int item);
  void callGlobalFor(int item);
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
      handleField(*type, *i, item);
      return;
    }
  }
}

void Session::handleField(const FieldType &type, int i, int item) {
  switch (type.handle(screen_, i)) {
    case Hit::Accepted:
      end(kAccepted);
      [[fallthrough]];
    case Hit::Edited:
      followValidity();
      if (type.family->valid[i] != 0) callGlobalFor(item);
      return;
    case Hit::Changed:
      callGlobalFor(item);
      return;
    case Hit::Refused:
      return;
  }
}

void Session::callGlobalFor(int item) {
  int identifiers[kRedisplayCapacity] = {};
  const int written =
      callGlobal(DlgBoxGlobal_fonct, identifierOf(item), identifiers, kRedisplayCapacity);
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

// Takes the current dialog off the screen.
void dispose() {
  isRunning = false;
  DlgBox_hDlg = nullptr;
  delete current;
  current = nullptr;
}

int runToEnd(platform::Dialog &dialog) {
  Session session(dialog);
  session.fill();
  dialog.runModal(session);
  return session.result();
}

}  // namespace

bool isDialogUp() { return current != nullptr; }

DialogRef makeCurrent(std::unique_ptr<platform::Dialog> dialog) {
  current = new KorvelDialog{std::move(dialog)};
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
