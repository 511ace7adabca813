// SPDX-License-Identifier: MIT
// The functions of files, folders and lists of files.
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

#include <korvel/files.h>
#include <korvel/strings.h>

#include "tests/faults/operations.h"
#include "tests/faults/requests.h"

namespace korvel::faults {
namespace {

using namespace korvel::faults::place;

void putFile() { put("f", "content"); }
// Handle 0 is a file open for everything, at 3.
void openFile() {
  putFile();
  File_Open("Data:f", 1, 1);
  File_Lseek(0, 3);
}
// Memory file 0 holds a text, and is at 3.
void openMemory() {
  MFil_Open("", 0, 0);
  MFil_Write(0, "memory", 6);
  MFil_Lseek(0, 3);
}
int descriptor = -1;
void openDescriptor() {
  putFile();
  if (descriptor >= 0) close(descriptor);
  descriptor = open(posix("f"), O_RDWR | O_CLOEXEC);
}
void putFolder() {
  folder("d");
  put("d/b", "1");
  put("d/a", "22");
  put("d/c", "333");
  folder("d/sub");
}

// What was opened is closed again whatever is refused. Which handle it has depends on failures
// before, as they leave the counter raised; and its size is 0 where the system does not tell it.
Answer opened(const char *path, int read, int write) {
  const int handle = File_Open(path, read, write);
  const InLibrary outside(false);
  if (handle >= 0) File_Close(handle);
  return {handle >= 0 ? 1 : handle};
}
Answer openedPlainly(int read, int write) {
  const int file = xFile_Open("Data:f", read, write);
  const InLibrary outside(false);
  if (file >= 0) xFile_Close(file);
  return {file >= 0 ? 1 : file};
}

Answer positionAfter(int result) { return {result, File_GetPos(0), File_Size(0)}; }

struct Rows {
  char text[3][256] = {};
  Answer listed(int result) const { return {result, text[0], text[1], text[2]}; }
};
Answer sortedBy(int (*sort)(char *, int)) {
  Rows rows = {{"Data:d:b", "Data:d:c", "Data:d:a"}};
  const int moves = sort(rows.text[0], 3);
  return rows.listed(moves);
}

int visits;

Answer found(const char *pattern) {
  Rows rows;
  return rows.listed(Dir_FindFiles(rows.text[0], "Data:d", 3, pattern));
}
Answer handedOver(const char *pattern) {
  visits = 0;
  const auto visit = [](const char *) { return ++visits, 0; };
  const int result = Dir_ProcessFiles("Data:d", pattern, visit);
  return {result, visits};
}

constexpr Operation kFiles[] = {
    {"File_Open", putFile, [] { return opened("Data:f", 1, 0); }, "1", "-2"},
    {"File_Open, for writing", putFile, [] { return opened("Data:f", 0, 1); }, "1", "-2"},
    {"File_Open, for both", putFile, [] { return opened("Data:f", 1, 1); }, "1", "-2"},
    {"File_Open, of a new file", nullptr, [] { return opened("Data:new", 0, 1); }, "1", "-2",
     kAnyFiles},
    {"File_Close", openFile, [] { return Answer{File_Close(0)}; }, "0", "-1", kUsedUp},
    {"File_Size", openFile, [] { return Answer{File_Size(0)}; }, "7", nullptr},
    {"File_GetPos", openFile, [] { return Answer{File_GetPos(0)}; }, "3", nullptr},
    {"File_Read", openFile,
     [] {
       char out[8] = "";
       const int got = File_Read(0, out, 4);
       return Answer{got, File_GetPos(0), out};
     },
     "4", "-1", kUsedUp},
    {"File_Re_Read", openFile,
     [] {
       char out[8] = "";
       const int got = File_Re_Read(0, out, 3);
       return Answer{got, File_GetPos(0), out};
     },
     "3", "-1", kUsedUp},
    {"File_Write", openFile, [] { return positionAfter(File_Write(0, "longer", 6)); }, "6", "-1",
     kAnyFiles},
    {"File_Lseek", openFile, [] { return positionAfter(File_Lseek(0, 5)); }, "0", "-1"},
    {"File_SetEOF", openFile, [] { return positionAfter(File_SetEOF(0, 2)); }, "0", "-1"},
    {"xFile_Open", putFile, [] { return openedPlainly(1, 0); }, "1", "-1"},
    {"xFile_Open, for writing", putFile, [] { return openedPlainly(0, 1); }, "1", "-1"},
    {"xFile_Open, for both", putFile, [] { return openedPlainly(1, 1); }, "1", "-1"},
    {"xFile_Close", openDescriptor,
     [] {
       const int result = xFile_Close(descriptor);
       descriptor = -1;
       return Answer{result};
     },
     "0", "-1", kPartial | kUsedUp},
    {"xFile_Read", openDescriptor,
     [] {
       char out[8] = "";
       const int got = xFile_Read(descriptor, out, 7);
       return Answer{got, out};
     },
     "7", "0 4", kPartial | kUsedUp},
    {"xFile_Write", openDescriptor, [] { return Answer{xFile_Write(descriptor, "NEW", 3)}; }, "3",
     "-1 2", kPartial | kAnyFiles},
    {"xFile_Lseek", openDescriptor, [] { return Answer{xFile_Lseek(descriptor, 2)}; }, "2", "-1"},
    {"xFile_GetPos", openDescriptor, [] { return Answer{xFile_GetPos(descriptor)}; }, "0", "-1"},
    {"xFile_Size", openDescriptor, [] { return Answer{xFile_Size(descriptor)}; }, "0", "-1"},
    {"xFile_SetEOF", openDescriptor, [] { return Answer{xFile_SetEOF(descriptor, 2)}; }, "0", "-1",
     kAnyFiles},
    {"File_Is_Existing", putFile, [] { return Answer{File_Is_Existing("Data:f")}; }, "1", "0"},
    {"File_Is_Existing, a link", [] { link("l", "nowhere"); },
     [] { return Answer{File_Is_Existing("Data:l")}; }, "1", "0"},
    {"Dir_Is_Existing", putFolder, [] { return Answer{Dir_Is_Existing("Data:d")}; }, "1", "0"},
    {"MakeDir", nullptr, [] { return Answer{MakeDir("Data:made")}; }, "1", "0"},
    {"MAC2UNIX", putFile,
     [] {
       char out[256] = "";
       const int length = MAC2UNIX("Data:f", out);
       return Answer{std::string_view(out).ends_with("/Data/f") ? 1 : 0, length > 0 ? 1 : 0};
     },
     "1", nullptr},
    {"MACRemove", putFile, [] { return Answer{MACRemove("Data:f")}; }, "0", "-1"},
    {"MACRename", putFile, [] { return Answer{MACRename("Data:f", "Data:g")}; }, "0", "-1"},
    {"MFil_Open", nullptr,
     [] {
       const int handle = MFil_Open("", 10, 20);
       MFil_Close(handle);
       return Answer{handle >= 0 ? 1 : handle};
     },
     "1", "-1"},
    {"MFil_Close", openMemory, [] { return Answer{MFil_Close(0)}; }, "0", nullptr, kUsedUp},
    {"MFil_Read", openMemory,
     [] {
       char out[8] = "";
       const int got = MFil_Read(0, out, 9);
       return Answer{got, MFil_GetPos(0), out};
     },
     "3", nullptr},
    {"MFil_Re_Read", openMemory,
     [] {
       char out[8] = "";
       const int got = MFil_Re_Read(0, out, 2);
       return Answer{got, MFil_GetPos(0), out};
     },
     "2", nullptr},
    {"MFil_Write", openMemory,
     [] {
       const int put = MFil_Write(0, "more", 4);
       return Answer{put, MFil_Size(0), MFil_GetPos(0)};
     },
     "4", nullptr},
    {"MFil_Write, beyond the capacity", openMemory,
     [] {
       static const char kMuch[9000] = "";
       const int put = MFil_Write(0, kMuch, sizeof kMuch);
       return Answer{put, put == 0 ? 0 : MFil_Size(0)};
     },
     "9000", "0", kUsedUp},
    {"MFil_Lseek", openMemory,
     [] {
       return Answer{MFil_Lseek(0, 1), MFil_GetPos(0)};
     },
     "0", nullptr},
    {"MFil_GetPos", openMemory, [] { return Answer{MFil_GetPos(0)}; }, "3", nullptr},
    {"MFil_Size", openMemory, [] { return Answer{MFil_Size(0)}; }, "6", nullptr},
    {"MFil_LockPtr", openMemory, [] { return Answer{std::string_view(MFil_LockPtr(0, 1), 3)}; },
     "emo", nullptr},
    {"MFil_UnLockPtr", openMemory, [] { return Answer{MFil_UnLockPtr(0)}; }, "0", nullptr},
    {"GlobalAlloc", nullptr,
     [] {
       void *block = GlobalAlloc(0, 10);
       const Answer answer{block != nullptr ? 1 : 0};
       GlobalFree(block);
       return answer;
     },
     "1", "0"},
    {"GlobalReAlloc", nullptr,
     [] {
       void *block = GlobalAlloc(0, 10);
       void *grown = GlobalReAlloc(block, 20);
       const Answer answer{block != nullptr && grown != nullptr ? 1 : 0};
       GlobalFree(grown != nullptr ? grown : block);
       return answer;
     },
     "1", "0"},
    {"GlobalFree", nullptr, [] { return Answer{GlobalFree(nullptr)}; }, "0", nullptr},
    {"GlobalLock", nullptr, [] { return Answer{GlobalLock(&visits) == &visits ? 1 : 0}; }, "1",
     nullptr},
    {"GlobalUnlock", nullptr, [] { return Answer{GlobalUnlock(&visits)}; }, "0", nullptr},
    {"Dir_FindFiles", putFolder, [] { return found("*"); }, "3", "0 1 2"},
    {"Dir_FindFiles, by the tools", putFolder, [] { return found("*.*"); }, "3", "0 1 2",
     kPartial | kSpawns},
    {"Dir_ProcessFiles", putFolder, [] { return handedOver("*"); }, "0", "0"},
    {"Dir_ProcessFiles, by the tools", putFolder, [] { return handedOver("*.*"); }, "0", "0",
     kSpawns},
    {"Dir_SortFiles", nullptr, [] { return sortedBy(Dir_SortFiles); }, "2", "0"},
    {"Dir_SortSizeFiles", putFolder, [] { return sortedBy(Dir_SortSizeFiles); }, "2", "0",
     kAnyAnswer},
    {"ChCh_Detect_Missing_File", putFolder,
     [] {
       char *item = nullptr;
       const int result = ChCh_Detect_Missing_File("Data:d", "a\0b\0no\0", &item);
       return Answer{result, item};
     },
     "1", "1"},
    {"ChCh_Remove_Missing_File", putFolder,
     [] {
       char list[] = "a\0no\0b\0";
       const int result = ChCh_Remove_Missing_File("Data:d", list);
       return Answer{result, ChCh_Count_Item(list)};
     },
     "1", "0 1"},
};

}  // namespace

std::span<const Operation> fileOperations() { return kFiles; }

}  // namespace korvel::faults
