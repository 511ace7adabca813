// SPDX-License-Identifier: MIT
// Lookups and searches in the real tables that come with the project. The texts are CP1252.
#include <unistd.h>

#include "tests/tables/tables.h"

namespace korvel {
namespace {

using test::Answer;
using test::idem;
using test::lookUp;
using test::lookUpDate;
using test::lookUpNext;
using test::search;

class RealTables : public test::Tables, public testing::WithParamInterface<tables::Keeping> {
 protected:
  RealTables() {
    EXPECT_EQ(symlink(TABLES_DATA, volumes_.posix("real").c_str()), 0);
    setText(szDirTables, "Data:real");
    tables::keeping = GetParam();
  }
};

TEST_P(RealTables, CodesHaveTheirLabels) {
  const struct {
    const char *table;
    const char *code;
    int column;
    const char *label;
    int line;
  } kCases[] = {
      {"pays", "FR", 1, "France", 78},
      {"departements", "2A", 1, "Corse-du-Sud", 32},
      {"departements", "971", 2, "01", 100},
      {"regions", "84", 3, "AUVERGNE RHONE ALPES", 19},
      {"communes", "69123", 1, "Lyon", 27059},
      {"communes", "2A004", 3, "2A", 10534},
      {"medicaments", "61266250", 7, "PHARMA DEVELOPPEMENT", 4},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(lookUp(row.code, row.column, row.table), (Answer{1, row.label})) << row.code;
    EXPECT_EQ(ZRV_Libelle_NC_il, row.line) << row.code;
  }
}

TEST_P(RealTables, MissesCountEveryLine) {
  const struct {
    const char *table;
    int lines;
  } kCases[] = {{"pays", 253},       {"regions", 22},          {"departements", 105},
                {"timbres", 57},     {"substances", 4501},     {"medicaments", 15803},
                {"communes", 34924}, {"communes_histo", 40358}};
  for (const auto &row : kCases) {
    EXPECT_EQ(lookUp("no such code", 1, row.table).result, 0);
    EXPECT_EQ(test::state(), (test::State{row.lines, 1, "#FIN"})) << row.table;
  }
}

TEST_P(RealTables, CommuneHasTheNameOfTheDay) {
  const struct {
    const char *code;
    int date;
    const char *name;
  } kCases[] = {
      {"01033", 20100614, "Bellegarde-sur-Valserine"},
      {"01033", 20181231, "Bellegarde-sur-Valserine"},
      {"01033", 20190102, "Valserh\xF4ne"},
      // Kept: the last day counts, though here it is the first day of the next name.
      {"01033", 20190101, "Bellegarde-sur-Valserine"},
      {"39209", 19900101, "Val d'\xC9py"},
      {"39209", 19750101, "Val-d'\xC9py"},
      {"39209", 20200101, "Val-d'\xC9py"},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(lookUpDate(row.code, 1, "communes_histo", 2, row.date), (Answer{1, row.name}))
        << row.code << ' ' << row.date;
  }
}

TEST_P(RealTables, PriceIsThatOfTheDay) {
  EXPECT_EQ(lookUpDate("LP", 2, "timbres", 4, 19830701), (Answer{1, "2.00"}));
  EXPECT_EQ(lookUpDate("LV", 2, "timbres", 4, 20160504), (Answer{1, "0.70"}));
  EXPECT_EQ(lookUpDate("LV", 2, "timbres", 4, 20250101), (Answer{1, "0.97"}));
}

TEST_P(RealTables, EveryNameOfACodeIsFoundInItsTurn) {
  std::vector<std::string> names = {lookUp("39209", 1, "communes_histo").out};
  for (Answer next = lookUpNext("39209", 1, "communes_histo"); next.result == 1;
       next = lookUpNext("39209", 1, "communes_histo")) {
    names.push_back(next.out);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Val d'\xC9py", "Val-d'\xC9py", "Val-d'\xC9py",
                                             "\xC9py", "\xC9py-Lan\xE9ria"}));
  EXPECT_EQ(ZRV_Libelle_NC_il, 17025);
}

