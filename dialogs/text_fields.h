// SPDX-License-Identifier: MIT
// For dialogs/: the texts of text fields, and their description by the library's own dialogs.
#ifndef KORVEL_DIALOGS_TEXT_FIELDS_H
#define KORVEL_DIALOGS_TEXT_FIELDS_H

#include <iterator>

#include "dialogs/field_type.h"
#include "dialogs/stored_text.h"

namespace korvel::dialogs {

inline constexpr TextStore kFieldTexts{TDB_szBuffer, std::size(TDB_szBuffer), &TDB_BUFFERSIZE,
                                       TDB_pszBuffer};
inline constexpr TextStore kChoices{TDB_SZLBUFFER, std::size(TDB_SZLBUFFER), &TDB_BUFFERSIZE,
                                    TDB_PSZLBUFFER};

// As the exported functions, without their checks for null.
bool defineTexts(int n, int firstItem);
void setText(int i, const char *text);
void setChoices(int i, const char *choices);
// Whether those that were set last did not fit.
bool areCutChoices(int i);
void turnPopUpOrList(int i);
void useChoices(int i, char *choices);

// Has the fields that use these choices use their own slices again.
void forgetChoices(const char *choices);

// Builds the entries of a pop-up or the rows of a list anew while the dialog is up.
void rebuildChoices(int i);

}  // namespace korvel::dialogs

#endif
