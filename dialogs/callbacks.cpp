// The application's two callbacks.
#include "dialogs/callbacks.h"

#include <korvel/messages.h>

#include "dialogs/families.h"
#include "dialogs/numbering.h"
#include "dialogs/stored_text.h"

namespace {

// The two _nul functions take no arguments: they are put into the slots under a type that is not
// theirs, recognised there by their address, and never called through it.
template <typename Callback>
Callback inSlot(int (*nul)()) {
  return reinterpret_cast<Callback>(reinterpret_cast<void (*)()>(nul));
}

constexpr int kNothingToRedisplay = 0;
constexpr int kAccepted = 1;

}  // namespace

// A cast between function types keeps these two from being constinit; both are relocations all the
// same, set when the library is loaded without any code being run.
DlgBoxGlobal_t DlgBoxGlobal_fonct =
    reinterpret_cast<DlgBoxGlobal_t>(reinterpret_cast<void (*)()>(&DlgBoxGlobal_nul));
DlgBoxFinal_t DlgBoxFinal_fonct =
    reinterpret_cast<DlgBoxFinal_t>(reinterpret_cast<void (*)()>(&DlgBoxFinal_nul));
constinit char DlgBoxFinal_szErr[256] = "";

namespace korvel::dialogs {

int callGlobal(DlgBoxGlobal_t callback, int identifier, int *redisplay, int capacity) {
  if (callback == nullptr || callback == inSlot<DlgBoxGlobal_t>(DlgBoxGlobal_nul)) {
    return kNothingToRedisplay;
  }
  return callback(identifier, TDB, TDB_ID_TEXTE, TDB_pszBuffer, TDB_N, BDB, BDB_ID_FLAG, BDB_bFlags,
                  BDB_N, IDB, IDB_ID_INT, IDB_iInts, IDB_N, NDB, NDB_ID_NUM, NDB_dNums, NDB_N, DDB,
                  DDB_ID_DATE, DDB_lDates, DDB_N, redisplay, capacity);
}

int callFinal(WindowRef window) {
  const DlgBoxFinal_t callback = DlgBoxFinal_fonct;
  if (callback == nullptr || callback == inSlot<DlgBoxFinal_t>(DlgBoxFinal_nul)) return kAccepted;
  return callback(window, TDB, TDB_pszBuffer, TDB_N, BDB, BDB_bFlags, BDB_N, IDB, IDB_iInts, IDB_N,
                  NDB, NDB_dNums, NDB_N, DDB, DDB_lDates, DDB_N);
}

void endDefinition() {
  endUse();
  DlgBoxGlobal_fonct = inSlot<DlgBoxGlobal_t>(DlgBoxGlobal_nul);
  DlgBoxFinal_fonct = inSlot<DlgBoxFinal_t>(DlgBoxFinal_nul);
}

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

namespace {

// Calls `callback` for field i of a type outside the event loop, where nothing is redisplayed.
int callFor(const Family &family, int i, DlgBoxGlobal_t callback) {
  if (!hasField(family, i)) return 0;
  callGlobal(callback, static_cast<int>(identifierOf(family, i)), nullptr, 0);
  return 0;
}

}  // namespace

int DlgBoxGlobal_nul() { return kNothingToRedisplay; }

int DlgBoxGlobal_set(DlgBoxGlobal_t callback) {
  DlgBoxGlobal_fonct = callback;
  return 0;
}

int DlgBoxFinal_nul() { return kAccepted; }

int DlgBoxFinal_set(DlgBoxFinal_t callback) {
  DlgBoxFinal_fonct = callback;
  return 0;
}

char *DlgBoxFinal_Erreur_set(const char *text) {
  if (text != nullptr) copyCut(DlgBoxFinal_szErr, text);
  return DlgBoxFinal_szErr;
}

char *DlgBoxFinal_Erreur() { return DlgBoxFinal_szErr; }

int DlgBoxFinal_MessageBox(WindowRef owner, const char *text, const char *caption, int flags) {
  DlgBoxFinal_Erreur_set(text);
  if (owner == nullptr) return 0;
  return MessageBox(owner, text, caption, static_cast<unsigned>(flags));
}

int TexteDlgBox_global(int i) { return callFor(kTexts, i, DlgBoxGlobal_fonct); }
int BoolDlgBox_global(int i) { return callFor(kBools, i, DlgBoxGlobal_fonct); }
int IntDlgBox_global(int i) { return callFor(kInts, i, DlgBoxGlobal_fonct); }
int NumDlgBox_global(int i) { return callFor(kNums, i, DlgBoxGlobal_fonct); }
int DateDlgBox_global(int i) { return callFor(kDates, i, DlgBoxGlobal_fonct); }

int TexteDlgBox_global_ex(int i, DlgBoxGlobal_t callback) {
  return callFor(kTexts, i, callback != nullptr ? callback : DlgBoxGlobal_fonct);
}
