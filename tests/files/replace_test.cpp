// SPDX-License-Identifier: MIT
// Replacements of whole files, with faults at the steps, kills and small disks. Failing system
// calls are in tests/faults/.
#include "files/replace.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <signal.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "files/lock.h"
#include "tests/files/replacements.h"

namespace korvel::files {
namespace {

using test::becomeNobody;
using test::content;
using test::entries;
using test::Fault;
using test::inChild;
using test::inChildOfAUser;
using test::modeOf;
using test::Scratch;
using test::SmallDisk;

TEST(Replace, NewContentShorterEqualAndLonger) {
  Scratch scratch;
  const std::string file = scratch.file("a.ini", "old content");
  for (const std::string text : {"new", "new content", "a much longer new content", ""}) {
    ASSERT_TRUE(replaceBy(file, text)) << text;
    EXPECT_EQ(content(file), text);
    EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a.ini"});
  }
}

TEST(Replace, PiecesFollowOneAnotherWhateverTheirNumber) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  for (const std::size_t count : {0, 1, 2, 63, 64, 65, 128, 1000, 3000}) {
    std::vector<std::string> texts;
    std::string whole;
    for (std::size_t i = 0; i < count; ++i) {
      texts.push_back(i % 7 == 3 ? "" : std::to_string(i) + "\r\n");
      whole += texts.back();
    }
    const std::vector<std::string_view> pieces(texts.begin(), texts.end());
    ASSERT_TRUE(replaceFile(file.c_str(), pieces)) << count;
    EXPECT_EQ(content(file), whole) << count;
  }
}

TEST(Replace, ContentMayBeAppendedInManyCalls) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  std::mt19937 random(7);
  const std::string block = test::randomBytes(random, 262144);
  Replacement replacement;
  ASSERT_TRUE(replacement.begin(file.c_str()));
  std::string whole;
  for (int i = 0; i < 20; ++i) {
    ASSERT_TRUE(replacement.append(block));
    whole += block;
    EXPECT_EQ(content(file), "old");
  }
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"}) << "the temporary is nameless";
  ASSERT_TRUE(replacement.commit());
  EXPECT_TRUE(content(file) == whole);
}

TEST(Replace, WithoutCommitNothingChanges) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  {
    Replacement replacement;
    ASSERT_TRUE(replacement.begin(file.c_str()));
    ASSERT_TRUE(replacement.append("new"));
  }
  EXPECT_EQ(content(file), "old");
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

TEST(Replace, OneObjectServesAgainAfterItsEnd) {
  Scratch scratch;
  const std::string a = scratch.file("a", "old a");
  const std::string b = scratch.file("b", "old b");
  Replacement replacement;
  EXPECT_FALSE(replacement.append("x"));
  EXPECT_FALSE(replacement.commit());
  ASSERT_TRUE(replacement.begin(a.c_str()));
  ASSERT_TRUE(replacement.append("given up"));
  ASSERT_TRUE(replacement.begin(b.c_str()));
  ASSERT_TRUE(replacement.append("new b"));
  ASSERT_TRUE(replacement.commit());
  EXPECT_FALSE(replacement.commit());
  EXPECT_EQ(content(a), "old a");
  EXPECT_EQ(content(b), "new b");
}

TEST(Replace, PathsThatNameNoFileAreRefused) {
  Scratch scratch;
  mkdir((scratch.path() + "/folder").c_str(), 0777);
  mkfifo((scratch.path() + "/pipe").c_str(), 0666);
  symlink("loop", (scratch.path() + "/loop").c_str());
  scratch.file("file", "old");
  const std::string tooLong = scratch.path() + "/" + std::string(300, 'n');
  const std::string endless = scratch.path() + "/" + std::string(PATH_MAX, 'n');
  for (const std::string name :
       {"/folder", "/pipe", "/loop", "/file/x", "/file/", "/none/x", "/"}) {
    EXPECT_FALSE(replaceBy(scratch.path() + name, "new", IfMissing::Create)) << name;
  }
  EXPECT_FALSE(replaceBy(tooLong, "new", IfMissing::Create));
  EXPECT_FALSE(replaceBy(endless, "new", IfMissing::Create));
  EXPECT_FALSE(replaceBy("", "new", IfMissing::Create));
  EXPECT_FALSE(replaceFile(nullptr, {}, IfMissing::Create));
  EXPECT_FALSE(replaceBy(scratch.path() + "/missing", "new"));
  EXPECT_EQ(entries(scratch.path()), (std::vector<std::string>{"file", "folder", "loop", "pipe"}));
}

