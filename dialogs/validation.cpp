// Validation of all fields from their stored values, and the ending of a definition, without a
// dialog on the screen.
#include <cstdint>

#include "dialogs/callbacks.h"
#include "dialogs/families.h"
#include "dialogs/field_values.h"

using namespace korvel::dialogs;

namespace {

struct Validation {
  const Family *family;
  bool (*storedIsAcceptable)(int i);
};
constexpr Validation kValidations[] = {{&kTexts, storedTextIsAcceptable},
                                       {&kInts, storedIntegerIsAcceptable},
                                       {&kNums, storedNumberIsAcceptable},
                                       {&kDates, storedDateIsAcceptable}};

bool isAcceptable(const Validation &validation, int i) {
  const Family &family = *validation.family;
  if (family.init[i] == 0) return family.mandatory[i] == 0;
  return validation.storedIsAcceptable(i);
}

}  // namespace

int ZRVDlgBox_valid() {
  for (const Validation &validation : kValidations) {
    const Family &family = *validation.family;
    for (int i = 0; isInUse(family, i); ++i) family.valid[i] = isAcceptable(validation, i) ? 1 : 0;
  }
  return allValid() ? 1 : 0;
}

int ZRVDlgBox_end(int first) {
  const int result = callFinal(reinterpret_cast<WindowRef>(static_cast<std::intptr_t>(first)));
  endDefinition();
  return result;
}
