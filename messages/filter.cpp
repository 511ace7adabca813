// SPDX-License-Identifier: MIT
// The event filter of the boxes, for applications with an event loop of their own.
#include <cstring>

#include <korvel/messages.h>

#include "messages/box.h"
#include "messages/misuse.h"

namespace korvel::messages {
namespace {

// The tenth field of a window record; all are as large as a pointer.
constexpr std::size_t kHandlerOffset = 9 * sizeof(void *);

bool isForAWindow(const EventRecord &event) {
  const bool hasThatKind = event.what == KorvelUpdateEvent || event.what == KorvelActivateEvent;
  return hasThatKind && event.reference != nullptr;
}

void passToWindow(EventRecord &event) {
  WindowEvent_t handler = nullptr;
  std::memcpy(&handler, static_cast<const char *>(event.reference) + kHandlerOffset,
              sizeof handler);
  if (handler != nullptr) handler(&event);
}

// The button that a key presses; 0 for none.
int buttonOf(const EventRecord &event) {
  if (event.what != KorvelKeyEvent && event.what != KorvelRepeatedKeyEvent) return 0;
  if (event.key == KorvelReturnKey || event.key == KorvelEnterKey) return keyItems().ofReturn;
  return event.key == KorvelEscapeKey ? keyItems().ofEscape : 0;
}

bool isHandled(EventRecord &event, int *itemHit) {
  if (isForAWindow(event)) {
    passToWindow(event);
    return false;
  }
  const int button = buttonOf(event);
  if (button != 0 && itemHit != nullptr) *itemHit = button;
  return button != 0;
}

}  // namespace
}  // namespace korvel::messages

using namespace korvel::messages;

int MessageBoxFilter(DialogRef dialog, EventRecord *event, int *itemHit) {
  lookForMisuse([=] {
    Call("MessageBoxFilter", {orNull(filled(dialog)), filled(event), orNull(filled(itemHit))})
        .needsAll();
  });
  return event != nullptr && isHandled(*event, itemHit) ? 1 : 0;
}
