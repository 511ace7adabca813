// SPDX-License-Identifier: MIT
// The data lines of a table: their codes, and the walk with a callback.
#include <climits>
#include <cstring>

#include "tests/tables/edits.h"

namespace korvel {
namespace {

using test::Answer;
using test::answerOf;
using test::insertLine;
using test::lines;
using test::lookUp;
using test::PoisonedBuffer;

Answer list(const char *name, int size = 64) {
  return answerOf([&](char *out, int outSize) { return ZRV_Table_liste(name, out, outSize); },
                  size);
}

class Listing : public test::Edits {
 protected:
  void SetUp() override { handed().clear(); }

  static std::vector<std::string> &handed() {
    static std::vector<std::string> all;
    return all;
  }
  // Takes a line's fields, '|' between them.
  static void take(char *fields) {
    std::string line;
    for (const char *field = fields; *field != '\0'; field += std::strlen(field) + 1) {
      if (!line.empty()) line += '|';
      line += field;
    }
    handed().push_back(line);
  }

  struct Scanned {
    int result;
    int first;
    int last;
    friend bool operator==(const Scanned &, const Scanned &) = default;
    friend std::ostream &operator<<(std::ostream &to, const Scanned &scanned) {
      return to << scanned.result << ' ' << scanned.first << ' ' << scanned.last;
    }
  };
  static Scanned scan(const char *name, int first = 0, TableLine_t perLine = &Listing::take) {
    Scanned scanned = {0, first, -7};
    scanned.result = ZRV_Table_scan(name, &scanned.first, &scanned.last, perLine);
    return scanned;
  }
  using Lines = std::vector<std::string>;
};

// --- Codes -------------------------------------------------------------------------------------

TEST_F(Listing, ATableWithoutDataLinesHasNoCodes) {
  ZRV_Table_create("new", "2", "Actes");
  EXPECT_EQ(list("new"), (Answer{1, ""}));
}

TEST_F(Listing, CodesAreJoinedByPlus) {
  table("t", lines({"Actes", "Version: 2", "#DEBUT", "01,A", "02,B", "#FIN"}));
  EXPECT_EQ(list("t"), (Answer{1, "01+02"}));
}

TEST_F(Listing, CodesStandBetweenTheMarks) {
  constexpr struct {
    std::string_view text;
    int result;
    std::string_view codes;
  } kCases[] = {
      {"", 0, ""},
      {"01,A\r02,B\r", 0, ""},
      {"#FIN\r01,A\r", 0, ""},
      {"#DEBUT", 1, ""},
      {"#DEBUT\r01,A", 1, "01"},
      {"#DEBUT\r01,A\r02\n", 1, "01+02"},
      {"#DEBUT,x\r01,A\r#FIN,y\r02,B\r", 1, "01"},
      {"#DEBUT\r01,A\r#FIN\r02,B\r#DEBUT\r03,C\r#FIN\r", 1, "01+03"},
      // Marks are compared as codes are: '?' in the file equals any character.
      {"#DEB?T\r01,A\r#?IN\r02,B\r", 1, "01"},
      {"??????\r01,A\r????\r02,B\r", 1, "01"},
      {"#debut\r01,A\r", 0, ""},
      // Kept: a further begin mark between the marks counts as one.
      {"#DEBUT\r01\r#DEBUT\r02\r", 1, "01+#DEBUT+02"},
      // Kept: an empty code leaves its separator.
      {"#DEBUT\r01\r\r,x\r02\r", 1, "01+++02"},
      {"#DEBUT\r\r,x\r02\r", 1, "02"},
      {"#DEBUT\r01+A\r", 1, "01"},
  };
  for (const auto &row : kCases) {
    table("t", row.text);
    EXPECT_EQ(list("t"), (Answer{row.result, std::string(row.codes)})) << row.text;
  }
}

// Kept: a code that does not fit is left out, the separator before it is not, and shorter codes
// may follow.
TEST_F(Listing, TheListStaysInItsBuffer) {
  table("t", lines({"#DEBUT", "01", "ABCDE", "02", "3"}));
  constexpr struct {
    int size;
    std::string_view codes;
  } kCases[] = {{0, ""},
                {1, ""},
                {2, "3"},
                {3, "01"},
                {4, "01+"},
                {5, "01++"},
                {6, "01+++"},
                {7, "01++02"},
                {8, "01++02+"},
                {9, "01+ABCDE"},
                {10, "01+ABCDE+"},
                {14, "01+ABCDE+02+3"},
                {13, "01+ABCDE+02+"}};
  for (const auto &row : kCases) {
    PoisonedBuffer out(static_cast<std::size_t>(row.size));
    EXPECT_EQ(ZRV_Table_liste("t", out.data(), out.capacity()), 1);
    EXPECT_TRUE(out.guardsIntact());
    EXPECT_EQ(out.text(), row.codes) << row.size;
  }
  EXPECT_EQ(ZRV_Table_liste("t", nullptr, 10), 1);
  PoisonedBuffer untouched(8);
  EXPECT_EQ(ZRV_Table_liste("t", untouched.data(), INT_MIN), 1);
  EXPECT_TRUE(untouched.untouchedFrom(0));
}

TEST_F(Listing, LinesCountWith254Characters) {
  for (const std::size_t length : {253U, 254U, 255U, 256U, 1000U}) {
    table("t", "#DEBUT\r\n" + std::string(length, 'c') + "\r\n02\r\n");
    EXPECT_EQ(list("t", 2000),
              (Answer{1, std::string(std::min<std::size_t>(length, 254), 'c') + "+02"}));
  }
}

TEST_F(Listing, OnlyTheDefaultDirectoryIsLookedIn) {
  table("t", "#DEBUT\r01\r");
  setDirTables("Data:none");
  EXPECT_EQ(list("t"), (Answer{1, "01"}));
  EXPECT_EQ(list("t.tab"), (Answer{0, ""}));
  setDirTables("");
  setText(szDirTables, "Data:tables:");
  EXPECT_EQ(list("t"), (Answer{1, "01"}));
  setText(szDirTables, "Data:none");
  EXPECT_EQ(list("t"), (Answer{0, ""}));
  setText(szDirTables, "Data:tables");
  EXPECT_EQ(list("none"), (Answer{0, ""}));
  EXPECT_EQ(list(nullptr), (Answer{0, ""}));
}

TEST_F(Listing, TheStateIsLeftAlone) {
  ASSERT_EQ(lookUp("07", 1, "actes").result, 1);
  const test::State before = test::state();
  EXPECT_EQ(list("actes").result, 1);
  EXPECT_EQ(scan("actes").result, 1);
  EXPECT_EQ(test::state(), before);
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_FILE_ID, -1);
  EXPECT_EQ(DATA_MFIL_ID, -1);
}

TEST_F(Listing, CodesNeedAFileHandleAndNoMemoryFile) {
  for (int i = 0; i < 5; ++i) ASSERT_EQ(MFil_Open("", 0, 0), i);
  EXPECT_EQ(list("actes"), (Answer{1, "01+02+07"}));
  for (int i = 0; i < 4; ++i) ASSERT_EQ(File_Open("Data:tables:actes.tab", 1, 0), i);
  EXPECT_EQ(list("actes"), (Answer{1, "01+02+07"}));
  ASSERT_EQ(File_Open("Data:tables:actes.tab", 1, 0), 4);
  EXPECT_EQ(list("actes"), (Answer{0, ""}));
  closeHandles();
}

// --- Walk --------------------------------------------------------------------------------------

TEST_F(Listing, TheWalkHandsOverTheDataLines) {
  table("t", lines({"Actes", "Version: 2", "#DEBUT", "01,A", "02,B", "#FIN"}));
  EXPECT_EQ(scan("t"), (Scanned{1, 4, 5}));
  EXPECT_EQ(handed(), (Lines{"01|A", "02|B"}));
}

TEST_F(Listing, TheWalkFollowsTheMarks) {
  struct Case {
    std::string_view text;
    Scanned scanned;
    Lines lines;
  };
  const Case kCases[] = {
      {"", {0, 0, -7}, {}},
      {"\n", {0, 0, -7}, {}},
      {"a", {0, 0, 0}, {}},
      {"a\rb\rc\r", {0, 0, 2}, {}},
      {"#DEBUT", {1, 2, 0}, {}},
      {"#DEBUT\r01,A\r02+B\n", {1, 2, 2}, {"01|A", "02|B"}},
      // Lines after the end mark count for the last line.
      {"#DEBUT\r01\r#FIN\rx\ry\r", {1, 2, 4}, {"01"}},
      {"#DEBUT\r01\r#FIN\r02\r#DEBUT\r03\r#FIN\r", {1, 2, 6}, {"01", "03"}},
      {"t\r#DEB?T\r01\r#F?N\r02\r", {1, 3, 4}, {"01"}},
      // Kept: a further begin mark between the marks counts as one.
      {"#DEBUT\r01\r#DEBUT\r02\r", {1, 2, 3}, {"01", "#DEBUT", "02"}},
      {"#DEBUT\r\r,x\r01,,y\r", {1, 2, 3}, {"", "", "01"}},
  };
  for (const Case &row : kCases) {
    handed().clear();
    table("t", row.text);
    EXPECT_EQ(scan("t"), row.scanned) << row.text;
    EXPECT_EQ(handed(), row.lines) << row.text;
  }
}

TEST_F(Listing, AFirstLineThatIsGivenStays) {
  EXPECT_EQ(scan("actes", 17), (Scanned{1, 17, 6}));
  EXPECT_EQ(scan("actes", -1), (Scanned{1, -1, 6}));
}

TEST_F(Listing, TheWalkDoesWithoutCallbackAndOutputs) {
  EXPECT_EQ(scan("actes", 0, nullptr), (Scanned{1, 4, 6}));
  EXPECT_EQ(ZRV_Table_scan("actes", nullptr, nullptr, &Listing::take), 1);
  EXPECT_EQ(handed().size(), 3U);
}

TEST_F(Listing, AWalkOverWhatDoesNotOpenTouchesNothing) {
  mkdir(posixPath("sub").c_str(), 0777);
  for (const char *name : {"none", "sub", static_cast<const char *>(nullptr)}) {
    EXPECT_EQ(scan(name), (Scanned{0, 0, -7}));
  }
  for (int i = 0; i < 5; ++i) ASSERT_EQ(MFil_Open("", 0, 0), i);
  EXPECT_EQ(scan("actes"), (Scanned{0, 0, -7}));
}

TEST_F(Listing, TheWalkUsesTheOnePathRule) {
  setDirTables("Data:tables:");
  EXPECT_EQ(scan("actes.tab"), (Scanned{1, 4, 6}));
  EXPECT_EQ(scan("actes"), (Scanned{0, 0, -7}));
}

TEST_F(Listing, WalkedLinesCountWith254Characters) {
  for (const std::size_t length : {253U, 254U, 255U, 256U, 1000U}) {
    handed().clear();
    table("t", "#DEBUT\r\n01," + std::string(length - 3, 'c') + "\r\n02\r\n");
    EXPECT_EQ(scan("t"), (Scanned{1, 2, 2}));
    const std::string text(std::min<std::size_t>(length, 254) - 3, 'c');
    EXPECT_EQ(handed(), (Lines{"01|" + text, "02"})) << length;
  }
}

TEST_F(Listing, TheCallbackMayWriteIntoItsLine) {
  EXPECT_EQ(scan("actes", 0,
                 [](char *fields) {
                   take(fields);
                   std::memset(fields, 'x', std::strlen(fields));
                 }),
            (Scanned{1, 4, 6}));
  EXPECT_EQ(handed(),
            (Lines{"01|Consultation|01/01/95|31/12/99", "02|Garde", "07|Visite|01/01/95"}));
}

// Whatever becomes of the file during the walk, and whatever its size.
TEST_F(Listing, TheTableIsWalkedAsItWasAtTheCall) {
  static std::string path;
  path = posixPath("t");
  constexpr TableLine_t kMeddlings[] = {
      [](char *) { EXPECT_EQ(truncate(path.c_str(), 0), 0); },
      [](char *) { EXPECT_EQ(truncate(path.c_str(), 300000), 0); },
      [](char *) { unlink(path.c_str()); },
      // Written over in place.
      [](char *) {
        std::FILE *file = std::fopen(path.c_str(), "r+b");
        ASSERT_NE(file, nullptr);
        std::fseek(file, 0, SEEK_SET);
        const std::string other(600000, 'x');
        std::fwrite(other.data(), 1, other.size(), file);
        std::fclose(file);
      },
      [](char *) {
        std::FILE *file = std::fopen(path.c_str(), "ab");
        ASSERT_NE(file, nullptr);
        std::fputs("99999,more\r\n", file);
        std::fclose(file);
      },
  };
  static TableLine_t meddle;
  for (const std::size_t size : {100U, 262143U, 262144U, 262145U, 600000U}) {
    std::string text = "t\r\nv\r\n#DEBUT\r\n";
    Lines expected;
    while (text.size() < size) {
      expected.push_back(std::to_string(expected.size()) + "|Libell\xE9");
      text += std::to_string(expected.size() - 1) + ",Libell\xE9\r\n";
    }
    text += "#FIN\r\n";
    for (const TableLine_t one : kMeddlings) {
      table("t", text);
      handed().clear();
      meddle = one;
      const auto count = static_cast<int>(expected.size());
      EXPECT_EQ(scan("t", 0,
                     [](char *fields) {
                       if (handed().empty()) meddle(fields);
                       take(fields);
                     }),
                (Scanned{1, 4, 3 + count}))
          << size;
      EXPECT_TRUE(handed() == expected) << size;
      EXPECT_EQ(DATA_FILE_ID, -1);
      EXPECT_EQ(DATA_MFIL_ID, -1);
    }
  }
}

TEST_F(Listing, TheCallbackMayUseAndEditTheTable) {
  EXPECT_EQ(scan("actes", 0,
                 [](char *fields) {
                   take(fields);
                   EXPECT_EQ(lookUp("07", 1, "actes").result, 1);
                   EXPECT_EQ(insertLine(1), 1);
                   EXPECT_EQ(list("actes").result, 1);
                   EXPECT_EQ(ZRV_Table_scan("actes", nullptr, nullptr, nullptr), 1);
                 }),
            (Scanned{1, 4, 6}));
  EXPECT_EQ(handed().size(), 3U) << "the table is walked as it was";
  EXPECT_EQ(list("actes").out,
            "01+02+07+N\xE9"
            "ant+N\xE9"
            "ant+N\xE9"
            "ant");
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_MFIL_ID, -1);
}

}  // namespace
}  // namespace korvel
