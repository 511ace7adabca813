// SPDX-License-Identifier: MIT
// Tests of the way from a table name to a path, with either tables directory.
#include "tables/path.h"

#include "tests/tables/tables.h"

namespace korvel {
namespace {

using tables::defaultTablePath;
using tables::tablePath;

class TablePaths : public test::Tables {
 protected:
  // A directory path of a length, which exists.
  std::string longDirectory(std::size_t length) const {
    std::string colon = "Data";
    std::string posix = volumes_.folder();
    while (colon.size() < length) {
      const std::size_t part = std::min<std::size_t>(100, length - colon.size() - 1);
      colon.append(":").append(part, 'd');
      posix.append("/").append(part, 'd');
      mkdir(posix.c_str(), 0777);
    }
    return colon;
  }
};

TEST_F(TablePaths, ChosenDirectoryTakesTheNameAsItStands) {
  const struct {
    const char *directory;
    const char *name;
    const char *path;
  } kCases[] = {
      {"Data:tables:", "actes.tab", "Data:tables:actes.tab"},
      // Kept: no extension is added here, as the name is already the file's.
      {"Data:tables", "actes", "Data:tables:actes"},
      // It need not exist, and only one colon does not count.
      {"Nowhere", "actes.tab", "Nowhere:actes.tab"},
      {"Data::", "x", "Data::x"},
      {":", "x", ":x"},
  };
  for (const auto &row : kCases) {
    setText(ZRV_Libelle_NC_szDirTables, row.directory);
    EXPECT_STREQ(tablePath(row.name).text, row.path) << row.directory;
  }
}

TEST_F(TablePaths, DefaultDirectoryAddsTheExtension) {
  EXPECT_STREQ(tablePath("actes").text, "Data:tables:actes.tab");
  setText(szDirTables, "Data:tables:");
  EXPECT_STREQ(tablePath("actes").text, "Data:tables:actes.tab");
  EXPECT_STREQ(tablePath("actes.tab").text, "Data:tables:actes.tab.tab");
  EXPECT_STREQ(tablePath("").text, "Data:tables:.tab");
}

// Without any directory chosen there is no default.
TEST_F(TablePaths, WithoutADirectoryThereIsNoTable) {
  setText(szDirTables, "");
  EXPECT_FALSE(tablePath("t"));
  EXPECT_FALSE(defaultTablePath("t"));
  setText(ZRV_Libelle_NC_szDirTables, "Data:others");
  EXPECT_STREQ(tablePath("t").text, "Data:others:t");
  EXPECT_FALSE(defaultTablePath("t"));
}

TEST_F(TablePaths, WithoutADirectoryNothingIsCreatedAndNothingFound) {
  const std::string stray = volumes_.root() + "/t.tab";
  const std::string text = test::lines({"T", "V", "#DEBUT", "01,A", "#FIN"});
  std::FILE *file = std::fopen(stray.c_str(), "wb");
  ASSERT_NE(file, nullptr);
  std::fputs(text.c_str(), file);
  std::fclose(file);
  const std::vector<std::string> before = test::entries(volumes_.root());
  setText(szDirTables, "");
  char out[8] = "-";
  EXPECT_EQ(ZRV_Table_create("new", "1", "T"), 0);
  EXPECT_EQ(ZRV_Table_create("t", "1", "T"), 0);
  EXPECT_EQ(test::lookUp("01", 1, "t").result, 0);
  EXPECT_EQ(test::search(&ZRV_Code_NC, "A", 1, "t").result, 0);
  ZRV_Libelle_NC_set_ligne(4);
  EXPECT_EQ(ZRV_Libelle_NC_idem_delete("", 0, "t"), 0);
  EXPECT_EQ(ZRV_Libelle_NC_idem_insert("", 0, "t", 1), 0);
  EXPECT_EQ(ZRV_Table_liste("t", out, sizeof out), 0);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(ZRV_Table_scan("t", nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(ZRV_Table_sauvegarde("t", 1), 0);
  EXPECT_EQ(ZRV_Table_modify("t", "u", "2", "U"), 0);
  // Kept: where nothing can be read or rewritten, nothing counts as damaged.
  EXPECT_EQ(ZRV_Table_repair("t", "2", "U"), 1);
  EXPECT_EQ(ZRV_Table_remove("t"), 0);
  EXPECT_EQ(test::entries(volumes_.root()), before);
  EXPECT_EQ(test::content(stray), text);
  EXPECT_EQ(DATA_FILE_ID, -1);
}

TEST_F(TablePaths, DefaultDirectoryMustBeAFolder) {
  volumes_.file("file", "");
  for (const char *directory : {"Data:nowhere", "Nowhere", "Data:file"}) {
    setText(szDirTables, directory);
    EXPECT_FALSE(tablePath("actes")) << directory;
  }
}

TEST_F(TablePaths, DefaultPathIgnoresTheChosenDirectory) {
  setText(ZRV_Libelle_NC_szDirTables, "Data:others");
  EXPECT_STREQ(defaultTablePath("actes").text, "Data:tables:actes.tab");
  EXPECT_STREQ(tablePath("actes").text, "Data:others:actes");
}

TEST_F(TablePaths, NullNameHasNone) {
  EXPECT_FALSE(tablePath(nullptr));
  EXPECT_FALSE(defaultTablePath(nullptr));
  setText(ZRV_Libelle_NC_szDirTables, "Data:others");
  EXPECT_FALSE(tablePath(nullptr));
}

TEST_F(TablePaths, LongestHas255Characters) {
  const std::string directory = longDirectory(200);
  setText(szDirTables, directory);
  EXPECT_STREQ(tablePath(std::string(50, 'n').c_str()).text,
               (directory + ":" + std::string(50, 'n') + ".tab").c_str());
  EXPECT_FALSE(tablePath(std::string(51, 'n').c_str()));
  setText(ZRV_Libelle_NC_szDirTables, directory);
  EXPECT_STREQ(tablePath(std::string(54, 'n').c_str()).text,
               (directory + ":" + std::string(54, 'n')).c_str());
  EXPECT_FALSE(tablePath(std::string(55, 'n').c_str()));
}

TEST_F(TablePaths, DirectoryWithoutTerminatorIsReadToItsEndOnly) {
  std::memset(szDirTables, 'd', sizeof szDirTables);
  EXPECT_FALSE(tablePath("x"));
  std::memset(ZRV_Libelle_NC_szDirTables, 'd', sizeof ZRV_Libelle_NC_szDirTables);
  EXPECT_FALSE(tablePath("x"));
}

class TablesDirectory : public test::Tables {};

TEST_F(TablesDirectory, IsSetAndGot) {
  EXPECT_EQ(getDirTables(), ZRV_Libelle_NC_szDirTables);
  EXPECT_EQ(setDirTables("Data:tables:"), ZRV_Libelle_NC_szDirTables);
  EXPECT_STREQ(getDirTables(), "Data:tables:");
  EXPECT_EQ(setDirTables(""), ZRV_Libelle_NC_szDirTables);
  EXPECT_STREQ(getDirTables(), "");
}

TEST_F(TablesDirectory, OfMoreThan255CharactersOrNullIsNotTaken) {
  const std::string longest(255, 'd');
  EXPECT_STREQ(setDirTables(longest.c_str()), longest.c_str());
  setDirTables("Data");
  EXPECT_STREQ(setDirTables((longest + "d").c_str()), "Data");
  EXPECT_STREQ(setDirTables(nullptr), "Data");
}

TEST_F(TablesDirectory, CanBeSetFromItself) {
  setDirTables("Data:tables");
  EXPECT_STREQ(setDirTables(getDirTables() + 5), "tables");
}

TEST_F(TablesDirectory, DecidesWhichTableIsRead) {
  table("actes", test::lines({"01,here"}));
  mkdir(volumes_.posix("others").c_str(), 0777);
  volumes_.file("others/actes.tab", test::lines({"01,there"}));
  EXPECT_EQ(test::lookUp("01", 1, "actes"), (test::Answer{1, "here"}));
  setDirTables("Data:others:");
  EXPECT_EQ(test::lookUp("01", 1, "actes.tab"), (test::Answer{1, "there"}));
  EXPECT_EQ(test::lookUp("01", 1, "actes").result, 0);
  setText(szDirTables, "Data:nowhere");
  EXPECT_EQ(test::lookUp("01", 1, "actes.tab"), (test::Answer{1, "there"}));
}

}  // namespace
}  // namespace korvel
