// SPDX-License-Identifier: MIT
// The tables as they are at load, recording callbacks, and templates for tests of dialogs.
#include "tests/dialogs/dialog_fixture.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include <korvel/desktop.h>

namespace korvel::test {

namespace {

// Fills each variable with zeros.
template <typename... Variables>
void zero(Variables &...variables) {
  (std::memset(static_cast<void *>(&variables), 0, sizeof variables), ...);
}

template <typename Variable>
bool isZero(const Variable &variable) {
  const auto *bytes = reinterpret_cast<const char *>(&variable);
  return std::all_of(bytes, bytes + sizeof variable, [](char byte) { return byte == 0; });
}

// Hands over every exported variable that is zero at load.
template <typename Visit>
void visitZeros(Visit visit) {
  visit(TDB, TDB_N, TDB_ID_TEXTE, TDB_BUFFERSIZE, TDB_x, TDB_y, TDB_cx, TDB_cy, TDB_rk, TDB_bInit,
        TDB_bMand, TDB_bOK, TDB_bPassw, TDB_iCarac, TDBC, TDBL, TDB_pszBuffer, TDB_PSZLBUFFER,
        TDB_PITABSTOPS, TDB_szBuffer, TDB_SZLBUFFER, TDB_ITABSTOPS);
  visit(BDB, BDB_N, BDB_ID_FLAG, BDB_BUFFERSIZE, BDB_x, BDB_y, BDB_cx, BDB_cy, BDB_rk, BDB_bFlags,
        BDB_pszBuffer, BDB_szBuffer);
  visit(IDB, IDB_N, IDB_ID_INT, IDB_x, IDB_y, IDB_cx, IDB_cy, IDB_rk, IDB_bInit, IDB_bMand, IDB_bOK,
        IDB_bPassw, IDB_iInts, IDB_lPassw, vi_tab);
  visit(NDB, NDB_N, NDB_ID_NUM, NDB_x, NDB_y, NDB_cx, NDB_cy, NDB_rk, NDB_bInit, NDB_bMand, NDB_bOK,
        NDB_dNums, NDB_iChiff, vf_tab);
  visit(DDB, DDB_N, DDB_ID_DATE, DDB_x, DDB_y, DDB_cx, DDB_cy, DDB_rk, DDB_bInit, DDB_bMand,
        DDB_bOK, DDB_lDates, vd_tab);
  visit(PDB, PDB_N, PDB_ID_PUSH, PDB_BUFFERSIZE, PDB_x, PDB_y, PDB_cx, PDB_cy, PDB_rk,
        PDB_pszBuffer, PDB_szBuffer, vp_tab);
  visit(SDB, SDB_N, SDB_BUFFERSIZE, SDB_x, SDB_y, SDB_cx, SDB_cy, SDB_type, SDB_pszBuffer,
        SDB_szBuffer);
  visit(HDB, HDB_szHeader, LDB, LDB_cx, LDB_cy, FDB, FDB_bkgcol, FDB_hbrbkg, OK_sz1_bak, OK_sz2_bak,
        OK_x, OK_y, OK_xt, OK_yt, OK_shadow, OK_shadow_dx, OK_shadow_dy, OK_shadow_c,
        DlgBoxFinal_szErr, Dlg_itemOffset, Dlg_rkOffset);
}

// Found out before main() runs.
const int kSetAtLoad = [] {
  int count = 0;
  visitZeros([&](const auto &...variables) { count += (int{!isZero(variables)} + ...); });
  return count + int{vi != vi_tab} + int{vf != vf_tab} + int{vd != vd_tab} + int{vp != vp_tab};
}();

}  // namespace

void DialogGlobals::reset() {
  visitZeros([](auto &...variables) { zero(variables...); });
  zero(OK_sz1, OK_sz2);
  vi = vi_tab;
  vf = vf_tab;
  vd = vd_tab;
  vp = vp_tab;
  std::strcpy(OK_sz1, "OK");
  std::strcpy(OK_sz2, "Annuler");
  OK_def = 1;
  DlgBoxGlobal_set(nullptr);
  DlgBoxFinal_set(nullptr);
  ZRVDlgBox_end(0);  // puts the two _nul functions back into the slots
}

int DialogGlobals::setAtLoad() { return kSetAtLoad; }

void Callbacks::reset() {
  firstItems.clear();
  globalCalls.clear();
  finalCalls.clear();
  actionCalls.clear();
  onGlobal = nullptr;
  onFinal = nullptr;
  onAction = nullptr;
}

int Callbacks::global(int item, int textInUse, int textFirstItem, char **texts, int textCount,
                      int boolInUse, int boolFirstItem, int *bools, int boolCount, int intInUse,
                      int intFirstItem, int *ints, int intCount, int numInUse, int numFirstItem,
                      double *nums, int numCount, int dateInUse, int dateFirstItem, int *dates,
                      int dateCount, int *redisplay, int capacity) {
  globalCalls.push_back(
      {inTest(item), textInUse, textFirstItem, texts, textCount, boolInUse, boolFirstItem, bools,
       boolCount,    intInUse,  intFirstItem,  ints,  intCount,  numInUse,  numFirstItem,  nums,
       numCount,     dateInUse, dateFirstItem, dates, dateCount, redisplay, capacity});
  return onGlobal ? onGlobal(globalCalls.back()) : 0;
}

int Callbacks::final(WindowRef window, int textInUse, char **texts, int textCount, int boolInUse,
                     int *bools, int boolCount, int intInUse, int *ints, int intCount, int numInUse,
                     double *nums, int numCount, int dateInUse, int *dates, int dateCount) {
  finalCalls.push_back({window, textInUse, texts, textCount, boolInUse, bools, boolCount, intInUse,
                        ints, intCount, numInUse, nums, numCount, dateInUse, dates, dateCount});
  return onFinal ? onFinal(finalCalls.back()) : 1;
}

int Callbacks::action(WindowRef window) {
  actionCalls.push_back(window);
  if (onAction) onAction();
  return 0;
}

std::string Callbacks::identifiers() {
  std::string all;
  for (const GlobalCall &call : globalCalls) all += std::to_string(call.item) + ' ';
  return all;
}

int Callbacks::inDialog(int identifier) {
  if (identifier == INT_MIN) return identifier;
  const int name = std::abs(identifier);
  const auto next = firstItems.upper_bound(name);
  if (next == firstItems.begin()) return identifier;
  const auto &[first, item] = *std::prev(next);
  return (identifier < 0 ? -1 : 1) * (item + (name - first));
}

int Callbacks::inTest(int identifier) {
  int best = 0;
  int shift = 0;
  for (const auto &[first, item] : firstItems) {
    if (item > identifier || item < best) continue;
    best = item;
    shift = first - item;
  }
  return identifier + shift;
}

TemplateFolder::TemplateFolder() : before_(szResources) {
  std::strcpy(szResources, folder_.path().c_str());
}

TemplateFolder::~TemplateFolder() { std::strcpy(szResources, before_.c_str()); }

void TemplateFolder::add(ScriptedDesktop &desk, const std::string &name, Template described) {
  folder_.add("dialogs/" + name + ".ui");
  desk.setTemplate(name, std::move(described));
}

Template describedTemplate(const std::string &title) {
  using platform::ItemKind;
  Template all{title, {{1, ItemKind::PushButton, "OK"}, {2, ItemKind::PushButton, "Annuler"}}};
  const auto add = [&all](int inUse, int count, int firstItem, auto kindOf) {
    for (int i = 0; inUse != 0 && i < count; ++i) {
      all.items.push_back({firstItem + i, kindOf(i)});
    }
  };
  const auto always = [](ItemKind kind) { return [kind](int) { return kind; }; };
  add(TDB, TDB_N, TDB_ID_TEXTE, [](int i) {
    return TDBC[i] == 1 ? ItemKind::PopUp : TDBL[i] == 1 ? ItemKind::ListBox : ItemKind::EditText;
  });
  add(BDB, BDB_N, BDB_ID_FLAG, always(ItemKind::CheckBox));
  add(IDB, IDB_N, IDB_ID_INT, always(ItemKind::EditText));
  add(NDB, NDB_N, NDB_ID_NUM, always(ItemKind::EditText));
  add(DDB, 3 * DDB_N, DDB_ID_DATE, always(ItemKind::EditText));
  add(PDB, PDB_N, PDB_ID_PUSH, always(ItemKind::PushButton));
  all.defaultItem = OK_def;
  return all;
}

int BothKinds::run() {
  if (!isDrawn()) return ZRVDlgBoxEx("T", nullptr);
  templates.add(desk, "T", describedTemplate("T"));
  return ZRVDlgBox("T");
}

std::function<int(const GlobalCall &)> redisplaying(std::vector<int> identifiers) {
  return [identifiers = std::move(identifiers)](const GlobalCall &call) {
    int n = 0;
    for (const int identifier : identifiers) {
      if (n < call.capacity) call.redisplay[n++] = Callbacks::inDialog(identifier);
    }
    return n;
  };
}

}  // namespace korvel::test
