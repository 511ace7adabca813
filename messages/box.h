// SPDX-License-Identifier: MIT
// For messages/ and dialogs/: the one box that questions and notes share.
#ifndef KORVEL_MESSAGES_BOX_H
#define KORVEL_MESSAGES_BOX_H

#include <string_view>

#include <korvel/types.h>

#include "messages/layout.h"
#include "platform/desktop.h"

namespace korvel::messages {

struct Message {
  Kind kind;
  std::string_view caption;
  std::string_view text;  // lines ended by carriage returns
  int lines;              // for the height
  unsigned flags;
};

// The answer of Escape.
int escapeAnswer(Kind kind);

// Shows the message, centred on `owner` (null: on the screen), and returns the answer. Without a
// desktop, or if the box cannot be shown, that is the answer of Escape.
int ask(platform::Desktop *desktop, WindowRef owner, const Message &message);

// The rule of MessageBox.
int messageBox(WindowRef owner, std::string_view text, std::string_view caption, unsigned flags);

// The items that Return and Escape press in the newest box; without a box, in any dialog.
struct KeyItems {
  int ofReturn;
  int ofEscape;
};
KeyItems keyItems();

}  // namespace korvel::messages

#endif