TEST(Replace, AMissingFileIsCreatedForAllWhateverTheMask) {
  Scratch scratch;
  const std::string file = scratch.path() + "/new.ini";
  const mode_t mask = umask(077);
  const bool done = replaceBy(file, "text", IfMissing::Create);
  EXPECT_EQ(umask(mask), 077u);
  ASSERT_TRUE(done);
  EXPECT_EQ(content(file), "text");
  EXPECT_EQ(modeOf(file), 0777u);
}

TEST(Replace, ARelativePathLeadsFromTheCurrentFolder) {
  Scratch scratch;
  scratch.file("a", "old");
  EXPECT_EQ(inChild([&] {
              if (chdir(scratch.path().c_str()) != 0) return 2;
              return replaceBy("a", "new") ? 0 : 1;
            }),
            0);
  EXPECT_EQ(content(scratch.path() + "/a"), "new");
}

TEST(Replace, ASymbolicLinkStaysAndItsFileIsReplaced) {
  Scratch scratch;
  mkdir((scratch.path() + "/real").c_str(), 0777);
  const std::string file = scratch.file("real/a", "old");
  const std::string first = scratch.path() + "/first";
  const std::string second = scratch.path() + "/second";
  symlink("real/a", first.c_str());
  symlink(first.c_str(), second.c_str());
  ASSERT_TRUE(replaceBy(second, "new"));
  EXPECT_EQ(content(file), "new");
  struct stat status = {};
  ASSERT_EQ(lstat(first.c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  ASSERT_EQ(lstat(second.c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  EXPECT_EQ(entries(scratch.path()), (std::vector<std::string>{"first", "real", "second"}));
}

TEST(Replace, ADanglingLinkGetsItsFile) {
  Scratch scratch;
  const std::string link = scratch.path() + "/link";
  symlink("later", link.c_str());
  EXPECT_FALSE(replaceBy(link, "new"));
  ASSERT_TRUE(replaceBy(link, "new", IfMissing::Create));
  EXPECT_EQ(content(scratch.path() + "/later"), "new");
}

TEST(Replace, OtherHardLinksKeepTheOldContent) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  const std::string other = scratch.path() + "/b";
  ASSERT_EQ(link(file.c_str(), other.c_str()), 0);
  ASSERT_TRUE(replaceBy(file, "new"));
  EXPECT_EQ(content(file), "new");
  EXPECT_EQ(content(other), "old");
}

TEST(Replace, ModeIsKept) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  for (const mode_t mode : {0600, 0644, 0666, 0755, 0777, 0200, 04755, 02770}) {
    ASSERT_EQ(chmod(file.c_str(), mode), 0);
    ASSERT_TRUE(replaceBy(file, "new")) << std::oct << mode;
    EXPECT_EQ(modeOf(file), mode);
  }
}

TEST(Replace, OwnerAndGroupAreKeptByRoot) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  ASSERT_EQ(chown(file.c_str(), 12, 34), 0);
  ASSERT_EQ(chmod(file.c_str(), 06751), 0);
  ASSERT_TRUE(replaceBy(file, "new"));
  struct stat status = {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 12u);
  EXPECT_EQ(status.st_gid, 34u);
  EXPECT_EQ(status.st_mode & 07777, 06751u);
}

TEST(Replace, AGroupThatCannotBeKeptGainsNoRights) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  Scratch scratch;
  chmod(scratch.path().c_str(), 0777);
  const struct {
    mode_t before;
    mode_t after;
  } kCases[] = {{0777, 0777}, {0672, 0622}, {06777, 0777}, {0666, 0666}};
  for (const auto &row : kCases) {
    const std::string file = scratch.file("a", "old");
    ASSERT_EQ(chown(file.c_str(), 12, 34), 0);
    ASSERT_EQ(chmod(file.c_str(), row.before), 0);
    EXPECT_EQ(inChild([&] { return becomeNobody() && replaceBy(file, "new") ? 0 : 1; }), 0);
    EXPECT_EQ(content(file), "new");
    EXPECT_EQ(modeOf(file), row.after) << std::oct << row.before;
    unlink(file.c_str());
  }
}

TEST(Replace, ExtendedAttributesAreKept) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  if (setxattr(file.c_str(), "user.origin", "poste 3", 7, 0) != 0)
    GTEST_SKIP() << "no extended attributes here";
  ASSERT_TRUE(replaceBy(file, "new"));
  char value[16] = {};
  EXPECT_EQ(getxattr(file.c_str(), "user.origin", value, sizeof value), 7);
  EXPECT_STREQ(value, "poste 3");
}

// One of these may give a program's file rights that its content no longer deserves.
TEST(Replace, AttributesOfTheSystemAreNotTakenOver) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  if (setxattr(file.c_str(), "trusted.origin", "poste 3", 7, 0) != 0)
    GTEST_SKIP() << "no such attributes here";
  ASSERT_TRUE(replaceBy(file, "new"));
  EXPECT_EQ(getxattr(file.c_str(), "trusted.origin", nullptr, 0), -1);
}

