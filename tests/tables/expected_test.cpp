// SPDX-License-Identifier: MIT
// Edits and upkeep against files that are checked in.
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/tables/edits.h"

// In tests/tables/expected, <case>.before is a table, <case>.calls what is done to it, <case>.after
// the table afterwards, byte for byte. Each call is a line, its words separated by '|': the result,
// the function, its arguments. "left" names the file that is left.

namespace korvel {
namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

constexpr const char *kTable = "table";

Words wordsOf(const std::string &line) {
  Words words;
  std::istringstream rest(line);
  for (std::string word; std::getline(rest, word, '|');) words.push_back(word);
  return words;
}

int number(const std::string &word) { return std::stoi(word); }
void goTo(const std::string &line) { ZRV_Libelle_NC_set_ligne(number(line)); }
void read(const std::string &line) {
  goTo(line);
  EXPECT_EQ(test::idem0(0, 0, kTable).result, 1);
}

// The arguments begin at words[2]. A function that works on a line has its number first.
const std::map<std::string, int (*)(const Words &)> kFunctions = {
    {"replace",
     [](const Words &words) {
       goTo(words[2]);
       return test::replaceColumn(number(words[3]), words[4].c_str(), kTable);
     }},
    {"replace code",
     [](const Words &words) {
       goTo(words[2]);
       return test::replaceCode(words[3].c_str(), kTable);
     }},
    {"set",
     [](const Words &words) {
       read(words[2]);
       return test::setColumn(number(words[3]), words[4].c_str());
     }},
    {"set code",
     [](const Words &words) {
       read(words[2]);
       return test::setCode(words[3].c_str());
     }},
    {"flush", [](const Words & /*words*/) { return test::flushLine(kTable); }},
    {"insert",
     [](const Words &words) {
       goTo(words[2]);
       return test::insertLine(number(words[3]), kTable);
     }},
    {"delete",
     [](const Words &words) {
       goTo(words[2]);
       return test::deleteLine(kTable);
     }},
    {"modify",
     [](const Words &words) {
       return ZRV_Table_modify(kTable, words[2].c_str(), words[3].c_str(), words[4].c_str());
     }},
    {"repair",
     [](const Words &words) {
       return ZRV_Table_repair(kTable, words[2].c_str(), words[3].c_str());
     }},
    {"create",
     [](const Words &words) {
       return ZRV_Table_create(kTable, words[2].c_str(), words[3].c_str());
     }},
};

class ExpectedFiles : public test::Edits {
 protected:
  void expectAsCheckedIn(fs::path calls) {
    fs::remove_all(folder());
    fs::create_directory(folder());
    const fs::path before = fs::path(calls).replace_extension("before");
    if (fs::exists(before)) table(kTable, test::content(before));
    std::string left = "table.tab";
    std::ifstream lines(calls);
    for (std::string line; std::getline(lines, line);) {
      const Words words = wordsOf(line);
      if (words[0] == "left") {
        left = words[1];
      } else {
        EXPECT_EQ(kFunctions.at(words[1])(words), number(words[0])) << line;
      }
    }
    EXPECT_EQ(files(), (test::Files{{left, test::content(calls.replace_extension("after"))}}));
  }
};

TEST_F(ExpectedFiles, AreWhatTheCallsLeave) {
  int cases = 0;
  for (const auto &entry : fs::directory_iterator(TABLES_EXPECTED)) {
    if (entry.path().extension() != ".calls") continue;
    SCOPED_TRACE(entry.path().filename());
    expectAsCheckedIn(entry.path());
    ++cases;
  }
  EXPECT_GE(cases, 8);
}

}  // namespace
}  // namespace korvel
