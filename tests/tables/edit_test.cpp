// SPDX-License-Identifier: MIT
// Edits of the current line, in the table and in the buffer.
#include <climits>
#include <cstring>

#include "tests/tables/edits.h"

namespace korvel {
namespace {

using test::actes;
using test::deleteLine;
using test::flushLine;
using test::idem;
using test::insertLine;
using test::lines;
using test::lookUp;
using test::replaceCode;
using test::replaceColumn;
using test::setCode;
using test::setColumn;
using test::State;
using test::state;

constexpr char kVisiteADomicile[] = "Visite \xE0 domicile";

class Edit : public test::Edits {
 protected:
  // The example table with another text in the place of line 6.
  static std::string withLine6(std::string_view text) {
    std::string all = actes();
    constexpr std::string_view kLine = "07,Visite,01/01/95\r\n";
    const std::string ended = text.empty() ? "" : std::string(text) + "\r\n";
    return all.replace(all.find(kLine), kLine.size(), ended);
  }
  // Writes a table whose only data line is `text` and makes that line, number 4, current.
  void oneLine(std::string_view text) {
    table("actes", oneLineTable(text));
    ZRV_Libelle_NC_set_ligne(4);
  }
  static std::string oneLineTable(std::string_view text) {
    return lines({"Actes", "Version: 2", "#DEBUT", text, "#FIN"});
  }
  // Fills the buffer as a lookup of line 4 does.
  void oneLineRead(std::string_view text) {
    oneLine(text);
    EXPECT_EQ(test::idem0(0, 0, "actes").result, 1);
  }
};

// --- Replacing a field -------------------------------------------------------------------------

TEST_F(Edit, ReplacingAColumnChangesItInTheTable) {
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, kVisiteADomicile), 1);
  EXPECT_EQ(tableText(), withLine6("07,Visite \xE0 domicile,01/01/95"));
}

TEST_F(Edit, ReplacingTheCodeWithoutAKeyKeepsTheOtherFields) {
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceCode(kVisiteADomicile), 1);
  EXPECT_EQ(tableText(), withLine6("Visite \xE0 domicile,Visite,01/01/95"));
}

// Kept: a line that does not have the column counts as replaced.
TEST_F(Edit, ReplacingAColumnThatTheLineDoesNotHaveCountsAsReplaced) {
  for (const int column : {5, 3, 100, INT_MAX}) {
    ZRV_Libelle_NC_set_ligne(5);
    EXPECT_EQ(replaceColumn(column, "x"), 1) << column;
    std::string expected = actes();
    expected.replace(expected.find("02+Garde"), 8, "02,Garde");
    EXPECT_EQ(tableText(), expected) << column;
  }
}

// Kept: with a key, column 0 and below name no field.
TEST_F(Edit, ReplacingColumnZeroWithAKeyChangesNothing) {
  for (const int column : {0, -1, INT_MIN}) {
    ZRV_Libelle_NC_set_ligne(6);
    EXPECT_EQ(replaceColumn(column, "x"), 1) << column;
    EXPECT_EQ(tableText(), actes()) << column;
  }
}

TEST_F(Edit, ReplacingALineThatTheTableDoesNotHaveGivesZero) {
  for (const int line : {8, 9, 1000, INT_MAX, 0, -1, INT_MIN}) {
    ZRV_Libelle_NC_set_ligne(line);
    EXPECT_EQ(replaceColumn(1, "x"), 0) << line;
    EXPECT_EQ(tableText(), actes()) << line;
  }
}

TEST_F(Edit, ReplacingLeavesTheStateAlone) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  const State before = state();
  EXPECT_EQ(replaceColumn(1, "x"), 1);
  EXPECT_EQ(state(), before);
  EXPECT_EQ(lookUp("07", 1, "actes").out, "x");
}

TEST_F(Edit, HeadingLinesAreLinesToo) {
  ZRV_Libelle_NC_set_ligne(1);
  EXPECT_EQ(replaceCode("Mes actes"), 1);
  ZRV_Libelle_NC_set_ligne(7);
  EXPECT_EQ(replaceCode("#SUITE"), 1);
  std::string expected = "Mes " + actes();
  expected[4] = 'a';
  expected.replace(expected.find("#FIN"), 4, "#SUITE");
  EXPECT_EQ(tableText(), expected);
}

