// Number fields: their tables and how an application describes them.
#include <algorithm>

#include <korvel/codecs.h>

#include "dialogs/families.h"

using namespace korvel::dialogs;

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

namespace {

constexpr int kInitialDecimals = 5;

}  // namespace

int NumDlgBox_param(int n, int idFirst) {
  if (!define(kNums, n, idFirst)) return kRefused;
  for (int i = 0; i < n; ++i) {
    NDB_dNums[i] = 0.0;
    NDB_iChiff[i] = kInitialDecimals;
    if (vf != nullptr) vf[i] = realcod_d;
  }
  return 0;
}

int NumDlgBox_set(int i, double value, int mode) {
  // Indexed by mode.
  static constexpr ValidNum_t kValidators[] = {realcod_d, realcod_d_sup0, realcod_d_ssup0};
  if (!hasField(kNums, i)) return 0;
  NDB_dNums[i] = value;
  NDB_bInit[i] = 1;
  if (mode >= 0 && mode <= 2) NumDlgBox_set_fvalid(i, kValidators[mode]);
  return 0;
}

int NumDlgBox_set_nchiff(int i, int n) {
  if (hasField(kNums, i)) NDB_iChiff[i] = std::max(n, 0);
  return 0;
}

int NumDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk) {
  place(kNums, i, x, y, cx, cy, rk);
  return 0;
}

int NumDlgBox_set_fvalid(int i, ValidNum_t function) {
  if (hasField(kNums, i) && vf != nullptr) vf[i] = function;
  return 0;
}

int NumDlgBox_retrieve(int i, double *out) {
  if (hasField(kNums, i) && out != nullptr) *out = NDB_dNums[i];
  return 0;
}

int NumDlgBox_mandatory(int i, int on) {
  setMandatory(kNums, i, on);
  return 0;
}

int NumDlgBox_get_valid(int i) { return validFlag(kNums, i); }
