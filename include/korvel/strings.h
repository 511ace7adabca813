/* String primitives: trimming, search, insertion and deletion in place, counted byte runs, a
   growable buffer, bounded copies, the two 8-bit character sets, capitals; lists of items.

   Text is 8-bit, NUL-terminated and stands in the caller's buffers; nothing here depends on the
   locale and only szcopyex allocates. Lengths, positions and capacities are ints that count bytes;
   a capacity includes the terminator; positions start at 0. Bytes compare as signed 8-bit values:
   those of 0x80 and above come before every ASCII byte.

   A character argument is an int that is compared with each byte taken as a signed 8-bit value:
   0xE9 is passed as -23 (what a sign-extended char gives); 233 equals no byte.

   A run is a pointer and a length and need not be terminated. A function that fills a buffer
   never writes at or behind its capacity; a capacity of 0 or below is never written and gives the
   failing result. A null pointer is never followed and a negative length is never copied: the call
   then changes nothing and gives its failing result. */
#ifndef KORVEL_STRINGS_H
#define KORVEL_STRINGS_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* --- Trimming ------------------------------------------------------------------------------ */

/* Removes the trailing blanks of s (the space only, not the tab).
   Returns the new length: 0 for a text of blanks, which becomes empty. Example: "ab  " gives "ab"
   and 2. */
KORVEL_API int chelibl_f(char *s);

/* Removes the leading blanks of s by moving the rest, terminator included, to the front.
   Returns the new length. Example: "  ab" gives "ab" and 2. */
KORVEL_API int chelibl_d(char *s);

/* As chelibl_f with the character c in place of the blank. A c of 0 removes nothing. */
KORVEL_API int chelicar_f(char *s, int c);

/* As chelibl_d with the character c in place of the blank. A c of 0 removes nothing. */
KORVEL_API int chelicar_d(char *s, int c);

/* --- Comparison and search ----------------------------------------------------------------- */

/* Compares a and b byte by byte, terminators included.
   Returns a[i] - b[i] of the first bytes that differ, as signed 8-bit values, and 0 for equal
   texts. "\xE9" against "a" is negative. A null pointer compares as an empty text. */
KORVEL_API int chcomp(const char *a, const char *b);

/* Looks for the text pattern in s; the pattern comes first.
   Returns the position of its first occurrence, -1 when there is none. An empty pattern is found
   at position 0 of a text that is not empty; in an empty text nothing is found. */
KORVEL_API int chcher(const char *pattern, const char *s);

/* Looks for the character c in s.
   Returns its first position, -1 when there is none; the terminator (c of 0) is never found. */
KORVEL_API int chcher_c(int c, const char *s);

/* --- Insertion and deletion ---------------------------------------------------------------- */

/* Deletes n characters of s from position p on; what follows, terminator included, moves left.
   p below 0 counts as 0, p at or past the end as the last character; n is cut to what stands from
   p on. Leaves s untouched when s is empty, when n is below 1, and when n is above the whole
   length of s, whatever p is. */
KORVEL_API void chdelch(char *s, int n, int p);

/* Inserts the text s into d before position p. d has room for size bytes; s lies outside d.
   p below 0 counts as 0; p at or past the end of d appends.
   Returns the length of s (so 0 for an empty s). Returns 0 and leaves d untouched when
   length(d) + length(s) is above size - 1. */
KORVEL_API int chinsch(char *d, int size, const char *s, int p);

/* Inserts the character c into d before position p; size and p as in chinsch. Only the low 8 bits
   of c count; when they are 0, the text ends at p.
   Returns 1. Returns 0 and leaves d untouched when length(d) + 1 is above size - 1. */
KORVEL_API int chinsch_c(char *d, int size, int c, int p);

/* --- Counted runs -------------------------------------------------------------------------- */

/* Replaces every blank of the n bytes at p by the digit "0". Returns 1, always. */
KORVEL_API int szcnum(char *p, int n);

/* Copies the first min(n, capacity) bytes of source to d, without a terminator.
   Returns 1 when n is at most capacity, else 0. */
KORVEL_API int szcopy(char *d, int capacity, const char *source, int n);