TEST(Replace, AccessListIsKept) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  if (setxattr(file.c_str(), "system.posix_acl_access", kAccessListOf12, sizeof kAccessListOf12,
               0) != 0)
    GTEST_SKIP() << "no access lists here";
  ASSERT_TRUE(replaceBy(file, "new"));
  unsigned char value[64] = {};
  ASSERT_EQ(getxattr(file.c_str(), "system.posix_acl_access", value, sizeof value),
            static_cast<ssize_t>(sizeof kAccessListOf12));
  EXPECT_TRUE(std::equal(std::begin(kAccessListOf12), std::end(kAccessListOf12), value));
}

TEST(Replace, AnAccessListThatTheFolderGivesIsNotTakenOver) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  chmod(file.c_str(), 0640);
  if (setxattr(scratch.path().c_str(), "system.posix_acl_default", kAccessListOf12,
               sizeof kAccessListOf12, 0) != 0)
    GTEST_SKIP() << "no access lists here";
  ASSERT_TRUE(replaceBy(file, "new"));
  EXPECT_EQ(getxattr(file.c_str(), "system.posix_acl_access", nullptr, 0), -1);
  EXPECT_EQ(modeOf(file), 0640u);
}

// Every step of a replacement by exchange, failing.
TEST(Replace, AFaultAtAnyStepLeavesTheOldFileAndNoTemporary) {
  constexpr ReplaceStep kSteps[] = {ReplaceStep::Open,  ReplaceStep::Temporary, ReplaceStep::Write,
                                    ReplaceStep::Adopt, ReplaceStep::Sync,      ReplaceStep::Link,
                                    ReplaceStep::Rename};
  for (const ReplaceStep step : kSteps) {
    Scratch scratch;
    const std::string file = scratch.file("a", "old");
    {
      Fault fault(step, 1, ENOSPC);
      EXPECT_FALSE(replaceBy(file, "new")) << static_cast<int>(step);
    }
    EXPECT_EQ(content(file), "old") << static_cast<int>(step);
    EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"}) << static_cast<int>(step);
    EXPECT_TRUE(replaceBy(file, "new"));
    EXPECT_EQ(content(file), "new");
  }
}

// At each step and with each error, with a nameless temporary and with a named one.
TEST(Replace, NoEndLeavesADescriptorOpen) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  symlink("loop", (scratch.path() + "/loop").c_str());
  const std::size_t before = entries("/proc/self/fd").size();
  for (int step = 0; step <= static_cast<int>(ReplaceStep::Overwrite); ++step) {
    for (const int error : {ENOSPC, EACCES, EPERM, EROFS, EBUSY, EIO, EEXIST}) {
      for (const bool named : {false, true}) {
        Fault fault(ReplaceStep::Temporary, 1, named ? EOPNOTSUPP : 0);
        Fault::also(static_cast<ReplaceStep>(step), error);
        const bool done = replaceBy(file, "new");
        EXPECT_EQ(content(file), done ? "new" : "old") << step << ' ' << strerror(error);
        EXPECT_EQ(entries("/proc/self/fd").size(), before) << step << ' ' << strerror(error);
        scratch.file("a", "old");
      }
    }
  }
  for (const char *name : {"", "/", "/none/x", "/loop", "/a/x"}) {
    EXPECT_FALSE(replaceBy(scratch.path() + name, "new", IfMissing::Create)) << name;
  }
  EXPECT_FALSE(replaceBy("/dev/null", "new"));
  EXPECT_EQ(entries("/proc/self/fd").size(), before);
  EXPECT_EQ(entries(scratch.path()), (std::vector<std::string>{"a", "loop"}));
}

// How many descriptors a tool would inherit that is started now.
int inheritedDescriptors() {
  int count = 0;
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    const int flags = fcntl(descriptor, F_GETFD);
    if (flags >= 0 && (flags & FD_CLOEXEC) == 0) ++count;
  }
  return count;
}

TEST(Replace, AToolThatIsStartedMeanwhileInheritsNothing) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  const int before = inheritedDescriptors();
  for (const bool named : {false, true}) {
    Temporaries temporaries(named);
    Replacement replacement;
    ASSERT_TRUE(replacement.begin(file.c_str()));
    EXPECT_EQ(inheritedDescriptors(), before) << named;
  }
}

TEST(Replace, AFolderThatCannotBeSyncedStillHasTheNewFile) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  Fault fault(ReplaceStep::Folder, 1, EIO);
  EXPECT_TRUE(replaceBy(file, "new"));
  EXPECT_EQ(content(file), "new");
}

