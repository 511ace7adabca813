// SPDX-License-Identifier: MIT
// Text fields: edit texts, pop-ups and lists. A built dialog chooses the item by the marks in the
// tables, a template by its form; from then on the kind of the item counts.
#include "dialogs/text_fields.h"

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

#include "base/views.h"
#include "dialogs/build.h"
#include "dialogs/callbacks.h"
#include "dialogs/misuse.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "dialogs/screen.h"
#include "strings/copy.h"

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

namespace korvel::dialogs {

using platform::Expected;
using platform::ItemKind;

namespace {

// Of each field.
constinit bool choicesAreCut[std::size(TDB_x)] = {};

}  // namespace

bool areCutChoices(int i) { return choicesAreCut[i]; }

bool defineTexts(int n, int firstItem) {
  if (n == 0 || !define(kTextFields, n, firstItem)) return false;
  const int sliceSize = kFieldTexts.size / n;
  cutSlices(kFieldTexts, n, sliceSize);
  cutSlices(kChoices, n, sliceSize);
  std::fill(std::begin(choicesAreCut), std::end(choicesAreCut), false);
  for (int i = 0; i < n; ++i) {
    TDB_iCarac[i] = sliceSize - 1;
    TDBC[i] = TDBL[i] = 0;
    TDB_PITABSTOPS[i] = i < std::ssize(TDB_ITABSTOPS) ? TDB_ITABSTOPS[i] : nullptr;
  }
  return true;
}

void setText(int i, const char *text) {
  if (!hasField(kTextFields, i)) return;
  TDB_bInit[i] = 1;
  storeText(kFieldTexts, i, text);
}

void setChoices(int i, const char *choices) {
  if (!hasField(kTextFields, i)) return;
  TDBC[i] = 1;
  // The caller's own buffer, if the field had one, is of unknown size and never written.
  useOwnSlice(kChoices, i);
  choicesAreCut[i] = !storeText(kChoices, i, choices);
}

void turnPopUpOrList(int i) {
  if (!hasField(kTextFields, i) || (TDBC[i] == 0 && TDBL[i] == 0)) return;
  const bool wasPopUp = TDBC[i] != 0;
  TDBC[i] = wasPopUp ? 0 : 1;
  TDBL[i] = wasPopUp ? 1 : 0;
}

void useChoices(int i, char *choices) {
  if (hasField(kTextFields, i)) TDB_PSZLBUFFER[i] = choices;
}

void forgetChoices(const char *choices) {
  for (int i = 0; i < kTextFields.capacity; ++i) {
    if (TDB_PSZLBUFFER[i] == choices) useOwnSlice(kChoices, i);
  }
}

namespace {

void lowerLongest(int i, int n) {
  if (hasField(kTextFields, i)) TDB_iCarac[i] = std::min(TDB_iCarac[i], std::max(n, 0));
}

void setMasked(int i, bool isMasked) {
  if (hasField(kTextFields, i)) TDB_bPassw[i] = isMasked ? 1 : 0;
}

// Kept: lists do not use the tab stops.
void setTabStops(int i, const int *stops) {
  if (!hasField(kTextFields, i) || TDB_PITABSTOPS[i] == nullptr) return;
  int *row = TDB_PITABSTOPS[i];
  int n = 0;
  for (; n < std::ssize(TDB_ITABSTOPS[0]) - 1 && stops[n] != 0; ++n) row[n] = stops[n];
  row[n] = 0;
}

void retrieve(int i, char *dst, int size) {
  if (hasField(kTextFields, i))
    strings::copyWhole(base::roomOf(dst, size), storedText(kFieldTexts, i));
}

void retrieveChoices(int i, char *dst) {
  if (!hasField(kTextFields, i)) return;
  const std::string_view choices = storedText(kChoices, i);
  strings::copyWhole({dst, choices.size() + 1}, choices);
}

int add(Builder &builder, int i) {
  Rect rect = fieldRect(kTextFields, i);
  if (TDBC[i] == 1) {
    constexpr int kPopUpHeight = 14;
    rect.bottom = rect.top + kPopUpHeight;
    return builder.addItem(ItemKind::PopUp, rect);
  }
  return builder.addItem(TDBL[i] == 1 ? ItemKind::ListBox : ItemKind::EditText, rect);
}

// The pieces between separators; always at least one.
std::vector<std::string_view> split(std::string_view list, std::string_view separators) {
  std::vector<std::string_view> pieces;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = list.find_first_of(separators, begin);
    pieces.push_back(list.substr(begin, end - begin));
    if (end == std::string_view::npos) return pieces;
    begin = end + 1;
  }
}

std::vector<std::string_view> choicesOf(int i) { return split(storedText(kChoices, i), "+,"); }

// A list with an empty list string has no rows. A pop-up has one empty choice then.
std::vector<std::string_view> rowsOf(int i) {
  const std::string_view rows = storedText(kChoices, i);
  return rows.empty() ? std::vector<std::string_view>() : split(rows, "$");
}

void showEditText(Screen &screen, int i) {
  const int item = itemOf(kTextFields, i);
  const std::string_view text = storedText(kFieldTexts, i);
  if (TDB_bPassw[i] != 0) {
    screen.setMask(item, text.size());
  } else {
    screen.setText(item, text);
  }
}

// A limit that the application has set; the other is of no concern to a person.
void tell(Screen &screen, int i) {
  const int item = itemOf(kTextFields, i), longest = TDB_iCarac[i];
  if (screen.kind(item) != ItemKind::EditText) return;
  if (longest > 0 && longest < TDB_BUFFERSIZE - 1) {
    screen.setExpected(item, Expected::TextUpTo, longest);
  } else {
    screen.setExpected(item, Expected::Text);
  }
}

// Kept: a field never set keeps its flag, even when it is mandatory.
void fill(Screen &screen, int i) {
  const int item = itemOf(kTextFields, i);
  if (TDB_bPassw[i] != 0) screen.keepSecret(item);
  if (TDB_bInit[i] == 0) {
    screen.setText(item, "");
    return;
  }
  const ItemKind kind = screen.kind(item);
  if (kind == ItemKind::EditText) {
    showEditText(screen, i);
    screen.select(item);
  }
  if (kind == ItemKind::PopUp && TDBC[i] == 1) {
    screen.addChoices(item, choicesOf(i), storedText(kFieldTexts, i));
  }
  if (kind == ItemKind::ListBox && TDBL[i] == 1) screen.addRows(item, rowsOf(i));
}

bool lengthIsAcceptable(int i, std::size_t length) {
  if (TDB_bMand[i] != 0 && length == 0) return false;
  return static_cast<long long>(length) <= TDB_iCarac[i];
}

bool storedIsAcceptable(int i) { return lengthIsAcceptable(i, storedText(kFieldTexts, i).size()); }

// Stores what fits of a text. Returns whether all of it fits and is acceptable.
bool store(int i, std::string_view text) {
  return storeText(kFieldTexts, i, text) && lengthIsAcceptable(i, text.size());
}

std::string readItem(const Screen &screen, int item) {
  switch (screen.kind(item)) {
    case ItemKind::EditText:
      return screen.text(item);
    case ItemKind::PopUp:
      return screen.choice(item);
    case ItemKind::ListBox:
      return screen.clickedRow(item);
    default:
      return {};
  }
}

// The text behind stars. Each star means the character that was at its position.
// Kept: positions count from the start wherever the text was changed. A star after the end of the
// previous text ends the text.
std::string unmasked(std::string_view shown, std::string_view previous) {
  std::string text;
  for (const char c : shown) {
    if (c == '*' && text.size() >= previous.size()) break;
    text += c == '*' ? previous[text.size()] : c;
  }
  return text;
}

Hit hit(Screen &screen, int i) {
  const int item = itemOf(kTextFields, i);
  std::string text = readItem(screen, item);
  const bool accepts = screen.wasDoubleClicked(item);
  if (accepts && callFinal(screen.window()) == 0) return Hit::Refused;
  if (TDB_bPassw[i] != 0) {
    text = unmasked(text, storedText(kFieldTexts, i));
    screen.setMask(item, text.size());
  }
  TDB_bOK[i] = store(i, text) ? 1 : 0;
  return accepts ? Hit::Accepted : Hit::Edited;
}

void show(Screen &screen, int i) {
  const int item = itemOf(kTextFields, i);
  const ItemKind kind = screen.kind(item);
  if (kind == ItemKind::EditText) showEditText(screen, i);
  if (kind == ItemKind::PopUp) screen.choose(item, storedText(kFieldTexts, i));
}

void clear(Screen &screen, int i) {
  const int item = itemOf(kTextFields, i);
  screen.setText(item, "");
  screen.chooseNumber(item, 0);
}

// The number, from 1, of the last choice equal to the text; 0 for none.
// Kept: counted in the list string, whatever entries the pop-up shows.
int numberInList(int i, std::string_view text) {
  const auto choices = choicesOf(i);
  const auto found = std::find(choices.rbegin(), choices.rend(), text);
  return static_cast<int>(choices.rend() - found);
}

void changeOnScreen(Screen &screen, int i, const std::string &text) {
  const bool isAcceptable = store(i, text);
  const int item = itemOf(kTextFields, i);
  const ItemKind kind = screen.kind(item);
  if (kind == ItemKind::EditText) showEditText(screen, i);
  if (kind == ItemKind::PopUp && TDBC[i] == 1) {
    const int number = numberInList(i, text);
    if (number > 0) screen.chooseNumber(item, number);
  }
  // Kept: the flag is only ever cleared here.
  if (!isAcceptable) TDB_bOK[i] = 0;
}

// The text is copied, as it may lie in the very slice that is written.
void change(int i, const char *text) {
  changeField(kTextFields, i, [=](Screen &screen) { changeOnScreen(screen, i, text); });
}

}  // namespace