TEST_F(Edit, ReplacingKeepsWhatStandsFromTheFirstEmptyFieldOn) {
  oneLine("07,Visite,,secret+x");
  EXPECT_EQ(replaceColumn(1, "y"), 1);
  EXPECT_EQ(tableText(), oneLineTable("07,y,,secret+x"));
  EXPECT_EQ(replaceColumn(2, "z"), 1);
  EXPECT_EQ(tableText(), oneLineTable("07,y,,secret+x"));
  EXPECT_EQ(replaceCode("08"), 1);
  EXPECT_EQ(tableText(), oneLineTable("08,y,,secret+x"));
}

TEST_F(Edit, AnEmptyTextLeavesAnEmptyField) {
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, ""), 1);
  EXPECT_EQ(tableText(), withLine6("07,,01/01/95"));
}

TEST_F(Edit, ASplitLineCountsWith1022CharactersACopiedOneWith1023) {
  for (const std::size_t length : {1021, 1022, 1023, 1024, 1500}) {
    const std::string text = "07," + std::string(length - 3, 'a');
    oneLine(text);
    EXPECT_EQ(replaceCode("08"), 1);
    EXPECT_EQ(tableText(), oneLineTable("08," + text.substr(3, 1022 - 3))) << length;
    oneLine(text);
    ZRV_Libelle_NC_set_ligne(1);
    EXPECT_EQ(replaceCode("Actes"), 1);
    EXPECT_EQ(tableText(), oneLineTable(text.substr(0, 1023))) << length;
  }
}

TEST_F(Edit, ALongTextIsWrittenWhole) {
  const std::string text(3000, 'x');
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, text.c_str()), 1);
  EXPECT_EQ(tableText(), withLine6("07," + text + ",01/01/95"));
}

TEST_F(Edit, TheTextMayStandInTheBuffer) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  EXPECT_EQ(replaceCode(ZRV_Libelle_NC_szBuffer + 3), 1);
  EXPECT_EQ(tableText(), withLine6("Visite,Visite,01/01/95"));
}

// --- Inserting ---------------------------------------------------------------------------------

std::string unknown(int fields) {
  std::string text =
      "N\xE9"
      "ant";
  for (int i = 1; i < fields; ++i)
    text +=
        ",N\xE9"
        "ant";
  return text;
}

TEST_F(Edit, InsertingZeroFieldsTakesAsManyAsTheLineHas) {
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(insertLine(0), 1);
  EXPECT_EQ(tableText(), withLine6("07,Visite,01/01/95\r\n" + unknown(3)));
}

TEST_F(Edit, InsertedFieldsAreCountedUpToTheFirstEmptyOne) {
  constexpr struct {
    std::string_view line;
    int fields;
  } kCases[] = {{"07", 1},   {"", 1},      {"07,", 1},     {",x", 1},
                {"07+a", 2}, {"07,a,", 2}, {"07,a,,b", 2}, {"a,b,c,d", 4}};
  for (const auto &row : kCases) {
    oneLine(row.line);
    EXPECT_EQ(insertLine(0), 1);
    EXPECT_EQ(tableText(), oneLineTable(std::string(row.line) + "\r\n" + unknown(row.fields)))
        << row.line;
  }
}

TEST_F(Edit, InsertingANumberOfFields) {
  for (const int fields : {1, 2, 5, 169, 170}) {
    table("actes", actes());
    ZRV_Libelle_NC_set_ligne(6);
    EXPECT_EQ(insertLine(fields), 1);
    EXPECT_EQ(tableText(), withLine6("07,Visite,01/01/95\r\n" + unknown(fields))) << fields;
  }
}

TEST_F(Edit, AnInsertedLineHasNoMoreFieldsThanALineHolds) {
  for (const int fields : {171, 1000, INT_MAX}) {
    table("actes", actes());
    ZRV_Libelle_NC_set_ligne(6);
    EXPECT_EQ(insertLine(fields), 1);
    EXPECT_EQ(tableText(), withLine6("07,Visite,01/01/95\r\n" + unknown(170))) << fields;
  }
  std::string many = "a";
  while (many.size() < 1021) many += ",a";
  oneLine(many);
  EXPECT_EQ(insertLine(0), 1);
  EXPECT_EQ(tableText(), oneLineTable(many + "\r\n" + unknown(170)));
}

// Kept: the current line's number remains the one of the line before the new one.
TEST_F(Edit, InsertingPutsTheNewLineIntoTheBuffer) {
  ZRV_Libelle_NC_set_ligne(6);
  ASSERT_EQ(insertLine(2), 1);
  EXPECT_EQ(state(), (State{6, 1,
                            "N\xE9"
                            "ant|N\xE9"
                            "ant"}));
  EXPECT_EQ(idem(2, 1, "actes"), (test::Answer{1,
                                               "N\xE9"
                                               "ant"}));
}

