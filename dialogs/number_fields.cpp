// SPDX-License-Identifier: MIT
// Number fields, which show a number with a fixed count of decimals.
#include <algorithm>
#include <iterator>
#include <string>

#include <korvel/codecs.h>

#include "dialogs/build.h"
#include "dialogs/callbacks.h"
#include "dialogs/misuse.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "dialogs/screen.h"
#include "dialogs/value_fields.h"

constinit int NDB = 0;
constinit int NDB_N = 0;
constinit int NDB_ID_NUM = 0;
constinit short NDB_x[128] = {};
constinit short NDB_y[128] = {};
constinit short NDB_cx[128] = {};
constinit short NDB_cy[128] = {};
constinit short NDB_rk[128] = {};
constinit int NDB_bInit[128] = {};
constinit int NDB_bMand[128] = {};
constinit int NDB_bOK[128] = {};
constinit double NDB_dNums[128] = {};
constinit int NDB_iChiff[128] = {};
constinit ValidNum_t vf_tab[128] = {};
constinit ValidNum_t *vf = vf_tab;

namespace korvel::dialogs {

namespace {

using platform::Expected;

constinit OwnValidator<ValidNum_t> ownValidators[128] = {};
constexpr ValueTables<double, ValidNum_t> kTables{kNumberFields, NDB_dNums, &vf, ownValidators};
constexpr OwnValidator<ValidNum_t> kValidators[] = {
    {realcod_d, codecs::readReal},
    {realcod_d_sup0, codecs::readNotNegative},
    {realcod_d_ssup0, codecs::readPositive}};  // by mode
constexpr Asked kAsked[] = {
    {Expected::Number, 0}, {Expected::NumberFrom, 0}, {Expected::NumberAbove, 0}};  // by mode
constexpr int kInitialDecimals = 5;

bool define(int n, int firstItem) {
  if (!define(kTables, n, firstItem, kValidators[KorvelAnyValue])) return false;
  std::fill_n(NDB_iChiff, n, kInitialDecimals);
  return true;
}

void setDecimals(int i, int n) {
  if (hasField(kNumberFields, i)) NDB_iChiff[i] = std::max(n, 0);
}

int add(Builder &builder, int i) {
  return builder.addItem(platform::ItemKind::EditText, fieldRect(kNumberFields, i));
}

void show(Screen &screen, int i) {
  screen.setText(itemOf(kNumberFields, i), DecimalText(NDB_dNums[i], NDB_iChiff[i]).view());
}

void clear(Screen &screen, int i) { screen.setText(itemOf(kNumberFields, i), ""); }

// Kept: unlike an integer field, a field never set leaves its item as it was built.
void tell(Screen &screen, int i) { tellExpected(screen, kTables, i, kValidators, kAsked); }

void fill(Screen &screen, int i) {
  if (NDB_bInit[i] != 0) {
    show(screen, i);
    screen.select(itemOf(kNumberFields, i));
  } else if (NDB_bMand[i] != 0) {
    NDB_bOK[i] = 0;
  }
}

Hit hit(Screen &screen, int i) {
  const std::string text = screen.text(itemOf(kNumberFields, i));
  NDB_bOK[i] = entryIsAcceptable(kTables, i, text) ? 1 : 0;
  return Hit::Edited;
}

bool storedIsAcceptable(int i) {
  return isAcceptable(kTables, i, DecimalText(NDB_dNums[i], NDB_iChiff[i]).view());
}

void change(int i, const char *text) {
  changeField(kNumberFields, i, [=](Screen &screen) {
    screen.setText(itemOf(kNumberFields, i), text);
    NDB_bOK[i] = isAcceptable(kTables, i, text) ? 1 : 0;
  });
}

}  // namespace

constinit const FieldType kNumberFields{
    .name = "number field",
    .definedBy = "NumDlgBox_param",
    .capacity = std::size(NDB_x),
    .itemsPerField = 1,
    .use = {&NDB, &NDB_N, &NDB_ID_NUM},
    .place = {NDB_x, NDB_y, NDB_cx, NDB_cy, NDB_rk},
    .flags = {NDB_bInit, NDB_bMand, NDB_bOK},
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

int NumDlgBox_param(int n, int idFirst) {
  lookForMisuse([=] { needsCount(Call("NumDlgBox_param", {n, idFirst}), kNumberFields, n); });
  return define(n, idFirst) ? 0 : kRefused;
}

int NumDlgBox_set(int i, double value, int mode) {
  lookForMisuse([=] {
    needsMode(Call("NumDlgBox_set", {i, value, mode}), kNumberFields, i, mode,
              std::size(kValidators));
  });
  set(kTables, i, value, kValidators, mode);
  return 0;
}

int NumDlgBox_set_nchiff(int i, int n) {
  lookForMisuse([=] { needsDecimals(Call("NumDlgBox_set_nchiff", {i, n}), i, n); });
  setDecimals(i, n);
  return 0;
}

int NumDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk) {
  lookForMisuse([=] {
    needsPlace(Call("NumDlgBox_set_geo", {i, x, y, cx, cy, rk}), kNumberFields, i,
               {x, y, cx, cy, rk}, rk);
  });
  place(kNumberFields, i, x, y, cx, cy, rk);
  return 0;
}

int NumDlgBox_set_fvalid(int i, ValidNum_t function) {
  lookForMisuse([=] {
    needsFieldInUse(Call("NumDlgBox_set_fvalid", {i, given(function)}), kNumberFields, i);
  });
  setValidator(kTables, i, function);
  return 0;
}

int NumDlgBox_retrieve(int i, double *out) {
  lookForMisuse([=] {
    needsField(Call("NumDlgBox_retrieve", {i, filled(out)}), kNumberFields, i);
  });
  retrieve(kTables, i, out);
  return 0;
}

int NumDlgBox_mandatory(int i, int on) {
  lookForMisuse([=] { needsFieldInUse(Call("NumDlgBox_mandatory", {i, on}), kNumberFields, i); });
  setMandatory(kNumberFields, i, on);
  return 0;
}

int NumDlgBox_get_valid(int i) {
  lookForMisuse([=] { needsField(Call("NumDlgBox_get_valid", {i}), kNumberFields, i); });
  return validFlag(kNumberFields, i);
}

int NumDlgBox_global(int i) {
  lookForMisuse([=] { needsField(Call("NumDlgBox_global", {i}), kNumberFields, i); });
  callGlobalFor(kNumberFields, i);
  return 0;
}

int ZRVDlgBox_num_set(int i, const char *text) {
  lookForMisuse([=] { needsNumberOnScreen(Call("ZRVDlgBox_num_set", {i, text}), i, text); });
  if (text != nullptr) change(i, text);
  return 0;
}