TEST(Replace, TheNthWriteFailingLeavesTheOldFile) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  const std::vector<std::string_view> pieces(300, "piece;");  // written 64 at a time
  for (int nth = 1; nth <= 5; ++nth) {
    Fault fault(ReplaceStep::Write, nth, EIO);
    EXPECT_FALSE(replaceFile(file.c_str(), pieces)) << nth;
    EXPECT_EQ(content(file), "old");
  }
  Fault fault(ReplaceStep::Write, 6, EIO);
  EXPECT_TRUE(replaceFile(file.c_str(), pieces));
  EXPECT_EQ(content(file).size(), 1800u);
}

TEST(Replace, AFailedAppendFailsTheCommit) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  Replacement replacement;
  ASSERT_TRUE(replacement.begin(file.c_str()));
  {
    Fault fault(ReplaceStep::Write, 1, ENOSPC);
    EXPECT_FALSE(replacement.append("new"));
  }
  EXPECT_FALSE(replacement.append("more"));
  EXPECT_FALSE(replacement.commit());
  EXPECT_EQ(content(file), "old");
}

TEST(Replace, WithoutNamelessFilesTheTemporaryHasANameUntilItsEnd) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  for (const int error : {EOPNOTSUPP, EISDIR, EINVAL}) {
    Fault fault(ReplaceStep::Temporary, 1, error);
    Replacement replacement;
    ASSERT_TRUE(replacement.begin(file.c_str()));
    EXPECT_EQ(entries(scratch.path()).size(), 2u);
    ASSERT_TRUE(replacement.append("new"));
    ASSERT_TRUE(replacement.commit());
    EXPECT_EQ(content(file), "new");
    EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
  }
}

TEST(Replace, WithoutNamelessFilesAFaultLeavesTheOldFileAndNoTemporary) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  for (const ReplaceStep step :
       {ReplaceStep::Write, ReplaceStep::Adopt, ReplaceStep::Sync, ReplaceStep::Rename}) {
    Fault fault(ReplaceStep::Temporary, 1, EOPNOTSUPP);
    Fault::also(step, ENOSPC);
    EXPECT_FALSE(replaceBy(file, "new"));
    EXPECT_EQ(content(file), "old");
    EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
  }
}

TEST(Replace, ATemporaryLeftByAKillGoesWithTheNextReplacementInItsFolder) {
  for (const bool left : {false, true}) {
    for (const bool named : {false, true}) {
      Scratch scratch;
      const std::string file = scratch.file("a", "old");
      const std::string other = scratch.file("b", "old");
      leaveTemporary(file, left);
      EXPECT_EQ(content(file), "old");
      ASSERT_EQ(entries(scratch.path()).size(), 3u);
      const Temporaries temporaries(named);
      EXPECT_TRUE(replaceBy(other, "new"));
      EXPECT_EQ(content(other), "new");
      EXPECT_EQ(entries(scratch.path()), (std::vector<std::string>{"a", "b"}));
    }
  }
}

TEST(Replace, ATemporaryThatStoodBehindOthersIsFoundToo) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  std::vector<Replacement> live(5);
  for (Replacement &replacement : live) ASSERT_TRUE(beginNamed(replacement, file));
  leaveTemporary(file, true);
  ASSERT_EQ(entries(scratch.path()).size(), 7u);
  live.clear();
  ASSERT_EQ(entries(scratch.path()), (std::vector<std::string>{".korvel-5", "a"}));
  EXPECT_TRUE(replaceBy(file, "new"));
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

TEST(Replace, ATemporaryOfALiveProcessStaysHoweverOldItIs) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  Replacement slow;
  ASSERT_TRUE(beginNamed(slow, file));
  ASSERT_TRUE(slow.append("slow"));
  const int seconds = std::exchange(abandonedAfter, kAtOnce);
  EXPECT_TRUE(replaceBy(file, "fast"));
  EXPECT_EQ(inChild([&] { return replaceBy(file, "other") ? 0 : 1; }), 0);
  abandonedAfter = seconds;
  EXPECT_EQ(content(file), "other");
  EXPECT_EQ(entries(scratch.path()).size(), 2u);
  EXPECT_TRUE(slow.commit());
  EXPECT_EQ(content(file), "slow");
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

// Another user's temporary cannot be opened.
TEST(Replace, ATemporaryThatMayNotBeOpenedIsLeftOverAfterAMinute) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  Scratch scratch;
  chmod(scratch.path().c_str(), 0777);
  const std::string file = scratch.file("a", "old");
  chmod(file.c_str(), 0666);
  leaveTemporary(file, true);
  ASSERT_EQ(modeOf(scratch.path() + "/.korvel-0"), 0600u);
  EXPECT_EQ(inChild([&] { return becomeNobody() && replaceBy(file, "new") ? 0 : 1; }), 0);
  EXPECT_EQ(entries(scratch.path()).size(), 2u);
  EXPECT_EQ(inChild([&] {
              abandonedAfter = kAtOnce;
              return becomeNobody() && replaceBy(file, "new") ? 0 : 1;
            }),
            0);
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

