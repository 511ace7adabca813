// SPDX-License-Identifier: MIT
// The window of questions and notes: its items and its run. While it runs, its port is the
// current one.
#include "messages/box.h"

#include <memory>
#include <utility>

#include <korvel/draw.h>
#include <korvel/messages.h>

#include "base/guard.h"
#include "draw/fonts.h"
#include "draw/ports.h"
#include "strings/charsets.h"

namespace korvel::messages {
namespace {

using platform::AlertIcon;
using platform::Desktop;
using platform::Dialog;
using platform::ItemKind;
using platform::Run;

constexpr std::string_view kTitle = "Dialogue utilisateur";
constexpr const char *kFontName = "Lucida Grande";
constexpr int kFontSize = 13;

constexpr int kLeastCorner = 0;

// The buttons as items; a note has only the first.
constexpr int kFirstButton = 1;
constexpr int kSecondButton = 2;

constinit KeyItems newestKeyItems{platform::kOkItem, platform::kCancelItem};

// Kept: KorvelDefaultOui takes back what KorvelDefaultNon says.
bool defaultsToNon(unsigned flags) {
  return (flags & KorvelDefaultNon) != 0 && (flags & KorvelDefaultOui) == 0;
}

KeyItems keyItemsOf(const Message &message) {
  if (message.kind == Kind::Note) return {kFirstButton, kFirstButton};
  return {defaultsToNon(message.flags) ? kSecondButton : kFirstButton, kSecondButton};
}

// Kept: a question knows no icon but the caution icon.
std::optional<AlertIcon> iconOf(const Message &message) {
  const auto isSet = [&](unsigned bits) { return (message.flags & bits) != 0; };
  const bool isQuestion = message.kind == Kind::Question;
  if (isSet(KorvelCautionIcon)) return AlertIcon::Caution;
  if (isQuestion && isSet(KorvelOtherCautionIcon)) return AlertIcon::Caution;
  if (!isQuestion && isSet(KorvelStopIcon)) return AlertIcon::Stop;
  if (!isQuestion && isSet(KorvelNoteIcon)) return AlertIcon::Note;
  return std::nullopt;
}

// While a box is shown, its port is the current one, in the font of its text, and its keys count.
// Boxes may be opened from within each other.
class ShownBox final : public platform::HitHandler {
 public:
  ShownBox(WindowRef window, KeyItems items)
      : window_(window), button_(items.ofEscape), before_(std::exchange(newestKeyItems, items)) {
    const CGrafPtr port = base::guarded(nullptr, [&] { return draw::portOf(window_); });
    draw::setCurrentPort(port);
    base::asFarAsMemoryAllows([&] {
      draw::chooseFont(port, kFontName, {KorvelBlack, KorvelTransparent, kFontSize});
    });
  }
  ~ShownBox() {
    draw::leavePortOf(window_);
    newestKeyItems = before_;
  }
  ShownBox(const ShownBox &) = delete;
  ShownBox &operator=(const ShownBox &) = delete;

  // The first button pressed ends the run; Escape's is the answer without one.
  Run hit(int item) override {
    if (item != platform::kCancelItem) button_ = item;
    return Run::Stop;
  }
  int button() const { return button_; }

 private:
  const WindowRef window_;
  int button_;
  const KeyItems before_;
};

void addItems(Dialog &dialog, const Message &message, int width, int height) {
  if (message.kind == Kind::Question) {
    dialog.addItem(ItemKind::PushButton, firstOfTwoButtons(width, height), "Oui");
    dialog.addItem(ItemKind::PushButton, lastButton(width, height), "Non");
  } else {
    dialog.addItem(ItemKind::PushButton, lastButton(width, height), "OK");
  }
  if (const auto icon = iconOf(message)) dialog.addAlertIcon(kIconRect, *icon);
  const Rect pane = textPane(width, height);
  dialog.addMessage(pane, message.text,
                    {kFontName, kFontSize, kFirstBaseline - pane.top, kLinePitch});
  dialog.setDefaultItem(keyItemsOf(message).ofReturn);
}

std::unique_ptr<Dialog> build(Desktop &desktop, WindowRef owner, const Message &message) {
  const std::optional<Rect> ownerBounds = desktop.windowBounds(owner);
  const Rect screen = desktop.screenBounds();
  const int width = boxWidth(message.caption.size(), message.text.size(), screen.width());
  const int height = boxHeight(message.kind, message.lines, tallestOn(screen));
  auto dialog = desktop.newDialog(
      platform::centredOn(ownerBounds.value_or(screen), width, height, kLeastCorner),
      ownerBounds ? owner : nullptr,
      strings::toMac(message.caption.empty() ? kTitle : message.caption));
  if (dialog != nullptr) addItems(*dialog, message, width, height);
  return dialog;
}

}  // namespace

int escapeAnswer(Kind kind) { return kind == Kind::Question ? KorvelNonAnswer : KorvelOkAnswer; }

int ask(Desktop *desktop, WindowRef owner, const Message &message) {
  const auto dialog = desktop == nullptr ? nullptr : build(*desktop, owner, message);
  if (dialog == nullptr) return escapeAnswer(message.kind);
  ShownBox box(dialog->window(), keyItemsOf(message));
  dialog->runModal(box);
  // Kept: "Oui" is answered as 2 and "Non" as 3.
  const bool isOui = message.kind == Kind::Question && box.button() == kFirstButton;
  return isOui ? KorvelOuiAnswer : escapeAnswer(message.kind);
}

KeyItems keyItems() { return newestKeyItems; }

}  // namespace korvel::messages
