/* SPDX-License-Identifier: MIT */
/* Profiles: settings files of sections and keys.

     [Fenetre]
     largeur=640

   A line ends at a carriage return or at the end of the file; line feeds are ignored everywhere,
   so a file whose lines end with line feeds alone is one single line. A line that begins with
   "[", a name and "]" opens the section of that name; what follows on it is ignored. In a
   section the line of a key begins with the key and "="; the value is everything after it, up to
   the end of the line. Names and keys are compared byte for byte: upper and lower case differ,
   blanks count. Any "[" in a section, not only at the beginning of a line, ends it, unless it is
   in the value that is looked for. There are no comments.

   When a value is looked for, only the first 1023 characters of a line count: a name or key that
   ends beyond them is not found, a "[" beyond them ends nothing. The value that is found is read to
   the end of its line. When a file is rewritten, lines are cut at 16383 characters, so that a key,
   its "=" and its value keep their bytes if they are no more than that together. Every line written
   ends with "\r\n".

   path is a colon path (files.h). Each call reads the file anew and needs memory files for its
   duration (files.h, DATA_MFIL_TAB): one to read, two to write. */
#ifndef KORVEL_PROFILE_H
#define KORVEL_PROFILE_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Copies the value of a key of a section to destination, cut to capacity - 1 bytes, and terminates
   it. Where several lines have the key the first counts; where several sections have the name, the
   first that holds the key.
   The default text (null: none) is copied in its place, cut in the same way, when the key is not
   found, the file cannot be read, no memory file is free, or section, key or path is null.
   defaultText may be destination itself.
   Returns the length of the text in destination. Returns 0 and writes nothing when destination is
   null or capacity is below 1. */
KORVEL_API int GetPrivateProfileString(const char *section, const char *key,
                                       const char *defaultText, char *destination, int capacity,
                                       const char *path);

/* Reads the value of a key as intcod_l reads it (codecs.h); of a longer value the first 11
   characters count. Whatever GetPrivateProfileString answers by its default text gives
   defaultValue.
   Returns the value, 0 to 2147483647. Returns 0 for one that is negative (defaultValue, too), too
   large or no integer. */
KORVEL_API int GetPrivateProfileInt(const char *section, const char *key, int defaultValue,
                                    const char *path);

/* Sets a key of a section, or removes its line if value is null; if key is null, empties the
   section (WritePrivateProfileSection without a text).
   The first line with the key is replaced; further ones stay. A new key goes after the last line
   of its section that is not empty; a new section to the end of the file, after an empty line if
   the file has content. Empty lines are kept; those at the end of the file stay there.
   A missing file is created, readable and writable by all; if it is a symbolic link that leads
   to nothing, its target is created. The file is replaced as a whole: at any moment, also after
   a kill or a loss of power, it has its old content or the new one. A symbolic link stays and
   its file is replaced; owner, group and mode are kept if this process may give them, and
   another hard link to the file keeps the old content. After the answer the new content survives a
   loss of power.
   Where the folder does not admit that (it may not be written, or it is sticky and the file someone
   else's, or the file is a mount point) the file is overwritten instead: what it grows by comes
   first, and a full disk leaves the old content, but a kill or a loss of power meanwhile may leave
   a mixture of both, and a program that reads the file meanwhile may see one.
   Several processes that write one file do so one after another and lose nothing of each other; a
   program that writes it by other means may lose what it writes at the same time.
   Returns 1. Returns 0 when section is null, and with nothing changed when the file cannot be
   opened for writing (not even to create it), the disk is full, there is no memory (or memory file
   for the old content), or another process holds the file (flock) for more than 5 seconds.
   Returns 1 with nothing written when the file is there but may not be read, or is a pipe or a
   device, and when no memory file is free; a missing file is then created empty. */
KORVEL_API int WritePrivateProfileString(const char *section, const char *key, const char *value,
                                         const char *path);

/* Replaces the whole content of a section by a text, written as it is and followed by "\r\n": lines
   "key=value", joined by "\r\n". If text is null nothing is left under the header.
   The section ends before the next line that begins with "[". Its empty lines stay, after the
   text, unless it was the last section of the file. A missing section is added as by
   WritePrivateProfileString if text is not null. Only the first section of the name is replaced.
   Files and results as WritePrivateProfileString. */
KORVEL_API int WritePrivateProfileSection(const char *section, const char *text, const char *path);

#ifdef __cplusplus
}
#endif

#endif
