// SPDX-License-Identifier: MIT
// Replacements and locks when all requests of a kind are refused, or answered after something else
// has happened.
#include "files/replace.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "files/lock.h"
#include "tests/faults/requests.h"
#include "tests/files/replacements.h"

namespace korvel::files {
namespace {

using faults::Instead;
using faults::Request;
using test::content;
using test::entries;
using test::Fault;
using test::inChildOfAUser;
using test::modeOf;
using test::Scratch;

// The mode shows the mask of the list, rw-; the group itself has r--.
TEST(Replace, WithoutItsAccessListTheGroupHasNoMoreRightsThanEveryone) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  if (setxattr(file.c_str(), "system.posix_acl_access", kAccessListOf12, sizeof kAccessListOf12,
               0) != 0)
    GTEST_SKIP() << "no access lists here";
  ASSERT_EQ(modeOf(file), 0660u);
  {
    const Instead full("fsetxattr", ENOSPC);
    EXPECT_TRUE(replaceBy(file, "new"));
  }
  EXPECT_EQ(getxattr(file.c_str(), "system.posix_acl_access", nullptr, 0), -1);
  EXPECT_EQ(modeOf(file), 0600u);
}

TEST(Replace, AModeThatCannotBeChangedHindersOnlyWhereItIsNotTheOldOne) {
  for (const int error : {EPERM, EACCES, EIO}) {
    Scratch scratch;
    const std::string file = scratch.file("a", "old");
    chmod(file.c_str(), 0600);
    const Instead refused("fchmod", error);
    EXPECT_TRUE(replaceBy(file, "new")) << strerror(error);
    EXPECT_EQ(content(file), "new") << strerror(error);
    chmod(file.c_str(), 0644);
    Replacement replacement;
    ASSERT_TRUE(replacement.begin(file.c_str(), IfMissing::Fail, {.inPlace = false}));
    ASSERT_TRUE(replacement.append("newer"));
    EXPECT_FALSE(replacement.commit()) << strerror(error);
    EXPECT_EQ(content(file), "new") << strerror(error);
    EXPECT_EQ(modeOf(file), 0644u);
    EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
  }
}

// What is synced, and what the file's name leads to at that time.
std::string syncSeen(int descriptor, const std::string &file) {
  struct stat status = {};
  fstat(descriptor, &status);
  char what[64] = "the folder";
  if (!S_ISDIR(status.st_mode))
    std::snprintf(what, sizeof what, "%d bytes of mode %o", static_cast<int>(status.st_size),
                  status.st_mode & 07777u);
  return std::string(what) + " while the name leads to " + content(file) + "\n";
}

TEST(Replace, TheContentIsSyncedBeforeTheRenameAndTheFolderAfterIt) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  chmod(file.c_str(), 0604);
  for (const bool named : {false, true}) {
    Fault fault(ReplaceStep::Temporary, 1, named ? EOPNOTSUPP : 0);
    std::string seen;
    {
      const Instead watch("fsync", [&](const Request &sync) {
        seen += syncSeen(sync.file, file);
        return 0;
      });
      EXPECT_TRUE(replaceBy(file, "the new one"));
    }
    EXPECT_EQ(seen,
              "11 bytes of mode 604 while the name leads to old\n"
              "the folder while the name leads to the new one\n");
    scratch.file("a", "old");
  }
}

TEST(Replace, ASyncThatIsInterruptedIsMadeAgainAndOneThatFailsLeavesTheOldFile) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  constexpr struct {
    int error, calls;
    bool done;
  } kRows[] = {
      {EINTR, 3, true},  // one more for the content
      // A file system that cannot sync has nothing to wait for.
      {EINVAL, 2, true},
      {ENOTSUP, 2, true},
      {EROFS, 2, true},
      {EIO, 1, false},
      {ENOSPC, 1, false},
      {EDQUOT, 1, false},
  };
  for (const auto &row : kRows) {
    int calls = 0;
    {
      const Instead watch("fsync", [&](const Request &) { return ++calls == 1 ? row.error : 0; });
      EXPECT_EQ(replaceBy(file, "new"), row.done) << strerror(row.error);
    }
    EXPECT_EQ(calls, row.calls) << strerror(row.error);
    EXPECT_EQ(content(file), row.done ? "new" : "old") << strerror(row.error);
    EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"}) << strerror(row.error);
    scratch.file("a", "old");
  }
}

TEST(Replace, AFolderWhoseSyncIsInterruptedIsSyncedAgain) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  int calls = 0;
  {
    const Instead watch("fsync", [&](const Request &) { return ++calls == 2 ? EINTR : 0; });
    EXPECT_TRUE(replaceBy(file, "new"));
  }
  EXPECT_EQ(calls, 3);
}