class AllNamesInUse : public testing::Test {
 protected:
  void SetUp() override {
    for (Replacement &replacement : live_) ASSERT_TRUE(beginNamed(replacement, file_));
  }
  ~AllNamesInUse() override { lockPatience = 5000; }

  const Scratch scratch_;
  const std::string file_ = scratch_.file("a", "old");
  std::array<Replacement, 8> live_;
};

TEST_F(AllNamesInUse, AReplacementGivesUpAfterAWhile) {
  lockPatience = 30;
  EXPECT_FALSE(replaceBy(file_, "new"));
  Replacement another;
  EXPECT_FALSE(beginNamed(another, file_));
  EXPECT_EQ(errno, ETIMEDOUT);
  EXPECT_EQ(content(file_), "old");
  EXPECT_EQ(entries(scratch_.path()).size(), 9u);
}

TEST_F(AllNamesInUse, AReplacementWaitsForOne) {
  std::thread ending([&] {
    usleep(20000);
    live_[6].discard();
  });
  EXPECT_TRUE(replaceBy(file_, "new"));
  ending.join();
  EXPECT_EQ(content(file_), "new");
}

TEST_F(AllNamesInUse, AReplacementTakesThatOfAProcessThatIsKilledMeanwhile) {
  live_[6].discard();
  const pid_t child = fork();
  if (child == 0) {
    Replacement replacement;
    beginNamed(replacement, file_);
    pause();
  }
  while (access((scratch_.path() + "/.korvel-6").c_str(), F_OK) != 0) usleep(1000);
  std::thread killing([&] {
    usleep(20000);
    kill(child, SIGKILL);
  });
  EXPECT_TRUE(replaceBy(file_, "new"));
  killing.join();
  waitpid(child, nullptr, 0);
  EXPECT_EQ(content(file_), "new");
}

// The named temporary of a folder.
std::string temporaryIn(const std::string &folder) {
  for (const std::string &name : entries(folder)) {
    if (name.starts_with(".korvel-")) return folder + "/" + name;
  }
  return "";
}

TEST(Replace, OneThatStoodStillBeforeTheRenameTakesNoOtherTemporaryForItsOwn) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  std::string temporary;
  {
    Fault fault(ReplaceStep::Rename, 1, [&] {
      temporary = temporaryIn(scratch.path());
      unlink(temporary.c_str());
      scratch.file(temporary.substr(scratch.path().size() + 1), "other");
      return 0;
    });
    EXPECT_FALSE(replaceBy(file, "slow"));
  }
  EXPECT_EQ(content(file), "old");
  EXPECT_EQ(content(temporary), "other");
}

TEST(Replace, NamesThatSomethingElseBearsAreGoneRound) {
  for (const bool named : {false, true}) {
    Scratch scratch;
    const std::string file = scratch.file("a", "old");
    for (const char *name : {"/.korvel-0", "/.korvel-1", "/.korvel-2"})
      ASSERT_EQ(mkdir((scratch.path() + name).c_str(), 0777), 0);
    const std::vector<std::string> before = entries(scratch.path());
    const Temporaries temporaries(named);
    EXPECT_TRUE(replaceBy(file, "new"));
    EXPECT_EQ(content(file), "new");
    EXPECT_EQ(entries(scratch.path()), before);
  }
}

// Anybody may have made the link: its target is left alone.
TEST(Replace, ALinkThatBearsTheNameOfATemporaryIsNotFollowed) {
  for (const bool named : {false, true}) {
    Scratch scratch;
    const std::string file = scratch.file("a", "old");
    const std::string other = scratch.file("b", "other");
    ASSERT_EQ(symlink("b", (scratch.path() + "/.korvel-0").c_str()), 0);
    const Temporaries temporaries(named);
    EXPECT_TRUE(replaceBy(file, "new"));
    EXPECT_EQ(content(file), "new");
    EXPECT_EQ(content(other), "other");
  }
}

TEST(Replace, TheContentMayAppearUnderAnotherNameThatIsFree) {
  for (const int noUnnamed : {0, EOPNOTSUPP}) {
    Scratch scratch;
    const std::string file = scratch.file("a", "old");
    chmod(file.c_str(), 0640);
    const std::string other = scratch.path() + "/b";
    Fault fault(ReplaceStep::Temporary, 1, noUnnamed);
    Replacement replacement;
    ASSERT_TRUE(replacement.begin(file.c_str()));
    ASSERT_TRUE(replacement.append("new"));
    ASSERT_TRUE(replacement.commitAs(other.c_str()));
    EXPECT_EQ(content(file), "old");
    EXPECT_EQ(content(other), "new");
    EXPECT_EQ(modeOf(other), 0640u);
    EXPECT_EQ(entries(scratch.path()), (std::vector<std::string>{"a", "b"}));
  }
}

