// The event filter of the boxes.
#include <cstring>

#include <korvel/messages.h>

#include "messages/box.h"

namespace {

constexpr int kNotHandled = 0;
constexpr int kHandled = 1;

constexpr int kReturn = 13;
constexpr int kEnter = 3;
constexpr int kEscape = 27;

// The tenth of a window record's fields, all of them as large as a pointer.
constexpr std::size_t kHandlerOffset = 9 * sizeof(void *);

bool isForAWindow(const EventRecord &event) {
  const bool isOfThatKind = event.what == KorvelUpdateEvent || event.what == KorvelActivateEvent;
  return isOfThatKind && event.reference != nullptr;
}

bool isKey(const EventRecord &event) {
  return event.what == KorvelKeyEvent || event.what == KorvelRepeatedKeyEvent;
}

WindowEvent_t handlerIn(const void *windowRecord) {
  WindowEvent_t handler = nullptr;
  std::memcpy(&handler, static_cast<const char *>(windowRecord) + kHandlerOffset, sizeof handler);
  return handler;
}

// The button that a key stands for; 0 for none.
int buttonOf(const EventRecord &event) {
  if (!isKey(event)) return 0;
  const auto items = korvel::messages::keyItems();
  if (event.key == kReturn || event.key == kEnter) return items.ofReturn;
  return event.key == kEscape ? items.ofEscape : 0;
}

}  // namespace

int MessageBoxFilter(DialogRef, EventRecord *event, int *itemHit) {
  if (event == nullptr) return kNotHandled;
  if (isForAWindow(*event)) {
    if (const WindowEvent_t handler = handlerIn(event->reference)) handler(event);
    return kNotHandled;
  }
  const int button = buttonOf(*event);
  if (button == 0) return kNotHandled;
  if (itemHit != nullptr) *itemHit = button;
  return kHandled;
}
