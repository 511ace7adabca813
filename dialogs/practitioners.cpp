// SPDX-License-Identifier: MIT
// The choice of a practitioner: a dialog of the library's own, described like any other.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include <korvel/dialogs.h>

#include "base/guard.h"
#include "dialogs/build.h"
#include "dialogs/misuse.h"
#include "dialogs/names.h"
#include "dialogs/run.h"
#include "dialogs/static_texts.h"
#include "dialogs/text_fields.h"
#include "strings/compare.h"
#include "strings/copy.h"
#include "strings/string_list.h"
#include "tables/listing.h"
#include "tables/state.h"

// The exported callback under a name that no application can have.
extern "C" [[gnu::visibility("hidden"),
             gnu::alias("DlgBoxGlobal_BAS")]] decltype(DlgBoxGlobal_BAS) korvel_narrowNames;

namespace korvel::dialogs {

namespace {

constexpr int kEntrySize = 80;

struct Entry {
  char text[kEntrySize];
};

// The rows of the list, joined by '$', in room for all entries that were read.
constinit char *listText = nullptr;
constinit std::size_t listRoom = 0;

// The fields of the dialog.
enum { kInitials, kNames, kFields };

// The application may write both globals: no count is followed beyond the table.
int entryCount() { return liste_base == nullptr ? 0 : std::clamp<int>(nbase, 0, MAX_LIGNES); }

Entry *entries() { return reinterpret_cast<Entry *>(liste_base); }

std::string_view textOf(const Entry &entry) {
  return {entry.text, strnlen(entry.text, sizeof entry.text)};
}

// Makes the rows of the list from the entries that are wanted. One that does not fit is left out.
template <typename IsWanted>
void joinRows(IsWanted isWanted) {
  char *end = listText;
  for (int n = 0; n < entryCount(); ++n) {
    const std::string_view entry = textOf(entries()[n]);
    const std::size_t separator = end == listText ? 0 : 1;
    const auto left = listRoom - static_cast<std::size_t>(end - listText);
    if (!isWanted(entry) || separator + entry.size() >= left) continue;
    if (separator != 0) *end++ = '$';
    end = std::copy(entry.begin(), entry.end(), end);
  }
  *end = '\0';
}

void sortEntries() {
  std::stable_sort(entries(), entries() + entryCount(), [](const Entry &a, const Entry &b) {
    return strings::difference(a.text, b.text) < 0;
  });
}

void defineDialog() {
  constexpr int kFirstItem = 100;
  LDB = 1;
  LDB_cx = 200;
  LDB_cy = 150;
  defineStatics(1);
  setStatic(0, "Initiales :");
  place(kStaticTexts, 0, 10, 8, 34, 8);
  defineTexts(kFields, kFirstItem);
  setText(kInitials, "");
  setMandatory(kTextFields, kInitials, 0);
  place(kTextFields, kInitials, 10, 18, 30, 12, 1);
  setText(kNames, "");
  setChoices(kNames, "");
  turnPopUpOrList(kNames);
  useChoices(kNames, listText);
  place(kTextFields, kNames, 56, 10, 120, 150, 2);
  base::asFarAsMemoryAllows([] { nameField(kTextFields, kNames, "Praticiens"); });
  DlgBoxGlobal_fonct = korvel_narrowNames;
}

void keepSelection() {
  strings::copyWhole(sz_MTliste, storedText(kFieldTexts, kNames));
  std::replace(sz_MTliste, sz_MTliste + std::strlen(sz_MTliste), '\t', ';');
}

bool runDialog() {
  defineDialog();
  return runBuilt("S\xE9lection de praticien en base", nullptr) != 0;
}

// The tables of one call, which the globals show meanwhile.
class Tables {
 public:
  Tables() : base_(new (std::nothrow) Entry[MAX_LIGNES]()) {
    liste_base = reinterpret_cast<char *>(base_.get());
    nbase = 0;
  }
  ~Tables() {
    liste_base = nullptr;
    if (listText != nullptr) forgetChoices(listText);
    listText = nullptr;
  }
  Tables(const Tables &) = delete;
  Tables &operator=(const Tables &) = delete;

  bool hasRoom() const { return base_ != nullptr; }
  bool makeRows() {
    const auto count = static_cast<std::size_t>(entryCount());
    rows_.reset(new (std::nothrow) Entry[count]);
    listText = reinterpret_cast<char *>(rows_.get());
    listRoom = count * kEntrySize;
    return rows_ != nullptr;
  }

 private:
  std::unique_ptr<Entry[]> base_;
  std::unique_ptr<Entry[]> rows_;
};

void addEntry(char *line) {
  if (liste_base == nullptr || nbase < 0 || nbase >= MAX_LIGNES) return;
  char(&entry)[kEntrySize] = entries()[nbase].text;
  // An entry whose line is too long starts empty.
  entry[0] = '\0';
  strings::copyWhole(entry, line);
  strings::appendWhole(entry, "\t");
  strings::appendWhole(entry, strings::nextItem(line));
  ++nbase;
}

// Has the list show the entries that begin with the initials, and empties the selection. Returns
// whether the tables are those of the dialog.
bool narrow(char **texts) {
  if (listText == nullptr || texts == nullptr) return false;
  if (texts[kInitials] == nullptr || texts[kNames] == nullptr) return false;
  joinRows([initials = std::string_view(texts[kInitials])](std::string_view entry) {
    // Kept: empty initials match nothing.
    return !initials.empty() && entry.starts_with(initials);
  });
  rebuildChoices(kNames);
  texts[kNames][0] = '\0';
  return true;
}

// Has the selection cleared on the screen, too. Returns the number of identifiers.
int clearSelection(int textFirstItem, int *redisplay, int capacity) {
  if (capacity < 1 || redisplay == nullptr) return 0;
  *redisplay = ~textFirstItem;  // -(textFirstItem + kNames), without overflow
  return 1;
}

void select() {
  if (!mayShowDialog()) {
    sz_MTliste[0] = '\0';
    return;
  }
  Tables work;  // not before: a dialog that is up may have those of an earlier call
  if (!work.hasRoom()) return;
  tables::scanTable("MT.par", nullptr, nullptr, addEntry);
  sz_MTliste[0] = '\0';
  if (nbase == 0 || !work.makeRows()) return;
  sortEntries();
  joinRows([](std::string_view) { return true; });
  if (runDialog()) keepSelection();
}

}  // namespace

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

constinit char *liste_base = nullptr;
constinit int nbase = 0;
constinit char **liste = &listText;
constinit char sz_MTliste[256] = "";

void listeNoms(char *line) {
  lookForMisuse([=] { needsChooser(Call("listeNoms", {line})); });
  if (line != nullptr) addEntry(line);
}

int DlgBoxGlobal_BAS(int item, int textInUse, int textFirstItem, char **texts, int textCount, int,
                     int, int *, int, int, int, int *, int, int, int, double *, int, int, int,
                     int *, int, int *redisplay, int capacity) {
  if (textInUse == 0 || item != textFirstItem || textCount < kFields) return 0;
  return narrow(texts) ? clearSelection(textFirstItem, redisplay, capacity) : 0;
}

char *SelectMT(void *a, void *b, const char *dirTables) {
  korvel::tables::setDirectory(dirTables);
  lookForMisuse([=] {
    needsPractitioners(Call("SelectMT", {orNull(a), orNull(b), dirTables}), dirTables);
  });
  select();
  return sz_MTliste;
}
