/* SPDX-License-Identifier: MIT */
/* Code tables: text files of codes, labels and further columns in a tables directory. Lookup of a
   code's label, search of a label's code, editing of the line found, and upkeep of whole tables.

   A table is 8-bit text (CP1252), its lines ended by CR LF: a title, "Version: " and a text,
   "#DEBUT", the data lines, "#FIN". The fields of a line are separated by ',' or '+'; the first one
   is the code, the following ones are the columns, numbered from 1. A field holds neither
   separator; an empty field ends the line's fields, and what follows it is no column. Lookup and
   search walk all lines, the heading ones too; lines are numbered from 1.

   Reading: a line ends at a carriage return or at the end of the file; line feeds are ignored
   everywhere. Of a line the first 1022 characters count (not counting line feeds) and, if it holds
   a NUL, those before it.

   Comparison is case-sensitive, byte by byte, of equal lengths; '?' on either side, so in the file
   too, equals any character.

   Table names: with a directory set by setDirTables, the table is that directory's file of exactly
   the name given ("actes.tab"); otherwise it is the file of szDirTables named like the table plus
   ".tab" ("actes"). One ':' at the end of the directory does not count. While both are empty there
   is no directory: nothing is created and nothing found. A path of more than 255 characters names
   no table.

   A buffer to fill is given with its size in bytes: at most size - 1 characters are written and
   always a terminator; a null buffer or a size below 1 is not written. A null table or
   list of criteria is a table that cannot be opened; a null key or label matches no line. Where the
   table's last line is said to be in the buffer, a table without lines leaves it as it was. */
#ifndef KORVEL_TABLES_H
#define KORVEL_TABLES_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Tables directory and current line ---- */

/* The tables directory, a NUL-terminated colon path, initially "". Written by the application; the
   library reads it at each call and never writes it. */
KORVEL_API extern char szDirTables[256];

/* The tables directory that comes before szDirTables while it is not empty; initially "". Written
   by setDirTables and by the application. */
KORVEL_API extern char ZRV_Libelle_NC_szDirTables[256];

/* The current line, split: its fields one after the other, each ended by a NUL, a second NUL
   after the last one. What follows is not part of it. Written by the functions below as they
   say. Called the buffer below. */
KORVEL_API extern char ZRV_Libelle_NC_szBuffer[1024];

/* Number of the current line, from 1; 0 for none. */
KORVEL_API extern int ZRV_Libelle_NC_il;

/* 1 while ZRV_Libelle_NC_szBuffer is taken for the current line without reading the file again,
   else 0. Called the read flag below. */
KORVEL_API extern int ZRV_Libelle_NC_read;

/* Sets ZRV_Libelle_NC_szDirTables; "" gives the word back to szDirTables.
   dir: NUL-terminated colon path, copied. One of more than 255 characters, or null, is not taken.
   Returns ZRV_Libelle_NC_szDirTables. */
KORVEL_API char *setDirTables(const char *dir);

/* Returns ZRV_Libelle_NC_szDirTables. */
KORVEL_API char *getDirTables(void);

/* Gives back the memory of the tables that are kept. A lookup or search opens its table's file at
   each call; a table that was asked twice is kept from the third call on, its bytes and an index of
   its codes, and used as long as the file has the same identity, size and times of change, to the
   nanosecond. So a change by anybody is seen by the next call; only what is stored through a
   mapping that is older than the copy, and the end of a single write that takes seconds, may be
   seen with the file's next change. A file that was changed in the last two seconds is not kept,
   nor one of more than 32 MiB, nor one on a file system that knows whole seconds only. At most 8
   tables are kept, with at most 64 MiB in all; the one that was used the longest ago gives way. */
KORVEL_API void KorvelForgetTables(void);

/* ---- Label lookup ---- */

/* Looks up the first line whose code matches the key and gives one of its columns.
   key: keyLength characters, need not be terminated; a length below 1 matches no line.
   column: 0 for the code, from 1 on for a column; a column that the line does not have gives "", as
   does one below 0.
   Returns 1; the line is the current one then and is in the buffer.
   Returns 0, out untouched, when no code matches: the current line is then the number of lines of
   the table, the read flag 1 and the table's last line in the buffer. Returns 0 too when the table
   cannot be opened or read to its end: the current line and the read flag are then 0, out and
   buffer untouched. */
KORVEL_API int ZRV_Libelle_NC(const char *key, int keyLength, int column, const char *table,
                              char *out, int outSize);

