// SPDX-License-Identifier: MIT
// Folders that are read without a process, beside what the tools say of them.
#include "shell/folder.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <functional>
#include <random>
#include <string>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/listings.h"
#include "tests/shell/workspace.h"
#include "tests/support/no_processes.h"

namespace korvel::test {

// While it is true, no folder tells the kinds of what is in it.
bool kindsAreUntold = false;

}  // namespace korvel::test

extern "C" dirent *readdir(DIR *folder) {
  static const auto real = reinterpret_cast<dirent *(*)(DIR *)>(dlsym(RTLD_NEXT, "readdir"));
  dirent *entry = real(folder);
  if (entry != nullptr && korvel::test::kindsAreUntold) entry->d_type = DT_UNKNOWN;
  return entry;
}

namespace korvel::test {
namespace {

constexpr char kSystemsPath[] = "/usr/bin:/bin";

// The system's tools where they are not looked for: the library runs them.
class ToolsElsewhere {
 public:
  ToolsElsewhere() {
    tools_.makeLink("ls", "/bin/ls");
    tools_.makeLink("grep", "/bin/grep");
  }

 private:
  Workspace tools_;
  Variable path_{"PATH", (tools_.path() + ":" + kSystemsPath).c_str()};
};

// What both listings answer, as a text.
std::string answer(const std::string &folder, const std::string &pattern, int max) {
  const ResultGlobals saved;
  const Found found = find(folder, max, pattern);
  std::string text = std::to_string(found.count) + " found:";
  for (const std::string &name : found.names) text += " <" + name + ">";
  BSDcr = 7;
  BSDnNbFic = 7;
  text += "\nvisited:";
  for (const std::string &name : visited(folder, pattern)) text += " <" + name + ">";
  return text + "\nBSDcr " + std::to_string(BSDcr) + ", BSDnNbFic " + std::to_string(BSDnNbFic);
}

std::string read(const std::string &folder, const std::string &pattern, int max) {
  const Variable path("PATH", kSystemsPath);
  return answer(folder, pattern, max);
}

std::string toolsSay(const std::string &folder, const std::string &pattern, int max) {
  const ToolsElsewhere tools;
  return answer(folder, pattern, max);
}

// The folders and patterns for which the two ways differ.
std::string differences(const Names &folders, const Names &patterns, int max = 20) {
  std::string text;
  for (const std::string &folder : folders) {
    for (const std::string &pattern : patterns) {
      const std::string ours = read(folder, pattern, max);
      const std::string theirs = toolsSay(folder, pattern, max);
      if (ours != theirs) text += folder + " " + pattern + ": " + ours + "\nbut " + theirs + "\n";
    }
  }
  return text;
}

// The answer in a process that ends when it starts another one.
std::string withoutProcesses(const std::function<std::string()> &work) {
  const auto prepare = [] {
    if (!forbidProcesses()) _exit(1);
  };
  const std::string answer = inChild(prepare, work);
  return answer.substr(answer.find(';') + 1);
}

void makeEachKind(const Workspace &folder) {
  folder.makeFile("plain");
  chmod(folder.makeFile("program").c_str(), 0755);
  chmod(folder.makeFile("group's program").c_str(), 0610);
  chmod(folder.makeFile("star*").c_str(), 0644);
  chmod(folder.makeFile("program*").c_str(), 0601);
  folder.makeFile(".hidden");
  folder.makeFolder("folder");
  folder.makeFolder("folder*");
  folder.makeLink("link", "plain");
  folder.makeLink("link*", "nowhere");
  folder.makeLink("link to a folder", "folder");
  folder.makeSocket("socket");
  mkfifo(folder.path("fifo").c_str(), 0755);
}

TEST(Folder, IsReadWithoutAProcessForAPatternThatMeansItself) {
  const Workspace folder;
  for (const char *name : {"a.tab", "A tab", "a-(b)+{c}?|]\"", "\xE9t\xE9"}) folder.makeFile(name);
  const struct {
    const char *pattern, *names;
  } kRows[] = {
      {"", "<A tab> <a-(b)+{c}?|]\"> <a.tab> <\xE9t\xE9>"},
      {"a", "<A tab> <a-(b)+{c}?|]\"> <a.tab>"},
      {"TAB", "<A tab> <a.tab>"},
      {"a t", "<A tab>"},
      {"a-", "<a-(b)+{c}?|]\">"},
      {"(b)+{c}?|]\"", "<a-(b)+{c}?|]\">"},
      {"\xE9", "<\xE9t\xE9>"},
      {"\xC9", ""},
      {"none", ""},
  };
  for (const auto &row : kRows) {
    const std::string said =
        withoutProcesses([&] { return read(folder.path(), row.pattern, row.names[0] ? 9 : 0); });
    const std::string names = row.names[0] ? std::string(" ") + row.names : "";
    EXPECT_NE(said.find("found:" + names + "\n"), said.npos) << row.pattern << ": " << said;
    EXPECT_NE(said.find("visited:" + names + "\n"), said.npos) << row.pattern << ": " << said;
  }
}

TEST(Folder, IsReadByTheToolsForEveryOtherPattern) {
  const Workspace folder;
  const std::string quoted = folder.makeFolder("it's");
  for (const char *pattern : {".", "a.b", "[", "[a]", "*", "a*", "^", "a^", "$", "$a", "\\", "a\\",
                              "'", "''", "\n", "a\nb", "-", "-v"}) {
    EXPECT_FALSE(shell::meansItself(pattern)) << pattern;
    EXPECT_EQ(withoutProcesses([&] { return read(folder.path(), pattern, 1); }),
              "the process failed")
        << pattern;
  }
  EXPECT_EQ(withoutProcesses([&] { return read(quoted, "", 1); }), "the process failed");
  EXPECT_EQ(withoutProcesses([&] { return toolsSay(folder.path(), "", 1); }), "the process failed");
}

TEST(Folder, BothWaysAgreeOnEachKind) {
  const Workspace folder;
  makeEachKind(folder);
  EXPECT_EQ(differences({folder.path()}, {"", "@", "k@", "r/", "|", "t=", "*"}), "");
  EXPECT_EQ(differences({"/usr/bin"}, {"", "s"}, 3000), "");
  kindsAreUntold = true;
  EXPECT_EQ(differences({folder.path()}, {"", "@"}), "");
  kindsAreUntold = false;
  EXPECT_EQ(find(folder.path(), 9, "@").names, (Names{"link@", "link to a folder@", "link*@"}));
  EXPECT_EQ(find(folder.path(), 9, "prog").names,
            (Names{"group's program", "program", "program*"}));
}

TEST(Folder, BothWaysAgreeOnOddCharacters) {
  const Workspace folder;
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '/') folder.makeFile(std::string("<") + static_cast<char>(byte) + ">");
  }
  for (const char byte :
       std::string_view("!\"#%&()+,/:;<=>?@]_`{|}~ \t\r\x01\x7F\x80\x81\x88\xC9\xE9\xFF")) {
    const std::string pattern(1, byte);
    EXPECT_TRUE(shell::meansItself(pattern)) << pattern;
    EXPECT_EQ(find(folder.path(), 300, pattern).names,
              literalFind(folder.path(), 300, pattern).names)
        << pattern;
  }
  const std::string odd = folder.makeFolder("d\x81\x88\xFF \\$`\n\"");
  folder.makeFile("d\x81\x88\xFF \\$`\n\"/\x81");
  EXPECT_EQ(differences({odd}, {"", "\x81", "\x81\x81"}), "");
}

