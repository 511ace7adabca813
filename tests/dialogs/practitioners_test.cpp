// SPDX-License-Identifier: MIT
// The choice of a practitioner: its dialog, the entries read, the list narrowed by initials.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>
#include <korvel/strings.h>
#include <korvel/tables.h>

#include "tests/dialogs/dialog_fixture.h"
#include "tests/files/volumes.h"

namespace korvel::test {
namespace {

constexpr const char *kTitle = "Sélection de praticien en base";
constexpr int kInitials = 3;
constexpr int kNames = 4;

std::string table(const std::vector<std::string> &dataLines) {
  std::string all = "Praticiens\r\nVersion: 1\r\n#DEBUT\r\n";
  for (const std::string &line : dataLines) all += line + "\r\n";
  return all + "#FIN\r\n";
}

class Practitioners : public DialogTest {
 protected:
  Practitioners() { std::snprintf(sz_MTliste, sizeof sz_MTliste, "before"); }
  ~Practitioners() override {
    sz_MTliste[0] = '\0';
    nbase = 0;
  }
  void TearDown() override {
    DialogTest::TearDown();
    EXPECT_EQ(liste_base, nullptr);
    EXPECT_EQ(*liste, nullptr);
  }

  void write(const std::vector<std::string> &dataLines) {
    volumes_.file("MT.par", table(dataLines));
  }
  std::string select() { return SelectMT(nullptr, nullptr, "Data:"); }
  DialogScript &expectDialog() { return desk.expectDialog(kTitle); }
  std::vector<std::string> names() const { return desk.entries(kNames); }

  Volumes volumes_;

 private:
  Restored<char[256]> directory_{ZRV_Libelle_NC_szDirTables};
  Restored<char[1024]> buffer_{ZRV_Libelle_NC_szBuffer};
  Restored<int> line_{ZRV_Libelle_NC_il};
  Restored<int> read_{ZRV_Libelle_NC_read};
};

using Names = std::vector<std::string>;

TEST_F(Practitioners, AnEmptyTableGivesAnEmptyResultWithoutADialog) {
  write({});
  EXPECT_EQ(select(), "");
  EXPECT_EQ(desk.dialogsShown(), 0);
}

TEST_F(Practitioners, AMissingTableGivesAnEmptyResultWithoutADialog) {
  EXPECT_EQ(select(), "");
  EXPECT_EQ(desk.dialogsShown(), 0);
}

TEST_F(Practitioners, TheTableDirectoryIsSet) {
  select();
  EXPECT_STREQ(getDirTables(), "Data:");
}

TEST_F(Practitioners, TheResultIsTheGlobalsAddress) {
  EXPECT_EQ(SelectMT(nullptr, nullptr, "Data:"), sz_MTliste);
}

TEST_F(Practitioners, TheDialogIsLaidOut) {
  write({"ABC,Dr Abc"});
  expectDialog().press(kCancel);
  select();
  EXPECT_EQ(desk.layout(),
            "dialog (440,381)-(840,643) in front of everything \"Sélection de praticien en base\"\n"
            "1 push button (110,228)-(190,248) \"OK\" default\n"
            "2 push button (210,228)-(290,248) \"Annuler\"\n"
            "3 edit text (20,31)-(80,46)\n"
            "4 list box (112,17)-(352,204)\n"
            "static text (20,14)-(88,29) \"Initiales :\"\n");
}

TEST_F(Practitioners, TheListIsNamedForScreenReaders) {
  write({"ABC,Dr Abc"});
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.name(3), "") << "it has a text";
        EXPECT_EQ(desk.name(4), "Praticiens");
      })
      .press(kCancel);
  select();
}

TEST_F(Practitioners, EntriesAreShownSortedByTheirBytes) {
  write({"b,Two", "a,One", "\xE9,Signed first", "A,Capital"});
  expectDialog()
      .check([&] {
        EXPECT_EQ(names(), (Names{"é\tSigned first", "A\tCapital", "a\tOne", "b\tTwo"}));
        EXPECT_EQ(nbase, 4);
        EXPECT_STREQ(liste_base, "\xE9\tSigned first");
        EXPECT_STREQ(*liste, "\xE9\tSigned first$A\tCapital$a\tOne$b\tTwo");
      })
      .press(kCancel);
  select();
}