TEST_F(Edit, InsertingBehindALineThatTheTableDoesNotHaveGivesZero) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  for (const int line : {8, 0, -1, INT_MAX}) {
    ZRV_Libelle_NC_il = line;
    const State before = state();
    EXPECT_EQ(insertLine(2), 0);
    EXPECT_EQ(state(), before);
    EXPECT_EQ(tableText(), actes());
  }
}

TEST_F(Edit, InsertingLessThanNoFieldsIsRefused) {
  table("actes", "a\rb");
  ZRV_Libelle_NC_set_ligne(1);
  EXPECT_EQ(insertLine(-1), 0);
  EXPECT_EQ(insertLine(INT_MIN), 0);
  EXPECT_EQ(tableText(), "a\rb");
}

TEST_F(Edit, InsertingBehindTheFirstAndTheLastLine) {
  ZRV_Libelle_NC_set_ligne(7);
  EXPECT_EQ(insertLine(1), 1);
  ZRV_Libelle_NC_set_ligne(1);
  EXPECT_EQ(insertLine(1), 1);
  const std::string line = unknown(1) + "\r\n";
  EXPECT_EQ(tableText(), "Actes\r\n" + line + actes().substr(7) + line);
}

// --- Deleting ----------------------------------------------------------------------------------

TEST_F(Edit, DeletingRemovesTheLineWithItsEnd) {
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(deleteLine(), 1);
  EXPECT_EQ(tableText(), withLine6(""));
}

TEST_F(Edit, AfterDeletingTheNumberNamesTheLineThatFollowed) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  const State before = state();
  EXPECT_EQ(deleteLine(), 1);
  EXPECT_EQ(state(), before);
  ZRV_Libelle_NC_read = 0;
  EXPECT_EQ(idem(0, 0, "actes"), (test::Answer{1, "#FIN"}));
  EXPECT_EQ(ZRV_Libelle_NC_get_ligne(), 6);
}

TEST_F(Edit, DeletingALineThatTheTableDoesNotHaveGivesZero) {
  for (const int line : {8, 0, -1}) {
    ZRV_Libelle_NC_set_ligne(line);
    EXPECT_EQ(deleteLine(), 0);
    EXPECT_EQ(tableText(), actes());
  }
}

TEST_F(Edit, DeletingEveryLineLeavesAnEmptyTable) {
  ZRV_Libelle_NC_set_ligne(1);
  for (int i = 0; i < 7; ++i) EXPECT_EQ(deleteLine(), 1);
  EXPECT_EQ(tableText(), "");
  EXPECT_EQ(deleteLine(), 0);
  EXPECT_EQ(files(), (test::Files{{"actes.tab", ""}}));
}

// --- The buffer --------------------------------------------------------------------------------

TEST_F(Edit, SettingAColumnChangesTheBufferOnly) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  EXPECT_EQ(setColumn(1, kVisiteADomicile), 1);
  EXPECT_EQ(state(), (State{6, 1, "07|Visite \xE0 domicile|01/01/95"}));
  EXPECT_EQ(idem(2, 2, "actes"), (test::Answer{1, "01/01/95"}));
  EXPECT_EQ(tableText(), actes());
}

TEST_F(Edit, SettingTheCodeWithoutAKey) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  EXPECT_EQ(setCode("08"), 1);
  EXPECT_EQ(state(), (State{6, 1, "08|Visite|01/01/95"}));
}

TEST_F(Edit, SettingAColumnThatTheLineDoesNotHaveGivesZero) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  for (const int column : {3, 4, INT_MAX, 0, -1, INT_MIN}) {
    EXPECT_EQ(setColumn(column, "x"), 0) << column;
    EXPECT_EQ(state(), (State{6, 1, "07|Visite|01/01/95"})) << column;
  }
}

TEST_F(Edit, SettingDoesNotTouchTheReadFlagOrTheNumber) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  ZRV_Libelle_NC_set_ligne(99);
  EXPECT_EQ(setColumn(1, "x"), 1);
  EXPECT_EQ(state(), (State{99, 0, "07|x|01/01/95"}));
}

TEST_F(Edit, SettingAnEmptyTextEndsTheFieldsThere) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  EXPECT_EQ(setColumn(1, ""), 1);
  EXPECT_EQ(state().fields, "07");
}