TEST(Replace, ANameInUseIsNotTaken) {
  for (const int noUnnamed : {0, EOPNOTSUPP}) {
    Scratch scratch;
    const std::string file = scratch.file("a", "old");
    const std::string other = scratch.file("b", "other");
    const std::string dangling = scratch.path() + "/c";
    symlink("nowhere", dangling.c_str());
    mkdir((scratch.path() + "/d").c_str(), 0777);
    for (const std::string name : {"/a", "/b", "/c", "/d"}) {
      Fault fault(ReplaceStep::Temporary, 1, noUnnamed);
      Replacement replacement;
      ASSERT_TRUE(replacement.begin(file.c_str()));
      ASSERT_TRUE(replacement.append("new"));
      EXPECT_FALSE(replacement.commitAs((scratch.path() + name).c_str())) << name;
      EXPECT_EQ(errno, EEXIST);
    }
    EXPECT_EQ(content(file), "old");
    EXPECT_EQ(content(other), "other");
    EXPECT_EQ(entries(scratch.path()), (std::vector<std::string>{"a", "b", "c", "d"}));
  }
}

TEST(Replace, AFaultWhileAppearingUnderAnotherNameLeavesNoTrace) {
  for (const int noUnnamed : {0, EOPNOTSUPP}) {
    for (const ReplaceStep step :
         {ReplaceStep::Write, ReplaceStep::Adopt, ReplaceStep::Sync, ReplaceStep::Link}) {
      Scratch scratch;
      const std::string file = scratch.file("a", "old");
      Fault fault(ReplaceStep::Temporary, 1, noUnnamed);
      Fault::also(step, ENOSPC);
      Replacement replacement;
      ASSERT_TRUE(replacement.begin(file.c_str()));
      replacement.append("new");
      EXPECT_FALSE(replacement.commitAs((scratch.path() + "/b").c_str()));
      EXPECT_EQ(content(file), "old");
      EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
    }
  }
}

TEST(Replace, AKillAtAnyStepLeavesTheOldFileOrTheNew) {
  constexpr ReplaceStep kSteps[] = {ReplaceStep::Open,   ReplaceStep::Temporary, ReplaceStep::Write,
                                    ReplaceStep::Adopt,  ReplaceStep::Sync,      ReplaceStep::Link,
                                    ReplaceStep::Rename, ReplaceStep::Folder};
  for (const ReplaceStep step : kSteps) {
    Scratch scratch;
    const std::string file = scratch.file("a", "old");
    EXPECT_EQ(inChild([&] {
                Fault fault(step, 1, [] { return raise(SIGKILL); });
                return replaceBy(file, "new") ? 0 : 1;
              }),
              -1);
    EXPECT_EQ(content(file), step == ReplaceStep::Folder ? "new" : "old");
    // Only between link and rename is there a temporary with a name.
    EXPECT_EQ(entries(scratch.path()).size(), step == ReplaceStep::Rename ? 2u : 1u);
  }
}

TEST(Replace, AKillAtARandomMomentLeavesOneWholeContent) {
  Scratch scratch;
  const std::string file = scratch.file("a", std::string(100000, 'a'));
  std::mt19937 random(20);
  int killedInside = 0;
  for (int round = 0; round < 320; ++round) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
      for (char letter = 'b';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
        const std::string text(100000, letter);
        const std::string_view halves[] = {std::string_view(text).substr(0, 50000),
                                           std::string_view(text).substr(50000)};
        if (!replaceFile(file.c_str(), halves)) _exit(1);
        if (write(ready[1], "x", 1) != 1) _exit(1);
      }
    }
    close(ready[1]);
    char x;
    ASSERT_EQ(read(ready[0], &x, 1), 1);
    usleep(static_cast<useconds_t>(random() % 1500));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    close(ready[0]);
    if (WIFSIGNALED(status)) ++killedInside;
    const std::string now = content(file);
    ASSERT_EQ(now.size(), 100000u);
    ASSERT_EQ(now.find_first_not_of(now[0]), std::string::npos);
  }
  EXPECT_EQ(killedInside, 320);
  ASSERT_TRUE(replaceBy(file, "new"));
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

TEST(Replace, TwoProcessesMayReplaceTheSameFileAtOnce) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  const auto replaceOften = [&](char letter) {
    for (int i = 0; i < 100; ++i) {
      if (!replaceBy(file, std::string(5000, letter))) return 1;
    }
    return 0;
  };
  const pid_t other = fork();
  if (other == 0) _exit(replaceOften('o'));
  EXPECT_EQ(replaceOften('m'), 0);
  int status = 0;
  waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
  const std::string now = content(file);
  EXPECT_EQ(now.size(), 5000u);
  EXPECT_EQ(now.find_first_not_of(now[0]), std::string::npos);
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

