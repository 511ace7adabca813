// SPDX-License-Identifier: MIT
// For dialogs/: static texts, group boxes and icons, as dialogs are described and built.
#ifndef KORVEL_DIALOGS_STATIC_TEXTS_H
#define KORVEL_DIALOGS_STATIC_TEXTS_H

#include "dialogs/field_type.h"

namespace korvel::dialogs {

// Tables only: statics are no items, so nothing fills or hits them.
extern const FieldType kStaticTexts;

// As the exported functions, without their checks for null.
bool defineStatics(int n);
void setStatic(int i, const char *text);

// Adds the statics in use to a dialog.
void addStatics(Builder &builder);

}  // namespace korvel::dialogs

#endif
