// SPDX-License-Identifier: MIT
// What is told of tables that are not there, of keys and columns that no line has, and of fields
// that are cut.
#include "tables/misuse.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/tables.h>

#include "files/lock.h"
#include "tests/files/faults.h"
#include "tests/files/processes.h"
#include "tests/support/sanitizer.h"
#include "tests/support/told.h"
#include "tests/tables/tables.h"

namespace korvel::test {
namespace {

class TablesMisuse : public Tables {
 protected:
  TablesMisuse() {
    table("a", lines({"Titre", "Version: 1", "#DEBUT", "AA,premier,01/01/04,31/12/04", "BB,second",
                      "#FIN"}));
  }
  // Makes the line of AA the current one.
  void lookUpFirst() { ASSERT_EQ(lookUp("AA", 1, "a").result, 1); }

  // A lookup in a table of this name.
  std::string lineFor(const char *name) {
    return told([&] { ZRV_Libelle_NC("AA", 2, 1, name, out_, sizeof out_); });
  }

  // Of the line in the buffer.
  static std::size_t fieldsInBuffer() {
    std::size_t count = 1;
    for (auto fields = tables::bufferFields(); fields.next();) ++count;
    return count;
  }

  char out_[64] = "";
};

TEST_F(TablesMisuse, ATableThatIsNotThere) {
  const std::string call = "ZRV_Libelle_NC(\"AA\", 2, 1, ";
  EXPECT_EQ(lineFor("a"), "");
  EXPECT_EQ(lineFor("b"), call + "\"b\", ..., 64): there is no table \"Data:tables:b.tab\"");
  EXPECT_EQ(lineFor("a.tab"),
            call + "\"a.tab\", ..., 64): there is no table \"Data:tables:a.tab.tab\"");
  EXPECT_EQ(lineFor(nullptr), call + "null, ..., 64): argument 4 is null");
  EXPECT_EQ(
      lineFor("/srv/a"),
      call +
          "\"/srv/a\", ..., 64): \"/srv/a\" is a path of the system, and a colon path is meant: "
          "\"Volume:folder:file\"");
  const std::string longest(250, 'a');
  EXPECT_NE(lineFor(longest.c_str()).find("would have more than 255 characters"),
            std::string::npos);
  setText(szDirTables, "Data:none");
  EXPECT_EQ(lineFor("a"), call + "\"a\", ..., 64): there is no folder \"Data:none\"");
  setText(szDirTables, "/srv/tables");
  EXPECT_EQ(
      lineFor("a"),
      call +
          "\"a\", ..., 64): \"/srv/tables\" is a path of the system, and a colon path is meant: "
          "\"Volume:folder:file\"");
  setText(szDirTables, "");
  EXPECT_EQ(lineFor("a"),
            call +
                "\"a\", ..., 64): there is no directory of tables: call setDirTables, or set "
                "szDirTables");
}

TEST_F(TablesMisuse, ATableThatCannotBeOpened) {
  for (int i = 0; i < 5; ++i) MFil_Open("", 0, 0);
  EXPECT_EQ(lineFor("a"),
            "ZRV_Libelle_NC(\"AA\", 2, 1, \"a\", ..., 64): all 5 memory files are open: close one "
            "with MFil_Close");
  for (int i = 0; i < 5; ++i) MFil_Close(i);
  volumes_.file("tables/a.txt", "");
  for (int i = 0; i < 5; ++i) File_Open("Data:tables:a.txt", 1, 0);
  EXPECT_EQ(lineFor("a"),
            "ZRV_Libelle_NC(\"AA\", 2, 1, \"a\", ..., 64): all 5 file handles are open: close one "
            "with File_Close");
}

TEST_F(TablesMisuse, ADirectory) {
  EXPECT_TOLD(setDirTables("Data:none"),
              "setDirTables(\"Data:none\"): there is no folder \"Data:none\"");
  EXPECT_TOLD(setDirTables("/srv"),
              "setDirTables(\"/srv\"): \"/srv\" is a path of the system, and a colon path is "
              "meant: \"Volume:folder:file\"");
  EXPECT_TOLD(setDirTables(nullptr), "setDirTables(null): argument 1 is null");
  const std::string longest(256, 'a');
  EXPECT_NE(told([&] { setDirTables(longest.c_str()); }).find("is not taken: at most 255"),
            std::string::npos);
  EXPECT_TOLD(setDirTables("Data:tables"), "");
  EXPECT_TOLD(setDirTables(""), "");
}

TEST_F(TablesMisuse, AKeyThatMatchesNoLine) {
  // That of a field that nobody has filled in.
  EXPECT_TOLD(ZRV_Libelle_NC("AA", 0, 1, "a", out_, 64), "");
  EXPECT_FAILS(ZRV_Libelle_NC("AA", -1, 1, "a", out_, 64), 0,
               "ZRV_Libelle_NC(..., -1, 1, \"a\", ..., 64): a key has a length of 0 or more");
  EXPECT_FAILS(ZRV_Libelle_NC_next(nullptr, 2, 1, "a", out_, 64), 0,
               "ZRV_Libelle_NC_next(null, 2, 1, \"a\", ..., 64): argument 1 is null");
  EXPECT_FAILS(
      ZRV_Libelle_NC("AA\0", 3, 1, "a", out_, 64), 0,
      "ZRV_Libelle_NC(\"AA\\x00\", 3, 1, \"a\", ..., 64): the key has a NUL after 2 of its "
      "3 characters, and matches no line");
  EXPECT_FAILS(ZRV_Libelle_NC("\xC3\xA9", 2, 1, "a", out_, 64), 0,
               "ZRV_Libelle_NC(\"Ã©\", 2, 1, \"a\", ..., 64): the key looks like UTF-8: texts are "
               "CP1252");
  EXPECT_FAILS(
      ZRV_Libelle_2(100, 1, "a", out_, 64), 0,
      "ZRV_Libelle_2(100, 1, \"a\", ..., 64): no line has the code 100: it has two digits");
  EXPECT_TOLD(ZRV_Libelle_NC("XX", 2, 1, "a", out_, 64), "");
  EXPECT_TOLD(ZRV_Libelle_NC("", 0, 1, "a", out_, 64), "");
  EXPECT_TOLD(ZRV_Libelle_2(7, 1, "a", out_, 64), "");
}

TEST_F(TablesMisuse, AColumnThatNoLineHas) {
  EXPECT_TOLD(
      ZRV_Libelle_NC("AA", 2, -1, "a", out_, 64),
      "ZRV_Libelle_NC(\"AA\", 2, -1, \"a\", ..., 64): no line has column -1: 0 is the code, "
      "columns are from 1 on");
  EXPECT_TOLD(ZRV_Libelle_NC_dates("AA", 2, 1, "a", out_, 64, 0, 20040307),
              "ZRV_Libelle_NC_dates(\"AA\", 2, 1, \"a\", ..., 64, 0, 20040307): no line has its "
              "first day in column 0");
  EXPECT_FAILS(
      ZRV_Libelle_NC_dates("AA", 2, 1, "a", out_, 64, 2, 70304), 0,
      "ZRV_Libelle_NC_dates(\"AA\", 2, 1, \"a\", ..., 64, 2, 70304): 70304 is no day: a day "
      "is YYYYMMDD");
  EXPECT_TOLD(ZRV_Libelle_NC_dates("AA", 2, 1, "a", out_, 64, 2, 20050307), "");
  EXPECT_TOLD(ZRV_Libelle_NC("AA", 2, 9, "a", out_, 64), "");
}

TEST_F(TablesMisuse, NoCurrentLine) {
  EXPECT_FAILS(ZRV_Libelle_NC_idem("", 2, 1, "a", out_, 64), 0,
               "ZRV_Libelle_NC_idem(..., 2, 1, \"a\", ..., 64): there is no current line: look one "
               "up before");
  EXPECT_FAILS(
      ZRV_Libelle_NC_idem_0("", 2, 1, "a", out_, 64), 0,
      "ZRV_Libelle_NC_idem_0(..., 2, 1, \"a\", ..., 64): there is no current line: look one "
      "up before");
  EXPECT_TOLD(ZRV_Libelle_NC_set_ligne(-1),
              "ZRV_Libelle_NC_set_ligne(-1): the line is -1, and 0 is the least");
  lookUpFirst();
  EXPECT_FAILS(ZRV_Libelle_NC_idem("", 2, 0, "a", out_, 64), 0,
               "ZRV_Libelle_NC_idem(..., 2, 0, \"a\", ..., 64): no line has column 0: keyLength 0 "
               "with column 0 is the code, columns are from 1 on");
  EXPECT_TOLD(ZRV_Libelle_NC_idem("", 0, 0, "a", out_, 64), "");
}

TEST_F(TablesMisuse, AFieldThatIsCut) {
  EXPECT_TOLD(ZRV_Libelle_NC("AA", 2, 1, "a", out_, 7),
              "ZRV_Libelle_NC(\"AA\", 2, 1, \"a\", ..., 7): the field has 7 characters and is cut "
              "to 6");
  EXPECT_TOLD(ZRV_Libelle_NC("AA", 2, 1, "a", out_, 8), "");
  EXPECT_TOLD(ZRV_Libelle_NC_next("BB", 2, 1, "a", out_, 6),
              "ZRV_Libelle_NC_next(\"BB\", 2, 1, \"a\", ..., 6): the field has 6 characters and is "
              "cut to 5");
  EXPECT_TOLD(ZRV_Libelle_NC("AA", 2, 1, "a", out_, 0),
              "ZRV_Libelle_NC(\"AA\", 2, 1, \"a\", ..., 0): a buffer of 0 bytes holds nothing");
  EXPECT_TOLD(ZRV_Code_NC("second", 1, "a", out_, 2),
              "ZRV_Code_NC(\"second\", 1, \"a\", ..., 2): the field has 2 characters and is cut to "
              "1");
}

TEST_F(TablesMisuse, ALabelThatMatchesNoLine) {
  EXPECT_TOLD(ZRV_Code_NC("", 1, "a", out_, 64), "");
  EXPECT_FAILS(ZRV_Code_NC(nullptr, 1, "a", out_, 64), 0,
               "ZRV_Code_NC(null, 1, \"a\", ..., 64): argument 1 is null");
  EXPECT_FAILS(
      ZRV_Code_NC_next("x\xC3\xA9", 1, "a", out_, 64), 0,
      "ZRV_Code_NC_next(\"xÃ©\", 1, \"a\", ..., 64): the label looks like UTF-8: texts are "
      "CP1252");
  EXPECT_FAILS(ZRV_CodeNCS_NC(nullptr, 1, "a", out_, 64), 0,
               "ZRV_CodeNCS_NC(null, 1, \"a\", ..., 64): argument 1 is null");
  const std::string longest(256, 'a');
  EXPECT_NE(told([&] {
              ZRV_CodeNCS_NC(longest.c_str(), 1, "a", out_, 64);
            }).find("a label of 256 characters matches no line"),
            std::string::npos);
  EXPECT_TOLD(ZRV_Code_NC("third", 1, "a", out_, 64), "");
  EXPECT_TOLD(ZRV_Code_NC("", 1, "a", out_, 64), "");
  const char *const labels[] = {"\xC3\xA9", nullptr};
  const int columns[] = {1, -1};
  EXPECT_FAILS(ZRV_Code_NC_ex(labels, columns, "a", out_, 64), 0,
               "ZRV_Code_NC_ex(..., ..., \"a\", ..., 64): a label looks like UTF-8: texts are "
               "CP1252");
  // The shorter list counts: behind the only label is nothing that may be looked at.
  const auto *const nowhere = reinterpret_cast<const char *>(1);
  const char *const one[] = {"second", nowhere};
  const int first[] = {1, -1};
  EXPECT_TOLD(ZRV_Code_NC_ex(one, first, "a", out_, 64), "");
  EXPECT_FAILS(ZRV_Code_NC_ex_next(labels, nullptr, "a", out_, 64), 0,
               "ZRV_Code_NC_ex_next(..., null, \"a\", ..., 64): argument 2 is null");
}

TEST_F(TablesMisuse, AnEdit) {
  EXPECT_FAILS(
      ZRV_Libelle_NC_idem_replace("", 2, 1, "a", "x"), 0,
      "ZRV_Libelle_NC_idem_replace(..., 2, 1, \"a\", \"x\"): there is no current line: look "
      "one up before");
  EXPECT_FAILS(
      ZRV_Libelle_NC_idem_insert("", 2, "a", -1), 0,
      "ZRV_Libelle_NC_idem_insert(..., 2, \"a\", -1): the number of fields is -1, and 0 is "
      "the least");
  EXPECT_FAILS(ZRV_Libelle_NC_idem_delete("", 2, "a"), 0,
               "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): there is no current line: look one up "
               "before");
  ZRV_Libelle_NC_set_ligne(99);
  EXPECT_FAILS(
      ZRV_Libelle_NC_idem_delete("", 2, "a"), 0,
      "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): nothing is changed: the table has no line "
      "99");
  lookUpFirst();
  EXPECT_FAILS(ZRV_Libelle_NC_idem_flush("", 2, "b"), 0,
               "ZRV_Libelle_NC_idem_flush(..., 2, \"b\"): there is no table \"Data:tables:b.tab\"");
  EXPECT_TOLD(ZRV_Libelle_NC_idem_replace("", 2, 0, "a", "x"),
              "ZRV_Libelle_NC_idem_replace(..., 2, 0, \"a\", \"x\"): no line has column 0: "
              "keyLength 0 with column 0 is the code, columns are from 1 on");
  EXPECT_TOLD(ZRV_Libelle_NC_idem_replace("", 2, 1, "a", "\xC3\xA9"),
              "ZRV_Libelle_NC_idem_replace(..., 2, 1, \"a\", \"Ã©\"): the text looks like UTF-8: "
              "texts are CP1252");
  EXPECT_TOLD(ZRV_Libelle_NC_idem_replace("", 2, 1, "a", "x"), "");
  EXPECT_TOLD(ZRV_Libelle_NC_idem_replace("", 2, 9, "a", "x"),
              "ZRV_Libelle_NC_idem_replace(..., 2, 9, \"a\", \"x\"): the line has no column 9");
  // A text with a line end in it makes two lines, of which readers see all.
  EXPECT_TOLD(ZRV_Libelle_NC_idem_replace(
                  "", 2, 1, "a", (std::string(600, 'x') + "\r\n" + std::string(600, 'y')).c_str()),
              "");
  EXPECT_TOLD(ZRV_Libelle_NC_idem_insert("", 2, "a", 170), "");
  EXPECT_EQ(fieldsInBuffer(), 170U);
  EXPECT_TOLD(
      ZRV_Libelle_NC_idem_insert("", 2, "a", 171),
      "ZRV_Libelle_NC_idem_insert(..., 2, \"a\", 171): a line has room for 170 such fields, "
      "and not for 171");
  EXPECT_EQ(fieldsInBuffer(), 170U);
}

TEST_F(TablesMisuse, AHeading) {
  const std::string line = "the title looks like UTF-8: texts are CP1252";
  EXPECT_EQ(told([] { ZRV_Table_create("u", "1", "\xC3\x89tat"); }),
            "ZRV_Table_create(\"u\", \"1\", \"Ã‰tat\"): " + line);
  EXPECT_EQ(told([] { ZRV_Table_modify("a", "a", "1", "\xC3\x89tat"); }),
            "ZRV_Table_modify(\"a\", \"a\", \"1\", \"Ã‰tat\"): " + line);
  EXPECT_TOLD(ZRV_Table_repair("a", "\xC3\xA9", "T"),
              "ZRV_Table_repair(\"a\", \"Ã©\", \"T\"): the version looks like UTF-8: texts are "
              "CP1252");
}

// Looking for a misuse is not doing it.
TEST_F(TablesMisuse, WhatIsToldIsDoneOnce) {
  table("b", lines({"T", "Version: 1", "#DEBUT", "AA,1", "AA,2", "AA,3", "#FIN"}));
  ASSERT_EQ(lookUp("AA", 1, "b").result, 1);
  EXPECT_TOLD(ZRV_Libelle_NC_next("AA", 2, 1, "b", out_, 64), "");
  EXPECT_STREQ(out_, "2");
  EXPECT_TOLD(ZRV_Code_NC_next("3", 1, "b", out_, 64), "");
  EXPECT_EQ(ZRV_Libelle_NC_il, 6);
  ZRV_Libelle_NC_set_ligne(4);
  EXPECT_TOLD(ZRV_Libelle_NC_idem_insert("", 0, "b", 2), "");
  EXPECT_TOLD(ZRV_Libelle_NC_idem_delete("", 0, "b"), "");
  EXPECT_EQ(content(posixPath("b")), lines({"T", "Version: 1", "#DEBUT",
                                            "N\xE9"
                                            "ant,N\xE9"
                                            "ant",
                                            "AA,2", "AA,3", "#FIN"}));
}

TEST_F(TablesMisuse, TheBuffer) {
  lookUpFirst();
  EXPECT_FAILS(
      ZRV_Libelle_NC_set("", 2, 9, "a", "x"), 0,
      "ZRV_Libelle_NC_set(..., 2, 9, \"a\", \"x\"): the line in the buffer has no column 9");
  EXPECT_FAILS(ZRV_Libelle_NC_set("", 2, 1, "a", nullptr), 0,
               "ZRV_Libelle_NC_set(..., 2, 1, \"a\", null): argument 5 is null");
  const auto withText = [](std::size_t size) {
    const std::string text(size, 'x');
    return told([&] { ZRV_Libelle_NC_set("", 2, 1, "a", text.c_str()); });
  };
  // "AA,", the text and ",01/01/04,31/12/04" are the line.
  EXPECT_EQ(withText(1022 - 3 - 18), "");
  lookUpFirst();
  EXPECT_NE(withText(1022 - 3 - 18 + 1).find("the line has 1023 characters and is cut to 1022"),
            std::string::npos);
}

TEST_F(TablesMisuse, Upkeep) {
  int first = 0;
  EXPECT_TOLD(ZRV_Table_create("/a", "1", "T"),
              "ZRV_Table_create(\"/a\", \"1\", \"T\"): \"/a\" is a path of the system, and a colon "
              "path is meant: \"Volume:folder:file\"");
  EXPECT_FAILS(ZRV_Table_create("a", "1", nullptr), 0,
               "ZRV_Table_create(\"a\", \"1\", null): argument 3 is null");
  EXPECT_FAILS(ZRV_Table_create("none:a", "1", "T"), 0,
               "ZRV_Table_create(\"none:a\", \"1\", \"T\"): nothing is changed: there is no folder "
               "\"Data:tables:none\"");
  mkdir(volumes_.posix("tables/folder.tab").c_str(), 0777);
  EXPECT_FAILS(ZRV_Table_create("folder", "1", "T"), 0,
               "ZRV_Table_create(\"folder\", \"1\", \"T\"): nothing is changed: a file cannot be "
               "there");
  mkdir(volumes_.posix("tables/a.bak").c_str(), 0777);
  EXPECT_TOLD(ZRV_Table_sauvegarde("a", 1),
              "ZRV_Table_sauvegarde(\"a\", 1): nothing is changed: a back-up cannot be where it "
              "would be");
  rmdir(volumes_.posix("tables/a.bak").c_str());
  EXPECT_TOLD(ZRV_Table_remove("b"),
              "ZRV_Table_remove(\"b\"): there is no table \"Data:tables:b.tab\"");
  EXPECT_TOLD(ZRV_Table_sauvegarde("b", 1),
              "ZRV_Table_sauvegarde(\"b\", 1): there is no table \"Data:tables:b.tab\"");
  EXPECT_FAILS(ZRV_Table_modify("b", "c", "1", "T"), 0,
               "ZRV_Table_modify(\"b\", \"c\", \"1\", \"T\"): there is no table "
               "\"Data:tables:b.tab\"");
  table("empty", "");
  EXPECT_FAILS(ZRV_Table_modify("empty", "empty", "1", "T"), 0,
               "ZRV_Table_modify(\"empty\", \"empty\", \"1\", \"T\"): the table has no line for "
               "title or version, and has its new name all the same");
  EXPECT_FAILS(ZRV_Table_modify("a", "folder", "1", "T"), 0,
               "ZRV_Table_modify(\"a\", \"folder\", \"1\", \"T\"): \"Data:tables:folder.tab\" "
               "is a folder");
  EXPECT_FAILS(ZRV_Table_scan("empty", &first, nullptr, nullptr), 0,
               "ZRV_Table_scan(\"empty\", ..., null, null): the table has no line \"#DEBUT\"");
  table("damaged", lines({"T", "Version: 1", "AA,x"}));
  EXPECT_FAILS(
      ZRV_Table_repair("damaged", "1", "T"), 0,
      "ZRV_Table_repair(\"damaged\", \"1\", \"T\"): line 1 is the title, and line 3 is not "
      "\"#DEBUT\"");
  EXPECT_TOLD(ZRV_Table_repair("b", "1", "T"),
              "ZRV_Table_repair(\"b\", \"1\", \"T\"): there is no table \"Data:tables:b.tab\"");
  setText(ZRV_Libelle_NC_szDirTables, "Data:tables");
  volumes_.file("tables/a.bak", "x");
  EXPECT_TOLD(ZRV_Table_sauvegarde("a.bak", 1),
              "ZRV_Table_sauvegarde(\"a.bak\", 1): a table whose path ends with \".bak\" has no "
              "back-up");
}

// A link to a folder gives way to a table, as one to a file does.
TEST_F(TablesMisuse, ANewNameThatIsALinkToAFolder) {
  mkdir(volumes_.posix("folder").c_str(), 0777);
  ASSERT_EQ(symlink(volumes_.posix("folder").c_str(), posixPath("b").c_str()), 0);
  EXPECT_EQ(told([] { EXPECT_EQ(ZRV_Table_modify("a", "b", "1", "T"), 1); }), "");
  EXPECT_EQ(content(posixPath("b")).substr(0, 3), "T\r\n");
}

TEST_F(TablesMisuse, AFolderWhereTheTemporaryFileWouldBe) {
  lookUpFirst();
  mkdir(volumes_.posix("tables/a.ta_").c_str(), 0777);
  const std::string line =
      "nothing is changed: \"Data:tables:a.ta_\" is in the way, where the temporary file would be";
  EXPECT_EQ(told([] { ZRV_Libelle_NC_idem_delete("", 2, "a"); }),
            "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): " + line);
  EXPECT_EQ(told([] { ZRV_Table_modify("a", "b", "1", "T"); }),
            "ZRV_Table_modify(\"a\", \"b\", \"1\", \"T\"): " + line);
  EXPECT_EQ(told([] { ZRV_Table_repair("a", "1", "T"); }),
            "ZRV_Table_repair(\"a\", \"1\", \"T\"): " + line);
}

TEST_F(TablesMisuse, NoDescriptorIsFree) {
  if (test::kUnderSanitizer) GTEST_SKIP() << "the sanitizer needs descriptors of its own";
  lookUpFirst();
  EXPECT_EQ(told([] {
              rlimit before;
              getrlimit(RLIMIT_NOFILE, &before);
              const rlimit none = {0, before.rlim_max};
              setrlimit(RLIMIT_NOFILE, &none);
              ZRV_Libelle_NC_idem_delete("", 2, "a");
              setrlimit(RLIMIT_NOFILE, &before);
            }),
            "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): nothing is changed: the system refuses: "
            "Too many open files");
}

// From there it would lead to another place.
TEST_F(TablesMisuse, ALinkThatCannotBeMoved) {
  mkdir(volumes_.posix("tables/sub").c_str(), 0777);
  ASSERT_EQ(symlink("a.tab", posixPath("link").c_str()), 0);
  EXPECT_EQ(told([] { EXPECT_EQ(ZRV_Table_modify("link", "sub:b", "1", "T"), 0); }),
            "ZRV_Table_modify(\"link\", \"sub:b\", \"1\", \"T\"): nothing is changed: it cannot "
            "have the name \"Data:tables:sub:b.tab\"");
  const auto errnoAfter = [](base::Telling telling) {
    int after = 0;
    told([&] { errno = EXDEV, ZRV_Table_modify("link", "sub:b", "1", "T"), after = errno; },
         telling);
    return after;
  };
  EXPECT_EQ(errnoAfter(base::Telling::Yes), errnoAfter(base::Telling::No));
}

// It takes two handles, and a removal none.
TEST_F(TablesMisuse, AnEditWithOneHandleLeft) {
  volumes_.file("tables/a.txt", "");
  for (int i = 0; i < 5; ++i) MFil_Open("", 0, 0);
  for (int i = 0; i < 4; ++i) File_Open("Data:tables:a.txt", 1, 0);
  EXPECT_TOLD(ZRV_Table_repair("a", "1", "T"),
              "ZRV_Table_repair(\"a\", \"1\", \"T\"): it takes 2 file handles, and 1 is free: "
              "close one with File_Close");
  File_Open("Data:tables:a.txt", 1, 0);
  EXPECT_FAILS(ZRV_Table_create("c", "1", "T"), 0,
               "ZRV_Table_create(\"c\", \"1\", \"T\"): all 5 file handles are open: close one "
               "with File_Close");
  EXPECT_TOLD(ZRV_Table_remove("a"), "");
}

TEST_F(TablesMisuse, ATableThatAnotherProgramHolds) {
  lookUpFirst();
  const int other = open(posixPath("a").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  files::lockPatience = 50;
  EXPECT_FAILS(ZRV_Libelle_NC_idem_delete("", 2, "a"), 0,
               "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): nothing is changed: another program "
               "holds the table");
  files::lockPatience = 5000;
  close(other);
}

TEST_F(TablesMisuse, AFullDisk) {
  const auto onFullDisk = [](auto call) {
    const Fault fault(ReplaceStep::Write, 1, ENOSPC);
    return told(call);
  };
  const std::string full = "nothing is changed: the system refuses: No space left on device";
  lookUpFirst();
  EXPECT_EQ(onFullDisk([] { ZRV_Libelle_NC_idem_delete("", 2, "a"); }),
            "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): " + full);
  EXPECT_EQ(onFullDisk([] { ZRV_Table_modify("a", "b", "1", "T"); }),
            "ZRV_Table_modify(\"a\", \"b\", \"1\", \"T\"): " + full);
  EXPECT_EQ(onFullDisk([] { ZRV_Table_repair("a", "1", "T"); }),
            "ZRV_Table_repair(\"a\", \"1\", \"T\"): " + full);
  EXPECT_EQ(onFullDisk([] { ZRV_Table_sauvegarde("a", 1); }),
            "ZRV_Table_sauvegarde(\"a\", 1): " + full);
}

TEST_F(TablesMisuse, AList) {
  EXPECT_TOLD(
      ZRV_Table_liste("a", out_, 5),
      "ZRV_Table_liste(\"a\", ..., 5): the codes need 6 bytes, and not all are listed in 5");
  EXPECT_TOLD(ZRV_Table_liste("a", out_, 6), "");
  std::string many = lines({"T", "Version: 1", "#DEBUT"});
  for (int i = 0; i < 40000; ++i) many += "ZZ\r\n";
  table("many", many);
  EXPECT_TOLD(ZRV_Table_liste("many", out_, 64),
              "ZRV_Table_liste(\"many\", ..., 64): the codes need 120000 bytes, and not all are "
              "listed in 64");
  EXPECT_TOLD(ZRV_Table_liste("a", out_, 0),
              "ZRV_Table_liste(\"a\", ..., 0): a buffer of 0 bytes holds nothing");
  EXPECT_FAILS(ZRV_Table_liste("b", out_, 64), 0,
               "ZRV_Table_liste(\"b\", ..., 64): there is no table \"b\" in \"Data:tables\": "
               "\".tab\" is added to the name");
  table("empty", "");
  EXPECT_FAILS(ZRV_Table_liste("empty", out_, 64), 0,
               "ZRV_Table_liste(\"empty\", ..., 64): the table has no line \"#DEBUT\"");
  setText(szDirTables, "");
  EXPECT_FAILS(ZRV_Table_liste("a", out_, 64), 0,
               "ZRV_Table_liste(\"a\", ..., 64): there is no directory of tables: szDirTables is "
               "empty");
}

// A failed opening keeps a slot: there is one, and not another one for the line.
TEST_F(TablesMisuse, ATableThatNoHandleHolds) {
  table("large", "");
  ASSERT_EQ(truncate(posixPath("large").c_str(), 2200LL << 20), 0);
  ASSERT_EQ(mkfifo(posixPath("pipe").c_str(), 0600), 0);
  for (const char *name : {"large", "pipe"}) {
    const std::string quoted = std::string("\"") + name + "\"";
    const std::string line = "table \"Data:tables:" + std::string(name) +
                             ".tab\" cannot be opened: it has more than 2147483647 bytes, or is a "
                             "pipe";
    const auto highest = [&](base::Telling telling) {
      DATA_FILE_ID = -1;
      told([&] { ZRV_Table_liste(name, out_, 64); }, telling);
      return DATA_FILE_ID;
    };
    EXPECT_EQ(highest(base::Telling::Yes), highest(base::Telling::No));
    EXPECT_EQ(told([&] { ZRV_Table_liste(name, out_, 64); }),
              "ZRV_Table_liste(" + quoted + ", ..., 64): " + line);
    EXPECT_EQ(told([&] { ZRV_Table_scan(name, nullptr, nullptr, nullptr); }),
              "ZRV_Table_scan(" + quoted + ", null, null, null): " + line);
    EXPECT_EQ(lineFor(name), "ZRV_Libelle_NC(\"AA\", 2, 1, " + quoted + ", ..., 64): " + line);
    ZRV_Libelle_NC_set_ligne(4);
    EXPECT_EQ(told([&] { ZRV_Libelle_NC_idem_delete("", 2, name); }),
              "ZRV_Libelle_NC_idem_delete(..., 2, " + quoted + "): " + line);
  }
}

TEST_F(TablesMisuse, ATableThatIsNotReadToItsEnd) {
  rlimit before;
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none = {0, before.rlim_max};
  EXPECT_EQ(told([&] {
              setrlimit(RLIMIT_NOFILE, &none);
              ZRV_Table_liste("a", out_, 64);
              setrlimit(RLIMIT_NOFILE, &before);
            }),
            "ZRV_Table_liste(\"a\", ..., 64): the table cannot be read to its end");
}

// The super-user may read and write every table.
class TablesMisuseOfAUser : public TablesMisuse {
 protected:
  TablesMisuseOfAUser() {
    for (const std::string &folder : {volumes_.root(), volumes_.folder(), volumes_.posix("tables")})
      chmod(folder.c_str(), 0755);
    chmod(posixPath("a").c_str(), 0644);
  }
  // Whether a user whom permissions hold back is told this line of the call.
  template <typename Work>
  static void expectTold(Work work, const std::string &line) {
    EXPECT_EQ(inChildOfAUser([&] {
                const std::string lines = told(work);
                if (lines != line) std::fprintf(stderr, "%s\n", lines.c_str());
                return lines == line ? 0 : 1;
              }),
              0)
        << line;
  }
};

TEST_F(TablesMisuseOfAUser, ATableThatMayNotBeRead) {
  chmod(posixPath("a").c_str(), 0);
  expectTold([&] { ZRV_Libelle_NC("AA", 2, 1, "a", out_, sizeof out_); },
             "ZRV_Libelle_NC(\"AA\", 2, 1, \"a\", ..., 64): table \"Data:tables:a.tab\" may not "
             "be read");
}

TEST_F(TablesMisuseOfAUser, AFolderThatMayNotBeWritten) {
  const std::string folder = "nothing is changed: folder \"Data:tables\" may not be written";
  lookUpFirst();
  chmod(volumes_.posix("tables").c_str(), 0555);
  expectTold([] { ZRV_Table_create("b", "1", "T"); },
             "ZRV_Table_create(\"b\", \"1\", \"T\"): " + folder);
  expectTold([] { ZRV_Table_remove("a"); }, "ZRV_Table_remove(\"a\"): " + folder);
  expectTold([] { ZRV_Table_sauvegarde("a", 1); }, "ZRV_Table_sauvegarde(\"a\", 1): " + folder);
  expectTold([] { ZRV_Table_modify("a", "b", "1", "T"); },
             "ZRV_Table_modify(\"a\", \"b\", \"1\", \"T\"): " + folder);
  expectTold([] { ZRV_Table_repair("a", "1", "T"); },
             "ZRV_Table_repair(\"a\", \"1\", \"T\"): " + folder);
  expectTold([] { ZRV_Libelle_NC_idem_delete("", 2, "a"); },
             "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): " + folder);
  chmod(volumes_.posix("tables").c_str(), 0755);
}

TEST_F(TablesMisuseOfAUser, ATableOfAnotherInAFolderOfAll) {
  const std::string sticky =
      " is another user's, and folder \"Data:tables\" lets only owners exchange files";
  const std::string table = "nothing is changed: \"Data:tables:a.tab\"" + sticky;
  if (geteuid() != 0) GTEST_SKIP() << "only the super-user has tables that are another's";
  chmod(volumes_.posix("tables").c_str(), 01777);
  expectTold([] { ZRV_Table_remove("a"); }, "ZRV_Table_remove(\"a\"): " + table);
  expectTold([] { ZRV_Table_modify("a", "b", "1", "T"); },
             "ZRV_Table_modify(\"a\", \"b\", \"1\", \"T\"): " + table);
  // A back-up takes the place of its forerunner, not of the table.
  const std::string backUp = "nothing is changed: \"Data:tables:a.bak\"" + sticky;
  volumes_.file("tables/a.bak", "x");
  expectTold([] { ZRV_Table_sauvegarde("a", 1); }, "ZRV_Table_sauvegarde(\"a\", 1): " + backUp);
}

// A table that is a link is exchanged where its file is.
TEST_F(TablesMisuseOfAUser, ALinkToATableInAnotherFolder) {
  const std::string folder = volumes_.posix("else");
  const std::string file = folder + "/a.tab";
  mkdir(folder.c_str(), 0777);
  ASSERT_EQ(rename(posixPath("a").c_str(), file.c_str()), 0);
  ASSERT_EQ(symlink(file.c_str(), posixPath("a").c_str()), 0);
  chmod(file.c_str(), 0666);
  chmod(folder.c_str(), 0777);
  chmod(volumes_.posix("tables").c_str(), 0555);
  ZRV_Libelle_NC_set_ligne(99);
  expectTold([] { ZRV_Table_repair("a", "1", "Titre"); }, "");
  expectTold([] { ZRV_Libelle_NC_idem_delete("", 2, "a"); },
             "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): nothing is changed: the table has no line "
             "99");
  chmod(volumes_.posix("tables").c_str(), 0777);
  chmod(folder.c_str(), 0555);
  const std::string real = std::filesystem::canonical(folder).string();
  expectTold([] { ZRV_Libelle_NC_idem_delete("", 2, "a"); },
             "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): nothing is changed: folder \"" + real +
                 "\" may not be written");
  chmod(folder.c_str(), 0755);
}

TEST_F(TablesMisuseOfAUser, ATableThatMayNotBeWritten) {
  lookUpFirst();
  chmod(volumes_.posix("tables").c_str(), 0777);
  chmod(posixPath("a").c_str(), 0444);
  const std::string table = "nothing is changed: table \"Data:tables:a.tab\" may not be written";
  expectTold([] { ZRV_Libelle_NC_idem_delete("", 2, "a"); },
             "ZRV_Libelle_NC_idem_delete(..., 2, \"a\"): " + table);
  expectTold([] { ZRV_Table_repair("a", "1", "T"); },
             "ZRV_Table_repair(\"a\", \"1\", \"T\"): " + table);
  expectTold([] { ZRV_Table_modify("a", "a", "1", "T"); },
             "ZRV_Table_modify(\"a\", \"a\", \"1\", \"T\"): " + table);
  expectTold([] { ZRV_Table_modify("a", "b", "1", "T"); },
             "ZRV_Table_modify(\"a\", \"b\", \"1\", \"T\"): " + table);
  // A removal is the folder's affair.
  expectTold([] { ZRV_Table_remove("a"); }, "");
}

}  // namespace
}  // namespace korvel::test