/* As szcopy; d and source may overlap in either direction, and d then holds what source held
   before the call. */
KORVEL_API int szcopy_overlap(char *d, int capacity, const char *source, int n);

/* Compares the runs a and b. Returns 1 when their lengths are equal and all bytes agree, else 0.
   A length below 1 gives 0. */
KORVEL_API int szcomp(const char *a, int la, const char *b, int lb);

/* As szcomp, with "?" in either run matching any byte. "A?C" against "ABC" gives 1. */
KORVEL_API int szcompex(const char *a, int la, const char *b, int lb);

/* As szcompex, with "*" as the last byte of a run for "whatever follows": that run then decides
   how many bytes are compared, when the other run is long enough to hold them. When both could
   decide, a does; a "*" of b that meets the last byte before the "*" of a is then not compared.
   "AB*" against "ABCD" or "AB" gives 1, "AB*" against "A" gives 0. */
KORVEL_API int szcompex2(const char *a, int la, const char *b, int lb);

/* Looks for the run p in the run s.
   Returns 1 when the bytes of p occur side by side somewhere in s, else 0; a length below 1
   gives 0. */
KORVEL_API int szincl(const char *p, int lp, const char *s, int ls);

/* Copies n bytes of source to d and terminates them.
   Returns 1 when n + 1 bytes fit: d then holds the n bytes and a NUL. Otherwise returns 0 with
   capacity - 1 bytes copied and a NUL in the last byte of the capacity. */
KORVEL_API int szcopy_0t(char *d, int capacity, const char *source, int n);

/* Appends n bytes of source to the text in d and terminates it. The text of d ends at the first
   NUL within the capacity; without one there is no room left.
   Returns 1 when all n bytes and the NUL fit. Otherwise returns 0 with as many bytes appended as
   fit and a NUL in the last byte of the capacity. */
KORVEL_API int szconcat_0t(char *d, int capacity, const char *source, int n);

/* Appends n bytes of source at offset used of the heap buffer *buf, which grows as needed.
   *buf: null or a block of malloc, *capacity its size in bytes; the caller releases it with free.
   The caller counts the used bytes itself: the call does not tell where the next ones go.
   The bytes are copied in place while *capacity - used is at least n. Otherwise the buffer is
   replaced: by one of exactly n bytes when used is 0, else by one of (*capacity + n) * 2 bytes that
   keeps the first used ones.
   Returns 1, or 0 without memory: the buffer is then released and *buf null when used was 0, else
   *buf and *capacity are as they were. Returns 0 and changes nothing when used or n is negative,
   used is above *capacity, bytes are used of a null buffer, or the new size is no int. */
KORVEL_API int szcopyex(char **buf, int *capacity, int used, const char *source, int n);

/* --- Bounded copies of terminated texts ---------------------------------------------------- */

/* Copies source, terminator included, to d when length(source) is below capacity; otherwise leaves
   d as it was. Never cuts. A caller that must know tests the length. */
KORVEL_API void secure_lstrcpy(char *d, int capacity, const char *source);

/* Appends source to the text in d when length(source) is below capacity - length(d); otherwise
   leaves d as it was. Never cuts. A d without a NUL within its capacity is left as it is. */
KORVEL_API void secure_lstrcat(char *d, int capacity, const char *source);

/* --- Character sets and capitals ----------------------------------------------------------- */

/* Converts s in place from CP1252 to Mac OS Roman for seven characters; keeps every other byte:
     degree sign B0 -> A1, a grave E0 -> 88, c cedilla E7 -> 8D, e grave E8 -> 8F,
     e acute E9 -> 8E, e circumflex EA -> 90, i diaeresis EF -> 95 */
KORVEL_API void w2mstr(char *s);

/* Converts s in place from Mac OS Roman to CP1252 for five characters; keeps every other byte:
     degree sign A1 -> B0, a grave 88 -> E0, c cedilla 8D -> E7, e grave 8F -> E8, e acute 8E -> E9
   Not the inverse of w2mstr: e circumflex and i diaeresis stay what w2mstr made of them. */
KORVEL_API void m2wstr(char *s);

