// SPDX-License-Identifier: MIT
// Push buttons, from their tables and description to their items and actions.
#include <algorithm>
#include <iterator>

#include "dialogs/build.h"
#include "dialogs/field_type.h"
#include "dialogs/misuse.h"
#include "dialogs/screen.h"
#include "dialogs/stored_text.h"

constinit int PDB = 0;
constinit int PDB_N = 0;
constinit int PDB_ID_PUSH = 0;
constinit int PDB_BUFFERSIZE = 0;
constinit short PDB_x[10] = {};
constinit short PDB_y[10] = {};
constinit short PDB_cx[10] = {};
constinit short PDB_cy[10] = {};
constinit short PDB_rk[10] = {};
constinit char *PDB_pszBuffer[10] = {};
constinit char PDB_szBuffer[160] = {};
constinit PushAction_t vp_tab[10] = {};
constinit PushAction_t *vp = vp_tab;

namespace korvel::dialogs {

namespace {

constexpr TextStore kLabels{PDB_szBuffer, std::size(PDB_szBuffer), &PDB_BUFFERSIZE, PDB_pszBuffer};
constexpr int kLabelSize = 16;

bool define(int n, int firstItem) {
  if (!define(kPushButtons, n, firstItem)) return false;
  cutSlices(kLabels, n, kLabelSize);
  if (vp != nullptr) std::fill_n(vp, n, nullptr);
  return true;
}

void setLabel(int i, const char *label) {
  if (hasField(kPushButtons, i) && label != nullptr) storeText(kLabels, i, label);
}

void setAction(int i, PushAction_t action) {
  if (hasField(kPushButtons, i) && vp != nullptr) vp[i] = action;
}

// Kept: labels of buttons go to the screen without conversion.
int add(Builder &builder, int i) {
  return builder.addItem(platform::ItemKind::PushButton, fieldRect(kPushButtons, i),
                         storedText(kLabels, i));
}

Hit hit(Screen &screen, int i) {
  const PushAction_t action = vp != nullptr ? vp[i] : nullptr;
  if (action != nullptr) action(screen.window());
  return Hit::Changed;
}

}  // namespace

constinit const FieldType kPushButtons{
    .name = "push button",
    .definedBy = "PushDlgBox_param",
    .capacity = std::size(PDB_x),
    .itemsPerField = 1,
    .use = {&PDB, &PDB_N, &PDB_ID_PUSH},
    .place = {PDB_x, PDB_y, PDB_cx, PDB_cy, PDB_rk},
    .add = add,
    .hit = hit,
};

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int PushDlgBox_param(int n, int idFirst) {
  lookForMisuse([=] { needsCount(Call("PushDlgBox_param", {n, idFirst}), kPushButtons, n); });
  return define(n, idFirst) ? 0 : kRefused;
}

int PushDlgBox_set_geo(int i, const char *label, int x, int y, int cx, int cy, int rk) {
  lookForMisuse([=] {
    needsLabel(Call("PushDlgBox_set_geo", {i, orNull(label), x, y, cx, cy, rk}), kPushButtons, i,
               label, kLabelSize, {x, y, cx, cy, rk}, rk);
  });
  place(kPushButtons, i, x, y, cx, cy, rk);
  setLabel(i, label);
  return 0;
}

int PushDlgBox_set_fvalid(int i, PushAction_t function) {
  lookForMisuse([=] {
    needsFieldInUse(Call("PushDlgBox_set_fvalid", {i, orNull(given(function))}), kPushButtons, i);
  });
  setAction(i, function);
  return 0;
}
