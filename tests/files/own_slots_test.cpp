// SPDX-License-Identifier: MIT
// No failure inside the library hinders later calls: a slot that it leaves in use is reclaimed when
// it is needed.
#include <cerrno>
#include <climits>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>
#include <korvel/profile.h>
#include <korvel/tables.h>

#include "files/handles.h"
#include "tables/reader.h"
#include "tests/files/faults.h"
#include "tests/files/volumes.h"
#include "tests/support/sanitizer.h"

namespace korvel {
namespace {

using test::inChild;
using test::modeOf;
using test::Restored;
using test::Volumes;

constexpr char kTable[] = "T\r\nVersion: 1\r\n#DEBUT\r\n01,Un\r\n02,Deux\r\n#FIN\r\n";

int replaceIn(const char *table) {
  ZRV_Libelle_NC_set_ligne(4);
  return ZRV_Libelle_NC_idem_replace("", 2, 1, table, "Uno");
}

// A plain user may create files in the folder "tables" but not in "closed". Each holds a table.
class OwnSlots : public testing::Test {
 protected:
  OwnSlots() {
    chmod(volumes_.root().c_str(), 0755);
    for (const std::string folder : {"tables", "closed"}) {
      mkdir(volumes_.posix(folder).c_str(), 0777);
      volumes_.file(folder + "/t.tab", kTable);
      chmod(volumes_.posix(folder + "/t.tab").c_str(), 0666);
      chmod(volumes_.posix(folder).c_str(), 0777);
    }
    chmod(volumes_.posix("closed").c_str(), 0555);
    volumes_.file("tables/p.ini", "[A]\r\nx=1\r\n");
    chmod(volumes_.posix("tables/p.ini").c_str(), 0666);
    // A folder has the name of the temporary file of "stuck".
    volumes_.file("tables/stuck.tab", kTable);
    mkdir(volumes_.posix("tables/stuck.ta_").c_str(), 0777);
    chmod(volumes_.posix("tables/stuck.tab").c_str(), 0666);
    std::strcpy(szDirTables, "Data:tables");
    ZRV_Libelle_NC_szDirTables[0] = '\0';
  }
  ~OwnSlots() override { chmod(volumes_.posix("closed").c_str(), 0777); }

  static std::vector<int> openFiles() {
    std::vector<int> open;
    for (int handle = 0; handle < 5; ++handle) {
      if (DATA_FILE_TAB[handle].mode != -1) open.push_back(handle);
    }
    return open;
  }
  static int openMemories() {
    int open = 0;
    for (const MFilSlot &slot : DATA_MFIL_TAB) open += slot.mode != -1 ? 1 : 0;
    return open;
  }
  static int descriptorsInUse() { return static_cast<int>(test::entries("/proc/self/fd").size()); }

