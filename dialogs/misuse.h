// SPDX-License-Identifier: MIT
// For dialogs/: what an application can do wrong with dialogs, found and told. Each of these
// functions tells of the first misuse that it finds in a call.
#ifndef KORVEL_DIALOGS_MISUSE_H
#define KORVEL_DIALOGS_MISUSE_H

#include "base/misuse.h"
#include "base/views.h"
#include "dialogs/field_type.h"

namespace korvel::platform {
class Dialog;
}

namespace korvel::dialogs {

using base::Call;
using base::filled;
using base::given;
using base::lookForMisuse;
using base::orNull;

// A count for a _param function.
void needsCount(const Call &call, const FieldType &type, int n, int least = 0);

// Field i, of a kind that may be out of use again: its values outlast a run.
void needsField(const Call &call, const FieldType &type, int i);

// Field i of a kind in use. What is set before belongs to nothing: _param clears it.
void needsFieldInUse(const Call &call, const FieldType &type, int i);

// The same while a dialog runs.
void needsFieldOnScreen(const Call &call, const FieldType &type, int i);

// Field i in use, and a text for it of at most `longest` characters.
void needsText(const Call &call, const FieldType &type, int i, const char *text, int longest);

// The same for a text of no field.
void needsText(const Call &call, const char *text, std::size_t longest);

// Field i in use, a place of shorts, and a rank that dialogs can have.
void needsPlace(const Call &call, const FieldType &type, int i,
                std::initializer_list<int> placeAndSize, int rank = KorvelNoRank);

// Field i in use, and one of the modes from 0 on, or KorvelKeepValidation.
void needsMode(const Call &call, const FieldType &type, int i, int mode, int modes);

// Room for a text of this length that is to be copied.
void needsRoomFor(const Call &call, std::size_t length, int size);

// The same for the text of text field i.
void needsRoomForText(const Call &call, int i, int size);

// Field i in use, a place and a label.
void needsLabel(const Call &call, const FieldType &type, int i, const char *label, int labelSize,
                std::initializer_list<int> placeAndSize, int rank);

// Text field i in use, and what its functions ask for: a limit that is lower than the one it has, a
// row of tab stops, choices.
void needsLowerLimit(const Call &call, int i, int n);
void needsTabStops(const Call &call, int i);
void needsChoices(const Call &call, int i);

// Number field i in use, and a number of decimals.
void needsDecimals(const Call &call, int i, int n);

// The same while a dialog runs.
void needsTextOnScreen(const Call &call, int i, const char *text);
void needsChoicesOnScreen(const Call &call, int i);
void needsNumberOnScreen(const Call &call, int i, const char *text);

// What changes nothing tells so whenever it is called.
void needsAnotherWay(const Call &call);

// What the settings ask for.
void needsSize(const Call &call, int cx, int cy);
void needsButtonTexts(const Call &call, const char *text1, const char *text2);
void needsButton(const Call &call, int n);
void needsOwner(const Call &call, const char *text, const char *caption);

// A field with this identifier, before the dialog runs, and a name.
void needsNameable(const Call &call, int identifier, const char *text);

// That no dialog is up; and a name.
void needsNoDialog(const Call &call);
void needsTemplate(const Call &call);

// DlgBoxFunc is for nobody, listeNoms for a call of SelectMT.
void needsNobody(const Call &call);
void needsChooser(const Call &call);

// What SelectMT asks for: no dialog that is up, and a directory with the table.
void needsPractitioners(const Call &call, const char *directory);

// Tells of all that is wrong with the fields that ZRVDlgBoxEx is to show: identifiers, ranks and
// places.
void tellOfDescription(const char *title, WindowRef parent);

// The same for ZRVDlgBox: identifiers, and items of the form and of the fields that do not meet.
void tellOfTemplate(const char *name, const platform::Dialog &dialog);

}  // namespace korvel::dialogs

#endif