TEST_F(Edit, SettingInAnEmptyBuffer) {
  EXPECT_EQ(setColumn(1, "x"), 0);
  EXPECT_EQ(state().fields, "");
  EXPECT_EQ(setCode("07"), 1);
  EXPECT_EQ(state().fields, "07");
}

TEST_F(Edit, TheTextToSetMayStandInTheBuffer) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  EXPECT_EQ(setCode(ZRV_Libelle_NC_szBuffer + 3), 1);
  EXPECT_EQ(state().fields, "Visite|Visite|01/01/95");
  EXPECT_EQ(setColumn(2, ZRV_Libelle_NC_szBuffer), 1);
  EXPECT_EQ(state().fields, "Visite|Visite|Visite");
}

TEST_F(Edit, WhatPassesTheBufferIsCutOff) {
  for (const std::size_t length : {1000, 1009, 1010, 1011, 1012, 1013, 1100, 5000}) {
    ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
    const std::string text(length, 'x');
    EXPECT_EQ(setColumn(1, text.c_str()), 1);
    const std::string whole = "07," + text + ",01/01/95";
    std::string expected = whole.substr(0, 1022);
    for (char &c : expected) {
      if (c == ',') c = '|';
    }
    if (expected.back() == '|') expected.pop_back();
    EXPECT_EQ(state().fields, expected) << length;
  }
}

TEST_F(Edit, SettingInABufferWithoutAnEndStaysInIt) {
  std::memset(ZRV_Libelle_NC_szBuffer, 'a', sizeof ZRV_Libelle_NC_szBuffer);
  EXPECT_EQ(setColumn(1, "x"), 0);
  EXPECT_EQ(state().fields, std::string(1022, 'a'));
  std::memset(ZRV_Libelle_NC_szBuffer, 'a', sizeof ZRV_Libelle_NC_szBuffer);
  ZRV_Libelle_NC_szBuffer[1000] = '\0';
  EXPECT_EQ(setColumn(1, "x"), 1);
  EXPECT_EQ(state().fields, std::string(1000, 'a') + "|x");
}

TEST_F(Edit, FlushingWritesTheBufferInPlaceOfTheLine) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  ASSERT_EQ(setColumn(1, kVisiteADomicile), 1);
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), withLine6("07,Visite \xE0 domicile,01/01/95"));
}

// Kept: the buffer stays joined.
TEST_F(Edit, AfterFlushingTheBufferIsOneField) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(state(), (State{6, 1, "07,Visite,01/01/95"}));
  EXPECT_EQ(idem(0, 0, "actes"), (test::Answer{1, "07,Visite,01/01/95"}));
  EXPECT_EQ(idem(2, 1, "actes"), (test::Answer{0, ""}));
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), actes());
  EXPECT_EQ(lookUp("07", 2, "actes"), (test::Answer{1, "01/01/95"}));
}

TEST_F(Edit, SettingSplitsAJoinedBufferAgain) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  ASSERT_EQ(flushLine(), 1);
  EXPECT_EQ(setColumn(1, "x"), 1);
  EXPECT_EQ(state(), (State{6, 1, "07|x|01/01/95"}));
}

TEST_F(Edit, FlushingToALineThatTheTableDoesNotHaveLeavesTheBufferSplit) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  for (const int line : {8, 0, -1}) {
    ZRV_Libelle_NC_il = line;
    const State before = state();
    EXPECT_EQ(flushLine(), 0);
    EXPECT_EQ(state(), before);
    EXPECT_EQ(tableText(), actes());
  }
}

TEST_F(Edit, FlushingDoesNotAskForTheReadFlag) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  ZRV_Libelle_NC_set_ligne(5);
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(state(), (State{5, 0, "07,Visite,01/01/95"}));
  std::string expected = actes();
  expected.replace(expected.find("02+Garde"), 8, "07,Visite,01/01/95");
  EXPECT_EQ(tableText(), expected);
}

TEST_F(Edit, FlushingKeepsWhatStandsFromTheFirstEmptyFieldOn) {
  oneLineRead("07+Visite++secret+x");
  ASSERT_EQ(setColumn(1, "y"), 1);
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), oneLineTable("07,y,+secret+x"));
  oneLineRead(",x");
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), oneLineTable(",x"));
  EXPECT_EQ(setCode("07"), 1);
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), oneLineTable("07,x"));
}