void rebuildChoices(int i) {
  changeField(kTextFields, i, [=](Screen &screen) {
    const int item = itemOf(kTextFields, i);
    if (TDBC[i] == 1) {
      screen.setChoices(item, choicesOf(i));
    } else if (TDBL[i] == 1) {
      screen.setRows(item, rowsOf(i));
    }
  });
}

constinit const FieldType kTextFields{
    .name = "text field",
    .definedBy = "TexteDlgBox_param",
    .capacity = std::size(TDB_x),
    .itemsPerField = 1,
    .use = {&TDB, &TDB_N, &TDB_ID_TEXTE},
    .place = {TDB_x, TDB_y, TDB_cx, TDB_cy, TDB_rk},
    .flags = {TDB_bInit, TDB_bMand, TDB_bOK},
    .add = add,
    .fill = fill,
    .tell = tell,
    .hit = hit,
    .show = show,
    .clear = clear,
    .storedIsAcceptable = storedIsAcceptable,
};

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int TexteDlgBox_param(int n, int idFirst) {
  lookForMisuse([=] { needsCount(Call("TexteDlgBox_param", {n, idFirst}), kTextFields, n, 1); });
  return defineTexts(n, idFirst) ? 0 : kRefused;
}

int TexteDlgBox_set(int i, const char *text) {
  lookForMisuse([=] {
    needsText(Call("TexteDlgBox_set", {i, text}), kTextFields, i, text, TDB_BUFFERSIZE - 1);
  });
  if (text != nullptr) setText(i, text);
  return 0;
}

int TexteDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk) {
  lookForMisuse([=] {
    needsPlace(Call("TexteDlgBox_set_geo", {i, x, y, cx, cy, rk}), kTextFields, i,
               {x, y, cx, cy, rk}, rk);
  });
  place(kTextFields, i, x, y, cx, cy, rk);
  return 0;
}

int TexteDlgBox_set_ncarac(int i, int n) {
  lookForMisuse([=] { needsLowerLimit(Call("TexteDlgBox_set_ncarac", {i, n}), i, n); });
  lowerLongest(i, n);
  return 0;
}

int TexteDlgBox_set_liste(int i, const char *choices) {
  lookForMisuse([=] {
    needsText(Call("TexteDlgBox_set_liste", {i, choices}), kTextFields, i, choices, INT_MAX);
  });
  if (choices != nullptr) setChoices(i, choices);
  return 0;
}

int TexteDlgBox_change_liste(int i) {
  lookForMisuse([=] { needsChoices(Call("TexteDlgBox_change_liste", {i}), i); });
  turnPopUpOrList(i);
  return 0;
}

int TexteDlgBox_set_liste_buffer(int i, char *buffer) {
  lookForMisuse([=] {
    needsFieldInUse(Call("TexteDlgBox_set_liste_buffer", {i, filled(buffer)}), kTextFields, i);
  });
  if (buffer != nullptr) useChoices(i, buffer);
  return 0;
}

