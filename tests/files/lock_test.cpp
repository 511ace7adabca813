// SPDX-License-Identifier: MIT
// Locks of files between processes: taken, waited for, and following a replaced file.
#include "files/lock.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <signal.h>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/files/faults.h"
#include "tests/files/scratch.h"

namespace korvel::files {
namespace {

using test::inChild;

class Lock : public testing::Test {
 protected:
  ~Lock() override { lockPatience = 5000; }

  // A descriptor that has the lock of a file.
  static int holding(const std::string &path) {
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    EXPECT_EQ(flock(file, LOCK_EX | LOCK_NB), 0);
    return file;
  }

  bool othersMayTakeIt() const {
    return inChild([&] { return FileLock().take(path_.c_str()) ? 1 : 0; }) == 1;
  }

  const test::Scratch scratch_;
  const std::string path_ = scratch_.file("p", "text");
};

TEST_F(Lock, KeepsOthersOutUntilItIsReleased) {
  lockPatience = 20;
  FileLock lock;
  ASSERT_TRUE(lock.take(path_.c_str()));
  EXPECT_FALSE(othersMayTakeIt());
  lock.release();
  EXPECT_TRUE(othersMayTakeIt());
}

TEST_F(Lock, IsNotKeptByAChildThatWasForkedMeanwhile) {
  lockPatience = 20;
  FileLock lock;
  ASSERT_TRUE(lock.take(path_.c_str()));
  const pid_t child = fork();
  if (child == 0) {
    pause();
    _exit(0);
  }
  lock.release();
  EXPECT_TRUE(lock.take(path_.c_str()));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

// A file server holds a lease on a file that it serves.
TEST_F(Lock, WaitsForALeaseToBeGivenBack) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t holder = fork();
  if (holder == 0) {
    sigset_t breaking;
    sigemptyset(&breaking);
    sigaddset(&breaking, SIGIO);
    sigprocmask(SIG_BLOCK, &breaking, nullptr);
    const int file = open(path_.c_str(), O_RDWR);
    const char granted = fcntl(file, F_SETLEASE, F_WRLCK) == 0 ? 'y' : 'n';
    if (write(ready[1], &granted, 1) != 1) _exit(1);
    int signal = 0;
    sigwait(&breaking, &signal);
    usleep(20000);
    fcntl(file, F_SETLEASE, F_UNLCK);
    _exit(0);
  }
  char granted = 'n';
  EXPECT_EQ(read(ready[0], &granted, 1), 1);
  FileLock lock;
  EXPECT_TRUE(granted == 'n' || lock.take(path_.c_str()));
  kill(holder, SIGKILL);
  waitpid(holder, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
  if (granted == 'n') GTEST_SKIP() << "the file system gives no leases";
}

TEST_F(Lock, OffersTheFile) {
  FileLock lock;
  EXPECT_EQ(lock.descriptor(), -1);
  ASSERT_TRUE(lock.take(path_.c_str()));
  char text[8] = "";
  EXPECT_EQ(read(lock.descriptor(), text, sizeof text), 4);
  EXPECT_STREQ(text, "text");
  EXPECT_EQ(pwrite(lock.descriptor(), "T", 1, 0), 1);
  EXPECT_EQ(test::content(path_), "Text");
  lock.release();
  EXPECT_EQ(lock.descriptor(), -1);
}

TEST_F(Lock, WaitsForWhoeverHasIt) {
  const int other = holding(path_);
  bool released = false;
  std::thread releasing([&] {
    usleep(50000);
    released = true;
    close(other);
  });
  FileLock lock;
  EXPECT_TRUE(lock.take(path_.c_str()));
  EXPECT_TRUE(released);
  releasing.join();
}

TEST_F(Lock, WaitsNoLongerThanItsPatience) {
  EXPECT_EQ(lockPatience, 5000);
  lockPatience = 100;
  const int other = holding(path_);
  const auto begin = std::chrono::steady_clock::now();
  FileLock lock;
  EXPECT_FALSE(lock.take(path_.c_str()));
  EXPECT_EQ(errno, ETIMEDOUT);
  EXPECT_EQ(lock.descriptor(), -1);
  const auto waited = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(waited, std::chrono::milliseconds(100));
  EXPECT_LT(waited, std::chrono::milliseconds(3000));
  close(other);
}

TEST_F(Lock, SeveralMayShareOnePatience) {
  lockPatience = 1000;
  const std::string second = scratch_.file("q", "text");
  const int other = holding(path_);
  const int forGood = holding(second);
  std::thread releasing([&] {
    usleep(600000);
    close(other);
  });
  Patience patience;
  FileLock lock;
  FileLock secondLock;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_TRUE(lock.take(path_.c_str(), patience));
  EXPECT_FALSE(secondLock.take(second.c_str(), patience));
  EXPECT_EQ(errno, ETIMEDOUT);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1500));
  releasing.join();
  close(forGood);
}

TEST_F(Lock, IsGotBesideAProcessThatTakesItAgainAndAgain) {
  const pid_t child = fork();
  if (child == 0) {
    FileLock lock;
    for (;;) {
      lock.take(path_.c_str());
      usleep(30000);
      lock.release();
    }
  }
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  int waitedFor = 0;
  bool taken = true;
  while (taken && waitedFor < 5 && std::chrono::steady_clock::now() < end) {
    Patience patience;
    taken = FileLock().take(path_.c_str(), patience);
    if (patience.hasBegun()) ++waitedFor;
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(taken);
  EXPECT_EQ(waitedFor, 5) << "the child had the lock that often";
}

TEST_F(Lock, IsThatOfTheFileThatThePathLeadsToNow) {
  const int other = holding(path_);
  std::thread replacing([&] {
    usleep(5000);
    std::rename(scratch_.file("new", "other").c_str(), path_.c_str());
    close(other);
  });
  FileLock lock;
  EXPECT_TRUE(lock.take(path_.c_str()));
  replacing.join();
  struct stat locked;
  struct stat now;
  ASSERT_EQ(fstat(lock.descriptor(), &locked), 0);
  ASSERT_EQ(stat(path_.c_str(), &now), 0);
  EXPECT_EQ(locked.st_ino, now.st_ino);
}

TEST_F(Lock, OfAFileThatGoesMeanwhileIsMissed) {
  const int other = holding(path_);
  std::thread removing([&] {
    usleep(5000);
    unlink(path_.c_str());
    close(other);
  });
  FileLock lock;
  EXPECT_FALSE(lock.take(path_.c_str()));
  EXPECT_EQ(errno, ENOENT);
  removing.join();
}

TEST_F(Lock, IsForRegularFilesThatMayBeWritten) {
  FileLock lock;
  EXPECT_FALSE(lock.take((scratch_.path() + "/missing").c_str()));
  EXPECT_EQ(errno, ENOENT);
  const std::string pipe = scratch_.path() + "/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0666), 0);
  EXPECT_FALSE(lock.take(pipe.c_str()));
  EXPECT_EQ(errno, EINVAL);
  chmod(scratch_.path().c_str(), 0755);
  chmod(path_.c_str(), 0444);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !test::becomeNobody()) return 2;
              return lock.take(path_.c_str()) || errno != EACCES ? 1 : 0;
            }),
            0);
}

TEST_F(Lock, IsFollowedThroughALink) {
  const std::string link = scratch_.path() + "/link";
  ASSERT_EQ(symlink("p", link.c_str()), 0);
  lockPatience = 20;
  FileLock lock;
  ASSERT_TRUE(lock.take(link.c_str()));
  EXPECT_FALSE(othersMayTakeIt());
}

}  // namespace
}  // namespace korvel::files
