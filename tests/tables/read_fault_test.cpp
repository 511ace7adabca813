// Edits and back-ups while system calls or allocations fail: a table that cannot be read to its
// end, a size that the system does not tell, a left-over file that is replaced meanwhile.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdint>
#include <utility>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/support/failing_memory.h"
#include "tests/tables/edits.h"

namespace {

// The calls of a kind that are still answered; from then on `failures` of them fail.
struct CountedFault {
  int answered = -1;  // below 0: all
  int failures = 0;

  bool strikes() {
    if (answered < 0 || answered-- > 0 || failures == 0) return false;
    --failures;
    answered = 0;
    errno = EIO;
    return true;
  }
};

CountedFault statusFault;
CountedFault readFault;
size_t mostAtOnce = SIZE_MAX;    // bytes that a reading gives
void (*duringRead)() = nullptr;  // runs once, between two readings
int readingsBefore = 0;
int (*duringOpen)(const char *path) = nullptr;  // runs once, before a left-over file is opened

}  // namespace

// The library's openings, its readings and its questions for the status of an open file come here.
extern "C" int open(const char *path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  const mode_t mode = creates ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if (duringOpen != nullptr && std::string_view(path).ends_with(".ta_")) {
    if (std::exchange(duringOpen, nullptr)(path) != 0) return -1;
  }
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}
extern "C" int fstat(int descriptor, struct stat *status) {
  if (statusFault.strikes()) return -1;
  return static_cast<int>(syscall(SYS_fstat, descriptor, status));
}
extern "C" ssize_t read(int descriptor, void *to, size_t count) {
  if (readFault.strikes()) return -1;
  return syscall(SYS_read, descriptor, to, std::min(count, mostAtOnce));
}
extern "C" ssize_t pread(int descriptor, void *to, size_t count, off_t offset) {
  if (readFault.strikes()) return -1;
  if (duringRead != nullptr && readingsBefore-- == 0) std::exchange(duringRead, nullptr)();
  return syscall(SYS_pread64, descriptor, to, std::min(count, mostAtOnce), offset);
}

namespace korvel {
namespace {

using test::Files;

constexpr int kForGood = 1000000;

struct Editing {
  const char *name;
  int (*edit)();
};

constexpr Editing kEditings[] = {
    {"replace", [] { return test::replaceColumn(1, "x"); }},
    {"insert", [] { return test::insertLine(2); }},
    {"delete", [] { return test::deleteLine(); }},
    {"flush", [] { return test::flushLine(); }},
    {"modify", [] { return ZRV_Table_modify("actes", "actes", "3", "Titre"); }},
    {"rename", [] { return ZRV_Table_modify("actes", "new", "3", "Titre"); }},
    {"repair", [] { return ZRV_Table_repair("actes", "3", "Titre"); }},
    {"back up", [] { return 1 + ZRV_Table_sauvegarde("actes", 1); }},
};

// Kept: a table that cannot be repaired counts as sound, and a back-up always answers 0.
bool saysOneAnyhow(const Editing &editing) {
  return editing.name == std::string("repair") || editing.name == std::string("back up");
}

class ReadFaults : public test::Edits {
 protected:
  ~ReadFaults() override { heal(); }

  static void heal() {
    statusFault = readFault = {};
    mostAtOnce = SIZE_MAX;
    duringRead = nullptr;
    duringOpen = nullptr;
  }

  void reset() {
    heal();
    closeHandles();
    for (const std::string &name : test::entries(folder())) unlink((folder() + "/" + name).c_str());
    table("actes", table_);
    volumes_.file("tables/actes.bak", "old back-up");
    ZRV_Libelle_NC_set_ligne(6);
    std::snprintf(ZRV_Libelle_NC_szBuffer, sizeof ZRV_Libelle_NC_szBuffer, "99");
  }

  // Without temporaries that may belong to another process.
  Files visibleFiles() const {
    Files all = files();
    std::erase_if(all, [](const auto &file) { return file.first.starts_with(".korvel-"); });
    return all;
  }

  // Makes the edit with one fault after the other until none strikes any more. All that may be
  // there is the files as they were, or what the edit makes of them.
  void expectNothingLost(const Editing &editing, CountedFault &fault, int failures) {
    reset();
    const Files before = files();
    ASSERT_EQ(editing.edit(), 1) << editing.name;
    const Files after = files();
    int struck = 0;
    for (int nth = 0;; ++nth) {
      reset();
      fault = {nth, failures};
      const int result = editing.edit();
      const bool strikes = fault.failures < failures;
      heal();
      if (!strikes) break;
      ++struck;
      const Files now = visibleFiles();
      EXPECT_TRUE(now == before || now == after) << editing.name << ", " << nth << " answered";
      if (!saysOneAnyhow(editing)) {
        EXPECT_EQ(result, now == after ? 1 : 0) << editing.name << ", " << nth << " answered";
      }
    }
    EXPECT_GT(struck, 0) << editing.name;
  }