TEST(Replace, AFileSizeLimitLeavesTheOldFile) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  EXPECT_EQ(inChild([&] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit limit = {10000, 10000};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
              if (replaceBy(file, std::string(10001, 'n'))) return 3;
              if (content(file) != "old") return 4;
              if (entries(scratch.path()).size() != 1) return 5;
              return replaceBy(file, std::string(10000, 'n')) ? 0 : 6;
            }),
            0);
  EXPECT_EQ(content(file), std::string(10000, 'n'));
}

TEST(Replace, AFullDiskLeavesTheOldFile) {
  Scratch scratch;
  const std::string disk = scratch.path() + "/disk";
  SmallDisk mounted(disk, "size=65536,mode=0777");
  if (!mounted.mounted()) GTEST_SKIP() << "may not mount";
  const std::string file = scratch.file("disk/a", std::string(20000, 'o'));
  EXPECT_FALSE(replaceBy(file, std::string(60000, 'n')));
  EXPECT_EQ(content(file), std::string(20000, 'o'));
  EXPECT_EQ(entries(disk), std::vector<std::string>{"a"});
  EXPECT_TRUE(replaceBy(file, std::string(30000, 'n')));
  EXPECT_EQ(content(file), std::string(30000, 'n'));
}

TEST(Replace, AReadOnlyFileIsLeftAloneEvenWhereTheFolderIsWritable) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  chmod(scratch.path().c_str(), 0777);
  chmod(file.c_str(), 0444);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              return replaceBy(file, "new") ? 1 : 0;
            }),
            0);
  EXPECT_EQ(content(file), "old");
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