  Volumes volumes_;
  Restored<char[256]> tables_{szDirTables};
  Restored<char[256]> chosen_{ZRV_Libelle_NC_szDirTables};
  Restored<int> line_{ZRV_Libelle_NC_il};
  Restored<int> read_{ZRV_Libelle_NC_read};
  Restored<char[1024]> buffer_{ZRV_Libelle_NC_szBuffer};
};

// The failures that leave a slot in use. Each returns false if it did not fail.
bool editInAClosedFolder() {
  const Restored<char[256]> directory(szDirTables);
  std::strcpy(szDirTables, "Data:closed");
  return replaceIn("t") == 0;
}
bool editWithoutATemporary() { return replaceIn("stuck") == 0; }
bool closeThatIsRefused() {
  tables::TableReader reader;
  if (!reader.open("Data:tables:t.tab", tables::Slots::File)) return false;
  for (const FileSlot &slot : DATA_FILE_TAB) {
    if (slot.mode != -1 && close(slot.reference) == 0) return true;
  }
  return false;
}
bool allocationWithoutMemory() { return MFil_Open("", INT_MAX, 0) == -1; }

constexpr struct {
  const char *name;
  bool (*fail)();
  bool needsLittleMemory;
} kFailures[] = {
    {"edit in a closed folder", editInAClosedFolder, false},
    {"edit without a temporary file", editWithoutATemporary, false},
    {"refused close", closeThatIsRefused, false},
    {"refused allocation", allocationWithoutMemory, true},
};

// The calls that must work afterwards.
constexpr struct {
  const char *name;
  bool (*call)();
} kCalls[] = {
    {"edit", [] { return replaceIn("t") == 1; }},
    {"insert",
     [] {
       ZRV_Libelle_NC_set_ligne(4);
       return ZRV_Libelle_NC_idem_insert("", 2, "t", 2) == 1;
     }},
    {"new header", [] { return ZRV_Table_modify("t", "t", "2", "New") == 1; }},
    {"lookup",
     [] {
       char out[8];
       return ZRV_Libelle_NC("02", 2, 1, "t", out, sizeof out) == 1 &&
              std::strcmp(out, "Deux") == 0;
     }},
    {"search",
     [] {
       char out[8];
       return ZRV_Code_NC("Deux", 1, "t", out, sizeof out) == 1 && std::strcmp(out, "02") == 0;
     }},
    {"list of codes",
     [] {
       char out[16];
       return ZRV_Table_liste("t", out, sizeof out) == 1 && std::strcmp(out, "01+02") == 0;
     }},
    {"scan",
     [] {
       int first = 0;
       int last = 0;
       return ZRV_Table_scan("t", &first, &last, nullptr) == 1 && first == 4 && last == 5;
     }},
    {"back-up",
     [] {
       return ZRV_Table_sauvegarde("t", 1) == 0 && File_Is_Existing("Data:tables:t.bak") == 1;
     }},
    {"creation", [] { return ZRV_Table_create("new", "1", "T") == 1; }},
    {"listing",
     [] {
       char row[256];
       return Dir_FindFiles(row, "Data:tables", 1, "*.ini") == 1 &&
              std::strcmp(row, "Data:tables:p.ini") == 0;
     }},
    {"profile read",
     [] {
       char out[8];
       return GetPrivateProfileString("A", "x", "-", out, sizeof out, "Data:tables:p.ini") == 1 &&
              out[0] == '1';
     }},
    {"profile write",
     [] {
       char out[8];
       const bool written = WritePrivateProfileString("A", "y", "2", "Data:tables:p.ini") == 1;
       GetPrivateProfileString("A", "y", "-", out, sizeof out, "Data:tables:p.ini");
       return written && out[0] == '2';
     }},
    {"sorting by size",
     [] {
       char rows[512] = "Data:tables:p.ini";
       std::strcpy(rows + 256, "Data:tables:t.tab");
       return Dir_SortSizeFiles(rows, 2) == 1;
     }},
    {"opening", [] { return File_Open("Data:tables:t.tab", 1, 0) >= 0; }},
    {"opening of a memory file", [] { return MFil_Open("", 0, 0) >= 0; }},
};

bool limitMemory() {
  const rlimit limit = {1 << 28, 1 << 28};
  return setrlimit(RLIMIT_AS, &limit) == 0;
}

TEST_F(OwnSlots, EveryCallWorksAfterAnyNumberOfFailures) {
  for (const auto &failure : kFailures) {
    if (failure.needsLittleMemory && test::kUnderSanitizer) continue;
    for (const auto &call : kCalls) {
      for (const int times : {1, 3, 5, 11}) {
        const int result = inChild([&] {
          if (geteuid() == 0 && !test::becomeNobody()) return 2;
          if (failure.needsLittleMemory && !limitMemory()) return 3;
          for (int i = 0; i < times; ++i) {
            if (!failure.fail()) return 4;
          }
          // Twice, as the first may leave something behind.
          return call.call() && call.call() ? 0 : 1;
        });
        EXPECT_EQ(result, 0) << call.name << " after " << times << " times " << failure.name;
        // The file that a call made.
        unlink(volumes_.posix("tables/new.tab").c_str());
        volumes_.file("tables/t.tab", kTable);
      }
    }
  }
}

// The slots are left in use as stated, and the counters move by the rule.
TEST_F(OwnSlots, RefusedEditsTakeSlotAfterSlotAndThenTheirOwn) {
  const int before = descriptorsInUse();
  const struct {
    std::vector<int> open;
    int highest;
  } kAfter[] = {{{0}, 1},
                {{0, 2}, 3},
                {{0, 2, 4}, 4},
                {{0, 1, 2, 4}, 4},
                // The table takes the last slot, its temporary file takes back the first one.
                {{1, 2, 3, 4}, 4},
                {{0, 2, 3, 4}, 4}};
  for (const auto &after : kAfter) {
    ASSERT_TRUE(editWithoutATemporary());
    EXPECT_EQ(openFiles(), after.open);
    EXPECT_EQ(DATA_FILE_ID, after.highest);
    EXPECT_EQ(descriptorsInUse(), before + static_cast<int>(after.open.size()));
  }
  ASSERT_EQ(File_Open("Data:tables:t.tab", 1, 0), 1);
  EXPECT_EQ(openFiles().size(), 5u) << "nothing is taken back without need";
  char out[8];
  EXPECT_EQ(ZRV_Libelle_NC("01", 2, 1, "t", out, sizeof out), 1);
  EXPECT_EQ(openFiles(), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(DATA_FILE_ID, 4);
  for (const int handle : {0, 2, 3, 4})
    EXPECT_EQ(File_Open("Data:tables:t.tab", 1, 0), handle) << "all are taken back, one by one";
  EXPECT_EQ(File_Open("Data:tables:t.tab", 1, 0), -1) << "those of the application are not";
  EXPECT_EQ(descriptorsInUse(), before + 5);
}

TEST_F(OwnSlots, TheHighestOneTakenBackAndClosedLowersTheCounter) {
  for (int handle = 0; handle < 4; ++handle)
    ASSERT_EQ(File_Open("Data:tables:t.tab", 1, 0), handle);
  ASSERT_TRUE(editWithoutATemporary());
  EXPECT_EQ(openFiles().size(), 5u);
  EXPECT_EQ(File_Open("Data:tables:p.ini", 1, 0), 4);
  EXPECT_STREQ(DATA_FILE_TAB[4].name, "Data:tables:p.ini");
  EXPECT_EQ(File_Size(4), 10);
  EXPECT_EQ(File_Close(4), 0);
  EXPECT_EQ(DATA_FILE_ID, 3);
}

TEST_F(OwnSlots, OneThatTheApplicationUsesIsItsOwn) {
  for (int i = 0; i < 5; ++i) ASSERT_TRUE(editWithoutATemporary());
  char bytes[4] = "";
  EXPECT_EQ(File_Read(1, bytes, 3), 3);
  EXPECT_STREQ(bytes, "T\r\n");
  EXPECT_EQ(File_Close(2), 0);
  for (const int handle : {0, 2, 3, 4}) EXPECT_EQ(File_Open("Data:tables:p.ini", 1, 0), handle);
  EXPECT_EQ(File_Open("Data:tables:p.ini", 1, 0), -1);
  EXPECT_EQ(File_Read(1, bytes, 3), 3);
  EXPECT_STREQ(bytes, "Ver");
}

TEST_F(OwnSlots, ALoweredCounterTakesOneBackWithItsDescriptor) {
  const int before = descriptorsInUse();
  ASSERT_TRUE(editWithoutATemporary());
  DATA_FILE_ID = -1;
  EXPECT_EQ(File_Open("Data:tables:t.tab", 1, 0), 0);
  EXPECT_EQ(descriptorsInUse(), before + 1);
}

TEST_F(OwnSlots, ARefusedAllocationIsTakenBackOnlyWithoutAFreeSlot) {
  if (test::kUnderSanitizer) GTEST_SKIP() << "the sanitizer needs all the address space";
  EXPECT_EQ(inChild([] {
              if (!limitMemory() || MFil_Open("", 0, 0) != 0) return 1;
              for (int i = 1; i < 5; ++i) {
                if (!allocationWithoutMemory() || DATA_MFIL_ID != i) return 2;
                if (DATA_MFIL_TAB[i].mode != 2 || DATA_MFIL_TAB[i].block != nullptr) return 3;
              }
              if (openMemories() != 5 || !allocationWithoutMemory()) return 4;
              if (openMemories() != 5 || DATA_MFIL_ID != 4) return 5;
              for (int i = 1; i < 5; ++i) {
                if (MFil_Open("", 0, 0) != i || DATA_MFIL_TAB[i].block == nullptr) return 6;
              }
              return MFil_Open("", 0, 0) == -1 ? 0 : 7;
            }),
            0);
}

// Its handle is known to the application.
TEST_F(OwnSlots, AMemoryFileThatCouldNotGrowIsNotTakenBack) {
  if (test::kUnderSanitizer) GTEST_SKIP() << "the sanitizer needs all the address space";
  EXPECT_EQ(inChild([] {
              static char piece[1 << 20];
              if (!limitMemory()) return 1;
              for (int handle = 0; handle < 5; ++handle) {
                if (MFil_Open("", 0, 0) != handle) return 2;
                while (MFil_Write(handle, piece, sizeof piece) != 0) {
                }
                if (DATA_MFIL_TAB[handle].block != nullptr) return 3;
              }
              return MFil_Open("", 0, 0) == -1 ? 0 : 4;
            }),
            0);
}

TEST_F(OwnSlots, EveryOtherFailureLeavesItsSlotFree) {
  char out[8];
  const struct {
    const char *name;
    int files;     // DATA_FILE_ID afterwards
    int memories;  // DATA_MFIL_ID
    std::function<int()> fail;
  } kCases[] = {
      {"opening", 0, -1, [] { return File_Open("Data:tables:none", 1, 0) + 2; }},
      {"opening of a folder", 0, -1, [] { return File_Open("Data:tables", 1, 1) + 2; }},
      {"creation in no folder", 0, -1, [] { return File_Open("Data:none:x", 0, 1) + 2; }},
      {"opening without flags", 0, -1, [] { return File_Open("Data:tables:t.tab", 0, 0) + 3; }},
      {"lookup", 0, -1, [&] { return ZRV_Libelle_NC("01", 2, 1, "none", out, sizeof out); }},
      {"lookup without a folder", -1, -1,
       [&] {
         const Restored<char[256]> directory(szDirTables);
         std::strcpy(szDirTables, "Data:none");
         return ZRV_Libelle_NC("01", 2, 1, "t", out, sizeof out);
       }},
      {"search", 0, -1, [&] { return ZRV_Code_NC("Un", 1, "none", out, sizeof out); }},
      {"list of codes", 0, -1, [&] { return ZRV_Table_liste("none", out, sizeof out); }},
      {"scan", 0, -1, [] { return ZRV_Table_scan("none", nullptr, nullptr, nullptr); }},
      {"edit", 0, -1, [] { return replaceIn("none"); }},
      {"new header", 0, -1, [] { return ZRV_Table_modify("none", "none", "1", "T"); }},
      {"edit that fails in the middle", -1, -1,
       [] {
         const test::Fault fault(files::ReplaceStep::Write, 1, ENOSPC);
         return replaceIn("t");
       }},
      {"edit that fails at its end", -1, -1,
       [] {
         const test::Fault fault(files::ReplaceStep::Rename, 1, EIO);
         return replaceIn("t");
       }},
      {"profile read", -1, -1,
       [&] { return GetPrivateProfileString("A", "x", "", out, sizeof out, "Data:none"); }},
      {"profile write", -1, -1,
       [] { return WritePrivateProfileString("A", "x", "1", "Data:none:p.ini"); }},
      {"sorting by size", 1, -1,
       [] {
         char rows[512] = "Data:none";
         return Dir_SortSizeFiles(rows, 2);
       }},
  };
  for (const auto &row : kCases) {
    const int before = descriptorsInUse();
    DATA_FILE_ID = DATA_MFIL_ID = -1;
    EXPECT_EQ(row.fail(), 0) << row.name;
    EXPECT_EQ(openFiles(), std::vector<int>{}) << row.name;
    EXPECT_EQ(openMemories(), 0) << row.name;
    EXPECT_EQ(DATA_FILE_ID, row.files) << row.name;
    EXPECT_EQ(DATA_MFIL_ID, row.memories) << row.name;
    EXPECT_EQ(descriptorsInUse(), before) << row.name;
  }
}

}  // namespace
}  // namespace korvel
