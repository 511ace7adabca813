#include "messages/box.h"

#include <memory>
#include <string>
#include <utility>

#include "base/guard.h"
#include "draw/fonts.h"
#include "draw/palette.h"
#include "draw/ports.h"
#include "messages/layout.h"
#include "platform/loader.h"
#include "strings/charsets.h"

namespace korvel::messages {
namespace {

using platform::Desktop;
using platform::Dialog;
using platform::ItemKind;
using platform::Run;

constexpr std::string_view kTitle = "Dialogue utilisateur";
constexpr const char *kFontName = "Lucida Grande";
constexpr int kFontSize = 13;

KeyItems keyItemsOf(const Message &message) {
  if (message.kind == Kind::Note) return {kFirstButton, kFirstButton};
  return {defaultsToNo(message.flags) ? kSecondButton : kFirstButton, kSecondButton};
}

constexpr KeyItems kItemsOfAnyDialog{platform::kOkItem, platform::kCancelItem};
constinit KeyItems g_keyItems = kItemsOfAnyDialog;

// Boxes may be opened from within each other; each is the newest one as long as it is up.
class NewestBox {
 public:
  explicit NewestBox(KeyItems items) : before_(std::exchange(g_keyItems, items)) {}
  ~NewestBox() { g_keyItems = before_; }
  NewestBox(const NewestBox &) = delete;
  NewestBox &operator=(const NewestBox &) = delete;

 private:
  const KeyItems before_;
};

// The box's port is the current one, in the font of its text, as long as the box is up.
class CurrentPort {
 public:
  explicit CurrentPort(WindowRef window) : window_(window) {
    base::asFarAsMemoryAllows([&] {
      const CGrafPtr port = draw::portOf(window_);
      draw::setCurrentPort(port);
      draw::chooseFont(port, kFontName, {draw::kBlack, draw::kTransparent, kFontSize});
    });
  }
  ~CurrentPort() { draw::leavePortOf(window_); }
  CurrentPort(const CurrentPort &) = delete;
  CurrentPort &operator=(const CurrentPort &) = delete;

 private:
  const WindowRef window_;
};

// The first press of any button is the answer; until then, what Escape stands for.
class Answer final : public platform::HitHandler {
 public:
  explicit Answer(KeyItems items) : escape_(items.ofEscape), button_(escape_) {}

  int button() const { return button_; }

  Run hit(int item) override {
    button_ = item == platform::kCancelItem ? escape_ : item;
    return Run::Stop;
  }

 private:
  const int escape_;
  int button_;
};

Rect boundsOf(Desktop &desktop, std::optional<Rect> owner, const Message &message) {
  const Rect screen = desktop.screenBounds();
  const int width = boxWidth(message.caption.size(), message.text.size(), screen.width());
  const int height = boxHeight(message.kind, message.lines, tallestOn(screen));
  return centredOn(owner.value_or(screen), width, height);
}

void addButtons(Dialog &dialog, Kind kind, const Rect &bounds) {
  if (kind == Kind::Question) {
    const ButtonPair buttons = questionButtons(bounds.width(), bounds.height());
    dialog.addItem(ItemKind::PushButton, buttons.yes, "Oui");
    dialog.addItem(ItemKind::PushButton, buttons.no, "Non");
  } else {
    dialog.addItem(ItemKind::PushButton, noteButton(bounds.width(), bounds.height()), "OK");
  }
}

void addText(Dialog &dialog, std::string_view text, const Rect &bounds) {
  const Rect pane = textPane(bounds.width(), bounds.height());
  dialog.addMessage(pane, text, {kFontName, kFontSize, kFirstBaseline - pane.top, kLinePitch});
}

std::unique_ptr<Dialog> build(Desktop &desktop, WindowRef owner, const Message &message) {
  const auto ownerBounds = desktop.windowBounds(owner);
  const Rect bounds = boundsOf(desktop, ownerBounds, message);
  auto dialog =
      desktop.newDialog(bounds, ownerBounds ? owner : nullptr,
                        strings::toMac(message.caption.empty() ? kTitle : message.caption));
  if (dialog == nullptr) return nullptr;
  addButtons(*dialog, message.kind, bounds);
  const auto icon =
      message.kind == Kind::Question ? questionIcon(message.flags) : noteIcon(message.flags);
  if (icon) dialog->addAlertIcon(kIconRect, *icon);
  addText(*dialog, message.text, bounds);
  dialog->setDefaultItem(keyItemsOf(message).ofReturn);
  return dialog;
}

int show(Desktop &desktop, WindowRef owner, const Message &message) {
  Answer answer(keyItemsOf(message));
  const auto dialog = build(desktop, owner, message);
  if (dialog == nullptr) return answer.button();
  const NewestBox newest(keyItemsOf(message));
  const CurrentPort port(dialog->window());
  dialog->runModal(answer);
  return answer.button();
}

int showInFront(Desktop &desktop, WindowRef owner, const Message &message) {
  if (owner == nullptr) owner = desktop.frontWindow();
  const int button = show(desktop, owner, message);
  if (owner != nullptr) draw::setCurrentPort(draw::portOf(owner));
  return button;
}

using Show = int (*)(Desktop &desktop, WindowRef owner, const Message &message);

int answerOf(Show shown, WindowRef owner, const Message &message) {
  const int unseen = keyItemsOf(message).ofEscape;
  return base::orOnFailure(unseen, [&] {
    Desktop *desktop = platform::desktopWithScreen();
    return desktop == nullptr ? unseen : shown(*desktop, owner, message);
  });
}

}  // namespace

int ask(WindowRef owner, const Message &message) { return answerOf(show, owner, message); }

int askInFront(WindowRef owner, const Message &message) {
  return answerOf(showInFront, owner, message);
}

KeyItems keyItems() { return g_keyItems; }

}  // namespace korvel::messages