/* As ZRV_Libelle_NC with the key made of a number from 0 to 99, on two characters: 7 looks for
   "07". Any other number matches no line. */
KORVEL_API int ZRV_Libelle_2(int code, int column, const char *table, char *out, int outSize);

/* Gives another column of the current line.
   While the read flag is 1 the buffer is used as it is: keyLength 0 with column 0 gives the
   code, with 1; otherwise a column from 1 on, with 1, or "" and 0 when the line does not have it.
   Column 0 with another keyLength, and one below 0, is a column that no line has. While the read
   flag is 0 this is ZRV_Libelle_NC_idem_0. The key itself is not looked at. */
KORVEL_API int ZRV_Libelle_NC_idem(const char *key, int keyLength, int column, const char *table,
                                   char *out, int outSize);

/* Reads the table again up to the current line and gives a column of it.
   keyLength 0 with column 0 gives the code; otherwise a column from 1 on, "" when the line does not
   have it (no line has column 0 or one below). The key itself is not looked at.
   Returns 1; the line is in the buffer then, the read flag is 1.
   Returns 0, out untouched, when the table has fewer lines: the read flag is 1 all the same, and
   the last line is in the buffer, not split. Returns 0 too when the table cannot be opened or read
   to its end: the read flag is then 0, out and buffer untouched. The current line's number never
   changes. */
KORVEL_API int ZRV_Libelle_NC_idem_0(const char *key, int keyLength, int column, const char *table,
                                     char *out, int outSize);

/* Looks up the next line after the current one whose code matches the key, and gives a column of
   it (from 1 on; "" when the line does not have it, and for column 0 and below).
   Returns 1; the line is the current one then and is in the buffer.
   Returns 0, with out, the current line's number and the read flag untouched, when there is none;
   the table's last line is then in the buffer. Returns 0 too when the table cannot be opened or
   read to its end: the buffer is then untouched as well. */
KORVEL_API int ZRV_Libelle_NC_next(const char *key, int keyLength, int column, const char *table,
                                   char *out, int outSize);

/* Looks up, among the lines whose code matches the key, the first one in force on a day, and gives
   a column of it. dateColumn: the column of the first day in force, DD/MM/YY; the next column holds
   the last day. A line where either is missing or no date is in force on every day. date: YYYYMMDD
   as a number. Returns 1; the line is the current one then and is in the buffer. Returns 0 when no
   line is in force: out then holds the column of the last line whose code matches (it is untouched
   if none does), and the state is what ZRV_Libelle_NC or ZRV_Libelle_NC_next left. */
KORVEL_API int ZRV_Libelle_NC_dates(const char *key, int keyLength, int column, const char *table,
                                    char *out, int outSize, int dateColumn, int date);

/* Returns the number of the current line. */
KORVEL_API int ZRV_Libelle_NC_get_ligne(void);

/* Makes line the current line, to be read from the table at its next use (clears the read flag). */
KORVEL_API void ZRV_Libelle_NC_set_ligne(int line);

/* ---- Code search ----

   In every search the code of each line goes to out before the line is compared: without a match
   out holds the code of the table's last line. A line that does not have the column is compared by
   its last field. A match becomes the current line and is in the buffer.

   Without a match the result is 0 and the table's last line is in the buffer; the functions that
   start at the first line set the current line to the number of lines and the read flag to 1, the
   functions that go on after the current line leave both as they were. When the table cannot be
   opened or read to its end the result is 0, out and buffer are untouched; the functions that start
   at the first line then set both to 0. A table without lines leaves out untouched. */

/* Looks for the first line whose column matches the label and gives its code.
   label: NUL-terminated; an empty one matches no line. column: from 1 on; below that, the last
   field of each line. Returns 1 or 0. */
KORVEL_API int ZRV_Code_NC(const char *label, int column, const char *table, char *out,
                           int outSize);

/* As ZRV_Code_NC without regard to case: label and field are compared as strupr writes them. The
   examined column is in the buffer then as strupr writes it, the column of the last line if none
   matches. A label of more than 255 characters matches no line.
   strupr (strings.h) takes the CP1252 bytes of a table for Mac OS Roman ones: é and è count as E, ç
   as A, ê as I, and à, É, À and Ç as themselves. So "Séance" in a table is found by "SEANCE" and
   "seance", and not by "SÉANCE". */
KORVEL_API int ZRV_CodeNCS_NC(const char *label, int column, const char *table, char *out,
                              int outSize);