// As long as it lives, the file system has no locks.
class WithoutLocks {
  Instead none_{"flock", ENOLCK};
};

TEST(Replace, WithoutLocksATemporaryIsLeftOverAfterAMinute) {
  for (const bool named : {false, true}) {
    Scratch scratch;
    const std::string file = scratch.file("a", "old");
    leaveTemporary(file, named);
    const WithoutLocks withoutLocks;
    const Temporaries temporaries(named);
    // It stays while it may belong to a live process, and hinders nobody.
    EXPECT_EQ(abandonedAfter, 60);
    ASSERT_TRUE(replaceBy(file, "new"));
    EXPECT_EQ(content(file), "new");
    EXPECT_EQ(entries(scratch.path()).size(), 2u);
    const int seconds = std::exchange(abandonedAfter, kAtOnce);
    EXPECT_TRUE(replaceBy(file, "newer"));
    abandonedAfter = seconds;
    EXPECT_EQ(content(file), "newer");
    EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
  }
}

TEST(Replace, ATemporaryTakenForAbandonedLeavesTheOldFileAndTheOtherTemporary) {
  const WithoutLocks withoutLocks;
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  Replacement slow;
  ASSERT_TRUE(beginNamed(slow, file));
  ASSERT_TRUE(slow.append("slow"));
  const int seconds = std::exchange(abandonedAfter, kAtOnce);
  Replacement other;
  ASSERT_TRUE(beginNamed(other, file));
  abandonedAfter = seconds;
  ASSERT_TRUE(other.append("oth"));
  EXPECT_FALSE(slow.commit());
  EXPECT_EQ(content(file), "old");
  ASSERT_TRUE(other.append("er"));
  EXPECT_TRUE(other.commit());
  EXPECT_EQ(content(file), "other");
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

TEST(Replace, ATemporaryTakenForAbandonedLeavesTheOtherOneWhenItIsGivenUp) {
  const WithoutLocks withoutLocks;
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  Replacement slow;
  ASSERT_TRUE(beginNamed(slow, file));
  const int seconds = std::exchange(abandonedAfter, kAtOnce);
  Replacement other;
  ASSERT_TRUE(beginNamed(other, file));
  abandonedAfter = seconds;
  ASSERT_TRUE(other.append("other"));
  slow.discard();
  EXPECT_TRUE(other.commit());
  EXPECT_EQ(content(file), "other");
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

// Somebody else removes it, as left over, before it is locked.
TEST(Replace, ATemporaryThatGoesBeforeItIsLockedIsMadeAnew) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  const std::string first = scratch.path() + "/.korvel-0";
  int tries = 0;
  Replacement replacement;
  {
    const Instead watch("flock", [&](const Request &) {
      if (++tries == 1) unlink(first.c_str());
      return tries == 2 ? EWOULDBLOCK : 0;
    });
    ASSERT_TRUE(beginNamed(replacement, file));
  }
  EXPECT_EQ(tries, 3);
  ASSERT_TRUE(replacement.append("new"));
  EXPECT_TRUE(replacement.commit());
  EXPECT_EQ(content(file), "new");
  // The one whose lock seemed to be held.
  EXPECT_EQ(entries(scratch.path()), (std::vector<std::string>{".korvel-1", "a"}));
}

TEST(Replace, ANewFileAppearsOnlyWhereThereIsNone) {
  for (const int noRename : {0, EINVAL}) {
    for (const bool named : {false, true}) {
      Scratch scratch;
      const std::string file = scratch.path() + "/a";
      const std::string link = scratch.path() + "/link";
      symlink("a", link.c_str());
      const auto beginNew = [&](Replacement &replacement, const std::string &text) {
        const Temporaries temporaries(named);
        return replacement.begin(link.c_str(), IfMissing::Create) && replacement.append(text);
      };
      Replacement first;
      Replacement second;
      Replacement third;
      ASSERT_TRUE(beginNew(first, "first"));
      ASSERT_TRUE(beginNew(second, "second"));
      const Instead renamed("renameat2", noRename);
      EXPECT_TRUE(first.commitNew());
      EXPECT_FALSE(second.commitNew());
      EXPECT_EQ(errno, EEXIST);
      ASSERT_TRUE(beginNew(third, "third"));
      EXPECT_FALSE(third.commitNew());
      EXPECT_EQ(errno, EEXIST);
      EXPECT_EQ(content(file), "first");
      EXPECT_EQ(modeOf(file), 0777u);
      EXPECT_EQ(entries(scratch.path()), (std::vector<std::string>{"a", "link"}));
    }
  }
}

// As on shares that know neither hard links nor a rename that takes no other file's place.
TEST(Replace, ANewFileAppearsAlsoWhereOnlyALookTellsThatThereIsNone) {
  Scratch scratch;
  const std::string file = scratch.path() + "/a";
  Replacement first;
  Replacement second;
  ASSERT_TRUE(beginNamed(first, file, IfMissing::Create));
  ASSERT_TRUE(beginNamed(second, file, IfMissing::Create));
  ASSERT_TRUE(first.append("first"));
  ASSERT_TRUE(second.append("second"));
  const Instead noRename("renameat2", EINVAL);
  const Instead noLink("linkat", EPERM);
  EXPECT_TRUE(first.commitNew());
  EXPECT_FALSE(second.commitNew());
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(content(file), "first");
  EXPECT_EQ(entries(scratch.path()), std::vector<std::string>{"a"});
}

TEST_F(InPlace, AContentThatCannotBeReadBackLeavesTheOldFile) {
  const std::string old(600000, 'o');
  scratch_.file("a", old);
  for (int last = 1; last <= 3; ++last) {
    EXPECT_EQ(inChildOfAUser([&] {
                int readings = 0;
                const Instead broken("pread",
                                     [&](const Request &) { return ++readings == last ? EIO : 0; });
                if (replaceBy(file_, std::string(600000, 'n'))) return 1;
                return readings == last ? 0 : 2;
              }),
              0)
        << last;
    EXPECT_TRUE(content(file_) == old) << last;
  }
}

TEST_F(InPlace, WhatTheFileGrowsByIsSyncedBeforeAnOldByteIsTouched) {
  EXPECT_EQ(inChildOfAUser([&] {
              std::string seen;
              const Instead watch("fsync", [&](const Request &) {
                seen += content(file_) + "\n";
                return 0;
              });
              if (!replaceBy(file_, "THE NEW CONTENT, LONGER")) return 1;
              return seen == "the old content, LONGER\nTHE NEW CONTENT, LONGER\n" ? 0 : 2;
            }),
            0);
}

TEST_F(InPlace, AGrowthThatCannotBeSyncedLeavesTheOldFile) {
  EXPECT_EQ(inChildOfAUser([&] {
              const Instead full("fsync", ENOSPC);
              return replaceBy(file_, "a new content that is longer") ? 1 : 0;
            }),
            0);
  EXPECT_EQ(content(file_), kOld);
}

TEST_F(InPlace, WithoutRoomToKeepTheOldBytesTheyStay) {
  EXPECT_EQ(inChildOfAUser([&] {
              const Instead noRoom("memory", ENOMEM);
              return replaceBy(file_, "a new content that is longer") ? 1 : 0;
            }),
            0);
  EXPECT_EQ(content(file_), kOld);
}

// Where a share makes a lock of bytes of it, a lock that is held is refused with this error.
TEST(Lock, RefusedForLackOfRightsIsHeldByAnother) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  const int patience = std::exchange(lockPatience, 50);
  FileLock lock;
  {
    const Instead refused("flock", EACCES);
    EXPECT_FALSE(lock.take(file.c_str()));
    EXPECT_EQ(errno, ETIMEDOUT);
  }
  lockPatience = patience;
}

