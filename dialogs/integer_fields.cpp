// Integer fields: their tables and how an application describes them.
#include <korvel/codecs.h>

#include "dialogs/families.h"

using namespace korvel::dialogs;

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

int IntDlgBox_param(int n, int idFirst) {
  if (!define(kInts, n, idFirst)) return kRefused;
  for (int i = 0; i < n; ++i) {
    IDB_bPassw[i] = 0;
    IDB_iInts[i] = 0;
    IDB_lPassw[i] = 0;
    if (vi != nullptr) vi[i] = intcod_i;
  }
  return 0;
}

int IntDlgBox_set(int i, int value, int mode) {
  // Indexed by mode.
  static constexpr ValidInt_t kValidators[] = {intcod_i, intcod_i_sup0, intcod_i_ssup0};
  if (!hasField(kInts, i)) return 0;
  IDB_iInts[i] = value;
  IDB_bInit[i] = 1;
  if (mode >= 0 && mode <= 2) IntDlgBox_set_fvalid(i, kValidators[mode]);
  return 0;
}

int IntDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk) {
  place(kInts, i, x, y, cx, cy, rk);
  return 0;
}

int IntDlgBox_set_fvalid(int i, ValidInt_t function) {
  if (hasField(kInts, i) && vi != nullptr) vi[i] = function;
  return 0;
}

int IntDlgBox_retrieve(int i, int *out) {
  if (hasField(kInts, i) && out != nullptr) *out = IDB_iInts[i];
  return 0;
}

int IntDlgBox_mandatory(int i, int on) {
  setMandatory(kInts, i, on);
  return 0;
}

int IntDlgBox_password(int i, int on) {
  if (hasField(kInts, i)) IDB_bPassw[i] = on != 0 ? 1 : 0;
  return 0;
}

int IntDlgBox_get_valid(int i) { return validFlag(kInts, i); }
