// Static texts, group boxes and icons: their tables and how an application describes them.
#include "dialogs/families.h"
#include "dialogs/stored_text.h"

using namespace korvel::dialogs;

constinit int SDB = 0;
constinit int SDB_N = 0;
constinit int SDB_BUFFERSIZE = 0;
constinit short SDB_x[128] = {};
constinit short SDB_y[128] = {};
constinit short SDB_cx[128] = {};
constinit short SDB_cy[128] = {};
constinit short SDB_type[128] = {};
constinit char *SDB_pszBuffer[128] = {};
constinit char SDB_szBuffer[65536] = {};

namespace {

constexpr int kTextSize = 512;
constexpr int kNoItem = 0;

}  // namespace

int StaticDlgBox_param(int n) {
  if (!define(kStatics, n, kNoItem)) return kRefused;
  cutSlices(kStaticTexts, n, kTextSize);
  for (int i = 0; i < n; ++i) SDB_type[i] = 0;
  return 0;
}

int StaticDlgBox_set(int i, const char *text) {
  if (hasField(kStatics, i) && text != nullptr) storeText(kStaticTexts, i, text);
  return 0;
}

int StaticDlgBox_set_geo(int i, int x, int y, int cx, int cy) {
  place(kStatics, i, x, y, cx, cy);
  return 0;
}

int StaticDlgBox_set_type(int i, int type) {
  if (hasField(kStatics, i)) SDB_type[i] = static_cast<short>(type);
  return 0;
}
