// For files/ and tables/ and their tests only: numbered handles beyond what applications see.
#ifndef KORVEL_FILES_HANDLES_H
#define KORVEL_FILES_HANDLES_H

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

}  // namespace korvel::files

#endif
