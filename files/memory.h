// SPDX-License-Identifier: MIT
// For files/, profile/ and tables/: memory files by their handles.
#ifndef KORVEL_FILES_MEMORY_H
#define KORVEL_FILES_MEMORY_H

namespace korvel::files {

// As MFil_Open: the handle, or -1.
int openMemoryFile(int wish, int minimum);
// As MFil_Close. A handle that is not open is left alone.
void closeMemoryFile(int handle);
// As MFil_Write: count, or 0.
int writeMemoryFile(int handle, const void *from, int count);

}  // namespace korvel::files

#endif
