// Push buttons: their tables and how an application describes them.
#include "dialogs/families.h"
#include "dialogs/stored_text.h"

using namespace korvel::dialogs;

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

namespace {

constexpr int kLabelSize = 16;

}  // namespace

int PushDlgBox_param(int n, int idFirst) {
  if (!define(kPushes, n, idFirst)) return kRefused;
  cutSlices(kPushLabels, n, kLabelSize);
  for (int i = 0; i < n && vp != nullptr; ++i) vp[i] = nullptr;
  return 0;
}

int PushDlgBox_set_geo(int i, const char *label, int x, int y, int cx, int cy, int rk) {
  place(kPushes, i, x, y, cx, cy, rk);
  if (hasField(kPushes, i) && label != nullptr) storeText(kPushLabels, i, label);
  return 0;
}

int PushDlgBox_set_fvalid(int i, PushAction_t function) {
  if (hasField(kPushes, i) && vp != nullptr) vp[i] = function;
  return 0;
}