TEST(Folder, BothWaysAgreeOnLineFeedsInNames) {
  const Workspace folder;
  for (const char *name : {"\n", "\n\n", "a\n", "\na", "a\nb", "b\na\nb", "a*\nb*", ".\na"}) {
    folder.makeFile(name);
  }
  chmod(folder.makeFile("a\nprogram").c_str(), 0755);
  folder.makeFolder("a\nfolder");
  folder.makeLink("a\nlink", "nowhere");
  EXPECT_EQ(differences({folder.path()}, {"", "a", "k@"}), "");
}

std::string randomPattern(std::mt19937 &random, const Workspace &folder) {
  std::string name = randomName(random);
  for (const auto &entry : Names(visited(folder.path(), ""))) {
    if (random() % 8 == 0) name = entry;
  }
  const std::size_t begin = random() % (name.size() + 1);
  return name.substr(begin, random() % 4);
}

TEST(Folder, BothWaysAgreeOnRandomFoldersAndPatterns) {
  const ResultGlobals saved;
  std::mt19937 random(1308);
  for (int round = 0; round < 12; ++round) {
    SCOPED_TRACE(round);
    const Workspace folder;
    for (std::size_t entries = random() % 60; entries > 0; --entries) {
      makeRandomEntry(random, folder);
    }
    kindsAreUntold = random() % 4 == 0;
    for (int i = 0; i < 5; ++i) {
      const int max = static_cast<int>(random() % 30);
      EXPECT_EQ(differences({folder.path()}, {randomPattern(random, folder)}, max), "");
    }
    kindsAreUntold = false;
  }
}