TEST_P(RealTables, LabelsHaveTheirCodes) {
  EXPECT_EQ(search(ZRV_Code_NC, "Lyon", 1, "communes"), (Answer{1, "69123"}));
  EXPECT_EQ(idem(5, 3, "communes"), (Answer{1, "69"}));
  EXPECT_EQ(search(ZRV_Code_NC, "lyon", 1, "communes"), (Answer{0, "#FIN"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "lyon", 1, "communes"), (Answer{1, "69123"}));
  EXPECT_EQ(search(ZRV_Code_NC, "Ly?n", 1, "communes"), (Answer{1, "69123"}));
  EXPECT_EQ(search(ZRV_Code_NC, "Saint-Denis", 1, "communes"), (Answer{1, "11339"}));
  EXPECT_EQ(search(ZRV_Code_NC_next, "Saint-Denis", 1, "communes").result, 1);
}

TEST_P(RealTables, CriteriaNarrowDown) {
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"Saint-Denis*", 1}, {"974", 3}}, "communes"),
            (Answer{1, "97411"}));
  EXPECT_EQ(
      search(ZRV_Code_NC_ex, {{"DOLIPRANE*", 1}, {"Commercialis\xE9*", 5}}, "medicaments").result,
      1);
  EXPECT_EQ(std::string(test::fieldsOfBuffer()).substr(9, 9), "DOLIPRANE");
}

// Whatever line a code is on, each kernel finds it, and the same line.
TEST_P(RealTables, EveryKernelFindsTheSameLines) {
  for (const bool allowed : {false, true}) {
    strings::avx2Allowed = allowed;
    EXPECT_EQ(lookUp("97424", 1, "communes"), (Answer{1, "Cilaos"}));
    EXPECT_EQ(search(ZRV_Code_NC, "Cilaos", 1, "communes"), (Answer{1, "97424"}));
    EXPECT_EQ(search(ZRV_CodeNCS_NC, "cilaos", 1, "communes"), (Answer{1, "97424"}));
    EXPECT_EQ(search(ZRV_Code_NC_ex, {{"Cil*", 1}, {"974", 3}}, "communes"), (Answer{1, "97424"}));
    EXPECT_EQ(ZRV_Libelle_NC_il, 34906);
  }
}

INSTANTIATE_TEST_SUITE_P(KeptOrNot, RealTables, testing::ValuesIn(test::kKeepings));

// The codes of some lines of a table, all over it.
std::vector<std::string> someCodes(const char *table, int count) {
  const std::string text = test::content(std::string(TABLES_DATA) + "/" + table + ".tab");
  std::vector<std::string> codes = {"no such code", "#FIN", "0?????", "?"};
  for (int i = 0; i < count; ++i) {
    const std::size_t at = text.find('\n', text.size() / count * i) + 1;
    codes.push_back(text.substr(at, text.find_first_of(",+\r", at) - at));
  }
  return codes;
}

struct Found {
  Answer answer;
  test::State state;

  friend bool operator==(const Found &, const Found &) = default;
};

// All lines of a code in their turn, and the end.
std::vector<Found> allOf(const std::string &code, const char *table) {
  std::vector<Found> all = {{lookUp(code, 1, table), test::state()}};
  while (all.back().answer.result == 1 && all.size() < 6) {
    Answer next = lookUpNext(code, 1, table);
    all.push_back({std::move(next), test::state()});
  }
  all.push_back({test::idem0(0, 0, table), test::state()});
  return all;
}

class KeptRealTables : public RealTables {};

TEST_P(KeptRealTables, GiveWhatTheFilesGive) {
  for (const char *table : {"pays", "regions", "departements", "timbres", "substances",
                            "medicaments", "communes", "communes_histo"}) {
    for (const std::string &code : someCodes(table, 25)) {
      tables::keeping = tables::Keeping::Never;
      const std::vector<Found> read = allOf(code, table);
      tables::keeping = GetParam();
      EXPECT_TRUE(allOf(code, table) == read) << table << ' ' << code;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(KeptOrNot, KeptRealTables,
                         testing::Values(tables::Keeping::WhenAskedAgain));

}  // namespace
}  // namespace korvel
