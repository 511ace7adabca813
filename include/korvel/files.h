/* SPDX-License-Identifier: MIT */
/* Files and directories: numbered file handles, descriptors, existence and change of files, memory
   files, memory handles, directory listing and sorting.

   Paths are colon paths (volume:folder:file), NUL-terminated. The file functions take them to
   POSIX paths as MAC2UNIX does, the removing, renaming and listing ones as BSDMAC2UNIX does
   (shell.h); volumes are under szVolumes (desktop.h). A path whose POSIX form has more than 511
   bytes is refused, not cut: a cut path would name another file.

   Only the listings (Dir_FindFiles and Dir_ProcessFiles) may start processes, as BSDDir_FindFiles
   (shell.h) may. To all other functions a path is a name and nothing else, whatever characters it
   holds: an apostrophe, a "$" or a leading "-" is a letter like any other, in the name of a volume
   too.

   A handle outside 0 to 4 or of a free slot changes nothing and gives the failure value that each
   function states. A null path, buffer or list gives the failure value too. */
#ifndef KORVEL_FILES_H
#define KORVEL_FILES_H

#include <korvel/shell.h>
#include <korvel/strings.h>
#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Numbered file handles ---- */

/* Modes of a slot. */
enum {
  KorvelFreeMode = -1, /* nothing is open in it */
  KorvelReadMode = 0,
  KorvelWriteMode = 1,
  KorvelReadWriteMode = 2 /* also of every open memory file */
};

/* What File_Open and MFil_Open return instead of a handle. */
enum {
  KorvelNoSlotStatus = -1,    /* no slot is free; MFil_Open: or there is no memory */
  KorvelNotOpenedStatus = -2, /* the file cannot be opened */
  KorvelNoFlagStatus = -3     /* neither reading nor writing was asked for */
};

/* One open file. Mode and the numbers are true at any time between two calls of the library: size
   and position are what File_Size and File_GetPos give, and the offset of the descriptor (lseek) is
   position. */
typedef struct FileSlot {
  char name[144];  /* the path given to File_Open, as it was given */
  short reference; /* the descriptor; -1 after a close that failed for good */
  int mode;        /* one of the modes above */
  int size;        /* length in bytes: taken at opening, grown by writes, not cut by File_SetEOF */
  int position;    /* where the next byte is read or written */
} FileSlot;

/* The open files; a handle is an index. Initially all free. The library works on this table itself
   and keeps no copy: what the application writes into it holds from the next call on.
   A refused edit of a table leaves the table open in a slot whose handle no application was given.
   Such slots count as in use while there is a free one; then the first of them is closed and handed
   out. One that the application has used since is the application's own. */
KORVEL_API extern FileSlot DATA_FILE_TAB[5];

/* The highest handle handed out by the sequential rule of File_Open, initially -1. Written by the
   library. An application that lowers it has the slots above it handed out again even if they are
   in use; their descriptors remain open and are then its own to close. */
KORVEL_API extern int DATA_FILE_ID;

/* Opens a file. read, write: flags, set when 1 or more.
   - read only: the file must exist.
   - write only: a missing file is created, whatever the process's file mask (which is left alone).
     The file gets the mode 0777 as BSDMACchmodrwx gives it, the path being taken as BSDMAC2UNIX
     does: after it was opened, or, if it may not be written, before a second attempt. An existing
     file is not cut: writing starts at offset 0 over its content; File_SetEOF shortens it.
   - both: the file must exist.
   The handle is DATA_FILE_ID + 1, which DATA_FILE_ID then becomes, or, once DATA_FILE_ID is 4, the
   first free slot. DATA_FILE_ID stays raised when the opening fails.
   Returns the handle, 0 to 4, or
   - KorvelNoSlotStatus (-1): no slot is free;
   - KorvelNotOpenedStatus (-2): the file cannot be opened (also: a path of 144 bytes or more, which
     the slot could not hold; a folder; a file of 2 GiB or more; a descriptor above 32767);
   - KorvelNoFlagStatus (-3): neither flag is set. */
KORVEL_API int File_Open(const char *path, int read, int write);

/* Closes a file and frees its slot; size and position become 0. Closing DATA_FILE_ID lowers that by
   one. Returns 0. Returns -1 when the system refused; the slot then stays occupied. */
KORVEL_API int File_Close(int handle);

/* Returns the size field of the slot, also of a free one (0 after a close); -1 for a handle outside
   0 to 4. */
KORVEL_API int File_Size(int handle);

/* Returns the position field of the slot, also of a free one (0 after a close); -1 for a handle
   outside 0 to 4. */
KORVEL_API int File_GetPos(int handle);

/* Reads min(count, size - position) bytes at the position and moves it past them.
   Returns their number; 0 at the end, for a count below 1 and in a slot whose mode is neither
   KorvelReadMode nor KorvelReadWriteMode. Returns -1, with the position as it was, when not all of
   them could be read, and for a handle outside 0 to 4. */
KORVEL_API int File_Read(int handle, void *buffer, int count);

