// Text fields: their tables and how an application describes them.
#include <algorithm>
#include <cstring>

#include "dialogs/families.h"
#include "dialogs/stored_text.h"

using namespace korvel::dialogs;

constinit int TDB = 0;
constinit int TDB_N = 0;
constinit int TDB_ID_TEXTE = 0;
constinit int TDB_BUFFERSIZE = 0;
constinit short TDB_x[20] = {};
constinit short TDB_y[20] = {};
constinit short TDB_cx[20] = {};
constinit short TDB_cy[20] = {};
constinit short TDB_rk[20] = {};
constinit int TDB_bInit[20] = {};
constinit int TDB_bMand[20] = {};
constinit int TDB_bOK[20] = {};
constinit int TDB_bPassw[20] = {};
constinit int TDB_iCarac[20] = {};
constinit int TDBC[20] = {};
constinit int TDBL[20] = {};
constinit char *TDB_pszBuffer[20] = {};
constinit char *TDB_PSZLBUFFER[20] = {};
constinit int *TDB_PITABSTOPS[20] = {};
constinit char TDB_szBuffer[8192] = {};
constinit char TDB_SZLBUFFER[8192] = {};
constinit int TDB_ITABSTOPS[5][128] = {};

namespace {

constexpr int kTabRows = 5;
constexpr int kTabsPerRow = 128;

int *tabRow(int i) { return i < kTabRows ? TDB_ITABSTOPS[i] : nullptr; }

}  // namespace

int TexteDlgBox_param(int n, int idFirst) {
  if (n == 0 || !define(kTexts, n, idFirst)) return kRefused;
  const int sliceSize = kFieldTexts.size / n;
  cutSlices(kFieldTexts, n, sliceSize);
  cutSlices(kChoices, n, sliceSize);
  for (int i = 0; i < n; ++i) {
    TDB_iCarac[i] = sliceSize - 1;
    TDBC[i] = TDBL[i] = 0;
    TDB_PITABSTOPS[i] = tabRow(i);
  }
  return 0;
}

int TexteDlgBox_set(int i, const char *text) {
  if (!hasField(kTexts, i) || text == nullptr) return 0;
  TDB_bInit[i] = 1;
  storeText(kFieldTexts, i, text);
  return 0;
}

int TexteDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk) {
  place(kTexts, i, x, y, cx, cy, rk);
  return 0;
}

int TexteDlgBox_set_ncarac(int i, int n) {
  if (!hasField(kTexts, i)) return 0;
  TDB_iCarac[i] = std::min(TDB_iCarac[i], std::max(n, 0));
  return 0;
}

int TexteDlgBox_set_liste(int i, const char *choices) {
  if (!hasField(kTexts, i) || choices == nullptr) return 0;
  TDBC[i] = 1;
  // The caller's own buffer, if the field had one, is of unknown size and never written.
  const std::string_view text = choices;
  useOwnSlice(kChoices, i);
  storeText(kChoices, i, text);
  return 0;
}

int TexteDlgBox_change_liste(int i) {
  if (!hasField(kTexts, i)) return 0;
  if (TDBC[i] != 0) {
    TDBC[i] = 0;
    TDBL[i] = 1;
  } else if (TDBL[i] != 0) {
    TDBL[i] = 0;
    TDBC[i] = 1;
  }
  return 0;
}

int TexteDlgBox_set_liste_buffer(int i, char *buffer) {
  if (hasField(kTexts, i) && buffer != nullptr) TDB_PSZLBUFFER[i] = buffer;
  return 0;
}

int TexteDlgBox_retrieve(int i, char *dst, int size) {
  if (hasField(kTexts, i)) copyWhole(dst, size, storedText(kFieldTexts, i));
  return 0;
}

int TexteDlgBox_retrieve_liste(int i, char *dst) {
  if (!hasField(kTexts, i) || dst == nullptr) return 0;
  const std::string_view choices = storedText(kChoices, i);
  copyCut(dst, choices.size() + 1, choices);
  return 0;
}

int TexteDlgBox_mandatory(int i, int on) {
  setMandatory(kTexts, i, on);
  return 0;
}

int TexteDlgBox_password(int i, int on) {
  if (hasField(kTexts, i)) TDB_bPassw[i] = on != 0 ? 1 : 0;
  return 0;
}

int TexteDlgBox_set_tabstops(int i, const int *stops) {
  if (!hasField(kTexts, i) || stops == nullptr || TDB_PITABSTOPS[i] == nullptr) return 0;
  int *row = TDB_PITABSTOPS[i];
  int n = 0;
  for (; n < kTabsPerRow - 1 && stops[n] != 0; ++n) row[n] = stops[n];
  row[n] = 0;
  return 0;
}

int TexteDlgBox_get_valid(int i) { return validFlag(kTexts, i); }
