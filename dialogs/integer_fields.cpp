// SPDX-License-Identifier: MIT
// Integer fields, from their tables and description to their items and hits.
#include <algorithm>
#include <iterator>
#include <string>

#include <korvel/codecs.h>

#include "dialogs/build.h"
#include "dialogs/callbacks.h"
#include "dialogs/misuse.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"
#include "dialogs/value_fields.h"

constinit int IDB = 0;
constinit int IDB_N = 0;
constinit int IDB_ID_INT = 0;
constinit short IDB_x[128] = {};
constinit short IDB_y[128] = {};
constinit short IDB_cx[128] = {};
constinit short IDB_cy[128] = {};
constinit short IDB_rk[128] = {};
constinit int IDB_bInit[128] = {};
constinit int IDB_bMand[128] = {};
constinit int IDB_bOK[128] = {};
constinit int IDB_bPassw[128] = {};
constinit int IDB_iInts[128] = {};
constinit short IDB_lPassw[128] = {};
constinit ValidInt_t vi_tab[128] = {};
constinit ValidInt_t *vi = vi_tab;

namespace korvel::dialogs {

namespace {

using platform::Expected;

int readAny(char *text, int *value) { return codecs::readInteger(text, codecs::kLimit16, value); }

template <int kBound>
int readFrom(char *text, int *value) {
  return codecs::readIntegerFrom(kBound, text, codecs::kLimit16, value);
}

constinit OwnValidator<ValidInt_t> ownValidators[128] = {};
constexpr ValueTables<int, ValidInt_t> kTables{kIntegerFields, IDB_iInts, &vi, ownValidators};
constexpr OwnValidator<ValidInt_t> kValidators[] = {
    {intcod_i, readAny}, {intcod_i_sup0, readFrom<0>}, {intcod_i_ssup0, readFrom<1>}};  // by mode
constexpr Asked kAsked[] = {
    {Expected::Integer, 0}, {Expected::IntegerFrom, 0}, {Expected::IntegerFrom, 1}};  // by mode

bool define(int n, int firstItem) {
  if (!define(kTables, n, firstItem, kValidators[KorvelAnyValue])) return false;
  std::fill_n(IDB_bPassw, n, 0);
  std::fill_n(IDB_lPassw, n, short{0});
  return true;
}

void setMasked(int i, bool isMasked) {
  if (hasField(kIntegerFields, i)) IDB_bPassw[i] = isMasked ? 1 : 0;
}

int add(Builder &builder, int i) {
  return builder.addItem(platform::ItemKind::EditText, fieldRect(kIntegerFields, i));
}

void writeMask(Screen &screen, int i, std::size_t length) {
  screen.setMask(itemOf(kIntegerFields, i), length);
  IDB_lPassw[i] = static_cast<short>(length);
}

void show(Screen &screen, int i) {
  const DecimalText text(IDB_iInts[i]);
  if (IDB_bPassw[i] != 0) {
    writeMask(screen, i, text.view().size());
  } else {
    screen.setText(itemOf(kIntegerFields, i), text.view());
  }
}

void clear(Screen &screen, int i) {
  screen.setText(itemOf(kIntegerFields, i), "");
  if (IDB_bPassw[i] != 0) IDB_lPassw[i] = 0;
}

void tell(Screen &screen, int i) { tellExpected(screen, kTables, i, kValidators, kAsked); }

void fill(Screen &screen, int i) {
  const int item = itemOf(kIntegerFields, i);
  if (IDB_bPassw[i] != 0) screen.keepSecret(item);
  if (IDB_bInit[i] != 0) {
    show(screen, i);
    screen.select(item);
  } else if (IDB_bMand[i] != 0) {
    clear(screen, i);
    IDB_bOK[i] = 0;
  }
}

// The text behind stars. Each star means a digit of the value, counted from the end.
// Kept: a text that did not grow is taken to have lost its last character.
std::string unmasked(std::string_view shown, std::string_view value, bool hasGrown) {
  std::string text(shown);
  int digit = static_cast<int>(value.size()) - (hasGrown ? 1 : 2);
  for (auto c = text.rbegin(); c != text.rend(); ++c) {
    if (*c != '*') continue;
    *c = digit < 0 ? '0' : value[static_cast<std::size_t>(digit)];
    --digit;
  }
  return text;
}

std::string readMasked(Screen &screen, int i, std::string_view shown) {
  const bool hasGrown = static_cast<long long>(shown.size()) > IDB_lPassw[i];
  std::string text = unmasked(shown, DecimalText(IDB_iInts[i]).view(), hasGrown);
  writeMask(screen, i, shown.size());
  return text;
}

Hit hit(Screen &screen, int i) {
  std::string text = screen.text(itemOf(kIntegerFields, i));
  if (IDB_bPassw[i] != 0) text = readMasked(screen, i, text);
  IDB_bOK[i] = entryIsAcceptable(kTables, i, text) ? 1 : 0;
  return Hit::Edited;
}

bool storedIsAcceptable(int i) {
  return isAcceptable(kTables, i, DecimalText(IDB_iInts[i]).view());
}

}  // namespace

constinit const FieldType kIntegerFields{
    .name = "integer field",
    .definedBy = "IntDlgBox_param",
    .capacity = std::size(IDB_x),
    .itemsPerField = 1,
    .use = {&IDB, &IDB_N, &IDB_ID_INT},
    .place = {IDB_x, IDB_y, IDB_cx, IDB_cy, IDB_rk},
    .flags = {IDB_bInit, IDB_bMand, IDB_bOK},
    .add = add,
    .fill = fill,
    .tell = tell,
    .hit = hit,
    .show = show,
    .clear = clear,
    .storedIsAcceptable = storedIsAcceptable,
};

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int IntDlgBox_param(int n, int idFirst) {
  lookForMisuse([=] { needsCount(Call("IntDlgBox_param", {n, idFirst}), kIntegerFields, n); });
  return define(n, idFirst) ? 0 : kRefused;
}

int IntDlgBox_set(int i, int value, int mode) {
  lookForMisuse([=] {
    needsMode(Call("IntDlgBox_set", {i, value, mode}), kIntegerFields, i, mode,
              std::size(kValidators));
  });
  set(kTables, i, value, kValidators, mode);
  return 0;
}

int IntDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk) {
  lookForMisuse([=] {
    needsPlace(Call("IntDlgBox_set_geo", {i, x, y, cx, cy, rk}), kIntegerFields, i,
               {x, y, cx, cy, rk}, rk);
  });
  place(kIntegerFields, i, x, y, cx, cy, rk);
  return 0;
}

