// Check boxes: their tables and how an application describes them.
#include "dialogs/families.h"
#include "dialogs/stored_text.h"

using namespace korvel::dialogs;

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

namespace {

constexpr int kLabelSize = 48;

}  // namespace

int BoolDlgBox_param(int n, int idFirst) {
  if (!define(kBools, n, idFirst)) return kRefused;
  cutSlices(kBoolLabels, n, kLabelSize);
  for (int i = 0; i < n; ++i) BDB_bFlags[i] = 0;
  return 0;
}

int BoolDlgBox_set(int i, int value) {
  if (hasField(kBools, i)) BDB_bFlags[i] = value;
  return 0;
}

int BoolDlgBox_set_geo(int i, const char *label, int x, int y, int cx, int cy, int rk) {
  place(kBools, i, x, y, cx, cy, rk);
  if (hasField(kBools, i) && label != nullptr) storeText(kBoolLabels, i, label);
  return 0;
}

int BoolDlgBox_retrieve(int i, int *out) {
  if (hasField(kBools, i) && out != nullptr) *out = BDB_bFlags[i];
  return 0;
}
