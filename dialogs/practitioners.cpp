// The choice of a practitioner: a dialog of the library's own, made with the functions that every
// application has.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include <korvel/dialogs.h>
#include <korvel/strings.h>
#include <korvel/tables.h>

#include "dialogs/families.h"
#include "dialogs/run.h"
#include "dialogs/stored_text.h"

using namespace korvel::dialogs;

namespace {

constexpr int kEntrySize = 80;

struct Entry {
  char text[kEntrySize];
};

constexpr const char *kTable = "MT.par";
constexpr const char *kTitle = "S\xE9lection de praticien en base";

// The fields of the dialog, and the first item number of them.
enum { kInitials, kNames, kTextFields };
constexpr int kFirstItem = 100;

// Room for each of the entries that there were when the dialog was defined.
constinit char *listText = nullptr;
constinit std::size_t listRoom = 0;

}  // namespace

constinit char *liste_base = nullptr;
constinit int nbase = 0;
constinit char **liste = &listText;
constinit char sz_MTliste[256] = "";

namespace {

// The application may write both globals; what is followed stays inside the table.
int entryCount() { return liste_base == nullptr ? 0 : std::clamp<int>(nbase, 0, MAX_LIGNES); }

Entry *entries() { return reinterpret_cast<Entry *>(liste_base); }

std::string_view textOf(const Entry &entry) {
  return {entry.text, strnlen(entry.text, sizeof entry.text)};
}

// The rows of the list, joined by '$'. One that does not fit is left out.
class Rows {
 public:
  Rows() : end_(listText) { *end_ = '\0'; }

  void add(std::string_view entry) {
    const bool isFirst = end_ == listText;
    const auto left = listRoom - static_cast<std::size_t>(end_ - listText);
    if (entry.size() + (isFirst ? 0 : 1) >= left) return;
    if (!isFirst) *end_++ = '$';
    end_ = std::copy(entry.begin(), entry.end(), end_);
    *end_ = '\0';
  }

 private:
  char *end_;
};

// Kept: without initials nothing begins with them.
bool beginsWith(std::string_view text, std::string_view initials) {
  return !initials.empty() && text.starts_with(initials);
}

void sortEntries() {
  std::stable_sort(entries(), entries() + entryCount(),
                   [](const Entry &a, const Entry &b) { return chcomp(a.text, b.text) < 0; });
}

void joinAll() {
  Rows rows;
  for (int n = 0; n < entryCount(); ++n) rows.add(textOf(entries()[n]));
}

void defineDialog() {
  TailleDlgBox_set(200, 150);
  StaticDlgBox_param(1);
  StaticDlgBox_set(0, "Initiales :");
  StaticDlgBox_set_geo(0, 10, 8, 34, 8);
  TexteDlgBox_param(kTextFields, kFirstItem);
  TexteDlgBox_set(kInitials, "");
  TexteDlgBox_mandatory(kInitials, 0);
  TexteDlgBox_set_geo(kInitials, 10, 18, 30, 12, 1);
  TexteDlgBox_set(kNames, "");
  TexteDlgBox_set_liste(kNames, "");
  TexteDlgBox_change_liste(kNames);
  TexteDlgBox_set_liste_buffer(kNames, listText);
  TexteDlgBox_set_geo(kNames, 56, 10, 120, 150, 2);
  DlgBoxGlobal_set(DlgBoxGlobal_BAS);
}

void keepSelection() {
  TexteDlgBox_retrieve(kNames, sz_MTliste, sizeof sz_MTliste);
  std::replace(sz_MTliste, sz_MTliste + std::strlen(sz_MTliste), '\t', ';');
}

int runDialog() {
  defineDialog();
  return ZRVDlgBoxEx(kTitle, nullptr);
}

// The working tables of one call, which the globals show while they stand.
class Tables {
 public:
  Tables() : base_(new (std::nothrow) Entry[MAX_LIGNES]()) {
    liste_base = reinterpret_cast<char *>(base_.get());
    nbase = 0;
  }
  ~Tables() {
    liste_base = nullptr;
    for (int i = 0; i < kTexts.capacity; ++i) {
      if (listText != nullptr && kChoices.texts[i] == listText) useOwnSlice(kChoices, i);
    }
    listText = nullptr;
  }
  Tables(const Tables &) = delete;
  Tables &operator=(const Tables &) = delete;

  bool hasEntries() const { return base_ != nullptr; }
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

}  // namespace

void listeNoms(char *line) {
  if (liste_base == nullptr || line == nullptr) return;
  if (nbase < 0 || nbase >= MAX_LIGNES) return;
  char *entry = entries()[nbase].text;
  // An entry whose line is too long starts empty.
  entry[0] = '\0';
  secure_lstrcpy(entry, kEntrySize, line);
  secure_lstrcat(entry, kEntrySize, "\t");
  secure_lstrcat(entry, kEntrySize, ChCh_Get_Next_Item(line));
  ++nbase;
}

int DlgBoxGlobal_BAS(int item, int textInUse, int textFirstItem, char **texts, int textCount, int,
                     int, int *, int, int, int, int *, int, int, int, double *, int, int, int,
                     int *, int, int *redisplay, int capacity) {
  if (textInUse == 0 || item != textFirstItem || textCount < kTextFields) return 0;
  if (listText == nullptr || texts == nullptr) return 0;
  if (texts[kInitials] == nullptr || texts[kNames] == nullptr) return 0;
  Rows rows;
  const std::string_view initials = texts[kInitials];
  for (int n = 0; n < entryCount(); ++n) {
    const std::string_view entry = textOf(entries()[n]);
    if (beginsWith(entry, initials)) rows.add(entry);
  }
  ZRVDlgBox_texte_set_liste(kNames);
  texts[kNames][0] = '\0';
  if (capacity < 1 || redisplay == nullptr) return 0;
  *redisplay = ~textFirstItem;
  return 1;
}

char *SelectMT(void *, void *, const char *dirTables) {
  setDirTables(dirTables);
  // A dialog that is up keeps its tables, which may be those of an earlier call of this function.
  if (!mayShowDialog()) {
    sz_MTliste[0] = '\0';
    return sz_MTliste;
  }
  Tables tables;
  if (!tables.hasEntries()) return sz_MTliste;
  int firstLine = 0;
  int lastLine = 0;
  ZRV_Table_scan(kTable, &firstLine, &lastLine, listeNoms);
  sz_MTliste[0] = '\0';
  if (nbase == 0 || !tables.makeRows()) return sz_MTliste;
  sortEntries();
  joinAll();
  if (runDialog() != 0) keepSelection();
  return sz_MTliste;
}
