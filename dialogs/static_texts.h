// For dialogs/ only: statics, which belong to no item, as dialogs are built and described with
// them.
#ifndef KORVEL_DIALOGS_STATIC_TEXTS_H
#define KORVEL_DIALOGS_STATIC_TEXTS_H

#include <string_view>

#include "dialogs/field_type.h"

namespace korvel::dialogs {

// Its tables only: what is no item is neither filled nor hit.
extern const FieldType kStaticTexts;

// As the exported functions of these names.
bool defineStatics(int n);
void setStatic(int i, std::string_view text);

// Adds the statics in use to a dialog.
void addStatics(Builder &builder);

}  // namespace korvel::dialogs

#endif
