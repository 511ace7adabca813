// SPDX-License-Identifier: MIT
// Questions and notes: what applications pass, checked, broken into lines and asked.
#include <string>

#include <korvel/messages.h>

#include "base/guard.h"
#include "base/views.h"
#include "draw/ports.h"
#include "messages/box.h"
#include "messages/misuse.h"
#include "platform/loader.h"
#include "strings/charsets.h"

namespace korvel::messages {

using base::guarded;
using platform::Desktop;
using platform::desktopWithScreen;

namespace {

Kind kindOf(unsigned flags) { return (flags & KorvelQuestion) != 0 ? Kind::Question : Kind::Note; }

int askInLines(Desktop &desktop, WindowRef owner, std::string_view text, std::string_view caption,
               unsigned flags) {
  const Kind kind = kindOf(flags);
  if (caption.size() > kLongestCaption || text.size() > kLongestText) {
    return ask(&desktop, owner, {kind, "Erreur interne", "MessageBox impossible", 2, flags});
  }
  std::string shown(text);
  const int lines = wrapLines(shown);
  strings::convertToMac(shown);
  return ask(&desktop, owner, {kind, caption, shown, lines, flags});
}

// The owner's port is current afterwards, even if memory ran out.
int askInFront(WindowRef owner, std::string_view text, std::string_view caption, unsigned flags) {
  const int unseen = escapeAnswer(kindOf(flags));
  Desktop *desktop = desktopWithScreen();
  if (desktop == nullptr) return unseen;
  if (owner == nullptr) owner = desktop->frontWindow();
  const int answer =
      guarded(unseen, [&] { return askInLines(*desktop, owner, text, caption, flags); });
  if (owner != nullptr) {
    base::asFarAsMemoryAllows([&] { draw::setCurrentPort(draw::portOf(owner)); });
  }
  return answer;
}

}  // namespace

int messageBox(WindowRef owner, std::string_view text, std::string_view caption, unsigned flags) {
  return guarded(escapeAnswer(kindOf(flags)),
                 [&] { return askInFront(owner, text, caption, flags); });
}

}  // namespace korvel::messages

using namespace korvel::messages;
using korvel::base::textOf;

int QuestionDialog(WindowRef owner, char *caption, char *text, int lines, unsigned flags) {
  const Message message{Kind::Question, textOf(caption), textOf(text), lines, flags};
  lookForMisuse([=] {
    needsLines(Call("QuestionDialog", {orNull(owner), orNull(caption), orNull(text), lines, flags}),
               message.text, message.caption, lines);
  });
  return guarded(KorvelNonAnswer, [&] { return ask(desktopWithScreen(), owner, message); });
}

int NoteDialog(WindowRef owner, char *caption, char *text, int lines, unsigned flags) {
  const Message message{Kind::Note, textOf(caption), textOf(text), lines, flags};
  lookForMisuse([=] {
    needsLines(Call("NoteDialog", {orNull(owner), orNull(caption), orNull(text), lines, flags}),
               message.text, message.caption, lines);
  });
  return guarded(KorvelOkAnswer, [&] { return ask(desktopWithScreen(), owner, message); });
}

int MessageBox(WindowRef owner, const char *text, const char *caption, unsigned flags) {
  lookForMisuse([=] {
    needsMessage(Call("MessageBox", {orNull(owner), orNull(text), orNull(caption), flags}),
                 textOf(text), textOf(caption));
  });
  return messageBox(owner, textOf(text), textOf(caption), flags);
}
