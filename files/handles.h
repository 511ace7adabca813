// SPDX-License-Identifier: MIT
// For files/ and tables/: numbered file handles beyond what applications see. The size and position
// of an open file are the fields of its slot, in DATA_FILE_TAB.
#ifndef KORVEL_FILES_HANDLES_H
#define KORVEL_FILES_HANDLES_H

#include <cstdint>

#include <sys/stat.h>

namespace korvel::files {

// The highest descriptor that a slot's reference field holds. A variable for tests, which may not
// have so many.
extern int highestReference;

// As File_Open(path, 1, 0), but a path that the slot cannot hold is opened too; the slot then holds
// its beginning. status: of the file once it is open, all zeros if the system does not tell it.
int openForReading(const char *path, struct stat &status);
// The same for a file in a folder, both colon paths: when the folder does not exist, returns -1 and
// leaves the slots and DATA_FILE_ID alone.
int openInFolder(const char *folder, const char *path, struct stat &status);

// The length in bytes of a file, even of one too long for a slot. Takes a slot and gives it back; 0
// when the file cannot be opened or no slot is free.
std::uint64_t lengthOf(const char *path);

// As File_Close; false when the system refused or the handle is not open.
bool closeFile(int handle);
// The same for a file that only the library knows: a slot that the system does not let go becomes
// the library's own.
void closeOwn(int handle);
// Leaves such a file open; its slot becomes the library's own.
void leaveOpen(int handle);

}  // namespace korvel::files

#endif
