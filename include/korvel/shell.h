/* SPDX-License-Identifier: MIT */
/* Shell tools: running commands and reading or feeding them, the system queries, and the file,
   folder and process operations that are done by running tools.

   Commands run through /bin/sh -c with the caller's environment. A "close status" is what pclose
   gives: a wait status (see waitpid), or -1 when the command could not be started or its status
   could not be had (the application ignores SIGCHLD or collects every child). A command
   that is given no input reads an empty one, never the application's terminal.
   Paths are POSIX paths unless called macPath (a colon path). Every path and pattern is put between
   single quotes and not escaped, so a few characters are read by the shell or the tool:
   - "'" in a path or a pattern ends the quoting. The command breaks, or the shell runs what
     follows: it runs "id" for "x'; id; '". A path of unknown origin must be refused if it has one;
     the functions of files.h, but for its listings, take it as it is.
   - "-" at the beginning of a path or a pattern makes it an option of the tool. Write "./-x" for a
     path; colon paths never begin with one unless szVolumes does.
   - BSDopen puts its path between double quotes: there "\"" ends the quoting, "$" and "`" run or
     replace what follows, and "\\" hides the next character.
   - The name of a process is not quoted at all: the shell reads every special character in it.
   A null text, function or output pointer is refused with the failure value, nothing being run,
   except where null is given a meaning. */
#ifndef KORVEL_SHELL_H
#define KORVEL_SHELL_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Handles one line of a tool's output. line: NUL-terminated, without its line feed, in a
   writable buffer of 8192 bytes that the next line overwrites.
   Returns 0 to go on with the next line, anything else to stop. */
typedef int (*ToolLine_t)(char *line);

/* Handles one file of a listing. name: NUL-terminated, without a folder; valid during the call.
   Returns 0 to go on with the next file, anything else to stop. */
typedef int (*FileVisit_t)(const char *name);

/* Returns the version of the system as packed decimal digits, always 0x1060 (10.6.0). */
KORVEL_API int MACOSVersion(void);

/* Returns 1: the system is a Unix (its version is above 4095). */
KORVEL_API int RunningOnCarbonX(void);

/* The status for a bundle that is not there. */
enum { KorvelNoBundleStatus = -4960 };

/* Loads a library of the system by its bundle name.
   name: "System.framework" is the C library; there is no other.
   Returns 0 with *out set to a handle for dlsym, which stays good for the life of the process and
   need not be released. Returns KorvelNoBundleStatus with *out null for any other name, and for out
   null. */
KORVEL_API int LoadFrameworkBundleSystem(const char *name, CFBundleRef *out);

/* Does what LoadFrameworkBundleSystem does. */
KORVEL_API int LoadFrameworkBundle(const char *name, CFBundleRef *out);

/* Runs command and reads the beginning of its output.
   out, outSize: buffer and its capacity; at most outSize - 1 bytes are read into it and ended with
   0. With out null or outSize 0 nothing is read and nothing is written.
   Once the bytes are there the pipe is closed: a tool that writes on is ended by SIGPIPE, even if
   the caller ignores or blocks that signal. A tool that neither writes nor ends is waited for.
   Returns the close status. Returns -1 and leaves out untouched if the command could not be
   started, or if outSize is negative. */
KORVEL_API int BSDInvokeTool(const char *command, char *out, int outSize);

/* Runs command and writes the whole of input, without its terminator, to the command's standard
   input. A tool that ends without reading its input does not disturb the application.
   Returns the close status, or -1 if the command could not be started. */
KORVEL_API int BSDInvokeToolWr(const char *command, const char *input);

/* Runs command and hands its output to perLine line by line, until the output ends or perLine
   returns non-zero. A last line without a line feed is handed over too. A line of more than 8191
   bytes is cut to its first 8191.
   Returns the close status, or -1 if the command could not be started. */
KORVEL_API int BSDInvokeToolPr(const char *command, ToolLine_t perLine);

/* Writes the POSIX form of a colon path. The text up to the first ":" (all of it, if there is
   none) names the volume: if it exists under szVolumes (desktop.h), the result is szVolumes, "/"
   and the whole path; else the volume name is dropped and the rest taken from the root. A volume
   that may not be listed exists all the same. In what comes from macPath every ":" becomes "/" and
   every "/" becomes ":".
   Data:Docs:a/b gives /Volumes/Data/Docs/a:b if /Volumes/Data exists, /Docs/a:b if not.
   out: room for 256 bytes; may be macPath itself.
   Returns the length of the result, 0 to 255. A result of more than 255 bytes is not cut, which
   would name another file: 0 is returned and out is the empty text. */
KORVEL_API int BSDMAC2UNIX(const char *macPath, char *out);

/* Gives a file or folder the mode 0777; a folder keeps its set-user and set-group bits.
   Returns 0 if it exists, whether or not the mode could be changed, and -1 if it does not. */
KORVEL_API int BSDMACchmodrwx(const char *macPath);

/* Tells whether a path exists: 1 if "ls -a" of it prints anything, else 0. A dangling link exists;
   an empty path, and a folder that may not be read, do not. */
KORVEL_API int BSDIsExisting(const char *path);

/* Copies by "cp -R", without any check. Returns the close status. */
KORVEL_API int BSDSCopy(const char *source, const char *destination);

