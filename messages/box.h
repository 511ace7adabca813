// For messages/ only: the one box that questions and notes share.
#ifndef KORVEL_MESSAGES_BOX_H
#define KORVEL_MESSAGES_BOX_H

#include <string_view>

#include <korvel/types.h>

#include "messages/flags.h"

namespace korvel::messages {

// The buttons of a box by the items that they are; a note has the first one only.
constexpr int kFirstButton = 1;
constexpr int kSecondButton = 2;

struct Message {
  Kind kind;
  std::string_view caption;
  std::string_view text;  // lines ended by carriage returns
  int lines;              // for the height
  unsigned flags;
};

// Shows the message, centred on `owner` (null: on the screen), until it is answered. Returns the
// item of the button: what Escape stands for where nothing can be shown.
int ask(WindowRef owner, const Message &message);

// The same in front of the application's front window where `owner` is null.
int askInFront(WindowRef owner, const Message &message);

// What Return and Escape stand for in the newest box, or in any dialog where none is up.
struct KeyItems {
  int ofReturn;
  int ofEscape;
};
KeyItems keyItems();

}  // namespace korvel::messages

#endif