  std::string table_ = test::actes();
};

TEST_F(ReadFaults, AStatusThatIsNotToldLosesNothing) {
  for (const Editing &editing : kEditings) {
    expectNothingLost(editing, statusFault, 1);
    expectNothingLost(editing, statusFault, kForGood);
  }
}

TEST_F(ReadFaults, AReadThatFailsLosesNothing) {
  tables::TableReader::blockSize = 16;
  for (const Editing &editing : kEditings) {
    expectNothingLost(editing, readFault, 1);
    expectNothingLost(editing, readFault, kForGood);
  }
}

TEST_F(ReadFaults, WithoutAnyStatusTheEditGivesZero) {
  for (const Editing &editing : kEditings) {
    reset();
    const Files before = files();
    statusFault = {0, kForGood};
    const int result = editing.edit();
    heal();
    EXPECT_EQ(files(), before) << editing.name;
    EXPECT_EQ(result, saysOneAnyhow(editing) ? 1 : 0) << editing.name;
  }
}

TEST_F(ReadFaults, AWalkOverWhatCannotBeReadCallsNobody) {
  reset();
  mostAtOnce = 16;
  static int called;
  called = 0;
  readFault = {3, kForGood};
  int first = 0;
  int last = -7;
  const int result = ZRV_Table_scan("actes", &first, &last, [](char *) { ++called; });
  heal();
  EXPECT_EQ(result, 0);
  EXPECT_EQ(called, 0);
  EXPECT_EQ(last, -7);
}

TEST_F(ReadFaults, ReadingsThatGiveLessThanAskedForAreGoneOnWith) {
  for (const Editing &editing : kEditings) {
    reset();
    ASSERT_EQ(editing.edit(), 1) << editing.name;
    const Files after = files();
    reset();
    mostAtOnce = 16;
    EXPECT_EQ(editing.edit(), 1) << editing.name;
    heal();
    EXPECT_EQ(files(), after) << editing.name;
  }
}

// The file is written over in place while it is read: what is walked is the one or the other.
TEST_F(ReadFaults, AWalkIsNotOverHalfOfAnOldTableAndHalfOfANewOne) {
  static std::string path;
  static std::string other;
  static std::string codes;
  path = posixPath("actes");
  for (const bool longer : {false, true}) {
    other = table_;
    std::replace(other.begin(), other.end(), '0', '9');
    if (longer) other += "98,Ajout\r\n";
    for (const int nth : {1, 2, 4}) {
      reset();
      // Two changes within one tick of the clock bear the same time.
      std::filesystem::last_write_time(
          path, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
      codes.clear();
      mostAtOnce = 16;
      readingsBefore = nth;
      duringRead = [] {
        std::FILE *file = std::fopen(path.c_str(), "r+b");
        std::fputs(other.c_str(), file);
        std::fclose(file);
      };
      EXPECT_EQ(ZRV_Table_scan("actes", nullptr, nullptr,
                               [](char *fields) { codes.append(fields).append("+"); }),
                1);
      EXPECT_EQ(duringRead, nullptr);
      heal();
      EXPECT_EQ(codes, "91+92+97+") << nth;
    }
  }
}

// What is looked at is what is opened: a name may lead elsewhere a moment later.
TEST_F(ReadFaults, ALeftOverFileThatIsReplacedWhileItIsOpenedIsNotUsedUp) {
  reset();
  volumes_.file("tables/actes.ta_", "left");
  duringOpen = [](const char *path) {
    unlink(path);
    return mkfifo(path, 0666);
  };
  EXPECT_EQ(test::deleteLine(), 0);
  EXPECT_EQ(duringOpen, nullptr);
  EXPECT_EQ(tableText(), table_);
  struct stat status;
  EXPECT_EQ(lstat((folder() + "/actes.ta_").c_str(), &status), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(ReadFaults, AnotherUsersLeftOverFileNeedNotBeReadable) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  for (const uid_t owner : {0U, 12U}) {
    reset();
    volumes_.file("tables/actes.ta_", "left");
    ASSERT_EQ(chown((folder() + "/actes.ta_").c_str(), owner, static_cast<gid_t>(-1)), 0);
    duringOpen = [](const char * /*path*/) {
      errno = EACCES;
      return -1;
    };
    EXPECT_EQ(test::deleteLine(), owner == 0 ? 0 : 1);
    EXPECT_EQ(files().at("actes.ta_"), "left");
  }
}

TEST_F(ReadFaults, ARenamingWithoutMemoryLeavesTheTable) {
  const auto rename = [] { return ZRV_Table_modify("actes", "new", "3", "Titre"); };
  for (const bool isLink : {false, true}) {
    const auto begin = [&] {
      reset();
      if (!isLink) return;
      std::rename(posixPath("actes").c_str(), (folder() + "/real").c_str());
      ASSERT_EQ(symlink("real", posixPath("actes").c_str()), 0);
    };
    begin();
    const Files before = files();
    int failures = 0;
    for (int nth = 1;; ++nth) {
      begin();
      int result = 0;
      bool hasFailed = false;
      {
        const test::FailingMemory memory(nth);
        result = rename();
        hasFailed = memory.hasFailed();
      }
      if (!hasFailed) {
        EXPECT_EQ(result, 1);
        break;
      }
      ++failures;
      EXPECT_EQ(result, 0) << nth;
      EXPECT_EQ(files(), before) << nth;
      EXPECT_EQ(openHandles(), std::vector<int>{}) << nth;
    }
    EXPECT_GT(failures, 0);
    EXPECT_TRUE(files().contains("new.tab"));
  }
}

}  // namespace
}  // namespace korvel