TEST_F(Practitioners, ALineOfOneFieldFillsBothColumns) {
  write({"SOLO"});
  expectDialog().check([&] { EXPECT_EQ(names(), Names{"SOLO\tSOLO"}); }).press(kCancel);
  select();
}

TEST_F(Practitioners, OkWaitsForASelection) {
  write({"A,One"});
  expectDialog()
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .clickRow(kNames, 0)
      .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)); })
      .press(kCancel);
  select();
}

TEST_F(Practitioners, AnAcceptedSelectionHasSemicolonsForItsTabs) {
  write({"A,One", "B,Two"});
  expectDialog().clickRow(kNames, 1).press(kOk);
  EXPECT_EQ(select(), "B;Two");
}

TEST_F(Practitioners, ADoubleClickAccepts) {
  write({"A,One", "B,Two"});
  expectDialog().doubleClickRow(kNames, 0);
  EXPECT_EQ(select(), "A;One");
}

TEST_F(Practitioners, ACancelledDialogGivesAnEmptyResult) {
  write({"A,One"});
  expectDialog().clickRow(kNames, 0).press(kCancel);
  EXPECT_EQ(select(), "");
}

TEST_F(Practitioners, InitialsNarrowTheListAndCaseCounts) {
  write({"ABC,Upper", "Abc,Mixed", "AB,Same", "B,Other"});
  expectDialog()
      .type(kInitials, "AB")
      .check([&] {
        EXPECT_EQ(names(), (Names{"AB\tSame", "ABC\tUpper"}));
      })
      .clickRow(kNames, 1)
      .press(kOk);
  EXPECT_EQ(select(), "ABC;Upper");
}

// Kept: empty initials match nothing.
TEST_F(Practitioners, EmptyInitialsMatchNothing) {
  write({"A,One"});
  expectDialog()
      .type(kInitials, "A")
      .deleteBack(kInitials)
      .check([&] { EXPECT_EQ(names(), Names{}); })
      .press(kCancel);
  select();
}

TEST_F(Practitioners, AnEmptiedListCannotBeAccepted) {
  write({"A,One"});
  expectDialog()
      .clickRow(kNames, 0)
      .type(kInitials, "x")
      .pressReturn()
      .hit(kNames)
      .pressReturn()
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .press(kCancel);
  EXPECT_EQ(select(), "");
}

TEST_F(Practitioners, TheFirstItemNumberIs100) {
  write({"A,One"});
  expectDialog().check([] { EXPECT_EQ(TDB_ID_TEXTE, 100); }).press(kCancel);
  select();
  EXPECT_EQ(TDB_ID_TEXTE, 100);
}

TEST_F(Practitioners, AfterwardsNoTableLeadsToTheRows) {
  write({"A,One", "B,Two"});
  for (const int end : {kOk, kCancel}) {
    expectDialog()
        .clickRow(kNames, 0)
        .check([] { EXPECT_EQ(TDB_PSZLBUFFER[1], *liste); })
        .press(end);
    select();
    EXPECT_EQ(TDB_PSZLBUFFER[1], TDB_SZLBUFFER + TDB_BUFFERSIZE);
    EXPECT_STREQ(TDB_PSZLBUFFER[1], "");
  }
}

