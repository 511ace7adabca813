// For files/ and tables/ and their tests only: numbered handles beyond what applications see.
#ifndef KORVEL_FILES_HANDLES_H
#define KORVEL_FILES_HANDLES_H

#include <cstdint>

namespace korvel::files {

// The highest descriptor that a slot's reference field holds. A variable for tests, which may not
// have so many.
extern int highestReference;

// As File_Open(path, 1, 0) for a file in a folder, both colon paths: when the folder does not
// exist, returns -1 with the slots and DATA_FILE_ID as they were. A path that the slot cannot hold
// is opened all the same; the slot then holds its beginning.
int openInFolder(const char *folder, const char *path);
// The same without a look at the folder.
int openForReading(const char *path);

// The length in bytes of a file, also of one that is too long for a slot, which is taken and given
// back for it; 0 when it cannot be opened or no slot is free.
std::uint64_t lengthOf(const char *path);

// As File_Close, for a file that only the library knows: a slot that the system does not let go
// becomes the library's own.
void closeOwn(int handle);
// Leaves such a file open, as told; its slot becomes the library's own.
void leaveOpen(int handle);

}  // namespace korvel::files

#endif
