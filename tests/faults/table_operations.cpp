// SPDX-License-Identifier: MIT
// The functions of tables.
#include <cstdio>
#include <cstring>

#include <korvel/tables.h>

#include "tests/faults/operations.h"
#include "tests/tables/edits.h"

namespace korvel::faults {
namespace {

using namespace korvel::test;
using namespace korvel::faults::place;

void useFolder() {
  std::strcpy(szDirTables, "Data:tables");
  folder("tables");
}

// The example table with another one and an old back-up; its line 6 is the current one.
void putTable(const std::string &text) {
  useFolder();
  put("tables/actes.tab", text);
  put("tables/actes.bak", "old back-up");
  put("tables/other.tab", "another table");
  ZRV_Libelle_NC_set_ligne(6);
  std::strcpy(ZRV_Libelle_NC_szBuffer, "99");
}
// Each is read in several pieces.
void putExample() {
  putTable(actes());
  tables::TableReader::blockSize = 16;
}
// More than is written at once, with an irregular line here and there.
void putLong() {
  std::string text = actes();
  for (int i = 0; i < 1200; ++i)
    text += std::to_string(i) + ",Libell\xE9" + (i % 100 == 0 ? "\r" : "\r\n");
  putTable(text);
  tables::TableReader::blockSize = 8192;
}
// A table that has come to memory.
void putKept() {
  putLong();
  tables::keeping = tables::Keeping::Always;
}
void putLink() {
  putExample();
  put("real.tab", actes());
  link("tables/linked.tab", "../real.tab");
}
// What an edit by another program left.
void putLeftOver() {
  putExample();
  put("tables/actes.ta_", std::string(300, 'x'));
}
void putCoveredLines() {
  useFolder();
  put("tables/actes.tab",
      lines({"Actes", "Version: 2", "#DEBUT", "01,Avant,01/01/95,31/12/99",
             "01,Consultation,01/01/00,31/12/09", "02,Garde", "01,Autre", "#FIN"}));
}

template <typename Function, typename... Arguments>
Answer found(Function function, Arguments... arguments) {
  char out[64] = "-";
  const int result = function(arguments..., "actes", out, static_cast<int>(sizeof out));
  return {result, out, ZRV_Libelle_NC_il, ZRV_Libelle_NC_read};
}

Answer foundOnDate() {
  char out[64] = "-";
  const int result = ZRV_Libelle_NC_dates("01", 2, 1, "actes", out, sizeof out, 2, 20050101);
  return {result, out};
}

constexpr const char *kLabels[] = {"Consultation", nullptr};
constexpr int kColumns[] = {1, -1};

int scanned;
Answer scannedWhole() {
  int first = 0;
  int last = -7;
  scanned = 0;
  const int result = ZRV_Table_scan("actes", &first, &last, [](char *) { ++scanned; });
  return {result, first, last, scanned};
}

Answer modified(const char *name, const char *newName) {
  return {ZRV_Table_modify(name, newName, "3", "Titre")};
}

// The line buffer holds an edited line.
void putEdited() {
  putLong();
  char out[8];
  ZRV_Libelle_NC_idem_0("?", 0, 0, "actes", out, sizeof out);
  setColumn(1, "x");
}

// Kept: a back-up answers 0 whatever becomes of it, and what cannot be repaired counts as sound.
constexpr Operation kTables[] = {
    {"setDirTables", nullptr, [] { return Answer{setDirTables("Data:x")}; }, "Data:x", nullptr},
    {"getDirTables", nullptr, [] { return Answer{getDirTables()}; }, "", nullptr},
    {"ZRV_Libelle_NC", putExample, [] { return found(ZRV_Libelle_NC, "02", 2, 1); }, "1", "0"},
    {"ZRV_Libelle_NC, in a long table", putLong, [] { return found(ZRV_Libelle_NC, "1198", 4, 1); },
     "1", "0"},
    {"KorvelForgetTables", putKept,
     [] {
       char out[64] = "-";
       ZRV_Libelle_NC("1198", 4, 1, "actes", out, sizeof out);
       KorvelForgetTables();
       return Answer{ZRV_Libelle_NC_il, out};
     },
     "1206", "0"},
    {"ZRV_Libelle_NC, of a table kept in memory", putKept,
     [] { return found(ZRV_Libelle_NC, "1198", 4, 1); }, "1", "0"},
    {"ZRV_Code_NC, of a table kept in memory", putKept,
     [] { return found(ZRV_Code_NC, "Libell\xE9", 1); }, "1", "0"},
    {"ZRV_Libelle_NC, of a chosen directory", putExample,
     [] {
       char out[64] = "-";
       setDirTables("Data:tables:");
       const int result = ZRV_Libelle_NC("02", 2, 1, "actes.tab", out, sizeof out);
       setDirTables("");
       return Answer{result, out};
     },
     "1", "0"},
    {"ZRV_Libelle_2", putExample, [] { return found(ZRV_Libelle_2, 7, 1); }, "1", "0"},
    {"ZRV_Libelle_NC_idem", putExample, [] { return found(ZRV_Libelle_NC_idem, "02", 2, 0); }, "1",
     "0"},
    {"ZRV_Libelle_NC_idem_0", putExample, [] { return found(ZRV_Libelle_NC_idem_0, "02", 2, 0); },
     "1", "0"},
    {"ZRV_Libelle_NC_next", putExample,
     [] {
       ZRV_Libelle_NC_set_ligne(2);
       return found(ZRV_Libelle_NC_next, "02", 2, 1);
     },
     "1", "0"},
    {"ZRV_Libelle_NC_dates", putCoveredLines, foundOnDate, "1", "0"},
    {"ZRV_Libelle_NC_get_ligne", putExample, [] { return Answer{ZRV_Libelle_NC_get_ligne()}; }, "6",
     nullptr},
    {"ZRV_Libelle_NC_set_ligne", putExample,
     [] {
       ZRV_Libelle_NC_set_ligne(4);
       return Answer{ZRV_Libelle_NC_il};
     },
     "4", nullptr},
    {"ZRV_Code_NC", putExample, [] { return found(ZRV_Code_NC, "Consultation", 1); }, "1", "0"},
    {"ZRV_CodeNCS_NC", putExample, [] { return found(ZRV_CodeNCS_NC, "consultation", 1); }, "1",
     "0"},
    {"ZRV_Code_NC_next", putExample,
     [] {
       ZRV_Libelle_NC_set_ligne(1);
       return found(ZRV_Code_NC_next, "Visite", 1);
     },
     "1", "0"},
    {"ZRV_Code_NC_ex", putExample, [] { return found(ZRV_Code_NC_ex, kLabels, kColumns); }, "1",
     "0"},
    {"ZRV_Code_NC_ex_next", putExample,
     [] {
       ZRV_Libelle_NC_set_ligne(1);
       return found(ZRV_Code_NC_ex_next, kLabels, kColumns);
     },
     "1", "0"},
    {"ZRV_Libelle_NC_idem_replace", putExample,
     [] { return Answer{ZRV_Libelle_NC_idem_replace("??", 2, 1, "actes", "x")}; }, "1", "0",
     kReplaces},
    {"ZRV_Libelle_NC_idem_replace, through a link", putLink,
     [] { return Answer{replaceColumn(1, "x", "linked")}; }, "1", "0", kReplaces},
    {"ZRV_Libelle_NC_idem_replace, with a left-over file", putLeftOver,
     [] { return Answer{ZRV_Libelle_NC_idem_replace("??", 2, 1, "actes", "x")}; }, "1", "0",
     kTwoNames},
    {"ZRV_Libelle_NC_idem_insert", putLong,
     [] { return Answer{ZRV_Libelle_NC_idem_insert("??", 2, "actes", 2)}; }, "1", "0", kReplaces},
    {"ZRV_Libelle_NC_idem_delete", putExample,
     [] { return Answer{ZRV_Libelle_NC_idem_delete("??", 2, "actes")}; }, "1", "0", kReplaces},
    {"ZRV_Libelle_NC_set", putExample,
     [] {
       return Answer{ZRV_Libelle_NC_set("??", 0, 0, "actes", "x"), ZRV_Libelle_NC_szBuffer};
     },
     "1", nullptr},
    {"ZRV_Libelle_NC_idem_flush", putEdited,
     [] { return Answer{ZRV_Libelle_NC_idem_flush("??", 2, "actes")}; }, "1", "0", kReplaces},
    {"ZRV_Table_create", useFolder, [] { return Answer{ZRV_Table_create("new", "1", "Titre")}; },
     "1", "0", kReplaces},
    {"ZRV_Table_remove", putExample, [] { return Answer{ZRV_Table_remove("actes")}; }, "1", "0",
     kSaysDone},
    {"ZRV_Table_sauvegarde", putLong, [] { return Answer{ZRV_Table_sauvegarde("actes", 1)}; }, "0",
     nullptr, kReplaces | kSaysDone},
    {"ZRV_Table_modify", putLong, [] { return modified("actes", "actes"); }, "1", "0", kReplaces},
    {"ZRV_Table_modify, to a new name", putExample, [] { return modified("actes", "new"); }, "1",
     "0", kReplaces | kTwoNames},
    {"ZRV_Table_modify, to another table's name", putLong,
     [] { return modified("actes", "other"); }, "1", "0", kReplaces | kTwoNames},
    {"ZRV_Table_modify, of a link", putLink, [] { return modified("linked", "new"); }, "1", "0",
     kReplaces | kLinkMoves},
    {"ZRV_Table_liste", putExample,
     [] {
       char out[64] = "";
       char said[80];
       const int result = ZRV_Table_liste("actes", out, sizeof out);
       std::snprintf(said, sizeof said, "%d:%s", result, out);
       return Answer{said};
     },
     "1:01+02+07", "0:"},
    {"ZRV_Table_scan", putExample, scannedWhole, "1", "0"},
    {"ZRV_Table_scan, of a long table", putLong, scannedWhole, "1", "0"},
    {"ZRV_Table_repair", putLong, [] { return Answer{ZRV_Table_repair("actes", "3", "Titre")}; },
     "1", "0", kReplaces | kSaysDone},
};

}  // namespace

std::span<const Operation> tableOperations() { return kTables; }

}  // namespace korvel::faults
