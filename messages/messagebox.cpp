// The boxes as applications call them.
#include <cstring>
#include <string>

#include <korvel/messages.h>
#include <korvel/strings.h>

#include "base/guard.h"
#include "messages/box.h"
#include "messages/wrapping.h"

namespace {

using korvel::messages::Kind;
using korvel::messages::Message;

// Capacities of what a message is copied to, final NUL included.
constexpr std::size_t kCaptionCapacity = 256;
constexpr std::size_t kTextCapacity = 4096;

// Kept: "Oui" is answered as 2 and "Non" as 3.
constexpr int kOk = 1;
constexpr int kYes = 2;
constexpr int kNo = 3;

const char *orEmpty(const char *text) { return text == nullptr ? "" : text; }

bool fits(const char *text, std::size_t capacity) { return strnlen(text, capacity) < capacity; }

// A message in lines, ready for the screen.
struct Prepared {
  std::string caption;
  std::string text;
  int lines;
};

Prepared prepared(const char *caption, const char *text) {
  if (!fits(caption, kCaptionCapacity) || !fits(text, kTextCapacity))
    return {"Erreur interne", "MessageBox impossible", 2};
  Prepared message{caption, text, 0};
  w2mstr(message.caption.data());
  message.lines = korvel::messages::wrapLines(message.text);
  w2mstr(message.text.data());
  return message;
}

int resultOf(Kind kind, int button) {
  if (kind == Kind::Note) return kOk;
  return button == korvel::messages::kFirstButton ? kYes : kNo;
}

int askedAs(Kind kind, WindowRef owner, const char *caption, const char *text, int lines,
            unsigned flags) {
  const Message message{kind, orEmpty(caption), orEmpty(text), lines, flags};
  return resultOf(kind, korvel::messages::ask(owner, message));
}

}  // namespace

int QuestionDialog(WindowRef owner, char *caption, char *text, int lines, unsigned flags) {
  return askedAs(Kind::Question, owner, caption, text, lines, flags);
}

int NoteDialog(WindowRef owner, char *caption, char *text, int lines, unsigned flags) {
  return askedAs(Kind::Note, owner, caption, text, lines, flags);
}

int MessageBox(WindowRef owner, const char *text, const char *caption, unsigned flags) {
  const Kind kind = korvel::messages::kindOf(flags);
  return korvel::base::orOnFailure(kind == Kind::Question ? kNo : kOk, [&] {
    const Prepared shown = prepared(orEmpty(caption), orEmpty(text));
    const Message message{kind, shown.caption, shown.text, shown.lines, flags};
    return resultOf(kind, korvel::messages::askInFront(owner, message));
  });
}
