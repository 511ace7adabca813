// SPDX-License-Identifier: MIT
// For dialogs/: the names that an application gives to fields, for screen readers.
#ifndef KORVEL_DIALOGS_NAMES_H
#define KORVEL_DIALOGS_NAMES_H

#include <string_view>

#include "dialogs/field_type.h"

namespace korvel::dialogs {

class Screen;

// Names field i, in place of the name that it had; an empty name takes that back.
void nameField(const FieldType &type, int i, std::string_view name);

// Gives the names to the items of a dialog that is being filled.
void showNames(Screen &screen);

// A name belongs to a field as it is defined, and ends with the definition.
void forgetNames();
void forgetNames(const FieldType &type) noexcept;

}  // namespace korvel::dialogs

#endif
