// SPDX-License-Identifier: MIT
// Only the listings of folders start processes, whatever is in a path, and only where a tool reads
// the path or the pattern otherwise than as its bytes.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>
#include <korvel/profile.h>
#include <korvel/strings.h>
#include <korvel/tables.h>

#include "tests/files/faults.h"
#include "tests/files/volumes.h"
#include "tests/support/no_processes.h"

namespace korvel {
namespace {

using test::content;
using test::modeOf;
using test::Volumes;

// A shell would take each of these for something else.
constexpr const char *kNames[] = {"plain",
                                  "l'\xE9t\xE9.tab",
                                  "'",
                                  "''",
                                  "'; touch PWNED; '",
                                  "$(touch PWNED)",
                                  "`touch PWNED`",
                                  "a\" touch PWNED \"b",
                                  "; touch PWNED",
                                  "-R",
                                  "--help",
                                  "two\nlines"};

class NoProcess : public testing::Test {
 protected:
  // What went wrong first in a process that may start no other; a line on standard error counts.
  std::string withoutProcesses(const std::function<std::string()> &body) const {
    const std::string said = volumes_.root() + "/said";
    const std::string failure = volumes_.root() + "/failure";
    const int result = test::inChild([&] {
      if (!test::forbidProcesses()) return 77;
      const int out = ::open(said.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0600);
      if (dup2(out, STDERR_FILENO) < 0 || chdir(volumes_.root().c_str()) != 0) return 1;
      umask(077);
      std::ofstream(failure) << body();
      return 0;
    });
    if (result == 77) return "the system offers no way to tell";
    if (result != 0) return "a process was started";
    if (!content(said).empty()) return "standard error: " + content(said);
    if (access((volumes_.root() + "/PWNED").c_str(), F_OK) == 0) return "a path was run";
    return content(failure);
  }

  // Calls every function of files.h that takes a path, except the listings.
  std::string useAll(const std::string &volume, const std::string &name) const {
    const std::string posix = volumes_.root() + "/" + volume + "/" + name;
    const std::string mac = volume + ":" + name;
    const std::string other = mac + " other";
    const char *path = mac.c_str();
    const auto failed = [&](const char *what) { return std::string(what) + " of " + mac; };

    const int written = File_Open(path, 0, 1);
    if (written < 0 || File_Write(written, "x", 1) != 1) return failed("writing");
    if (modeOf(posix) != 0777) return failed("mode");
    const int read = File_Open(path, 1, 0);
    const int both = File_Open(path, 1, 1);
    if (read < 0 || both < 0) return failed("opening");
    for (const int handle : {both, read, written}) File_Close(handle);
    if (File_Is_Existing(path) != 1) return failed("existence");
    char row[512];
    std::snprintf(row, 256, "%s none", path);
    std::snprintf(row + 256, 256, "%s", path);
    if (Dir_SortSizeFiles(row, 2) != 1 || row != mac) return failed("sorting");
    char list[256] = "";
    std::snprintf(list, sizeof list - 1, "%s", name.c_str());
    char *item = nullptr;
    if (ChCh_Detect_Missing_File(volume.c_str(), list, &item) != 0) return failed("looking");
    if (MACRename(path, other.c_str()) != 0) return failed("renaming");
    if (MACRemove(other.c_str()) != 0 || MACRemove(other.c_str()) != -1) return failed("removing");

    const int descriptor = xFile_Open(path, 0, 1);
    if (descriptor < 0 || xFile_Close(descriptor) != 0) return failed("descriptor");
    if (modeOf(posix) != 0777 || MACRemove(path) != 0) return failed("mode of a descriptor");
    if (MakeDir(path) != 1 || modeOf(posix) != 0777) return failed("folder");
    if (Dir_Is_Existing(path) != 1 || MACRemove(path) != 0) return failed("existence of a folder");
    return "";
  }

  static std::string useTables() {
    char out[16];
    std::strcpy(szDirTables, "it's");
    ZRV_Libelle_NC_szDirTables[0] = '\0';
    if (ZRV_Table_create("l'\xE9t\xE9", "1", "T") != 1) return "create";
    if (ZRV_Libelle_NC("#DEBUT", 6, 0, "l'\xE9t\xE9", out, sizeof out) != 1) return "lookup";
    if (ZRV_Libelle_NC_idem_insert("", 0, "l'\xE9t\xE9", 2) != 1) return "insert";
    if (ZRV_Table_sauvegarde("l'\xE9t\xE9", 1) != 0) return "back-up";
    if (ZRV_Table_modify("l'\xE9t\xE9", "d'\xE9t\xE9", "1", "T") != 1) return "rename";
    if (ZRV_Table_liste("d'\xE9t\xE9", out, sizeof out) != 1) return "list";
    return ZRV_Table_remove("d'\xE9t\xE9") == 1 ? "" : "remove";
  }