/* Copies source (a file or a folder with all it holds) into folder under its own name, replacing
   what is there under that name. What is there is removed first, so that a copy that then fails
   leaves neither.
   Returns 0 if anything is there afterwards, whatever "cp" said: a copy that was cut, as on a full
   disk, gives 0 too. An application that must know compares the sizes, or uses BSDSCopy, which
   tells what "cp" said. Returns -1 if nothing is there, if either does not exist, or if what had to
   be replaced could not be removed. Returns -1 and changes nothing
   - if source has no last component (it ends with "/", "." or ".."),
   - if replacing would destroy the source: both are the same file or folder, by whatever name or
     link, or one of them is inside the other,
   - if something would have to be replaced and a path holds a single quote or begins with "-", as
     then nobody can tell what the tools take it for. */
KORVEL_API int BSDCopy(const char *source, const char *folder);

/* As BSDCopy, by "sudo -S" with an empty prompt, which needs no terminal; password is written to
   its standard input exactly as given (no line end is added) and is not kept. A wrong password
   changes nothing, gives -1 and takes the seconds that the system lets pass after one; sudo's
   complaint goes to standard error. */
KORVEL_API int BSDCopy_psw(const char *source, const char *folder, const char *password);

/* Removes a file, a link, or a folder with all it holds, by "rm -dr".
   Returns 0 if it is gone afterwards, -1 if it still exists, did not exist or path is empty. */
KORVEL_API int BSDRemove(const char *path);

/* As BSDRemove, by "sudo"; password as for BSDCopy_psw. */
KORVEL_API int BSDRemove_psw(const char *path, const char *password);

/* Hands every line of the process list "ps -x -c" in which name occurs (a grep pattern, not
   quoted) to BSDprocessf. A name that the list cuts to 15 bytes is made whole before, unless what
   is missing holds something that the shell or "kill" would read otherwise (a blank, say).
   Returns the close status of the search: 1 << 8 when no line matches. */
KORVEL_API int BSDkill(const char *name);

/* What BSDkill does with each line that it finds; an application may call it with a line of its
   own. Runs "kill " followed by the whole line, which begins with the process number. A line that
   the shell cannot read so (a state column "S<", a name in parentheses) kills nothing.
   Returns 0. */
KORVEL_API int BSDprocessf(char *line);

/* Tells whether name (a grep pattern, not quoted) occurs in the process list "ps -x -c", with names
   made whole as for BSDkill.
   Sets BSDtest to 1 if it does and to 0 if not, and returns it. */
KORVEL_API int BSDtestProcess(const char *name);

/* What BSDtestProcess does with each line that it finds; an application may call it, too. Sets
   BSDtest to 1; line is not looked at. Returns 0. */
KORVEL_API int BSDprocesst(char *line);

/* Opens a document with the application that the desktop has for it (by xdg-open, the path in
   double quotes, between which the shell still reads "$", "`" and "\"). What the opener prints is
   thrown away. The viewer is not waited for, and is no child of the application.
   Returns the close status of the opener when it ends within a second, as the shell tells it (ended
   by a signal, it has exited with 128 + the signal); 0 when it still runs then; -1 if it could not
   be started. */
KORVEL_API int BSDopen(const char *path);

/* Lists the files of a folder whose names contain a grep pattern, in any case, as "ls -1F" and
   "grep -i" do. Names come byte for byte and in byte order, whatever the language settings. Folders
   and the executable mark "*" are left out; the other marks that "ls -F" sets after a name ("@"
   for a link, "|", "=") stay part of it.
   No process is started for a pattern without "'", line feeds, the characters that grep reads
   (. [ * ^ $ \) and a "-" at the beginning, in a folder whose path has no "'" and no "-" at the
   beginning, when the tools of the PATH are those in /bin or /usr/bin. Otherwise the tools run.
   out: max slots of 256 bytes; may be null if max is 0. A name of more than 255 bytes is cut.
   Returns the number of files, which may exceed max (the first max are stored), modulo 65536. Not
   more than max x 256 - 1 bytes of listing are read (255 if max is 0), and the count ends there.
   Returns 0 if folder is empty or does not exist, or if max is negative. */
KORVEL_API int BSDDir_FindFiles(char *out, const char *folder, int max, const char *pattern);

/* Hands the files that BSDDir_FindFiles would find, in the same order and without its limits, to
   visit, until it returns non-zero. Sets BSDDir_ProcessFiles_fPtr to visit and BSDnNbFic to 0
   first; each file then goes through BSDDir_ProcessFiles_f.
   Returns BSDcr: the last result of visit, which is the one of an earlier listing if no file was
   found. Returns 0 and changes nothing if folder is empty or does not exist. */
KORVEL_API int BSDDir_ProcessFiles(const char *folder, const char *pattern, FileVisit_t visit);

/* What BSDDir_ProcessFiles does with each line of its listing; an application may call it with a
   line of its own, which is changed in place. Takes off a final "*", and, unless the line then ends
   with "/" (a folder), calls BSDDir_ProcessFiles_fPtr with the text after its last "/", stores the
   result in BSDcr and counts the file in BSDnNbFic.
   Returns that result; 0 for a folder, and for a null function. */
KORVEL_API int BSDDir_ProcessFiles_f(char *line);

/* What the last BSDtestProcess found: 1 for a matching process, else 0. Initially 0. Written by
   the library. */
KORVEL_API extern int BSDtest;

/* The last result of a per-file function, initially 0. Written by the library, file by file; the
   application may set it before a listing. */
KORVEL_API extern int BSDcr;

/* The number of files handed to the per-file function by the current listing, initially 0. Written
   by the library. */
KORVEL_API extern int BSDnNbFic;

/* The per-file function of the current listing, initially null. Written by the library at the
   start of a listing and read at each file. */
KORVEL_API extern FileVisit_t BSDDir_ProcessFiles_fPtr;

#ifdef __cplusplus
}
#endif

#endif