/* As ZRV_Code_NC, for lines after the current one only. */
KORVEL_API int ZRV_Code_NC_next(const char *label, int column, const char *table, char *out,
                                int outSize);

/* Looks for the first line that meets several criteria and gives its code.
   labels: NUL-terminated texts, a null pointer after the last. columns: the column of each, 0 for
   the code, a number below 0 after the last; the shorter list counts. Neighbours of one column
   are alternatives, one of which must match; all columns must. In a label and in the file '?'
   equals any character and a '*' at the end whatever follows. Without criteria the first line
   matches. Returns 1 or 0. */
KORVEL_API int ZRV_Code_NC_ex(const char *const *labels, const int *columns, const char *table,
                              char *out, int outSize);

/* As ZRV_Code_NC_ex, for lines after the current one only. */
KORVEL_API int ZRV_Code_NC_ex_next(const char *const *labels, const int *columns, const char *table,
                                   char *out, int outSize);

/* ---- Table editing ----

   An edit changes the line whose number is ZRV_Libelle_NC_il, counted in the table as it is at that
   moment: edits of one table wait for each other, also across processes, and none is lost. An edit
   waits 5 seconds at most, then gives 0. A program that changes the table without waiting loses
   nothing either: the edit is made again on the changed table; if the table changes under the third
   attempt, too, the edit gives 0. Only what such a program writes in the last instant, while the
   new table takes its place, is lost. Of the key only the length counts, and only where it is said.

   A new text is written as it is: each ',' or '+' in it makes a further field, and the columns
   after it count on from there; a carriage return makes a further line. An empty text is an empty
   field, which ends the line's fields: what follows it stays in the file and is no column.

   An edit rewrites the table: every line then ends with CR LF, the last one too, line feeds
   elsewhere are gone, and of a line that is not the edited one the first 1023 characters stay. In
   the edited line the fields are separated by ','; from its first empty field on the line is left
   as it is. A line may become longer than the 1022 characters that are read of it.

   Returns 1 when the table has the line, 0 when it has fewer; it is rewritten in both cases.
   Returns 0, with the table, the current line and the buffer as they were, when the table cannot be
   opened or read to its end, or may not be written, when its folder does not let a file be
   exchanged (one that may not be written; a sticky one, for another user's table) or the disk is
   full, and for a null table or text. At any moment the file is the old table or the new one,
   whole, and after the answer the new one survives a loss of power. Owner, group, mode and a
   symbolic link stay; only where the process may not give a file away, its owner or group becomes
   the process's own. Another hard link to the table keeps the old content.

   While an edit runs it takes two file handles (files.h). When the temporary file cannot be made,
   as in a folder that may not be written or with one handle free, the first of them stays open.
   The temporary file is called like the table, its last character replaced by '_'; if this user has
   left a file of that name, the edit uses it up, and what it holds beyond the length of the new
   table becomes the end of the new table. Another user's file of that name is left alone. */

/* Replaces a column (from 1 on) of the current line in the table; the code, for keyLength 0 and
   column 0. In a line that does not have the column, no field changes. The buffer is left alone. */
KORVEL_API int ZRV_Libelle_NC_idem_replace(const char *key, int keyLength, int column,
                                           const char *table, const char *text);

/* Adds a line to the table after the current one, its fields all "Néant".
   fields: their number, of which as many are written as fit into 1023 characters (170); 0: as many
   as the current line has; below 0: nothing is changed, 0 is returned. On 1 the new line is in the
   buffer and the read flag is 1, but the number of the current line remains. */
KORVEL_API int ZRV_Libelle_NC_idem_insert(const char *key, int keyLength, const char *table,
                                          int fields);

/* Removes the current line from the table. Its number remains, and is then the number of the next
   line. The buffer is left alone. */
KORVEL_API int ZRV_Libelle_NC_idem_delete(const char *key, int keyLength, const char *table);

/* Replaces a column (from 1 on) of the line in the buffer; the code, for keyLength 0 and column 0.
   No file is touched, the table's name not looked at. text: may be in the buffer itself. The
   buffer is split afterwards, also if it was not; what passes its room is cut off. An empty text
   for a column ends the buffer's fields there: a flush then ends the stored line there, too. A ','
   or '+' in the text makes further fields. Returns 1, or 0 when the line does not have the column
   (or text is null). The current line's number and the read flag remain. */
KORVEL_API int ZRV_Libelle_NC_set(const char *key, int keyLength, int column, const char *table,
                                  const char *text);

