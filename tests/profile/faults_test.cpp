// What a disk, a kill or missing rights leave of a profile: the old one or the new one, whole.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <korvel/profile.h>
#include "files/replace.h"
#include "tests/files/volumes.h"
#include "tests/profile/files_in_memory.h"
#include "tests/profile/literal_profile.h"
#include "tests/profile/processes.h"

namespace {

using korvel::test::content;
using korvel::test::entries;
using korvel::test::inChild;
using korvel::test::inChildOfAUser;
using korvel::test::killedAtStop;
using korvel::test::literalWriteKey;
using korvel::test::literalWriteSection;
using korvel::test::Volumes;

constexpr char kPath[] = "Data:p.ini";

std::string profileOf(int keys) {
  std::string text = "[Main]\r\n";
  for (int i = 0; i < keys; ++i)
    text += "key" + std::to_string(i) + "=value " + std::to_string(i) + "\r\n";
  return text;
}

// A way to write, and what it makes of a content.
struct Writer {
  const char *name;
  std::function<int()> write;
  std::function<std::string(const std::string &)> result;
};

const Writer kWriters[] = {
    {"replace a key", [] { return WritePrivateProfileString("Main", "key1", "new", kPath); },
     [](const std::string &old) { return literalWriteKey(old, "Main", "key1", "new"); }},
    {"add a section", [] { return WritePrivateProfileString("More", "key", "new", kPath); },
     [](const std::string &old) { return literalWriteKey(old, "More", "key", "new"); }},
    {"replace a section", [] { return WritePrivateProfileSection("Main", "a=1\r\nb=2", kPath); },
     [](const std::string &old) { return literalWriteSection(old, "Main", "a=1\r\nb=2"); }},
};

// nullopt: there is no such file.
std::optional<std::string> fileContent(const std::string &path) {
  if (!std::filesystem::exists(path)) return std::nullopt;
  return content(path);
}

// Kills the writer at each of its system calls in turn. Returns the number of kills.
int killEverywhere(const Writer &writer, const std::optional<std::string> &old, bool throughLink) {
  Volumes volumes;
  const std::string target = volumes.posix(throughLink ? "target.ini" : "p.ini");
  const std::string changed = writer.result(old.value_or(""));
  int kills = 0;
  int foundOld = 0;
  for (;; ++kills) {
    std::filesystem::remove(volumes.posix("p.ini"));
    std::filesystem::remove(target);
    if (old) volumes.file(throughLink ? "target.ini" : "p.ini", *old);
    if (throughLink) std::filesystem::create_symlink("target.ini", volumes.posix("p.ini"));
    if (!killedAtStop(kills + 1, [&] { writer.write(); })) break;
    const auto now = fileContent(target);
    EXPECT_TRUE(now == old || now == changed) << writer.name << ", stop " << kills + 1;
    if (now == old) ++foundOld;
    // Nothing that the kill left behind stands in the way.
    EXPECT_EQ(writer.write(), 1) << writer.name << ", stop " << kills + 1;
    EXPECT_EQ(content(target), writer.result(now.value_or(""))) << writer.name;
  }
  EXPECT_EQ(fileContent(target), changed) << writer.name;
  // Both were seen: the kills did fall on either side of the change.
  EXPECT_GT(foundOld, 0) << writer.name;
  EXPECT_LT(foundOld, kills) << writer.name;
  return kills;
}

TEST(Kill, AtEverySystemCallLeavesTheOldProfileOrTheNew) {
  korvel::test::FilesInMemory inMemory;
  int kills = 0;
  for (const Writer &writer : kWriters) {
    kills += killEverywhere(writer, profileOf(3), false);
    kills += killEverywhere(writer, profileOf(3000), false);
    kills += killEverywhere(writer, profileOf(3), true);
    kills += killEverywhere(writer, std::nullopt, false);
  }
  EXPECT_GE(kills, 300);
  RecordProperty("kills", kills);
}

TEST(FullDisk, FileSizeLimitLeavesTheOldProfile) {
  const std::string old = profileOf(400);
  for (const Writer &writer : kWriters) {
    const std::string changed = writer.result(old);
    for (const std::size_t limit :
         {std::size_t{0}, std::size_t{1}, changed.size() / 2, changed.size() - 1, changed.size()}) {
      Volumes volumes;
      volumes.file("p.ini", old);
      const bool fits = limit == changed.size();
      const int result = inChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit size = {limit, limit};
        return setrlimit(RLIMIT_FSIZE, &size) == 0 ? writer.write() : 99;
      });
      EXPECT_EQ(result, fits ? 1 : 0) << writer.name << ", limit " << limit;
      EXPECT_EQ(content(volumes.posix("p.ini")), fits ? changed : old) << writer.name;
      EXPECT_EQ(entries(volumes.folder()), std::vector<std::string>{"p.ini"});
    }
  }
}

