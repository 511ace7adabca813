// SPDX-License-Identifier: MIT
// Check boxes, from their tables and description to their items and hits.
#include <algorithm>
#include <iterator>

#include "dialogs/build.h"
#include "dialogs/callbacks.h"
#include "dialogs/misuse.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"
#include "dialogs/stored_text.h"
#include "strings/charsets.h"

constinit int BDB = 0;
constinit int BDB_N = 0;
constinit int BDB_ID_FLAG = 0;
constinit int BDB_BUFFERSIZE = 0;
constinit short BDB_x[64] = {};
constinit short BDB_y[64] = {};
constinit short BDB_cx[64] = {};
constinit short BDB_cy[64] = {};
constinit short BDB_rk[64] = {};
constinit int BDB_bFlags[64] = {};
constinit char *BDB_pszBuffer[64] = {};
constinit char BDB_szBuffer[3072] = {};

namespace korvel::dialogs {

namespace {

constexpr TextStore kLabels{BDB_szBuffer, std::size(BDB_szBuffer), &BDB_BUFFERSIZE, BDB_pszBuffer};
constexpr int kLabelSize = 48;

bool define(int n, int firstItem) {
  if (!define(kCheckBoxes, n, firstItem)) return false;
  cutSlices(kLabels, n, kLabelSize);
  std::fill_n(BDB_bFlags, n, 0);
  return true;
}

void set(int i, int value) {
  if (hasField(kCheckBoxes, i)) BDB_bFlags[i] = value;
}

void setLabel(int i, const char *label) {
  if (hasField(kCheckBoxes, i) && label != nullptr) storeText(kLabels, i, label);
}

void retrieve(int i, int *out) {
  if (hasField(kCheckBoxes, i) && out != nullptr) *out = BDB_bFlags[i];
}

int add(Builder &builder, int i) {
  return builder.addItem(platform::ItemKind::CheckBox, fieldRect(kCheckBoxes, i),
                         strings::toMac(storedText(kLabels, i)));
}

void show(Screen &screen, int i) {
  // Values above 1 count as on, negative ones as off.
  screen.setChecked(itemOf(kCheckBoxes, i), BDB_bFlags[i] > 0);
}

Hit hit(Screen &screen, int i) {
  BDB_bFlags[i] = screen.isChecked(itemOf(kCheckBoxes, i)) ? 0 : 1;
  show(screen, i);
  return Hit::Changed;
}

}  // namespace

constinit const FieldType kCheckBoxes{
    .name = "check box",
    .definedBy = "BoolDlgBox_param",
    .capacity = std::size(BDB_x),
    .itemsPerField = 1,
    .use = {&BDB, &BDB_N, &BDB_ID_FLAG},
    .place = {BDB_x, BDB_y, BDB_cx, BDB_cy, BDB_rk},
    .add = add,
    .fill = show,
    .hit = hit,
    .show = show,
    .clear = show,  // Kept: clearing a check box shows its value.
};

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int BoolDlgBox_param(int n, int idFirst) {
  lookForMisuse([=] { needsCount(Call("BoolDlgBox_param", {n, idFirst}), kCheckBoxes, n); });
  return define(n, idFirst) ? 0 : kRefused;
}

int BoolDlgBox_set(int i, int value) {
  lookForMisuse([=] { needsFieldInUse(Call("BoolDlgBox_set", {i, value}), kCheckBoxes, i); });
  set(i, value);
  return 0;
}

int BoolDlgBox_set_geo(int i, const char *label, int x, int y, int cx, int cy, int rk) {
  lookForMisuse([=] {
    needsLabel(Call("BoolDlgBox_set_geo", {i, orNull(label), x, y, cx, cy, rk}), kCheckBoxes, i,
               label, kLabelSize, {x, y, cx, cy, rk}, rk);
  });
  place(kCheckBoxes, i, x, y, cx, cy, rk);
  setLabel(i, label);
  return 0;
}

int BoolDlgBox_retrieve(int i, int *out) {
  lookForMisuse([=] { needsField(Call("BoolDlgBox_retrieve", {i, filled(out)}), kCheckBoxes, i); });
  retrieve(i, out);
  return 0;
}

int BoolDlgBox_global(int i) {
  lookForMisuse([=] { needsField(Call("BoolDlgBox_global", {i}), kCheckBoxes, i); });
  callGlobalFor(kCheckBoxes, i);
  return 0;
}

// Kept: check boxes and integers are not changed this way.
int ZRVDlgBox_bool_set(int i, int value) {
  lookForMisuse([=] { needsAnotherWay(Call("ZRVDlgBox_bool_set", {i, value})); });
  return 0;
}
