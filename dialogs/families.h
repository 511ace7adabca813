// For dialogs/ only: what the field types have in common, one descriptor each over the exported
// tables.
#ifndef KORVEL_DIALOGS_FAMILIES_H
#define KORVEL_DIALOGS_FAMILIES_H

#include <korvel/dialogs.h>

namespace korvel::dialogs {

// The tables of one field type. A null pointer: the type has no such table.
struct Family {
  const char *name;  // of one field, for messages
  int capacity;
  int itemsPerField;
  int *inUse;
  int *count;
  int *firstItem;
  short *x;
  short *y;
  short *cx;
  short *cy;
  short *rank;
  int *init;
  int *mandatory;
  int *valid;
};

inline constexpr Family kTexts{"text field",  20,        1,         &TDB,   &TDB_N,
                               &TDB_ID_TEXTE, TDB_x,     TDB_y,     TDB_cx, TDB_cy,
                               TDB_rk,        TDB_bInit, TDB_bMand, TDB_bOK};
inline constexpr Family kBools{"check box", 64,     1,      &BDB,   &BDB_N,  &BDB_ID_FLAG, BDB_x,
                               BDB_y,       BDB_cx, BDB_cy, BDB_rk, nullptr, nullptr,      nullptr};
inline constexpr Family kInts{"integer field", 128,       1,         &IDB,   &IDB_N,
                              &IDB_ID_INT,     IDB_x,     IDB_y,     IDB_cx, IDB_cy,
                              IDB_rk,          IDB_bInit, IDB_bMand, IDB_bOK};
inline constexpr Family kNums{"number field", 128,       1,         &NDB,   &NDB_N,
                              &NDB_ID_NUM,    NDB_x,     NDB_y,     NDB_cx, NDB_cy,
                              NDB_rk,         NDB_bInit, NDB_bMand, NDB_bOK};
inline constexpr Family kDates{"date field", 20,        3,         &DDB,   &DDB_N,
                               &DDB_ID_DATE, DDB_x,     DDB_y,     DDB_cx, DDB_cy,
                               DDB_rk,       DDB_bInit, DDB_bMand, DDB_bOK};
inline constexpr Family kPushes{"push button", 10,      1,       &PDB,   &PDB_N,
                                &PDB_ID_PUSH,  PDB_x,   PDB_y,   PDB_cx, PDB_cy,
                                PDB_rk,        nullptr, nullptr, nullptr};
inline constexpr Family kStatics{"static text", 128,    0,      &SDB,    &SDB_N,  nullptr, SDB_x,
                                 SDB_y,         SDB_cx, SDB_cy, nullptr, nullptr, nullptr, nullptr};

// The types whose fields are items, in the order in which items are placed and hits are tried.
inline constexpr const Family *kItemFamilies[] = {&kTexts, &kBools, &kInts,
                                                  &kNums,  &kDates, &kPushes};
// The types whose fields can be valid or not, in the order in which they are validated.
inline constexpr const Family *kValidatedFamilies[] = {&kTexts, &kInts, &kNums, &kDates};

// What a _param function returns for a count that it refuses.
constexpr int kRefused = -1;

// Takes n fields into use, each without place, not set, mandatory and valid. Returns false, with
// nothing changed, when the tables have no room for n fields. `firstItem` is not used by statics.
bool define(const Family &family, int n, int firstItem);

// The number of fields, never more than the tables hold.
int fieldCount(const Family &family);

// Whether the type has a field i, in use or not.
bool hasField(const Family &family, int i);

// Whether the type is in use and has a field i.
bool isInUse(const Family &family, int i);

// Each does nothing to a field that the type does not have.
void place(const Family &family, int i, int x, int y, int cx, int cy);
void place(const Family &family, int i, int x, int y, int cx, int cy, int rank);
void setMandatory(const Family &family, int i, int on);
int validFlag(const Family &family, int i);

// Whether the flags of all fields in use that have one are 1.
bool allValid();

// Takes all types out of use and the title back, as the end of a run does. Values, counts and
// flags stay.
void endUse();

}  // namespace korvel::dialogs

#endif
