// SPDX-License-Identifier: MIT
// The application's two callbacks, and the error text of the final one.
#include "dialogs/callbacks.h"

#include <bit>
#include <cstdint>

#include "base/views.h"
#include "dialogs/misuse.h"
#include "dialogs/names.h"
#include "dialogs/numbering.h"
#include "messages/box.h"
#include "strings/copy.h"

// The casts keep these two from being constinit. They are relocations all the same: no code runs
// when the library is loaded.
DlgBoxGlobal_t DlgBoxGlobal_fonct =
    reinterpret_cast<DlgBoxGlobal_t>(reinterpret_cast<void (*)()>(&DlgBoxGlobal_nul));
DlgBoxFinal_t DlgBoxFinal_fonct =
    reinterpret_cast<DlgBoxFinal_t>(reinterpret_cast<void (*)()>(&DlgBoxFinal_nul));
constinit char DlgBoxFinal_szErr[256] = "";

namespace korvel::dialogs {

namespace {

constexpr int kNothingToRedisplay = 0;
constexpr int kAccepted = 1;

// The two _nul functions take no arguments. They stand in the slots under a type that is not
// theirs, are recognised there by their address and never called through it.
template <typename Callback>
Callback inSlot(int (*nul)()) {
  return reinterpret_cast<Callback>(reinterpret_cast<void (*)()>(nul));
}

void recordError(const char *text) {
  if (text != nullptr) strings::copyTerminated(DlgBoxFinal_szErr, text);
}

}  // namespace

int callGlobal(DlgBoxGlobal_t callback, const FieldType &type, int i, int *redisplay,
               int capacity) {
  if (callback == nullptr || callback == inSlot<DlgBoxGlobal_t>(DlgBoxGlobal_nul)) {
    return kNothingToRedisplay;
  }
  return callback(static_cast<int>(identifierOf(type, i)), TDB, TDB_ID_TEXTE, TDB_pszBuffer, TDB_N,
                  BDB, BDB_ID_FLAG, BDB_bFlags, BDB_N, IDB, IDB_ID_INT, IDB_iInts, IDB_N, NDB,
                  NDB_ID_NUM, NDB_dNums, NDB_N, DDB, DDB_ID_DATE, DDB_lDates, DDB_N, redisplay,
                  capacity);
}

void callGlobalFor(const FieldType &type, int i, DlgBoxGlobal_t callback) {
  if (hasField(type, i)) callGlobal(callback, type, i, nullptr, 0);
}

int callFinal(WindowRef window) {
  const DlgBoxFinal_t callback = DlgBoxFinal_fonct;
  if (callback == nullptr || callback == inSlot<DlgBoxFinal_t>(DlgBoxFinal_nul)) return kAccepted;
  return callback(window, TDB, TDB_pszBuffer, TDB_N, BDB, BDB_bFlags, BDB_N, IDB, IDB_iInts, IDB_N,
                  NDB, NDB_dNums, NDB_N, DDB, DDB_lDates, DDB_N);
}

void endDefinition() {
  for (const FieldType *type : kFieldTypes) *type->use.inUse = 0;
  SDB = HDB = 0;
  forgetNames();
  DlgBoxGlobal_fonct = inSlot<DlgBoxGlobal_t>(DlgBoxGlobal_nul);
  DlgBoxFinal_fonct = inSlot<DlgBoxFinal_t>(DlgBoxFinal_nul);
}

namespace {

int endWithFinal(int first) {
  const int result = callFinal(std::bit_cast<WindowRef>(std::intptr_t{first}));
  endDefinition();
  return result;
}

}  // namespace

}  // namespace korvel::dialogs

using namespace korvel::base;
using namespace korvel::dialogs;

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
  lookForMisuse([=] {
    needsText(Call("DlgBoxFinal_Erreur_set", {orNull(text)}), text,
              std::size(DlgBoxFinal_szErr) - 1);
  });
  recordError(text);
  return DlgBoxFinal_szErr;
}

char *DlgBoxFinal_Erreur() { return DlgBoxFinal_szErr; }

int DlgBoxFinal_MessageBox(WindowRef owner, const char *text, const char *caption, int flags) {
  lookForMisuse([=] {
    needsOwner(Call("DlgBoxFinal_MessageBox", {owner, orNull(text), orNull(caption), flags}), text,
               caption);
  });
  recordError(text);
  if (owner == nullptr) return 0;
  return korvel::messages::messageBox(owner, textOf(text), textOf(caption),
                                      static_cast<unsigned>(flags));
}

int ZRVDlgBox_end(int first) { return endWithFinal(first); }