int TexteDlgBox_retrieve(int i, char *dst, int size) {
  lookForMisuse([=] {
    needsRoomForText(Call("TexteDlgBox_retrieve", {i, filled(dst), size}), i, size);
  });
  retrieve(i, dst, size);
  return 0;
}

int TexteDlgBox_retrieve_liste(int i, char *dst) {
  lookForMisuse([=] {
    needsField(Call("TexteDlgBox_retrieve_liste", {i, filled(dst)}), kTextFields, i);
  });
  if (dst != nullptr) retrieveChoices(i, dst);
  return 0;
}

int TexteDlgBox_mandatory(int i, int on) {
  lookForMisuse([=] { needsFieldInUse(Call("TexteDlgBox_mandatory", {i, on}), kTextFields, i); });
  setMandatory(kTextFields, i, on);
  return 0;
}

int TexteDlgBox_password(int i, int on) {
  lookForMisuse([=] { needsFieldInUse(Call("TexteDlgBox_password", {i, on}), kTextFields, i); });
  setMasked(i, on != 0);
  return 0;
}

int TexteDlgBox_set_tabstops(int i, const int *stops) {
  lookForMisuse([=] { needsTabStops(Call("TexteDlgBox_set_tabstops", {i, filled(stops)}), i); });
  if (stops != nullptr) setTabStops(i, stops);
  return 0;
}

int TexteDlgBox_get_valid(int i) {
  lookForMisuse([=] { needsField(Call("TexteDlgBox_get_valid", {i}), kTextFields, i); });
  return validFlag(kTextFields, i);
}

int TexteDlgBox_global(int i) {
  lookForMisuse([=] { needsField(Call("TexteDlgBox_global", {i}), kTextFields, i); });
  callGlobalFor(kTextFields, i);
  return 0;
}

int TexteDlgBox_global_ex(int i, DlgBoxGlobal_t callback) {
  lookForMisuse([=] {
    needsField(Call("TexteDlgBox_global_ex", {i, orNull(given(callback))}), kTextFields, i);
  });
  callGlobalFor(kTextFields, i, callback != nullptr ? callback : DlgBoxGlobal_fonct);
  return 0;
}

int ZRVDlgBox_texte_set(int i, const char *text) {
  lookForMisuse([=] { needsTextOnScreen(Call("ZRVDlgBox_texte_set", {i, text}), i, text); });
  if (text != nullptr) change(i, text);
  return 0;
}

int ZRVDlgBox_texte_set_liste(int i) {
  lookForMisuse([=] { needsChoicesOnScreen(Call("ZRVDlgBox_texte_set_liste", {i}), i); });
  rebuildChoices(i);
  return 0;
}