// Kept: an empty text followed by a flush ends the stored line there.
TEST_F(Edit, SettingAnEmptyTextAndFlushingEndsTheStoredLineThere) {
  table("actes", lines({"07,Visite,01/01/95,x"}));
  ASSERT_EQ(test::lookUp("07", 1, "actes").result, 1);
  EXPECT_EQ(setColumn(2, ""), 1);
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), lines({"07,Visite"}));
}

// Kept: a separator in a new text makes a further field.
TEST_F(Edit, ASeparatorInATextMakesFurtherFields) {
  for (const char *text : {"a,b", "a+b"}) {
    table("actes", lines({"07,Visite,x"}));
    ASSERT_EQ(test::lookUp("07", 1, "actes").result, 1);
    EXPECT_EQ(replaceColumn(1, text), 1);
    EXPECT_EQ(tableText(), lines({"07," + std::string(text) + ",x"}));
    EXPECT_EQ(test::lookUp("07", 2, "actes").out, "b");
    EXPECT_EQ(test::lookUp("07", 3, "actes").out, "x");
    EXPECT_EQ(setColumn(3, text), 1);
    EXPECT_EQ(flushLine(), 1);
    EXPECT_EQ(tableText(), lines({"07,a,b,a,b"}));
  }
}

TEST_F(Edit, FlushingAnUnchangedLineOnlyPutsCommas) {
  for (const std::string_view line : {"07", "", "07,a", "07,a,", "07,,", ",", ",,a", "07,a,,b,c"}) {
    oneLineRead(line);
    EXPECT_EQ(flushLine(), 1);
    EXPECT_EQ(tableText(), oneLineTable(line));
  }
  oneLineRead("a+b+c");
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), oneLineTable("a,b,c"));
}

TEST_F(Edit, FlushingABufferWithoutAnEndStaysInIt) {
  std::memset(ZRV_Libelle_NC_szBuffer, 'a', sizeof ZRV_Libelle_NC_szBuffer);
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), withLine6(std::string(1023, 'a')));
  EXPECT_EQ(state().fields, std::string(1023, 'a'));
}

TEST_F(Edit, InsertSetAndFlushAddARecord) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  ASSERT_EQ(insertLine(3), 1);
  ZRV_Libelle_NC_set_ligne(7);
  ASSERT_EQ(setCode("08"), 1);
  ASSERT_EQ(setColumn(1, "Acte"), 1);
  ASSERT_EQ(setColumn(2, "01/01/00"), 1);
  EXPECT_EQ(flushLine(), 1);
  EXPECT_EQ(tableText(), withLine6("07,Visite,01/01/95\r\n08,Acte,01/01/00"));
}

// --- Arguments ---------------------------------------------------------------------------------

TEST_F(Edit, NullArgumentsAreRefused) {
  table("actes", "a\rb");
  ZRV_Libelle_NC_set_ligne(1);
  EXPECT_EQ(ZRV_Libelle_NC_idem_replace("??", 2, 1, nullptr, "x"), 0);
  EXPECT_EQ(ZRV_Libelle_NC_idem_replace("??", 2, 1, "actes", nullptr), 0);
  EXPECT_EQ(ZRV_Libelle_NC_idem_insert("??", 2, nullptr, 1), 0);
  EXPECT_EQ(ZRV_Libelle_NC_idem_delete("??", 2, nullptr), 0);
  EXPECT_EQ(ZRV_Libelle_NC_idem_flush("??", 2, nullptr), 0);
  EXPECT_EQ(ZRV_Libelle_NC_set("??", 2, 1, "actes", nullptr), 0);
  EXPECT_EQ(tableText(), "a\rb");
  EXPECT_EQ(ZRV_Libelle_NC_idem_replace(nullptr, 2, 1, "actes", "x"), 1) << "no key is needed";
  EXPECT_EQ(tableText(), lines({"a", "b"}));
}

TEST_F(Edit, TablesAreFoundByTheOneRule) {
  setDirTables("Data:tables:");
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x", "actes"), 0);
  EXPECT_EQ(replaceColumn(1, "x", "actes.tab"), 1);
  EXPECT_EQ(tableText(), withLine6("07,x,01/01/95"));
  setDirTables("");
  setText(szDirTables, "Data:none");
  EXPECT_EQ(replaceColumn(1, "y", "actes"), 0);
  setText(szDirTables, "Data:tables:");
  EXPECT_EQ(replaceColumn(1, "y", "actes"), 1);
  EXPECT_EQ(tableText(), withLine6("07,y,01/01/95"));
}

}  // namespace
}  // namespace korvel