TEST(Replace, AReadOnlyDiskIsAFailure) {
  Scratch scratch;
  const std::string disk = scratch.path() + "/disk";
  SmallDisk mounted(disk, "mode=0777");
  if (!mounted.mounted()) GTEST_SKIP() << "may not mount";
  const std::string file = scratch.file("disk/a", "old");
  ASSERT_EQ(mount("none", disk.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
  EXPECT_FALSE(replaceBy(file, "new"));
  EXPECT_FALSE(replaceBy(disk + "/b", "new", IfMissing::Create));
  EXPECT_EQ(content(file), "old");
}

TEST_F(InPlace, TheFileIsOverwritten) {
  struct stat before = {};
  struct stat after = {};
  stat(file_.c_str(), &before);
  for (const std::string text : {"short", "the new content", "a new content that is longer", ""}) {
    EXPECT_EQ(inChildOfAUser([&] { return replaceBy(file_, text) ? 0 : 1; }), 0);
    EXPECT_EQ(content(file_), text);
  }
  stat(file_.c_str(), &after);
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(entries(scratch_.path()), std::vector<std::string>{"a"});
}

TEST_F(InPlace, OnlyWhereTheCallerAgrees) {
  EXPECT_EQ(inChildOfAUser([&] {
              Replacement replacement;
              return replacement.begin(file_.c_str(), IfMissing::Fail, {.inPlace = false}) ? 1 : 0;
            }),
            0);
  chmod(scratch_.path().c_str(), 0777);
  EXPECT_EQ(inChildOfAUser([&] {
              Replacement replacement;
              if (!replacement.begin(file_.c_str(), IfMissing::Fail, {.inPlace = false})) return 2;
              if (!replacement.append("new")) return 3;
              Fault fault(ReplaceStep::Rename, 1, EACCES);
              return replacement.commit() ? 1 : 0;
            }),
            0);
  EXPECT_EQ(content(file_), kOld);
}

TEST_F(InPlace, LargeContentComesWhole) {
  std::mt19937 random(3);
  const std::string text = test::randomBytes(random, 1000001);
  EXPECT_EQ(inChildOfAUser([&] { return replaceBy(file_, text) ? 0 : 1; }), 0);
  EXPECT_TRUE(content(file_) == text);
}

TEST_F(InPlace, WithoutCommitNothingChanges) {
  EXPECT_EQ(inChildOfAUser([&] {
              Replacement replacement;
              return replacement.begin(file_.c_str()) && replacement.append("new") ? 0 : 1;
            }),
            0);
  EXPECT_EQ(content(file_), kOld);
}

TEST_F(InPlace, ADiskTooFullForTheGrowthLeavesTheOldFile) {
  EXPECT_EQ(inChildOfAUser([&] {
              Fault fault(ReplaceStep::Overwrite, 1, ENOSPC);
              return replaceBy(file_, "a new content that is longer") ? 1 : 0;
            }),
            0);
  EXPECT_EQ(content(file_), kOld);
}

TEST_F(InPlace, ADiskThatFillsUpDuringTheGrowthLeavesTheOldFile) {
  EXPECT_EQ(inChildOfAUser([&] {
              Fault fault(ReplaceStep::Overwrite, 3, ENOSPC);
              return replaceBy(file_, std::string(1000000, 'n')) ? 1 : 0;
            }),
            0);
  EXPECT_EQ(content(file_), kOld);
}

// 600,000 bytes are overwritten in three stretches; the growth is written before them.
TEST_F(InPlace, AFaultInTheMidstOfTheOverwritingLeavesTheOldFile) {
  const std::string old(600000, 'o');
  scratch_.file("a", old);
  const struct {
    std::size_t size;
    int stretches;
  } kCases[] = {{600000, 3}, {900000, 5}, {300000, 2}};
  for (const auto &row : kCases) {
    for (int nth = 1; nth <= row.stretches; ++nth) {
      EXPECT_EQ(inChildOfAUser([&] {
                  Fault fault(ReplaceStep::Overwrite, nth, ENOSPC);
                  return replaceBy(file_, std::string(row.size, 'n')) ? 1 : 0;
                }),
                0)
          << row.size << ' ' << nth;
      EXPECT_TRUE(content(file_) == old) << row.size << ' ' << nth;
    }
    EXPECT_EQ(inChildOfAUser([&] {
                Fault fault(ReplaceStep::Overwrite, row.stretches + 1, ENOSPC);
                return replaceBy(file_, std::string(row.size, 'n')) ? 0 : 1;
              }),
              0);
    EXPECT_TRUE(content(file_) == std::string(row.size, 'n'));
    scratch_.file("a", old);
  }
}

TEST_F(InPlace, AFileThatMayNotBeReadIsOverwrittenToo) {
  chmod(file_.c_str(), 0222);
  EXPECT_EQ(inChildOfAUser([&] { return replaceBy(file_, "new") ? 0 : 1; }), 0);
  chmod(file_.c_str(), 0666);
  EXPECT_EQ(content(file_), "new");
}

// The holes of a file take room only once they are overwritten.
TEST_F(InPlace, AFullDiskUnderAFileWithHolesLeavesTheOldFile) {
  chmod(scratch_.path().c_str(), 0755);
  const std::string disk = scratch_.path() + "/disk";
  SmallDisk mounted(disk, "size=65536,mode=0777");
  if (!mounted.mounted()) GTEST_SKIP() << "may not mount; a fault does the same above";
  const std::string file = scratch_.file("disk/a", "the beginning");
  ASSERT_EQ(truncate(file.c_str(), 200000), 0);
  chmod(file.c_str(), 0666);
  chmod(disk.c_str(), 0555);
  const std::string old = content(file);
  EXPECT_EQ(inChildOfAUser([&] { return replaceBy(file, std::string(150000, 'n')) ? 1 : 0; }), 0);
  EXPECT_TRUE(content(file) == old);
}

TEST_F(InPlace, AMissingFileIsAFailure) {
  EXPECT_EQ(inChildOfAUser([&] {
              return replaceBy(scratch_.path() + "/b", "new", IfMissing::Create) ? 1 : 0;
            }),
            0);
}

TEST_F(InPlace, AReadOnlyFileIsLeftAlone) {
  chmod(file_.c_str(), 0444);
  EXPECT_EQ(inChildOfAUser([&] { return replaceBy(file_, "new") ? 1 : 0; }), 0);
  EXPECT_EQ(content(file_), kOld);
}

TEST_F(InPlace, ASomeoneElsesFileInAStickyFolderIsOverwritten) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  chmod(scratch_.path().c_str(), 01777);
  EXPECT_EQ(inChildOfAUser([&] { return replaceBy(file_, "the new content, longer") ? 0 : 1; }), 0);
  EXPECT_EQ(content(file_), "the new content, longer");
  struct stat status = {};
  stat(file_.c_str(), &status);
  EXPECT_EQ(status.st_uid, 0u);
  EXPECT_EQ(entries(scratch_.path()), std::vector<std::string>{"a"});
}

TEST_F(InPlace, AFolderThatMayBeChangedButNotReadAdmitsTheExchange) {
  struct stat before = {};
  struct stat after = {};
  stat(file_.c_str(), &before);
  chmod(scratch_.path().c_str(), 0333);
  EXPECT_EQ(inChildOfAUser([&] { return replaceBy(file_, "new") ? 0 : 1; }), 0);
  EXPECT_EQ(content(file_), "new");
  stat(file_.c_str(), &after);
  EXPECT_NE(before.st_ino, after.st_ino);
}

}  // namespace
}  // namespace korvel::files