  static std::string useProfile() {
    char out[16];
    const char *path = "it's:l'\xE9t\xE9.ini";
    if (WritePrivateProfileString("A", "x", "1", path) != 1) return "write";
    return GetPrivateProfileString("A", "x", "", out, sizeof out, path) == 1 ? "" : "read";
  }

  void makeVolume(const std::string &name) const {
    ASSERT_EQ(mkdir((volumes_.root() + "/" + name).c_str(), 0755), 0);
  }

  Volumes volumes_;
  test::Restored<char[256]> tables_{szDirTables};
  test::Restored<char[256]> chosen_{ZRV_Libelle_NC_szDirTables};
};

// Shows that the check can fail.
TEST_F(NoProcess, AStartedOneIsSeen) {
  const auto call = [](int (*function)(const char *), const char *path) {
    return [=] { return function(path) == 0 ? "" : "result"; };
  };
  EXPECT_EQ(withoutProcesses([] { return "as told"; }), "as told");
  EXPECT_EQ(withoutProcesses(call(BSDIsExisting, "none")), "");
  EXPECT_EQ(withoutProcesses(call(BSDIsExisting, "it's")), "a process was started");
}

TEST_F(NoProcess, FilesAndFoldersOfAnyNameNeedNone) {
  for (const char *volume : {"it's", "-v", "$(touch PWNED)", "'; touch PWNED; '"})
    makeVolume(volume);
  for (const char *volume : {"Data", "it's", "-v", "$(touch PWNED)", "'; touch PWNED; '"}) {
    for (const char *name : kNames)
      EXPECT_EQ(withoutProcesses([&] { return useAll(volume, name); }), "") << volume << name;
  }
}

TEST_F(NoProcess, AFolderOfVolumesWithAnApostropheNeedsNone) {
  makeVolume("d'une");
  ASSERT_EQ(mkdir((volumes_.root() + "/d'une/Data").c_str(), 0755), 0);
  std::strcat(szVolumes, "/d'une");
  EXPECT_EQ(withoutProcesses([&] {
              const int handle = File_Open("Data:new", 0, 1);
              if (handle < 0 || modeOf(volumes_.root() + "/d'une/Data/new") != 0777) return "mode";
              return MACRemove("Data:new") == 0 ? "" : "removal";
            }),
            "");
}

TEST_F(NoProcess, AListingByAPatternThatMeansItselfNeedsNone) {
  const auto list = [](const char *directory, const char *pattern) {
    return [=]() -> std::string {
      setenv("PATH", "/usr/bin:/bin", 1);
      char row[256] = "none";
      const auto visit = [](const char *name) { return static_cast<int>(std::strlen(name)); };
      if (Dir_FindFiles(row, directory, 1, pattern) != 1) return "count";
      return Dir_ProcessFiles(directory, pattern, visit) == 8 ? row : "visit";
    };
  };
  for (const std::string volume : {"Data", "-v", "$(touch PWNED)"}) {
    if (volume != "Data") makeVolume(volume);
    std::ofstream(volumes_.root() + "/" + volume + "/fiche $x") << "x";
    const std::string found = volume + ":fiche $x";
    for (const char *pattern : {"*", "", "fiche", "*HE*", "e ", "*x"})
      EXPECT_EQ(withoutProcesses(list(volume.c_str(), pattern)), found) << pattern;
    EXPECT_EQ(withoutProcesses(list(volume.c_str(), "*.*")), "a process was started");
  }
  makeVolume("it's");
  EXPECT_EQ(withoutProcesses(list("it's", "*")), "a process was started");
}

TEST_F(NoProcess, TablesAndProfilesNeedNone) {
  makeVolume("it's");
  EXPECT_EQ(withoutProcesses(useTables), "");
  EXPECT_EQ(withoutProcesses(useProfile), "");
}

}  // namespace
}  // namespace korvel
