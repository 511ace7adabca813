// SPDX-License-Identifier: MIT
// Tables whose colon path is longer than the name of a handle's slot.
#include <signal.h>

#include <sys/resource.h>

#include "tests/tables/edits.h"

namespace korvel {
namespace {

using test::Files;
using test::inChild;
using test::insertLine;
using test::lines;

// Characters of a path that a slot's name holds.
constexpr std::size_t kSlotName = 143;

class LongPaths : public test::Edits {
 protected:
  // Makes a folder so that the table "t" in it has a colon path of a length, and chooses it.
  void choose(std::size_t length) {
    constexpr std::size_t kLongestPart = 100;
    directory_ = "Data";
    folder_ = volumes_.folder();
    for (std::size_t left = length - std::string(":t.tab").size() - directory_.size(); left > 0;) {
      std::size_t part = std::min(kLongestPart, left - 1);
      if (left - 1 - part == 1) --part;  // a part has a colon and a character
      directory_.append(":").append(part, 'd');
      folder_.append("/").append(part, 'd');
      mkdir(folder_.c_str(), 0777);
      left -= part + 1;
    }
    ASSERT_EQ(path().size(), length);
    setText(szDirTables, directory_);
  }
  std::string path() const { return directory_ + ":t.tab"; }
  Files chosenFiles() const {
    Files files = test::filesIn(folder_);
    // The folder of the next length.
    std::erase_if(files, [](const auto &file) { return file.second == "(folder)"; });
    return files;
  }

  std::string directory_;
  std::string folder_;
};

constexpr std::size_t kLengths[] = {142, 143, 144, 145, 200, 246, 247, 254, 255};

TEST_F(LongPaths, CanBeCreatedEditedBackedUpRepairedRenamedAndRemoved) {
  const std::string created = lines({"Titre", "Version: 1", "#DEBUT", "#FIN"});
  const std::string edited = lines({"Titre", "Version: 1", "#DEBUT",
                                    "N\xE9"
                                    "ant",
                                    "#FIN"});
  for (const std::size_t length : kLengths) {
    choose(length);
    EXPECT_EQ(ZRV_Table_create("t", "1", "Titre"), 1) << length;
    EXPECT_EQ(chosenFiles(), (Files{{"t.tab", created}})) << length;
    ZRV_Libelle_NC_set_ligne(3);
    EXPECT_EQ(insertLine(1, "t"), 1) << length;
    EXPECT_EQ(chosenFiles(), (Files{{"t.tab", edited}})) << length;
    EXPECT_EQ(DATA_FILE_TAB[0].name, path().substr(0, kSlotName)) << length;
    EXPECT_EQ(DATA_FILE_TAB[1].name, (directory_ + ":t.ta_").substr(0, kSlotName)) << length;
    EXPECT_EQ(ZRV_Table_sauvegarde("t", 0), 0) << length;
    EXPECT_EQ(chosenFiles(), (Files{{"t.bak", edited}, {"t.tab", edited}})) << length;
    EXPECT_EQ(ZRV_Table_repair("t", "2", "Autre"), 1) << length;
    const std::string repaired = lines({"Autre", "Version: 2"}) + edited;
    EXPECT_EQ(chosenFiles(), (Files{{"t.bak", edited}, {"t.tab", repaired}})) << length;
    EXPECT_EQ(ZRV_Table_modify("t", "u", "2", "Autre"), 1) << length;
    EXPECT_EQ(chosenFiles(), (Files{{"t.bak", edited}, {"u.tab", repaired}})) << length;
    EXPECT_EQ(ZRV_Table_remove("u"), 1) << length;
    EXPECT_EQ(chosenFiles(), (Files{{"t.bak", edited}})) << length;
    EXPECT_EQ(openHandles(), std::vector<int>{}) << length;
    EXPECT_EQ(DATA_FILE_ID, -1) << length;
  }
}

// Kept: the result of the writing does not count, so a full disk leaves the beginning of a table.
TEST_F(LongPaths, OnAFullDiskTheTableBeginsAsFarAsItGoes) {
  for (const std::size_t length : {143U, 144U, 255U}) {
    choose(length);
    EXPECT_EQ(inChild([&] {
                signal(SIGXFSZ, SIG_IGN);
                const rlimit limit = {10, 10};
                if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
                return ZRV_Table_create("t", "1", "Titre");
              }),
              1)
        << length;
    EXPECT_EQ(chosenFiles(), (Files{{"t.tab", "Titre\r\nVer"}})) << length;
  }
}

}  // namespace
}  // namespace korvel