/* Turns the Mac OS Roman text s into capitals without diacritics, in place: "a" and both a grave
   and A grave become "A". The length stays. Ligatures and letters with a stroke keep their form as
   capitals; what has no capital of one byte (sharp s) stays.
   Returns s. */
KORVEL_API char *strupr(char *s);

/* --- Separated lists -----------------------------------------------------------------------

   One text whose items are separated by "+", "," or "-", all three alike. A text without a
   separator has one item; an empty text has one empty item. */

/* Returns the number of items of list: its separators plus 1. Returns 0 for a null pointer.
   "a+b,c-d" gives 4. */
KORVEL_API int Teste_liste(const char *list);

/* Looks for an item that is exactly the n bytes at item: same length, same bytes.
   Returns 1 when list holds it, else 0. An n of 0 finds an empty item, a negative n nothing. */
KORVEL_API int Teste_item_liste(const char *list, const char *item, int n);

/* As Teste_item_liste, on a list of listLength bytes that needs no terminator. A negative
   listLength gives 0. */
KORVEL_API int Teste_item_szliste(const char *list, int listLength, const char *item, int n);

/* Copies the item number index (from 0), cut to 63 characters, to a buffer of the library.
   Returns the buffer of 64 bytes, which the next call overwrites. Returns null, the buffer being
   as it was, for an index below 0 or at or past the number of items. */
KORVEL_API char *Get_item_liste(const char *list, int index);

/* --- Lists of strings ----------------------------------------------------------------------

   Items one behind the other, each ended by a NUL, and one more NUL behind the last. An empty list
   is a NUL; nothing behind it is read. An item is named by its address in the list. A null pointer
   counts as an empty list. */

/* Makes the text in buffer a list of one item by writing a second NUL behind its terminator.
   Where that does not fit (capacity - 1 is at most the length), the last two bytes of the capacity
   become NUL, which cuts the text; the only byte of a capacity of 1. Does nothing when capacity is
   below 1. */
KORVEL_API void ChCh_Put_00(char *buffer, int capacity);

/* Returns 1 when item is empty or the last of its list, else 0. */
KORVEL_API int ChCh_Is_00(const char *item);

/* Returns the item behind item; item itself when it is empty or the last. A loop over a list ends
   when ChCh_Is_00 says so, or when the same pointer comes back. */
KORVEL_API char *ChCh_Get_Next_Item(const char *item);

/* Returns the number of items of list; an empty list counts 1. */
KORVEL_API int ChCh_Count_Item(const char *list);

/* Makes the separated list s a list of strings by replacing every "+" and "," by a NUL; "-" is no
   separator here and stays. The caller has put the second NUL behind the terminator before, for
   example by ChCh_Put_00. "a+b-c" becomes "a" and "b-c". */
KORVEL_API void ChCh_Cut(char *s);

/* As ChCh_Cut with the character separator in place of both. */
KORVEL_API void ChCh_Cut_sep(char *s, int separator);

/* Makes list one text by replacing every NUL between two items by "+". An empty list stays
   empty. */
KORVEL_API void ChCh_Bind(char *list);

/* As ChCh_Bind with the character separator in place of "+"; only its low 8 bits count. */
KORVEL_API void ChCh_Bind_sep(char *list, int separator);

/* Removes item from its list by moving what is behind it, final NULs included, onto it. The last
   item takes nothing but the final NUL; removing the only item leaves an empty list. Leaves an
   empty item alone. */
KORVEL_API void ChCh_Delete_Item(char *item);

/* Looks for the first item of a list that names no file: directory, ":" and the item are not a path
   for which File_Is_Existing (files.h) gives 1. With an empty (or null) directory the item is the
   whole path; a ":" at the end of directory is not taken off.
   Returns 1 and stores the address of the item in *item; 0, with *item as it was, when all files
   exist, as those of an empty list do. */
KORVEL_API int ChCh_Detect_Missing_File(const char *directory, const char *list, char **item);

/* Removes the items of a list that name no file, in place, as ChCh_Delete_Item does.
   Returns 1 when the last item that was tested names a file, 0 when it did not and was removed; 1
   for an empty list. */
KORVEL_API int ChCh_Remove_Missing_File(const char *directory, char *list);

#ifdef __cplusplus
}
#endif

#endif