/* Writes the fields of the buffer in place of the fields of the current line in the table. On 1 the
   buffer is left joined: it holds the fields as one, with ',' between them, until a line is looked
   up again. The read flag remains. Fields that the buffer does not have are gone from the line, as
   after an empty text of ZRV_Libelle_NC_set; only the rest from the line's first empty field
   on stays. */
KORVEL_API int ZRV_Libelle_NC_idem_flush(const char *key, int keyLength, const char *table);

/* ---- Table maintenance ----

   A null name is a table that does not exist; for a null version or title nothing is done and 0
   returned. What a function has done survives a loss of power once it has returned, if the disk
   takes it: on one that fails, ZRV_Table_create answers 1 all the same. */

/* Called by ZRV_Table_scan. fields: the fields of a line, each ended by a NUL, a second NUL after
   the last; valid during the call, and writable up to there. */
typedef void (*TableLine_t)(char *fields);

/* Creates a table of four lines: the title, "Version: " and the version, "#DEBUT", "#FIN"; readable
   and writable by all.
   Returns 1 if it was created, or exists and is left untouched. A disk that is full is no failure:
   the table is then as long as it could get. Returns 0 if no file can be created there, as in a
   folder that may not be written. */
KORVEL_API int ZRV_Table_create(const char *name, const char *version, const char *title);

/* Removes a table, after waiting for edits of it. Returns 0 if it does not exist, else 1, whether
   or not it could be removed: in a folder that may not be written the table stays, with 1. */
KORVEL_API int ZRV_Table_remove(const char *name);

/* Copies a table to its back-up, whose path is the table's with ".bak" for its last four
   characters. overwrite: 0 leaves a back-up alone that exists. A back-up is replaced as a whole,
   even one that may not be written, or, if the new one cannot be written, not at all. A back-up
   that is a symbolic link is replaced itself; what it leads to is left alone. A first back-up, and
   one that replaces a link or a file that may not be written, has the mode and the group of its
   table, if the process may give them. A table whose path ends with ".bak" has no back-up. In a
   folder that may not be written nothing is done. Always returns 0. */
KORVEL_API int ZRV_Table_sauvegarde(const char *name, int overwrite);

/* Replaces line 1 by the title and line 2 by "Version: " and the version, if the table has these
   lines, and gives the table a new name, which may be the old one. The table is rewritten as by an
   edit. Another table of the new name is replaced, after waiting for edits of it; so is a symbolic
   link. A table that is a symbolic link stays one under its new name.
   Returns 1. Returns 0 if the table has no line; it is renamed then all the same. Returns 0 and
   leaves everything as it was when the new name is a folder's, and where an edit would fail, as in
   a folder that may not be written. A kill or a loss of power meanwhile may leave the old table,
   the new one, or each under its name. */
KORVEL_API int ZRV_Table_modify(const char *name, const char *newName, const char *version,
                                const char *title);

/* Lists the codes of the data lines (between "#DEBUT" and "#FIN"), with '+' between them. A
   line counts with its first 254 characters. The table is looked for in szDirTables only, and
   always gets ".tab".
   out: empty at first. A code that does not fit is left out, but not the '+' before it.
   Returns 1 if there is a line "#DEBUT". Returns 0, with out empty, if there is none and when the
   table cannot be read to its end. */
KORVEL_API int ZRV_Table_liste(const char *name, char *out, int outSize);

/* Hands every data line to perLine, cut to its first 254 characters. The table is read whole before
   that, so what becomes of the file during the walk changes nothing.
   firstLine: if it holds 0, set to the number of the line after "#DEBUT". lastLine: set to the
   number of lines less one, which is the last data line in a table that ends with "#FIN". Both are
   set as the lines pass, and may be null, as may perLine. Lines count from 1. Returns 1 if there is
   a line "#DEBUT", else 0. Returns 0, with nothing called or set, if the table cannot be read to
   its end or does not fit into memory. */
KORVEL_API int ZRV_Table_scan(const char *name, int *firstLine, int *lastLine, TableLine_t perLine);

/* Puts back a missing heading: if line 1 is not exactly the title, the title and "Version: " and
   the version are put before it, the table being rewritten as by an edit.
   Returns 1 if that is done, or there was nothing to do; that includes a table that cannot be
   opened or rewritten, as in a folder that may not be written. Returns 0, the table untouched,
   if line 1 is the title but line 3 is not "#DEBUT", and if writing fails. */
KORVEL_API int ZRV_Table_repair(const char *name, const char *version, const char *title);

#ifdef __cplusplus
}
#endif

#endif