TEST(FullDisk, LeavesTheOldProfileAndNoNewOne) {
  Volumes volumes;
  const std::string disk = volumes.folder();
  if (mount("none", disk.c_str(), "tmpfs", 0, "size=65536,mode=0777") != 0)
    GTEST_SKIP() << "may not mount a small disk";
  const std::string old = profileOf(1000);
  volumes.file("p.ini", old);
  volumes.file("ballast", std::string(32768, 'b'));
  ASSERT_LT(65536 - 32768, 2 * static_cast<int>(old.size()));
  for (const Writer &writer : {kWriters[0], kWriters[1]}) {
    EXPECT_EQ(writer.write(), 0) << writer.name;
    EXPECT_EQ(content(volumes.posix("p.ini")), old) << writer.name;
  }
  EXPECT_EQ(WritePrivateProfileSection("A", std::string(40000, 'v').c_str(), "Data:new.ini"), 0);
  EXPECT_EQ(entries(disk), (std::vector<std::string>{"ballast", "p.ini"}));
  std::filesystem::remove(volumes.posix("ballast"));
  EXPECT_EQ(kWriters[0].write(), 1);
  EXPECT_EQ(content(volumes.posix("p.ini")), kWriters[0].result(old));
  EXPECT_EQ(umount2(disk.c_str(), MNT_DETACH), 0);
}

korvel::files::ReplaceStep failingStep;

TEST(Fault, AtAnyStepOfTheReplacementFailsAndLeavesTheOldProfile) {
  using korvel::files::ReplaceStep;
  const std::string old = profileOf(100);
  for (const ReplaceStep step : {ReplaceStep::Open, ReplaceStep::Write, ReplaceStep::Adopt,
                                 ReplaceStep::Sync, ReplaceStep::Link, ReplaceStep::Rename}) {
    for (const Writer &writer : kWriters) {
      Volumes volumes;
      volumes.file("p.ini", old);
      failingStep = step;
      korvel::files::replaceFault = [](ReplaceStep asked) {
        return asked == failingStep ? ENOSPC : 0;
      };
      EXPECT_EQ(writer.write(), 0) << writer.name;
      korvel::files::replaceFault = nullptr;
      EXPECT_EQ(content(volumes.posix("p.ini")), old) << writer.name;
      EXPECT_EQ(entries(volumes.folder()), std::vector<std::string>{"p.ini"});
      EXPECT_EQ(DATA_MFIL_ID, -1);
    }
  }
}

// A profile in a folder of these modes, written by a user who is not its owner.
class Rights : public testing::Test {
 protected:
  Rights() {
    volumes_.file("p.ini", kOld);
    chmod(volumes_.root().c_str(), 0755);
  }
  ~Rights() override { chmod(volumes_.folder().c_str(), 0777); }

  void give(mode_t folder, mode_t file) {
    chmod(volumes_.folder().c_str(), folder);
    chmod(volumes_.posix("p.ini").c_str(), file);
  }
  void expectRefusal() {
    for (const Writer &writer : kWriters) EXPECT_EQ(inChildOfAUser(writer.write), 0) << writer.name;
    EXPECT_EQ(content(volumes_.posix("p.ini")), kOld);
    EXPECT_EQ(entries(volumes_.folder()), std::vector<std::string>{"p.ini"});
  }

  static constexpr char kOld[] = "[Main]\r\nkey1=old\r\n";
  Volumes volumes_;
};

TEST_F(Rights, ReadOnlyFileIsLeftAlone) {
  give(0777, 0444);
  expectRefusal();
}

TEST_F(Rights, FileInAReadOnlyFolderIsLeftAlone) {
  give(0555, 0666);
  expectRefusal();
}

TEST_F(Rights, ReadOnlyFileInAReadOnlyFolderIsLeftAlone) {
  give(0555, 0444);
  expectRefusal();
}

TEST_F(Rights, NothingIsCreatedInAReadOnlyFolder) {
  give(0555, 0666);
  EXPECT_EQ(inChildOfAUser([] { return WritePrivateProfileString("A", "x", "1", "Data:n.ini"); }),
            0);
  EXPECT_EQ(entries(volumes_.folder()), std::vector<std::string>{"p.ini"});
}

TEST_F(Rights, FileAndFolderOpenToAllAreWritten) {
  give(0777, 0666);
  EXPECT_EQ(inChildOfAUser(kWriters[0].write), 1);
  EXPECT_EQ(content(volumes_.posix("p.ini")), "[Main]\r\nkey1=new\r\n");
}

}  // namespace