TEST_F(Practitioners, NarrowingClearsTheSelection) {
  write({"A,One", "B,Two"});
  expectDialog()
      .clickRow(kNames, 0)
      .type(kInitials, "B")
      .check([&] {
        EXPECT_STREQ(TDB_pszBuffer[1], "");
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .press(kCancel);
  select();
}

TEST_F(Practitioners, AccentsInInitialsMatchTheirStoredBytes) {
  write({"\xC9t,Upper", "\xE9t,Lower"});
  expectDialog()
      .type(kInitials, "ét")
      .check([&] { EXPECT_EQ(names(), Names{"ét\tLower"}); })
      .press(kCancel);
  select();
}

TEST_F(Practitioners, InitialsOfTheLengthOfAnEntryAndMoreReadNothingBehindIt) {
  write({"A,B"});
  expectDialog()
      .type(kInitials, std::string(100, 'A'))
      .check([&] { EXPECT_EQ(names(), Names{}); })
      .press(kCancel);
  select();
}

TEST_F(Practitioners, LinesBeyondTheMostAreLeftOut) {
  std::vector<std::string> lines;
  for (int n = 0; n < MAX_LIGNES + 3; ++n) {
    char line[32];
    std::snprintf(line, sizeof line, "%05d,N", n);
    lines.push_back(line);
  }
  write(lines);
  expectDialog()
      .check([&] {
        EXPECT_EQ(nbase, MAX_LIGNES);
        EXPECT_EQ(names().size(), std::size_t{MAX_LIGNES});
        EXPECT_EQ(names().back(), "04095\tN");
      })
      .press(kCancel);
  select();
}

TEST_F(Practitioners, WhileADialogIsUpNothingIsShownAndItsTablesStay) {
  write({"A,One"});
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set_geo(0, 0, 0, 50, 12, 0);
  TexteDlgBox_set(0, "mine");
  desk.expectDialog("T")
      .check([&] {
        EXPECT_EQ(select(), "");
        EXPECT_EQ(TDB_N, 1);
        EXPECT_STREQ(TDB_pszBuffer[0], "mine");
        EXPECT_EQ(liste_base, nullptr);
      })
      .press(kOk);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 1);
}

TEST_F(Practitioners, ACallOutOfAChooserLeavesItsEntries) {
  write({"ABC,Upper", "B,Other"});
  expectDialog()
      .check([&] {
        const char *entries = liste_base;
        EXPECT_EQ(select(), "");
        EXPECT_EQ(liste_base, entries);
        EXPECT_NE(liste_base, nullptr);
        EXPECT_EQ(nbase, 2);
      })
      .type(kInitials, "A")
      .check([&] { EXPECT_EQ(names(), Names{"ABC\tUpper"}); })
      .press(kCancel);
  EXPECT_EQ(select(), "");
}

TEST_F(Practitioners, WithoutAScreenTheResultIsEmpty) {
  write({"A,One"});
  desk.takeScreenAway("no screen");
  EXPECT_EQ(select(), "");
}

// Entries made by listeNoms in a table of one slot.
class Entries : public Practitioners {
 protected:
  Entries() { liste_base = slots_; }
  ~Entries() override { EXPECT_EQ(slots_[80], '#'); }
  void TearDown() override {
    liste_base = nullptr;
    Practitioners::TearDown();
  }
  // line: fields, separated by '|'.
  std::string entryOf(std::string line) {
    std::replace(line.begin(), line.end(), '|', '\0');
    line += '\0';
    nbase = 0;
    listeNoms(line.data());
    return slots_;
  }

  char slots_[81] = {};

 private:
  bool marked_ = (slots_[80] = '#', true);
};

TEST_F(Entries, AreTheFirstTwoFieldsWithATabBetweenThem) {
  EXPECT_EQ(entryOf("AB|Dr Abel|Paris"), "AB\tDr Abel");
  EXPECT_EQ(nbase, 1);
}

TEST_F(Entries, OfALineOf79CharactersHaveNoRoomForTheTab) {
  EXPECT_EQ(entryOf(std::string(79, 'x') + "|y"), std::string(79, 'x'));
}

TEST_F(Entries, OfALineOf78CharactersHaveRoomForTheTabOnly) {
  EXPECT_EQ(entryOf(std::string(78, 'x') + "|y"), std::string(78, 'x') + '\t');
}

TEST_F(Entries, OfALineOf80CharactersStartEmpty) {
  EXPECT_EQ(entryOf(std::string(80, 'x') + "|y"), "\ty");
}

TEST_F(Entries, LeaveASecondFieldOutThatDoesNotFit) {
  EXPECT_EQ(entryOf("AB|" + std::string(76, 'y')), "AB\t" + std::string(76, 'y'));
  EXPECT_EQ(entryOf("AB|" + std::string(77, 'y')), "AB\t");
}

TEST_F(Entries, AreDroppedBeyondTheMost) {
  char line[] = "A\0B\0";
  nbase = MAX_LIGNES;
  listeNoms(line);
  EXPECT_EQ(nbase, MAX_LIGNES);
  EXPECT_STREQ(slots_, "");
}

TEST_F(Entries, AreDroppedWithoutALineOrInFrontOfTheTable) {
  nbase = 0;
  listeNoms(nullptr);
  EXPECT_EQ(nbase, 0);
  char line[] = "A\0B\0";
  nbase = -1;
  listeNoms(line);
  EXPECT_EQ(nbase, -1);
  EXPECT_STREQ(slots_, "");
}

TEST_F(Practitioners, EntriesOutsideACallDoNothing) {
  char line[] = "A\0B\0";
  nbase = 0;
  listeNoms(line);
  EXPECT_EQ(nbase, 0);
}

// Calls of the callback as the dialog makes them, with given initials and entries.
class Narrowing : public Practitioners {
 protected:
  int call(int item, int inUse = 1, int count = 2, int *out = nullptr, int capacity = 0) {
    return callWith(TDB_pszBuffer, item, inUse, count, out, capacity);
  }
  int callWith(char **texts, int item, int inUse, int count, int *out, int capacity) {
    return DlgBoxGlobal_BAS(item, inUse, 100, texts, count, 0, 0, nullptr, 0, 0, 0, nullptr, 0, 0,
                            0, nullptr, 0, 0, 0, nullptr, 0, out, capacity);
  }
};

TEST_F(Narrowing, AnswersForTheInitialsOnly) {
  write({"A,One", "B,Two"});
  expectDialog()
      .check([&] {
        int out[2] = {7, 7};
        std::strcpy(TDB_pszBuffer[0], "B");
        EXPECT_EQ(call(101, 1, 2, out, 2), 0);
        EXPECT_EQ(call(99, 1, 2, out, 2), 0);
        EXPECT_EQ(call(100, 0, 2, out, 2), 0);
        EXPECT_EQ(call(100, 1, 0, out, 2), 0);
        EXPECT_STREQ(*liste, "A\tOne$B\tTwo");
        EXPECT_EQ(call(100, 1, 2, out, 0), 0);
        EXPECT_STREQ(*liste, "B\tTwo");
        EXPECT_EQ(out[0], 7);
        EXPECT_EQ(call(100, 1, 2, out, 2), 1);
        EXPECT_EQ(out[0], ~100);
        EXPECT_EQ(out[1], 7);
        std::strcpy(TDB_pszBuffer[0], "");
      })
      .press(kCancel);
  select();
}

TEST_F(Narrowing, WithoutTextsOrRoomForAnAnswerGives0) {
  write({"A,One", "B,Two"});
  expectDialog()
      .check([&] {
        char initials[] = "B";
        char names[] = "kept";
        char *withoutInitials[] = {nullptr, names};
        char *withoutNames[] = {initials, nullptr};
        int out = 7;
        for (char **texts : {static_cast<char **>(nullptr), withoutInitials, withoutNames}) {
          EXPECT_EQ(callWith(texts, 100, 1, 2, &out, 1), 0);
        }
        EXPECT_EQ(out, 7);
        EXPECT_STREQ(names, "kept");
        EXPECT_STREQ(*liste, "A\tOne$B\tTwo");
        char *texts[] = {initials, names};
        EXPECT_EQ(callWith(texts, 100, 1, 2, nullptr, 1), 0);
        EXPECT_STREQ(*liste, "B\tTwo");
      })
      .press(kCancel);
  select();
}

TEST_F(Narrowing, StaysInTheRoomOfTheRowsWhateverStandsInTheTable) {
  write({"A,One", "B,Two"});
  expectDialog()
      .check([&] {
        std::strcpy(TDB_pszBuffer[0], "A");
        std::memset(liste_base, 'A', std::size_t{MAX_LIGNES} * 80);
        nbase = MAX_LIGNES;
        call(100);
        EXPECT_EQ(*liste, std::string(80, 'A')) << "one of the unterminated entries fits";
        std::memset(liste_base, 'B', std::size_t{MAX_LIGNES} * 80);
        std::strcpy(liste_base + 3 * 80, "AB");
        std::strcpy(liste_base + 9 * 80, "AC");
        call(100);
        EXPECT_STREQ(*liste, "AB$AC");
        std::strcpy(TDB_pszBuffer[0], "");
      })
      .press(kCancel);
  select();
}

// An entry of 79 characters and its '$' or terminator fill its room.
TEST_F(Practitioners, TheLongestEntriesAllFit) {
  const std::string longest(76, 'y');
  write({"A1," + longest, "A2," + longest, "A3," + longest});
  expectDialog()
      .check([&] { EXPECT_EQ(names().size(), 3U); })
      .type(kInitials, "A")
      .check([&] {
        EXPECT_EQ(names(), (Names{"A1\t" + longest, "A2\t" + longest, "A3\t" + longest}));
      })
      .press(kCancel);
  select();
}

TEST_F(Narrowing, OutsideACallDoesNothing) {
  TexteDlgBox_param(2, 100);
  TexteDlgBox_set(1, "kept");
  int out = 7;
  EXPECT_EQ(call(100, 1, 2, &out, 1), 0);
  EXPECT_EQ(out, 7);
  EXPECT_STREQ(TDB_pszBuffer[1], "kept");
}

// A bubble sort.
void bubbleSort(Names &entries) {
  for (bool exchanged = true; exchanged;) {
    exchanged = false;
    for (std::size_t n = 1; n < entries.size(); ++n) {
      if (chcomp(entries[n - 1].c_str(), entries[n].c_str()) <= 0) continue;
      std::swap(entries[n - 1], entries[n]);
      exchanged = true;
    }
  }
}

std::string joined(const Names &entries) {
  std::string all;
  for (const std::string &entry : entries) all += (all.empty() ? "" : "$") + entry;
  return all;
}

TEST_F(Practitioners, RandomTablesAreSortedAndNarrowedAsByHand) {
  std::mt19937 random(4711);
  const std::string letters = "aAbB\xE9 ";
  const auto word = [&](std::size_t most) {
    std::string text(1 + random() % most, ' ');
    for (char &c : text) c = letters[random() % (letters.size() - 1)];
    return text;
  };
  for (int round = 0; round < 200; ++round) {
    Names lines, entries;
    for (auto n = 1 + random() % 40; n > 0; --n) {
      const std::string code = word(3), name = word(4);
      lines.push_back(code + "," + name);
      entries.push_back(code + "\t" + name);
    }
    write(lines);
    bubbleSort(entries);
    const std::string initials = word(2);
    Names kept;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(kept),
                 [&](const std::string &entry) { return entry.starts_with(initials); });
    std::string all, some;
    expectDialog()
        .check([&] {
          all = *liste;
          std::strcpy(TDB_pszBuffer[0], initials.c_str());
          DlgBoxGlobal_BAS(100, 1, 100, TDB_pszBuffer, 2, 0, 0, nullptr, 0, 0, 0, nullptr, 0, 0, 0,
                           nullptr, 0, 0, 0, nullptr, 0, nullptr, 0);
          some = *liste;
        })
        .press(kCancel);
    select();
    ASSERT_EQ(all, joined(entries)) << round;
    ASSERT_EQ(some, joined(kept)) << round;
  }
}

}  // namespace
}  // namespace korvel::test
