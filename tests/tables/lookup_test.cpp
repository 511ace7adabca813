// SPDX-License-Identifier: MIT
// Tests of the lookups by code: results, buffers and line state, one case a line.
#include <korvel/tables.h>

#include "tests/tables/tables.h"

namespace korvel {
namespace {

using namespace std::string_view_literals;

using test::Answer;
using test::idem;
using test::idem0;
using test::kUntouched;
using test::lines;
using test::lookUp;
using test::lookUpDate;
using test::lookUpNext;
using test::state;
using test::State;

constexpr char kNoOut[] = "-";

class Lookup : public test::Tables {
 protected:
  Lookup() {
    table("actes", lines({"Actes", "Version: 2", "#DEBUT", "01,Consultation,01/01/95,31/12/99",
                          "02+Visite+B", "03", "#FIN"}));
  }
};

TEST_F(Lookup, GivesAColumnOfTheLineWithTheCode) {
  EXPECT_EQ(lookUp("01", 1, "actes"), (Answer{1, "Consultation"}));
  EXPECT_EQ(state(), (State{4, 1, "01|Consultation|01/01/95|31/12/99"}));
  EXPECT_EQ(lookUp("01", 3, "actes"), (Answer{1, "31/12/99"}));
  EXPECT_EQ(lookUp("01", 0, "actes"), (Answer{1, "01"}));
}

TEST_F(Lookup, PlusSeparatesLikeComma) {
  EXPECT_EQ(lookUp("02", 2, "actes"), (Answer{1, "B"}));
  EXPECT_EQ(state(), (State{5, 1, "02|Visite|B"}));
}

TEST_F(Lookup, HeadingAndLastLineMatchLikeAnyOther) {
  EXPECT_EQ(lookUp("Actes", 0, "actes"), (Answer{1, "Actes"}));
  EXPECT_EQ(state(), (State{1, 1, "Actes"}));
  EXPECT_EQ(lookUp("#FIN", 1, "actes"), (Answer{1, ""}));
  EXPECT_EQ(state(), (State{7, 1, "#FIN"}));
  EXPECT_EQ(lookUp("Version: 2", 0, "actes"), (Answer{1, "Version: 2"}));
}

TEST_F(Lookup, ColumnBeyondTheLastFieldIsEmptyButFound) {
  EXPECT_EQ(lookUp("01", 4, "actes"), (Answer{1, ""}));
  EXPECT_EQ(lookUp("03", 1, "actes"), (Answer{1, ""}));
  // The buffered line answers differently.
  lookUp("01", 1, "actes");
  EXPECT_EQ(idem(2, 4, "actes"), (Answer{0, ""}));
}

TEST_F(Lookup, ColumnBelowZeroIsEmpty) {
  EXPECT_EQ(lookUp("01", -1, "actes"), (Answer{1, ""}));
  EXPECT_EQ(lookUp("01", INT_MIN, "actes"), (Answer{1, ""}));
}

TEST_F(Lookup, LabelIsCutToTheBuffer) {
  const std::string label = "Consultation";
  EXPECT_EQ(lookUp("01", 1, "actes", 4), (Answer{1, "Con"}));
  for (const int size : {1, 2, 11, 12, 13, 14}) {
    EXPECT_EQ(lookUp("01", 1, "actes", size),
              (Answer{1, label.substr(0, static_cast<std::size_t>(size) - 1)}))
        << size;
  }
}

TEST_F(Lookup, BufferWithoutRoomIsNotWritten) {
  char out = 'x';
  for (const int size : {0, -1, INT_MIN}) {
    EXPECT_EQ(ZRV_Libelle_NC("01", 2, 1, "actes", &out, size), 1);
    EXPECT_EQ(out, 'x');
  }
  EXPECT_EQ(ZRV_Libelle_NC("01", 2, 1, "actes", nullptr, 10), 1);
}

// Kept: without a match the last line becomes the current one.
TEST_F(Lookup, WithoutMatchTheLastLineIsCurrent) {
  EXPECT_EQ(lookUp("99", 1, "actes"), (Answer{0, kNoOut}));
  EXPECT_EQ(state(), (State{7, 1, "#FIN"}));
  EXPECT_EQ(idem(0, 0, "actes"), (Answer{1, "#FIN"}));
}

TEST_F(Lookup, KeyMatchesCodesOfItsLengthOnly) {
  for (const std::string_view key : {"0", "1", "010", "01,", "01,Consultation"}) {
    EXPECT_EQ(lookUp(key, 1, "actes").result, 0) << key;
  }
}

TEST_F(Lookup, KeyIsCaseSensitive) {
  EXPECT_EQ(lookUp("ACTES", 0, "actes").result, 0);
  EXPECT_EQ(lookUp("#fin", 0, "actes").result, 0);
}

TEST_F(Lookup, KeyWithoutLengthMatchesNothing) {
  table("empty", lines({",label", "", "x,y"}));
  for (const int length : {0, -1, INT_MIN}) {
    EXPECT_EQ(ZRV_Libelle_NC("01", length, 1, "empty", nullptr, 0), 0) << length;
    EXPECT_EQ(state(), (State{3, 1, "x|y"}));
  }
  EXPECT_EQ(ZRV_Libelle_NC(nullptr, 2, 1, "empty", nullptr, 0), 0);
}

TEST_F(Lookup, QuestionMarkMatchesAnyCharacterOnBothSides) {
  table("wild", lines({"T", "0?,file", "1\xE9,accent", "?????,long"}));
  for (const char *key : {"01", "09", "0?", "0\xFF", "0,"}) {
    EXPECT_EQ(lookUp(key, 1, "wild"), (Answer{1, "file"})) << key;
  }
  EXPECT_EQ(lookUp("?\xE9", 1, "wild"), (Answer{1, "file"}));
  EXPECT_EQ(lookUp("1?", 1, "wild"), (Answer{1, "accent"}));
  EXPECT_EQ(lookUp("??", 1, "wild"), (Answer{1, "file"}));
  EXPECT_EQ(lookUp("abcde", 1, "wild"), (Answer{1, "long"}));
  EXPECT_EQ(lookUp("?", 0, "wild"), (Answer{1, "T"}));
  EXPECT_EQ(lookUp("21", 1, "wild").result, 0);
}

TEST_F(Lookup, MissingTableLeavesNoCurrentLine) {
  lookUp("01", 1, "actes");
  EXPECT_EQ(lookUp("01", 1, "nowhere"), (Answer{0, kNoOut}));
  EXPECT_EQ(ZRV_Libelle_NC_il, 0);
  EXPECT_EQ(ZRV_Libelle_NC_read, 0);
  EXPECT_EQ(test::fieldsOfBuffer(), "01|Consultation|01/01/95|31/12/99");
  EXPECT_EQ(lookUp("01", 1, nullptr), (Answer{0, kNoOut}));
}

TEST_F(Lookup, MissingDirectoryFailsBeforeAnyHandleIsTaken) {
  setText(szDirTables, "Data:nowhere");
  EXPECT_EQ(lookUp("01", 1, "actes"), (Answer{0, kNoOut}));
  EXPECT_EQ(DATA_FILE_ID, -1);
  // While a missing table leaves the counter of a failed opening.
  setText(szDirTables, "Data:tables");
  EXPECT_EQ(lookUp("01", 1, "nowhere"), (Answer{0, kNoOut}));
  EXPECT_EQ(DATA_FILE_ID, 0);
}

TEST_F(Lookup, FolderInPlaceOfATableIsNone) {
  mkdir(posixPath("folder").c_str(), 0777);
  EXPECT_EQ(lookUp("01", 1, "folder"), (Answer{0, kNoOut}));
  EXPECT_EQ(ZRV_Libelle_NC_read, 0);
}

TEST_F(Lookup, PathOfATableMayHave255Characters) {
  std::string directory = "Data";
  std::string folder = volumes_.folder();
  for (int i = 0; i < 2; ++i) {
    directory.append(":").append(100, 'd');
    folder.append("/").append(100, 'd');
    mkdir(folder.c_str(), 0777);
  }
  setText(szDirTables, directory);
  const std::string name(255 - directory.size() - 5, 'n');
  std::ofstream(folder + "/" + name + ".tab") << "01,far";
  EXPECT_EQ(lookUp("01", 1, name.c_str()), (Answer{1, "far"}));
  EXPECT_EQ(lookUp("01", 1, (name + "n").c_str()).result, 0);
  setDirTables(directory.c_str());
  EXPECT_EQ(lookUp("01", 1, (name + ".tab").c_str()), (Answer{1, "far"}));
}

TEST_F(Lookup, EmptyTableHasNoLine) {
  lookUp("01", 1, "actes");
  for (const std::string_view bytes : {"", "\n", "\n\n\n"}) {
    table("none", bytes);
    EXPECT_EQ(lookUp("01", 1, "none"), (Answer{0, kNoOut}));
    // Kept: the buffer holds what it held.
    EXPECT_EQ(state(), (State{0, 1, "01|Consultation|01/01/95|31/12/99"}));
  }
}

TEST_F(Lookup, SlotsAreTakenAndGivenBack) {
  const int file = File_Open("Data:tables:actes.tab", 1, 0);
  const int memory = MFil_Open("", 0, 0);
  EXPECT_EQ(lookUp("01", 1, "actes").result, 1);
  EXPECT_EQ(DATA_FILE_ID, file);
  EXPECT_EQ(DATA_MFIL_ID, memory);
  EXPECT_EQ(DATA_FILE_TAB[file + 1].mode, -1);
  EXPECT_EQ(DATA_MFIL_TAB[memory + 1].mode, -1);
  EXPECT_STREQ(DATA_FILE_TAB[file + 1].name, "Data:tables:actes.tab");
  EXPECT_EQ(File_Open("Data:tables:actes.tab", 1, 0), file + 1);
}

TEST_F(Lookup, WithoutAFreeFileSlotFails) {
  lookUp("01", 1, "actes");
  for (int i = 0; i < 5; ++i) ASSERT_EQ(File_Open("Data:tables:actes.tab", 1, 0), i);
  EXPECT_EQ(lookUp("02", 1, "actes"), (Answer{0, kNoOut}));
  EXPECT_EQ(state(), (State{0, 0, "01|Consultation|01/01/95|31/12/99"}));
  EXPECT_EQ(DATA_FILE_ID, 4);
  File_Close(2);
  EXPECT_EQ(lookUp("02", 1, "actes"), (Answer{1, "Visite"}));
  EXPECT_EQ(DATA_FILE_ID, 4);
}

TEST_F(Lookup, WithoutAFreeMemorySlotFails) {
  lookUp("01", 1, "actes");
  for (int i = 0; i < 5; ++i) ASSERT_EQ(MFil_Open("", 0, 0), i);
  EXPECT_EQ(lookUp("02", 1, "actes"), (Answer{0, kNoOut}));
  EXPECT_EQ(state(), (State{0, 0, "01|Consultation|01/01/95|31/12/99"}));
  EXPECT_EQ(DATA_FILE_ID, -1);
  MFil_Close(4);
  EXPECT_EQ(lookUp("02", 1, "actes"), (Answer{1, "Visite"}));
  EXPECT_EQ(DATA_MFIL_ID, 3);
}

// --- Lines ---------------------------------------------------------------------------------------

class LookupLines : public test::Tables {};

TEST_F(LookupLines, EndAtACarriageReturnAndLineFeedsAreIgnored) {
  const struct {
    std::string_view bytes;
    int line;  // of the code 02
  } kCases[] = {
      {"01,A\r\n02,B\r\n", 2},
      {"01,A\r02,B\r", 2},
      {"01,A\r\r02,B\r", 3},
      {"\r\n\r\n02,B\r\n", 3},
      {"01,A\r\n0\n2,\nB\r\n", 2},
      {"\n01,A\r02,B", 2},
      {"01,A\n\r\n02,B\n\r", 2},
      {"01,A\r\n02,B", 2},
      {"01,A\r\n\n\n\n02,B\r\n", 2},
      // The text before a lone line feed at the end is a line.
      {"01,A\r\n02,B\n", 2},
      {"01,A\r\n02,B\n\n", 2},
      {"02,B\n", 1},
  };
  for (const auto &row : kCases) {
    table("t", row.bytes);
    EXPECT_EQ(lookUp("02", 1, "t"), (Answer{1, "B"})) << row.bytes;
    EXPECT_EQ(state(), (State{row.line, 1, "02|B"})) << row.bytes;
    EXPECT_EQ(lookUp("99", 1, "t").result, 0) << row.bytes;
    EXPECT_EQ(state(), (State{row.line, 1, "02|B"})) << row.bytes;
  }
}

TEST_F(LookupLines, OfATableWithLineFeedsOnlyAreOne) {
  table("t", "01,A\n02,B\n03,C\n");
  EXPECT_EQ(lookUp("02", 1, "t").result, 0);
  EXPECT_EQ(state(), (State{1, 1, "01|A02|B03|C"}));
}

TEST_F(LookupLines, KeepTheirFirst1022Characters) {
  const std::string longLine = "01," + std::string(1497, 'x');
  ASSERT_EQ(longLine.size(), 1500U);
  table("t", lines({longLine, "02,B"}));
  EXPECT_EQ(
      test::answerOf([](char *out, int size) { return ZRV_Libelle_NC("01", 2, 1, "t", out, size); },
                     2000),
      (Answer{1, std::string(1019, 'x')}));
  EXPECT_EQ(lookUp("02", 1, "t"), (Answer{1, "B"}));
  EXPECT_EQ(ZRV_Libelle_NC_il, 2);
}

TEST_F(LookupLines, AroundTheLimitKeepWhatTheySay) {
  for (const std::size_t length : {1020U, 1021U, 1022U, 1023U, 1024U, 1025U}) {
    std::string line = std::string(length - 2, 'c') + ",L";
    table("t", lines({line, "02,B"}));
    const std::string kept = line.substr(0, 1022);
    const std::string code = kept.substr(0, kept.find(','));
    EXPECT_EQ(lookUp(code, 0, "t", 1100), (Answer{1, code})) << length;
    EXPECT_EQ(lookUp(code, 1, "t"), (Answer{1, length < 1023 ? "L" : ""})) << length;
    EXPECT_EQ(ZRV_Libelle_NC_il, 1) << length;
    EXPECT_EQ(lookUp(code + "c", 0, "t").result, 0) << length;
  }
}

TEST_F(LookupLines, EndTheirFieldsAtAnEmptyOne) {
  table("t", lines({"01,,C", "02,B,,D", ",X", ""}));
  EXPECT_EQ(lookUp("01", 2, "t"), (Answer{1, ""}));
  EXPECT_EQ(lookUp("02", 3, "t"), (Answer{1, ""}));
  EXPECT_EQ(lookUp("02", 1, "t"), (Answer{1, "B"}));
  EXPECT_EQ(lookUp("?", 0, "t").result, 0);
  EXPECT_EQ(state(), (State{4, 1, ""}));
}

TEST_F(LookupLines, EndAtANul) {
  table("t", "01,A\0,B\r\n\0\0\0\r\n02,B\r\n"sv);
  EXPECT_EQ(lookUp("01", 2, "t"), (Answer{1, ""}));
  EXPECT_EQ(lookUp("02", 1, "t"), (Answer{1, "B"}));
  EXPECT_EQ(ZRV_Libelle_NC_il, 3);
  table("nuls", std::string(3000, '\0'));
  EXPECT_EQ(lookUp("?", 0, "nuls").result, 0);
  EXPECT_EQ(state(), (State{1, 1, ""}));
}

TEST_F(LookupLines, WithoutEndAreOne) {
  table("t", std::string(700000, 'x'));
  EXPECT_EQ(lookUp("01", 1, "t").result, 0);
  EXPECT_EQ(state(), (State{1, 1, std::string(1022, 'x')}));
  EXPECT_EQ(lookUp(std::string(1022, 'x'), 1, "t"), (Answer{1, ""}));
  table("feeds", std::string(700000, '\n') + "01,A\r");
  EXPECT_EQ(lookUp("01", 1, "feeds"), (Answer{1, "A"}));
  EXPECT_EQ(ZRV_Libelle_NC_il, 1);
}

TEST_F(LookupLines, ThatMeetABlockEndAreWhole) {
  std::string bytes;
  for (int i = 0; i < 40000; ++i) bytes += std::to_string(100000 + i) + ",Ligne\r\n";
  table("t", bytes);
  for (const int i : {0, 1, 17475, 17476, 17477, 17478, 34951, 34952, 34953, 39999}) {
    EXPECT_EQ(lookUp(std::to_string(100000 + i), 1, "t"), (Answer{1, "Ligne"})) << i;
    EXPECT_EQ(ZRV_Libelle_NC_il, i + 1);
  }
  EXPECT_EQ(lookUp("200000", 1, "t").result, 0);
  EXPECT_EQ(state(), (State{40000, 1, "139999|Ligne"}));
}

TEST_F(LookupLines, LeaveTheBufferBehindThemAlone) {
  table("t", lines({"01,A"}));
  std::memset(ZRV_Libelle_NC_szBuffer, 'x', sizeof ZRV_Libelle_NC_szBuffer);
  lookUp("01", 1, "t");
  EXPECT_EQ(std::string_view(ZRV_Libelle_NC_szBuffer, 8), "01\0A\0\0xx"sv);
}

// --- Codes as numbers ----------------------------------------------------------------------------

class NumberLookup : public test::Tables {
 protected:
  static Answer lookUpNumber(int code, int column) {
    return test::answerOf(
        [&](char *out, int outSize) { return ZRV_Libelle_2(code, column, "actes", out, outSize); });
  }
};

TEST_F(NumberLookup, UsesTwoDigits) {
  table("actes", lines({"T", "7,short", "07,Visite", "00,zero", "99,last", "100,long"}));
  EXPECT_EQ(lookUpNumber(7, 1), (Answer{1, "Visite"}));
  EXPECT_EQ(state(), (State{3, 1, "07|Visite"}));
  EXPECT_EQ(lookUpNumber(0, 1), (Answer{1, "zero"}));
  EXPECT_EQ(lookUpNumber(99, 0), (Answer{1, "99"}));
}

TEST_F(NumberLookup, OutsideZeroTo99MatchesNothing) {
  table("actes", lines({"-1,negative", "??,any", "100,long"}));
  for (const int code : {-1, -9, -10, 100, 12345, INT_MAX, INT_MIN}) {
    EXPECT_EQ(lookUpNumber(code, 1), (Answer{0, kNoOut})) << code;
    EXPECT_EQ(state(), (State{3, 1, "100|long"})) << code;
  }
  EXPECT_EQ(lookUpNumber(99, 1), (Answer{1, "any"}));
}

// --- The same line again -------------------------------------------------------------------------

class Idem : public test::Tables {
 protected:
  Idem() { table("actes", lines({"T", "01,A,B,C", "02,D"})); }
};

TEST_F(Idem, ReadsTheBufferWithoutTheFile) {
  lookUp("01", 1, "actes");
  std::remove(posixPath("actes").c_str());
  EXPECT_EQ(idem(2, 2, "actes"), (Answer{1, "B"}));
  EXPECT_EQ(idem(0, 3, "actes"), (Answer{1, "C"}));
  EXPECT_EQ(idem(0, 0, "actes"), (Answer{1, "01"}));
  EXPECT_EQ(idem(2, 4, "actes"), (Answer{0, ""}));
  EXPECT_EQ(state(), (State{2, 1, "01|A|B|C"}));
}

TEST_F(Idem, ColumnZeroWithAKeyWalksToTheEndOfTheFields) {
  lookUp("01", 1, "actes");
  EXPECT_EQ(idem(2, 0, "actes"), (Answer{0, ""}));
  EXPECT_EQ(idem0(2, 0, "actes"), (Answer{1, ""}));
}

TEST_F(Idem, WithoutTheFlagReadsTheFile) {
  ZRV_Libelle_NC_set_ligne(3);
  EXPECT_EQ(state(), (State{3, 0, ""}));
  EXPECT_EQ(ZRV_Libelle_NC_get_ligne(), 3);
  EXPECT_EQ(idem(2, 1, "actes"), (Answer{1, "D"}));
  EXPECT_EQ(state(), (State{3, 1, "02|D"}));
  // The file's answer for a missing column is 1, the buffer's 0.
  ZRV_Libelle_NC_set_ligne(3);
  EXPECT_EQ(idem(2, 2, "actes"), (Answer{1, ""}));
  EXPECT_EQ(idem(2, 2, "actes"), (Answer{0, ""}));
}

TEST_F(Idem, TrustsTheBufferWhateverIsInIt) {
  std::memset(ZRV_Libelle_NC_szBuffer, 'x', sizeof ZRV_Libelle_NC_szBuffer);
  ZRV_Libelle_NC_read = 1;
  EXPECT_EQ(idem(2, 1, "actes"), (Answer{0, ""}));
  EXPECT_EQ(test::answerOf(
                [](char *out, int size) {
                  return ZRV_Libelle_NC_idem(nullptr, 0, 0, "actes", out, size);
                },
                1100),
            (Answer{1, std::string(1024, 'x')}));
}

TEST_F(Idem, OutMayBeTheBuffer) {
  lookUp("01", 1, "actes");
  EXPECT_EQ(ZRV_Libelle_NC_idem("", 1, 2, "actes", ZRV_Libelle_NC_szBuffer, 1024), 1);
  EXPECT_STREQ(ZRV_Libelle_NC_szBuffer, "B");
}

TEST_F(Idem, FromTheFileReadsItAgain) {
  lookUp("01", 1, "actes");
  table("actes", lines({"T", "09,new", "02,D"}));
  EXPECT_EQ(idem(2, 1, "actes"), (Answer{1, "A"}));
  EXPECT_EQ(idem0(2, 1, "actes"), (Answer{1, "new"}));
  EXPECT_EQ(idem0(0, 0, "actes"), (Answer{1, "09"}));
  EXPECT_EQ(state(), (State{2, 1, "09|new"}));
}

// Kept: the last line is left as it was read.
TEST_F(Idem, BeyondTheLastLineLeavesThatLineUnsplit) {
  for (const int line : {4, 100, INT_MAX, 0, -1, INT_MIN}) {
    ZRV_Libelle_NC_set_ligne(line);
    EXPECT_EQ(idem0(2, 1, "actes"), (Answer{0, kNoOut})) << line;
    EXPECT_EQ(state(), (State{line, 1, "02,D"})) << line;
  }
}

TEST_F(Idem, WithoutTheTableClearsTheFlag) {
  lookUp("01", 1, "actes");
  EXPECT_EQ(idem0(2, 1, "nowhere"), (Answer{0, kNoOut}));
  EXPECT_EQ(state(), (State{2, 0, "01|A|B|C"}));
}

TEST_F(Idem, FindsEveryLineOfALargeTable) {
  std::string bytes;
  for (int i = 1; i <= 40000; ++i) bytes += "x," + std::to_string(i) + (i % 7 ? "\r\n" : "\r");
  table("t", bytes);
  for (const int line : {1, 2, 300, 20000, 39999, 40000}) {
    ZRV_Libelle_NC_set_ligne(line);
    EXPECT_EQ(idem0(2, 1, "t"), (Answer{1, std::to_string(line)}));
  }
  ZRV_Libelle_NC_set_ligne(40001);
  EXPECT_EQ(idem0(2, 1, "t"), (Answer{0, kNoOut}));
}

// The lines before the wanted one are counted by pieces of the file; it may begin in one piece and
// end in the next.
TEST_F(Idem, FindsEveryLineOnBothSidesOfWhatIsCountedAtOnce) {
  std::string bytes;
  for (int i = 1; i <= 2000; ++i) bytes += "x," + std::to_string(i) + "\r\n";
  table("t", bytes);
  for (int line = 1; line <= 2000; ++line) {
    ZRV_Libelle_NC_set_ligne(line);
    EXPECT_EQ(idem0(2, 1, "t"), (Answer{1, std::to_string(line)}));
    ZRV_Libelle_NC_set_ligne(line - 1);
    EXPECT_EQ(lookUpNext("x", 1, "t"), (Answer{1, std::to_string(line)}));
  }
}

// --- The next line -------------------------------------------------------------------------------

class NextLookup : public test::Tables {
 protected:
  NextLookup() {
    table("actes", lines({"T", "V", "#DEBUT", "01,a", "07,first", "02,b", "03,c", "04,d",
                          "07,second,x", "#FIN"}));
  }
};

TEST_F(NextLookup, GoesFromOneLineOfACodeToTheNext) {
  EXPECT_EQ(lookUp("07", 1, "actes"), (Answer{1, "first"}));
  EXPECT_EQ(ZRV_Libelle_NC_get_ligne(), 5);
  EXPECT_EQ(lookUpNext("07", 1, "actes"), (Answer{1, "second"}));
  EXPECT_EQ(state(), (State{9, 1, "07|second|x"}));
  EXPECT_EQ(lookUpNext("07", 1, "actes"), (Answer{0, kNoOut}));
  // Kept: number and flag stay, but the buffer holds the last line.
  EXPECT_EQ(state(), (State{9, 1, "#FIN"}));
}

TEST_F(NextLookup, StartsBehindAnyLineSet) {
  const struct {
    int from;
    int found;
  } kCases[] = {{INT_MIN, 5}, {-1, 5}, {0, 5}, {4, 5}, {5, 9}, {8, 9}};
  for (const auto &row : kCases) {
    ZRV_Libelle_NC_set_ligne(row.from);
    EXPECT_EQ(lookUpNext("07", 1, "actes").result, 1) << row.from;
    EXPECT_EQ(ZRV_Libelle_NC_il, row.found);
    EXPECT_EQ(ZRV_Libelle_NC_read, 1);
  }
  for (const int from : {9, 10, 11, INT_MAX}) {
    ZRV_Libelle_NC_set_ligne(from);
    EXPECT_EQ(lookUpNext("07", 1, "actes"), (Answer{0, kNoOut})) << from;
    EXPECT_EQ(state(), (State{from, 0, "#FIN"})) << from;
  }
}

TEST_F(NextLookup, ColumnZeroOrBeyondTheLastIsEmpty) {
  for (const int column : {0, -1, 2}) {
    ZRV_Libelle_NC_set_ligne(0);
    EXPECT_EQ(lookUpNext("07", column, "actes"), (Answer{1, ""})) << column;
  }
}

TEST_F(NextLookup, WithoutTheTableChangesNothing) {
  lookUp("07", 1, "actes");
  EXPECT_EQ(lookUpNext("07", 1, "nowhere"), (Answer{0, kNoOut}));
  EXPECT_EQ(state(), (State{5, 1, "07|first"}));
}

// --- Validity periods ----------------------------------------------------------------------------

class DatedLookup : public test::Tables {
 protected:
  DatedLookup() {
    table("tarifs", lines({"T", "V", "#DEBUT", "01,old,01/01/95,31/12/99", "02,other",
                           "01,new,01/01/00,31/12/49", "03,always,,", "04,from,01/01/95",
                           "05,bad,xx/yy/zz,31/12/99", "06,long,01/01/1995,31/12/1999",
                           "07,a,01/01/95,02/01/95", "07,b,,", "08,a,01/06/95,02/06/95",
                           "08,b,01/01/95", "#FIN"}));
  }
};

TEST_F(DatedLookup, TakesTheLineInForce) {
  const struct {
    int date;
    const char *label;
    int line;
  } kCases[] = {
      {20030101, "new", 6}, {19950101, "old", 4}, {19991231, "old", 4},
      {20000101, "new", 6}, {20491231, "new", 6}, {19970615, "old", 4},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(lookUpDate("01", 1, "tarifs", 2, row.date), (Answer{1, row.label})) << row.date;
    EXPECT_EQ(ZRV_Libelle_NC_il, row.line) << row.date;
  }
}

TEST_F(DatedLookup, BeforeAndBehindAllPeriodsFindsNone) {
  for (const int date : {19940101, 19941231, 20500101, 0, -1, INT_MAX}) {
    // Out holds the column of the last line with the code.
    EXPECT_EQ(lookUpDate("01", 1, "tarifs", 2, date), (Answer{0, "new"})) << date;
    EXPECT_EQ(state(), (State{6, 1, "#FIN"})) << date;
  }
}

TEST_F(DatedLookup, LineWithoutPeriodIsAlwaysInForce) {
  for (const int date : {0, 19940101, 20990101}) {
    EXPECT_EQ(lookUpDate("02", 1, "tarifs", 2, date), (Answer{1, "other"}));
    EXPECT_EQ(lookUpDate("03", 1, "tarifs", 2, date), (Answer{1, "always"}));
    EXPECT_EQ(lookUpDate("04", 1, "tarifs", 2, date), (Answer{1, "from"}));
    EXPECT_EQ(lookUpDate("05", 1, "tarifs", 2, date), (Answer{1, "bad"}));
  }
  EXPECT_EQ(lookUpDate("07", 1, "tarifs", 2, 20030101), (Answer{1, "b"}));
  EXPECT_EQ(lookUpDate("08", 1, "tarifs", 2, 20030101), (Answer{1, "b"}));
}

TEST_F(DatedLookup, DateIsReadFromTheFirstEightCharacters) {
  // 01/01/1995 reads as 01/01/19, that is 2019 (the year is placed from 1950 on).
  EXPECT_EQ(lookUpDate("06", 1, "tarifs", 2, 20190101), (Answer{1, "long"}));
  EXPECT_EQ(lookUpDate("06", 1, "tarifs", 2, 19970101), (Answer{0, "long"}));
}

TEST_F(DatedLookup, UnknownCodeLeavesOutAlone) {
  EXPECT_EQ(lookUpDate("99", 1, "tarifs", 2, 20030101), (Answer{0, kNoOut}));
  EXPECT_EQ(state(), (State{15, 1, "#FIN"}));
  EXPECT_EQ(lookUpDate("01", 1, "nowhere", 2, 20030101), (Answer{0, kNoOut}));
}

TEST_F(DatedLookup, DateColumnsOutsideTheLineMeanNoPeriod) {
  for (const int column : {INT_MIN, -1, 0, 4, 99, INT_MAX}) {
    EXPECT_EQ(lookUpDate("01", 1, "tarifs", column, 19000101), (Answer{1, "old"})) << column;
  }
}

// Kept: the first line gives its code for column 0, the ones after it nothing.
TEST_F(DatedLookup, ColumnZeroIsTheCodeOfTheFirstLineOnly) {
  EXPECT_EQ(lookUpDate("01", 0, "tarifs", 2, 19960101), (Answer{1, "01"}));
  EXPECT_EQ(lookUpDate("01", 0, "tarifs", 2, 20030101), (Answer{1, ""}));
}

}  // namespace
}  // namespace korvel