// Only a file that was replaced is worth another try.
TEST(Lock, IsGivenUpAtOnceWhenThePathCannotBeLookedAt) {
  Scratch scratch;
  const std::string file = scratch.file("a", "old");
  const int patience = std::exchange(lockPatience, 50);
  FileLock lock;
  {
    const Instead broken("stat", EIO);
    EXPECT_FALSE(lock.take(file.c_str()));
    EXPECT_EQ(errno, EIO);
  }
  lockPatience = patience;
  EXPECT_EQ(lock.descriptor(), -1);
}

// Once a file is locked, the path already leads to another one.
TEST(Lock, IsGivenUpWhenTheFileIsReplacedAgainAndAgain) {
  Scratch scratch;
  const std::string file = scratch.file("a", "0");
  const int patience = std::exchange(lockPatience, 50);
  int replaced = 0;
  const auto begin = std::chrono::steady_clock::now();
  FileLock lock;
  {
    const Instead storm("flock", [&](const Request &) {
      std::rename(scratch.file("new", std::to_string(++replaced)).c_str(), file.c_str());
      return 0;
    });
    EXPECT_FALSE(lock.take(file.c_str()));
    EXPECT_EQ(errno, ETIMEDOUT);
  }
  lockPatience = patience;
  EXPECT_EQ(lock.descriptor(), -1);
  EXPECT_GT(replaced, 1);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
  EXPECT_TRUE(lock.take(file.c_str())) << "once the storm is over";
}

}  // namespace
}  // namespace korvel::files
