// Validation of all fields from their stored values, and the end of a definition, without a dialog
// on the screen.
#include <cstdint>

#include "dialogs/callbacks.h"
#include "dialogs/field_type.h"

namespace korvel::dialogs {

namespace {

bool isAcceptable(const FieldType &type, int i) {
  return type.flags.init[i] == 0 ? type.flags.mandatory[i] == 0 : type.storedIsAcceptable(i);
}

bool validate() {
  forEachValidatedField(
      [](const FieldType &type, int i) { type.flags.valid[i] = isAcceptable(type, i) ? 1 : 0; });
  return allValid();
}

int endWithFinal(int first) {
  const int result = callFinal(reinterpret_cast<WindowRef>(static_cast<std::intptr_t>(first)));
  endDefinition();
  return result;
}

}  // namespace

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int ZRVDlgBox_valid() { return validate() ? 1 : 0; }
int ZRVDlgBox_end(int first) { return endWithFinal(first); }