/* Reads again the min(count, position) bytes before the position, which ends where it was.
   Results as File_Read. */
KORVEL_API int File_Re_Read(int handle, void *buffer, int count);

/* Writes count bytes at the position and moves it past them; a position past size raises size,
   also when count is 0 (the file itself does not grow then).
   Returns count; 0 for a negative count and in a slot whose mode is neither KorvelWriteMode nor
   KorvelReadWriteMode, with nothing changed. Returns -1 when not all of them could be written (a
   full disk, a file that would reach 2 GiB), with the position as it was and size covering what did
   reach the file, and for a handle outside 0 to 4. */
KORVEL_API int File_Write(int handle, const void *buffer, int count);

/* Moves the position to an offset from the start, 0 or more; it may lie beyond the end.
   Returns 0, or -1 with the position as it was. */
KORVEL_API int File_Lseek(int handle, int offset);

/* Cuts or extends the file to a length, 0 or more. The position becomes the length; the size field
   is left alone. Returns 0, or -1 with everything as it was. */
KORVEL_API int File_SetEOF(int handle, int length);

/* ---- Descriptors ---- */

/* Opens a file and gives the descriptor, which child processes do not inherit.
   - read set (1 or more), write not: an existing regular file, read-only;
   - both set: an existing file, for reading and writing;
   - write set, read not: write-only, created or cut to nothing. A new file gets the mode 0777,
     whatever the process's file mask, which is left alone.
   - neither set: opens nothing and returns read itself (so 0 for two flags of 0).
   Opening never waits: a pipe that nobody reads cannot be opened for writing.
   Returns the descriptor, or -1. */
KORVEL_API int xFile_Open(const char *path, int read, int write);

/* Closes a descriptor. Returns 0, or -1 when the system refused. */
KORVEL_API int xFile_Close(int descriptor);

/* Reads up to count bytes. Returns their number; 0 at the end and on an error. */
KORVEL_API int xFile_Read(int descriptor, void *buffer, int count);

/* Writes up to count bytes. Returns their number, or -1 on an error. */
KORVEL_API int xFile_Write(int descriptor, const void *buffer, int count);

/* Seeks to an offset from the start. Returns the offset, or -1. */
KORVEL_API int xFile_Lseek(int descriptor, int offset);

/* Returns the current offset (its lower 32 bits), or -1. */
KORVEL_API int xFile_GetPos(int descriptor);

/* Returns the upper 32 bits of the file's length, which is 0 for every file below 4 GiB, or -1; and
   leaves the descriptor at offset 0. For a length use File_Size, or xFile_GetPos after a seek. */
KORVEL_API int xFile_Size(int descriptor);

/* Cuts or extends the file to a length, then seeks to it. Returns 0, or -1 if either fails. */
KORVEL_API int xFile_SetEOF(int descriptor, int length);

/* ---- Paths ---- */

/* Returns 1 if the path names something that is not a folder (a link that leads nowhere is one),
   else 0. */
KORVEL_API int File_Is_Existing(const char *path);

/* Returns 1 if the path names a folder or a link to one, else 0. */
KORVEL_API int Dir_Is_Existing(const char *path);

/* Creates a folder, then opens it to all as BSDMACchmodrwx does.
   Returns 1 if it was created, 0 if not (also if it was there). */
KORVEL_API int MakeDir(const char *path);

/* Writes the POSIX form of a colon path: szVolumes, "/" and the whole path. Only if the volume (the
   text up to the first ":", all of it if there is none) is a regular file under szVolumes, the
   result is the rest of the path, from the root. In what comes from mac every ":" becomes "/" and
   every "/" becomes ":".
   out: room for 256 bytes; may be mac itself.
   Returns the length of the result. A result of more than 255 bytes is not cut: 0 is returned and
   out is the empty text. The result of the example would be /tables/a.tab if /Volumes/Data were a
   file.
     MAC2UNIX("Data:tables:a.tab", out) -> 26, out = "/Volumes/Data/tables/a.tab" */
KORVEL_API int MAC2UNIX(const char *mac, char *out);

/* Removes a file or an empty folder. Returns 0, or -1. */
KORVEL_API int MACRemove(const char *path);

/* Renames a file or folder, replacing a file of the new name. Returns 0, or -1. */
KORVEL_API int MACRename(const char *oldPath, const char *newPath);

/* ---- Memory files ---- */

/* One open memory file. */
typedef struct MFilSlot {
  char *block;  /* from GlobalAlloc; null after an allocation that failed */
  int capacity; /* bytes of the block that count as allocated */
  int mode;     /* KorvelFreeMode, or KorvelReadWriteMode: open */
  int size;     /* bytes of data: the highest position ever written */
  int position; /* where the next byte is read or written */
} MFilSlot;

/* The open memory files; a handle is an index. Initially all free. The library works on this table
   itself and keeps no copy. */
KORVEL_API extern MFilSlot DATA_MFIL_TAB[5];

/* The highest handle handed out by the sequential rule, initially -1; as DATA_FILE_ID. */
KORVEL_API extern int DATA_MFIL_ID;