int IntDlgBox_set_fvalid(int i, ValidInt_t function) {
  lookForMisuse([=] {
    needsFieldInUse(Call("IntDlgBox_set_fvalid", {i, given(function)}), kIntegerFields, i);
  });
  setValidator(kTables, i, function);
  return 0;
}

int IntDlgBox_retrieve(int i, int *out) {
  lookForMisuse([=] {
    needsField(Call("IntDlgBox_retrieve", {i, filled(out)}), kIntegerFields, i);
  });
  retrieve(kTables, i, out);
  return 0;
}

int IntDlgBox_mandatory(int i, int on) {
  lookForMisuse([=] { needsFieldInUse(Call("IntDlgBox_mandatory", {i, on}), kIntegerFields, i); });
  setMandatory(kIntegerFields, i, on);
  return 0;
}

int IntDlgBox_password(int i, int on) {
  lookForMisuse([=] { needsFieldInUse(Call("IntDlgBox_password", {i, on}), kIntegerFields, i); });
  setMasked(i, on != 0);
  return 0;
}

int IntDlgBox_get_valid(int i) {
  lookForMisuse([=] { needsField(Call("IntDlgBox_get_valid", {i}), kIntegerFields, i); });
  return validFlag(kIntegerFields, i);
}

int IntDlgBox_global(int i) {
  lookForMisuse([=] { needsField(Call("IntDlgBox_global", {i}), kIntegerFields, i); });
  callGlobalFor(kIntegerFields, i);
  return 0;
}

// Kept: check boxes and integers are not changed this way.
int ZRVDlgBox_int_set(int i, int value) {
  lookForMisuse([=] { needsAnotherWay(Call("ZRVDlgBox_int_set", {i, value})); });
  return 0;
}