// Without a slot, 255 bytes of the listing are read: the marks of programs are among them.
TEST(Folder, TheMarksOfProgramsCountWhereTheListingIsCut) {
  for (const int programs : {0, 1, 5, 6}) {
    const Workspace folder;
    std::string listing;
    for (char letter = 'a'; letter < 'a' + programs; ++letter) {
      const std::string name(30, letter);
      chmod(folder.makeFile(name).c_str(), 0755);
      listing += name + "*\n";
    }
    folder.makeFile("z");
    for (std::size_t length = 1; length < 250; length += length < 80 ? 1 : 9) {
      const std::string name(length, 'y');
      folder.makeFile(name);
      const std::string cut = (listing + name + "\nz\n").substr(0, 255);
      const auto lines = std::count(cut.begin(), cut.end() - 1, '\n') + 1;
      EXPECT_EQ(find(folder.path(), 0, "").count, lines) << programs << " " << length;
      EXPECT_EQ(find(folder.path(), 1, "").count, lines) << programs << " " << length;
      if (length % 40 == 0) {
        EXPECT_EQ(literalFind(folder.path(), 0, "").count, lines) << programs << " " << length;
      }
      unlink(folder.path(name).c_str());
    }
  }
}

TEST(Folder, BothWaysAgreeOnTheLongestNames) {
  const Workspace folder;
  chmod(folder.makeFile(std::string(255, 'x')).c_str(), 0755);
  folder.makeLink(std::string(255, 'y'), "nowhere");
  folder.makeFile(std::string(254, 'z') + "*");
  EXPECT_EQ(differences({folder.path()}, {"", "y@", std::string(255, 'x'), std::string(256, 'x'),
                                          std::string(200000, 'x')}),
            "");
  std::string deep = folder.path();
  while (deep.size() + 202 < 4095) {
    deep += "/" + std::string(200, 'd');
    ASSERT_EQ(mkdir(deep.c_str(), 0755), 0);
  }
  // With the "/" behind it, the last one is too long for a path.
  for (const std::size_t length : {4093, 4094, 4095, 4096}) {
    const InFolder parent(deep);
    const std::string name(length - deep.size() - 1, 'e');
    ASSERT_EQ(mkdir(name.c_str(), 0755), 0);
    close(creat((name + "/f").c_str(), 0644));
    EXPECT_EQ(differences({deep + "/" + name}, {"", "f"}), "") << length;
  }
}

TEST(Folder, BothWaysAgreeOnFoldersOfAnyName) {
  const Workspace place;
  for (const char *name : {"folder", "-folder"}) {
    place.makeFolder(name);
    place.makeFile(std::string(name) + "/in it");
  }
  place.makeFile("file");
  place.makeLink("to folder", "folder");
  place.makeLink("to file", "file");
  place.makeLink("to nothing", "nowhere");
  place.makeLink("to itself", "to itself");
  place.makeFolder("empty");
  const InFolder current(place.path());
  const Names folders = {"",
                         ".",
                         "..",
                         "./",
                         "folder",
                         "folder/",
                         "folder//",
                         "folder/.",
                         "./-folder",
                         "-folder",
                         "file",
                         "file/",
                         "to folder",
                         "to folder/",
                         "to file",
                         "to nothing",
                         "to itself",
                         "empty",
                         "missing",
                         "folder/missing",
                         "file/x",
                         "fold''er",
                         " ",
                         "to folder/..",
                         "/",
                         "//",
                         place.path() + "/folder"};
  EXPECT_EQ(differences(folders, {"t"}), "");
  EXPECT_NE(read("to folder", "t", 1).find("1 found: <in it>"), std::string::npos);
}