/* Opens an empty memory file. name: not used. The capacity is 4096, or wish if that is above 4096,
   or minimum if that is larger still. Handles are given as by File_Open.
   Returns the handle, 0 to 4, or KorvelNoSlotStatus (-1) when no slot is free and when there is no
   memory; without memory the slot stays occupied (KorvelReadWriteMode, null block) until one is
   needed and no other is free. */
KORVEL_API int MFil_Open(const char *name, int wish, int minimum);

/* Closes a memory file and frees its block. Closing DATA_MFIL_ID lowers that by one. Returns 0. */
KORVEL_API int MFil_Close(int handle);

/* Copies min(count, size - position) bytes at the position and moves it past them.
   Returns their number; 0 at the end, for a count below 1, a null block or a bad handle. */
KORVEL_API int MFil_Read(int handle, void *buffer, int count);

/* Copies again the min(count, position) bytes before the position, which ends where it was.
   Results as MFil_Read. */
KORVEL_API int MFil_Re_Read(int handle, void *buffer, int count);

/* Writes count bytes at the position and moves it past them; a position past size raises size.
   Where they pass the capacity, that becomes position + count, or position + 4096 for a count below
   4096, and the block may move.
   Returns count; 0 for a count below 1, a null block, a bad handle, or data that would reach 2 GiB,
   with nothing changed. Returns 0 also when there is no memory; the block with its data is lost
   then, and null. */
KORVEL_API int MFil_Write(int handle, const void *buffer, int count);

/* Moves the position to an offset, 0 to size. Returns 0, or -1 with the position as it was. */
KORVEL_API int MFil_Lseek(int handle, int offset);

/* Returns the position field of the slot, also of a free one (0 after a close); -1 for a handle
   outside 0 to 4. */
KORVEL_API int MFil_GetPos(int handle);

/* Returns the size field of the slot, also of a free one (0 after a close); -1 for a handle outside
   0 to 4. */
KORVEL_API int MFil_Size(int handle);

/* Returns the address of the byte at an offset, good until the next write or close; null when the
   offset is outside 0 to size - 1, for a null block or a bad handle. */
KORVEL_API char *MFil_LockPtr(int handle, int offset);

/* Does nothing. Returns 0. */
KORVEL_API int MFil_UnLockPtr(int handle);

/* ---- Memory handles: a handle is the address of the block ---- */

/* Allocates a block of size bytes (0 or more), not initialised; flags are ignored. To be released
   by GlobalFree. Returns the block, or null. */
KORVEL_API void *GlobalAlloc(int flags, int size);

/* Resizes a block, which may move; a null block is allocated. Returns the block, or null with the
   block as it was. */
KORVEL_API void *GlobalReAlloc(void *block, int size);

/* Releases a block; null is allowed. Returns 0. */
KORVEL_API int GlobalFree(void *block);

/* Returns the block itself. */
KORVEL_API void *GlobalLock(void *block);

/* Does nothing. Returns 0. */
KORVEL_API int GlobalUnlock(void *block);

/* ---- Directories ---- */

/* Lists the files of a folder whose names contain a pattern (as BSDDir_FindFiles does). One "*" at
   the beginning of the pattern and one at its end are left out; the rest is a grep pattern, any
   case, in which a point stands for any character: "*.tab" finds "actes.tab" and "etablir". Of the
   directory the shell reads apostrophes, of the pattern apostrophes and grep a leading "-"
   (shell.h).
   list: rows rows of 256 bytes each; may be null if rows is 0. A row becomes the directory as it
   was given, ":" and the name ("Data::" before it for a directory given as "Data:"). A row that
   would not fit is empty.
   Returns the number of files found, which may exceed rows (the first rows are stored); 0 if there
   is no such folder. */
KORVEL_API int Dir_FindFiles(char *list, const char *directory, int rows, const char *pattern);

/* Hands the names of the files that Dir_FindFiles would find to visit, until it returns non-zero.
   Returns what BSDDir_ProcessFiles does: the last result of visit, which is the one of an earlier
   listing if no file was found; 0 if there is no such folder. */
KORVEL_API int Dir_ProcessFiles(const char *directory, const char *pattern, FileVisit_t visit);

/* Sorts rows (of 256 bytes each, NUL-terminated) in ascending order by chcomp; equal rows keep
   their order.
   Returns the number of exchanges of neighbours that this takes, kept to 16 bits with a sign
   (-32768 to 32767). Returns 0 and leaves the list alone for fewer than 2 rows or without memory
   (32 bytes a row). */
KORVEL_API int Dir_SortFiles(char *list, int rows);

/* Sorts rows by the size of the files that they name, the largest first; rows of equal size keep
   their order. Each file is opened once, in a slot as by File_Open, but whatever its size and the
   length of its path; one that cannot be opened, or for which no slot is free, counts as empty.
   Returns as Dir_SortFiles. */
KORVEL_API int Dir_SortSizeFiles(char *list, int rows);

#ifdef __cplusplus
}
#endif

#endif
