// Push buttons on the screen.
#include "dialogs/field_items.h"
#include "dialogs/screen.h"

namespace korvel::dialogs {

namespace {

Hit handle(Screen &screen, int i) {
  const PushAction_t action = vp != nullptr ? vp[i] : nullptr;
  if (action != nullptr) action(screen.window());
  return Hit::Changed;
}

}  // namespace

constexpr FieldType kPushType{&kPushes, nullptr, handle, nullptr, nullptr};

}  // namespace korvel::dialogs