// Bound by modes, as the superuser is not.
TEST(Folder, BothWaysAgreeForAPlainUser) {
  const std::string answers = asPlainUser([] {
    const Workspace place;
    for (const char *folder : {"all", "read", "enter", "none"}) {
      place.makeFolder(folder);
      place.makeFile(std::string(folder) + "/file");
      chmod(place.makeFile(std::string(folder) + "/program*").c_str(), 0755);
      place.makeLink(std::string(folder) + "/link", "file");
    }
    chmod(place.path("read").c_str(), 0400);
    chmod(place.path("enter").c_str(), 0100);
    chmod(place.path("none").c_str(), 0);
    const Names folders = {place.path("all"), place.path("read"), place.path("enter"),
                           place.path("none"), place.path("none/in")};
    const std::string text = differences(folders, {"", "i"}) + differences(folders, {""}, 0);
    // What cannot be looked at has no mark.
    kindsAreUntold = true;
    return text + read(place.path("read"), "", 9).substr(0, 32);
  });
  EXPECT_EQ(answers.substr(answers.find(';')), ";3 found: <file> <link> <program>");
  EXPECT_NE(answers.substr(0, 6), "uid 0;");
}

TEST(Folder, IsReadByTheFirstToolsOfThePath) {
  const Workspace folder;
  folder.makeFile("file");
  const auto count = [&](const char *path) {
    const Variable variable("PATH", path);
    return find(folder.path(), 1, "").count;
  };
  EXPECT_EQ(count("/bin"), 1);
  EXPECT_EQ(count("/nowhere:/usr/bin:/bin"), 1);
  EXPECT_EQ(count(nullptr), 1) << "the shell has a path of its own";
  // Without the tools nothing is found.
  EXPECT_EQ(count("/nowhere"), 0);
  EXPECT_EQ(count(""), 0);
  EXPECT_EQ(count("::"), 0);
  for (const char *own : {"ls", "grep"}) {
    const Workspace tools;
    chmod(tools.makeFile(own, "#!/bin/sh\necho own 1\necho own 2\n").c_str(), 0755);
    EXPECT_EQ(count((tools.path() + ":/usr/bin:/bin").c_str()), 2) << own;
    EXPECT_EQ(count(("/usr/bin:/bin:" + tools.path()).c_str()), 1) << own;
    // What may not be run is passed over, an empty folder is the current one.
    const InFolder current(tools.path());
    EXPECT_EQ(count(":/usr/bin:/bin"), 2) << own;
    chmod(tools.path(own).c_str(), 0644);
    EXPECT_EQ(count(":/usr/bin:/bin"), 1) << own;
    EXPECT_EQ(count(tools.path().c_str()), 0) << own;
  }
}

// Makes and removes files until it is killed.
class Churn {
 public:
  explicit Churn(const Workspace &folder) : process_(fork()) {
    if (process_ != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (unsigned i = 0;; ++i) {
      const std::string name = folder.path("passing " + std::to_string(i % 50));
      const int file = creat(name.c_str(), 0755);
      close(file);
      rename(name.c_str(), (name + " on").c_str());
      unlink((name + " on").c_str());
    }
  }
  ~Churn() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  Churn(const Churn &) = delete;
  Churn &operator=(const Churn &) = delete;

 private:
  pid_t process_;
};

TEST(Folder, ThatChangesMeanwhileShowsWhatStays) {
  const Workspace folder;
  Names staying;
  for (int i = 100; i < 400; ++i) {
    staying.push_back((i % 2 == 0 ? "a " : "z ") + std::to_string(i));
    folder.makeFile(staying.back());
  }
  std::sort(staying.begin(), staying.end());
  const Variable path("PATH", kSystemsPath);
  const Churn churn(folder);
  for (int i = 0; i < 100; ++i) {
    Names names = find(folder.path(), i % 2 == 0 ? 400 : 300, " ").names;
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    std::erase_if(names, [](const std::string &name) { return name.starts_with("passing"); });
    EXPECT_TRUE(std::equal(names.begin(), names.end(), staying.begin())) << names.size();
    EXPECT_TRUE(names.size() == staying.size() || i % 2 != 0) << names.size();
  }
}

TEST(Folder, IsReadBeforeTheFirstVisit) {
  const ResultGlobals saved;
  const Workspace folder;
  for (const char *name : {"a", "b", "c"}) folder.makeFile(name);
  static std::string place;
  place = folder.path();
  const auto removeAll = [](const char *name) {
    for (const char *file : {"/a", "/b", "/c"}) unlink((place + file).c_str());
    return visit(name);
  };
  visitedNames.clear();
  BSDDir_ProcessFiles(place.c_str(), "", removeAll);
  EXPECT_EQ(visitedNames, (Names{"a", "b", "c"}));
}

}  // namespace
}  // namespace korvel::test
