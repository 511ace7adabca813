// SPDX-License-Identifier: MIT
// For dialogs/: what a kind of field is. Each kind is one row of FieldType, in a source of its own
// that holds all about it, from its tables to its hits.
#ifndef KORVEL_DIALOGS_FIELD_TYPE_H
#define KORVEL_DIALOGS_FIELD_TYPE_H

#include <span>

#include <korvel/dialogs.h>

namespace korvel::dialogs {

struct Builder;
class Screen;

// What a hit on one of a field's items led to.
enum class Hit {
  Edited,    // a new value and flag: the global callback follows if the field is valid
  Changed,   // the global callback follows
  Accepted,  // as Edited, and the dialog ends
  Refused    // nothing was stored, and nothing follows
};

struct FieldType {
  const char *name = nullptr;       // of one field, in messages
  const char *definedBy = nullptr;  // its _param function
  int capacity = 0;
  int itemsPerField = 0;

  // The exported tables. Null: the kind has no such table.
  struct {
    int *inUse = nullptr;
    int *count = nullptr;
    int *firstItem = nullptr;
  } use = {};
  struct {
    short *x = nullptr;
    short *y = nullptr;
    short *cx = nullptr;
    short *cy = nullptr;
    short *rank = nullptr;
  } place = {};
  struct {
    int *init = nullptr;
    int *mandatory = nullptr;
    int *valid = nullptr;
  } flags = {};

  // Adds the items of field i to a dialog. Returns the first one's number.
  int (*add)(Builder &builder, int i) = nullptr;
  // Brings the items up before the dialog is shown. Null: they stay as they were built.
  void (*fill)(Screen &screen, int i) = nullptr;
  // Tells what is to be entered, as the tables say it now. Null: nothing is known.
  void (*tell)(Screen &screen, int i) = nullptr;
  // Handles a hit on an item.
  Hit (*hit)(Screen &screen, int i) = nullptr;
  // Shows the value in the table, or an empty field. Null: callbacks cannot redisplay the kind.
  void (*show)(Screen &screen, int i) = nullptr;
  void (*clear)(Screen &screen, int i) = nullptr;
  // Whether the value in the table is acceptable. Null: the kind has no flag `valid`.
  bool (*storedIsAcceptable)(int i) = nullptr;
};

extern const FieldType kTextFields;
extern const FieldType kCheckBoxes;
extern const FieldType kIntegerFields;
extern const FieldType kNumberFields;
extern const FieldType kDateFields;
extern const FieldType kPushButtons;

// In the order in which items are placed, fields filled and validated, and hits tried.
inline constexpr const FieldType *kFieldTypes[] = {&kTextFields,   &kCheckBoxes, &kIntegerFields,
                                                   &kNumberFields, &kDateFields, &kPushButtons};

// What a _param function returns for a count that it refuses.
constexpr int kRefused = -1;

// Takes n fields into use, each without place, not set, mandatory and valid. Returns false, with
// nothing changed, if the tables have no room for n fields.
bool define(const FieldType &type, int n, int firstItem);

// Whether the kind has a field i, in use or not; never beyond its tables.
bool hasField(const FieldType &type, int i);

// Whether the kind is in use and has a field i.
bool isInUse(const FieldType &type, int i);

// Each does nothing for a field that the kind does not have.
void place(const FieldType &type, int i, int x, int y, int cx, int cy);
void place(const FieldType &type, int i, int x, int y, int cx, int cy, int rank);
void setMandatory(const FieldType &type, int i, int on);
int validFlag(const FieldType &type, int i);

// Calls `visit` with the type and index of each field in use.
template <typename Visit>
void forEachField(Visit visit) {
  for (const FieldType *type : kFieldTypes) {
    for (int i = 0; isInUse(*type, i); ++i) visit(*type, i);
  }
}

// The same for the fields that have a flag `valid`.
template <typename Visit>
void forEachValidatedField(Visit visit) {
  forEachField([&](const FieldType &type, int i) {
    if (type.flags.valid != nullptr) visit(type, i);
  });
}

// The flags `valid` of the fields in use; none if the kind has no such flag. Every key reads the
// flags of all kinds, so each kind is asked once for all of its own.
std::span<const int> validFlags(const FieldType &type);

// Whether all those flags are 1.
bool allValid();

}  // namespace korvel::dialogs

#endif
