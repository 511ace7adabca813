/* SPDX-License-Identifier: MIT */
/* String primitives: trimming, search, insertion and deletion in place, counted byte runs, a
   growable buffer, bounded copies, the two 8-bit character sets, capitals, UTF-8; lists of items.

   Text is 8-bit, NUL-terminated, in the caller's buffers; nothing here depends on the locale and
   only szcopyex allocates. Lengths, positions and capacities are ints that count bytes; a capacity
   includes the terminator; positions start at 0. Bytes compare as signed 8-bit values: those of
   0x80 and above come before every ASCII byte.

   A character argument is an int that is compared with each byte taken as a signed 8-bit value:
   0xE9 is passed as -23 (what a sign-extended char gives); 233 equals no byte.

   A run is a pointer and a length and need not be terminated. A function that fills a buffer
   never writes at or past its capacity; a capacity of 0 or below is never written and gives the
   failing result. A null pointer is never followed and a negative length is never copied: the call
   then changes nothing and gives its failing result.

   Texts that are only read may overlap each other. Each function that writes to one of two texts
   says whether they may overlap; where they may, it takes the source as it was before the call.

   In the examples a text that is written in the call is changed in place, and has the name of its
   parameter; with "..." it has no terminator. */
#ifndef KORVEL_STRINGS_H
#define KORVEL_STRINGS_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* --- Trimming ------------------------------------------------------------------------------ */

/* Removes the trailing blanks of s (the space only, not the tab).
   Returns the new length: 0 for a text of blanks, which becomes empty.
     chelibl_f("ab  ") -> 2, s = "ab" */
KORVEL_API int chelibl_f(char *s);

/* Removes the leading blanks of s by moving the rest, terminator included, to the front.
   Returns the new length.
     chelibl_d("  ab") -> 2, s = "ab" */
KORVEL_API int chelibl_d(char *s);

/* As chelibl_f with the character c in place of the blank. A c of 0 removes nothing.
     chelicar_f("1500", '0') -> 2, s = "15" */
KORVEL_API int chelicar_f(char *s, int c);

/* As chelibl_d with the character c in place of the blank. A c of 0 removes nothing.
     chelicar_d("0015", '0') -> 2, s = "15" */
KORVEL_API int chelicar_d(char *s, int c);

/* --- Comparison and search ----------------------------------------------------------------- */

/* Compares a and b byte by byte, terminators included.
   Returns a[i] - b[i] of the first bytes that differ, as signed 8-bit values, and 0 for equal
   texts. A null pointer compares as an empty text.
     chcomp("ab", "aa") -> 1
     chcomp("\351", "a") -> -120 */
KORVEL_API int chcomp(const char *a, const char *b);

/* Looks for the text pattern in s; the pattern comes first.
   Returns the position of its first occurrence, -1 when there is none. An empty pattern is found
   at position 0 of a text that is not empty; in an empty text nothing is found.
     chcher("lo", "allo") -> 2
     chcher("", "x") -> 0
     chcher("", "") -> -1 */
KORVEL_API int chcher(const char *pattern, const char *s);

/* Looks for the character c in s.
   Returns its first position, -1 when there is none; the terminator (c of 0) is never found.
     chcher_c('l', "allo") -> 1 */
KORVEL_API int chcher_c(int c, const char *s);

/* --- Insertion and deletion ---------------------------------------------------------------- */

/* Deletes n characters of s from position p on; what follows, terminator included, moves left.
   p below 0 counts as 0, p at or past the end as the last character; n is cut to what there is from
   p on. Leaves s untouched when s is empty, when n is below 1, and when n is above the whole
   length of s, whatever p is.
     chdelch("abcdef", 2, 1) -> s = "adef"
     chdelch("abc", 1, 100) -> s = "ab"
     chdelch("abc", 4, 0) -> s = "abc" */
KORVEL_API void chdelch(char *s, int n, int p);

/* Inserts the text s into d before position p. d has room for size bytes; s must not overlap d.
   p below 0 counts as 0; p at or past the end of d appends.
   Returns the length of s (so 0 for an empty s). Returns 0 and leaves d untouched when
   length(d) + length(s) is above size - 1.
     chinsch("ad", 5, "bc", 1) -> 2, d = "abcd"
     chinsch("ad", 4, "bc", 1) -> 0, d = "ad" */
KORVEL_API int chinsch(char *d, int size, const char *s, int p);

/* Inserts the character c into d before position p; size and p as in chinsch. Only the low 8 bits
   of c count; when they are 0, the text ends at p.
   Returns 1. Returns 0 and leaves d untouched when length(d) + 1 is above size - 1.
     chinsch_c("ab", 4, 'x', 0) -> 1, d = "xab" */
KORVEL_API int chinsch_c(char *d, int size, int c, int p);

/* --- Counted runs -------------------------------------------------------------------------- */

/* Replaces every blank of the n bytes at p by the digit "0". Returns 1, always.
     szcnum("  15", 4) -> 1, p = "0015" */
KORVEL_API int szcnum(char *p, int n);

/* Copies the first min(n, capacity) bytes of source to d, without a terminator. d and source may
   overlap.
   Returns 1 when n is at most capacity, else 0.
     szcopy(d, 3, "abcdef", 6) -> 0, d = "abc"... */
KORVEL_API int szcopy(char *d, int capacity, const char *source, int n);

/* The same as szcopy.
     d = "abcdef"; szcopy_overlap(d + 1, 5, d, 5) -> 1, d = "aabcde" */
KORVEL_API int szcopy_overlap(char *d, int capacity, const char *source, int n);

/* Compares the runs a and b. Returns 1 when their lengths are equal and all bytes agree, else 0.
   A length below 1 gives 0.
     szcomp("AB", 2, "AB", 2) -> 1 */
KORVEL_API int szcomp(const char *a, int la, const char *b, int lb);

/* As szcomp, with "?" in either run matching any byte.
     szcompex("A?C", 3, "ABC", 3) -> 1 */
KORVEL_API int szcompex(const char *a, int la, const char *b, int lb);

/* As szcompex, with "*" as the last byte of a run for "whatever follows": as many bytes are
   compared as that run has in front of its "*", provided the other run has as many. When both runs
   end with "*", the one of a counts, if b is long enough for it. Where b has a "*" at the place of
   the last byte in front of the "*" of a, that byte is not compared (the last example: only "AB"
   is).
     szcompex2("AB*", 3, "ABCD", 4) -> 1
     szcompex2("AB*", 3, "AB", 2) -> 1
     szcompex2("AB*", 3, "A", 1) -> 0
     szcompex2("ABCD", 4, "AB*", 3) -> 1
     szcompex2("ABC*", 4, "AB*", 3) -> 1 */
KORVEL_API int szcompex2(const char *a, int la, const char *b, int lb);

/* Looks for the run p in the run s.
   Returns 1 when the bytes of p occur side by side somewhere in s, else 0; a length below 1
   gives 0.
     szincl("bc", 2, "abcd", 4) -> 1 */
KORVEL_API int szincl(const char *p, int lp, const char *s, int ls);

/* Copies n bytes of source to d and terminates them. d and source may overlap.
   Returns 1 when n + 1 bytes fit: d then holds the n bytes and a NUL. Otherwise returns 0 with
   capacity - 1 bytes copied and a NUL in the last byte of the capacity.
     szcopy_0t(d, 4, "abcdef", 3) -> 1, d = "abc"
     szcopy_0t(d, 4, "abcdef", 6) -> 0, d = "abc"
     d = "abcdef"; szcopy_0t(d, 8, d + 2, 3) -> 1, d = "cde" */
KORVEL_API int szcopy_0t(char *d, int capacity, const char *source, int n);

/* Appends n bytes of source to the text in d and terminates it. The text of d ends at the first
   NUL within the capacity; without one there is no room left. d and source may overlap.
   Returns 1 when all n bytes and the NUL fit. Otherwise returns 0 with as many bytes appended as
   fit and a NUL in the last byte of the capacity.
     szconcat_0t("ab", 4, "cdef", 4) -> 0, d = "abc"
     d = "abc"; szconcat_0t(d, 8, d, 3) -> 1, d = "abcabc" */
KORVEL_API int szconcat_0t(char *d, int capacity, const char *source, int n);

/* Appends n bytes of source at offset used of the heap buffer *buf, which grows as needed.
   *buf: null or a block of malloc, *capacity its size in bytes; the caller releases it with free.
   The caller counts the used bytes itself: the call does not tell where the next ones go.
   The bytes are copied in place while *capacity - used is at least n. Otherwise the buffer is
   replaced: by one of exactly n bytes when used is 0, else by one of (*capacity + n) * 2 bytes that
   keeps the first used ones. source may overlap *buf.
   Returns 1, or 0 without memory: the buffer is then released and *buf null when used was 0, else
   *buf and *capacity are as they were. Returns 0 and changes nothing when used or n is negative,
   used is above *capacity, used is above 0 with a null buffer, or the new size does not fit an
   int. */
KORVEL_API int szcopyex(char **buf, int *capacity, int used, const char *source, int n);

/* --- Bounded copies of terminated texts ---------------------------------------------------- */

/* Copies source, terminator included, to d when length(source) is below capacity; otherwise leaves
   d as it was. Never cuts. A caller that must know tests the length. d and source may overlap.
     secure_lstrcpy("xy", 4, "abc") -> d = "abc"
     secure_lstrcpy("xy", 3, "abc") -> d = "xy" */
KORVEL_API void secure_lstrcpy(char *d, int capacity, const char *source);

/* Appends source to the text in d when length(source) is below capacity - length(d); otherwise
   leaves d as it was. Never cuts. A d without a NUL within its capacity is left as it is. d and
   source may overlap.
     secure_lstrcat("ab", 5, "cd") -> d = "abcd"
     secure_lstrcat("ab", 4, "cd") -> d = "ab"
     d = "ab"; secure_lstrcat(d, 5, d) -> d = "abab" */
KORVEL_API void secure_lstrcat(char *d, int capacity, const char *source);

/* --- Character sets and capitals ----------------------------------------------------------- */

/* Converts s in place from CP1252 to Mac OS Roman for seven characters; keeps every other byte:
     degree sign B0 -> A1, a grave E0 -> 88, c cedilla E7 -> 8D, e grave E8 -> 8F,
     e acute E9 -> 8E, e circumflex EA -> 90, i diaeresis EF -> 95
   "\351" is e acute in CP1252, "\216" in Mac OS Roman:
     w2mstr("\351t\351") -> s = "\216t\216" */
KORVEL_API void w2mstr(char *s);

/* Converts s in place from Mac OS Roman to CP1252 for five characters; keeps every other byte:
     degree sign A1 -> B0, a grave 88 -> E0, c cedilla 8D -> E7, e grave 8F -> E8, e acute 8E -> E9
   Not the inverse of w2mstr: e circumflex and i diaeresis stay what w2mstr made of them.
     m2wstr("\216t\216") -> s = "\351t\351" */
KORVEL_API void m2wstr(char *s);

/* Turns the Mac OS Roman text s into capitals without diacritics, in place: "a" and both a grave
   and A grave become "A". The length stays. Ligatures and letters with a stroke keep their form as
   capitals; what has no capital of one byte (sharp s) stays.
   In a CP1252 text, such as a table holds, accented letters are taken for other ones: e acute and e
   grave become "E" all the same, but c cedilla becomes "A" and e circumflex "I", while a grave and
   the capitals E acute, A grave and C cedilla stay. Call w2mstr first: the letters that it converts
   are then taken for what they are.
   Returns s.
     strupr("\216t\216") -> "ETE"
     strupr("\311t\351") -> "\311TE"
     strupr("fa\347ade") -> "FAAADE" */
KORVEL_API char *strupr(char *s);

/* Converts the UTF-8 text utf8 to CP1252, so that an application can have its sources and texts in
   UTF-8. out has room for size bytes; it may be utf8 itself, and must not overlap it otherwise. A
   character that CP1252 does not have becomes "?", and so does each byte that is no part of a
   character (a cut one, an overlong form, a surrogate, a text that is CP1252 already). Nothing is
   composed: an accent with a character of its own is "?". The control characters U+0081, U+008D,
   U+008F, U+0090 and U+009D are the five bytes of their numbers, which CP1252 leaves open.
   Returns the number of "?" written that way, so 0 when nothing was lost. Returns -1 and leaves out
   untouched when it is too small; the bytes of utf8 and its terminator are always room enough.
     KorvelFromUtf8("\303\251t\303\251", out, 4) -> 0, out = "\351t\351"
     KorvelFromUtf8("5 \342\202\254", out, 4) -> 0, out = "5 \200"
     KorvelFromUtf8("\317\200 = 3", out, 8) -> 1, out = "? = 3"
     KorvelFromUtf8("\303\251t\303\251", out, 3) -> -1 */
KORVEL_API int KorvelFromUtf8(const char *utf8, char *out, int size);

/* Converts the CP1252 text text to UTF-8; out, size and the five open bytes as in KorvelFromUtf8,
   which gives text again.
   Returns 0: every byte has its character. Returns -1 and leaves out untouched when it is too
   small; three bytes for each of text, and one for the terminator, are always room enough.
     KorvelToUtf8("\351t\351", out, 6) -> 0, out = "\303\251t\303\251"
     KorvelToUtf8("\351t\351", out, 5) -> -1 */
KORVEL_API int KorvelToUtf8(const char *text, char *out, int size);

/* --- Separated lists -----------------------------------------------------------------------

   One text whose items are separated by "+", "," or "-", all three alike. A text without a
   separator has one item; an empty text has one empty item. */

/* Returns the number of items of list: its separators plus 1. Returns 0 for a null pointer.
     Teste_liste("a+b,c-d") -> 4 */
KORVEL_API int Teste_liste(const char *list);

/* Looks for an item that is exactly the n bytes at item: same length, same bytes.
   Returns 1 when list holds it, else 0. An n of 0 finds an empty item, a negative n nothing.
     Teste_item_liste("ab+abc", "ab", 2) -> 1
     Teste_item_liste("ab+abc", "a", 1) -> 0 */
KORVEL_API int Teste_item_liste(const char *list, const char *item, int n);

/* As Teste_item_liste, on a list of listLength bytes that needs no terminator. A negative
   listLength gives 0.
     Teste_item_szliste("ab+abc", 2, "abc", 3) -> 0 */
KORVEL_API int Teste_item_szliste(const char *list, int listLength, const char *item, int n);

/* Copies the item number index (from 0), cut to 63 characters, to a buffer of the library, in which
   list itself may be.
   Returns the buffer of 64 bytes, which the next call overwrites. Returns null, the buffer being
   as it was, for an index below 0 or at or past the number of items.
     Get_item_liste("a+b,c", 2) -> "c"
     Get_item_liste("a+b,c", 3) -> null */
KORVEL_API char *Get_item_liste(const char *list, int index);

/* --- Lists of strings ----------------------------------------------------------------------

   Items one after the other, each ended by a NUL, and one more NUL after the last. An empty list
   is a NUL; nothing after it is read. An item is named by its address in the list. A null pointer
   counts as an empty list. In the examples "a\0b\0" is a list of two items; its last NUL is the
   terminator that C adds. */

/* Makes the text in buffer a list of one item by writing a second NUL after its terminator.
   Where that does not fit (capacity - 1 is at most the length), the last two bytes of the capacity
   become NUL, which cuts the text; of a capacity of 1, its only byte. Does nothing when capacity is
   below 1.
     ChCh_Put_00("ab", 4) -> buffer = "ab\0"
     ChCh_Put_00("ab", 3) -> buffer = "a\0" */
KORVEL_API void ChCh_Put_00(char *buffer, int capacity);

/* Returns 1 when item is empty or the last of its list, else 0.
     ChCh_Is_00("a\0b\0") -> 0
     ChCh_Is_00("b\0") -> 1 */
KORVEL_API int ChCh_Is_00(const char *item);

/* Returns the item after item; item itself when it is empty or the last. A loop over a list ends
   when ChCh_Is_00 says so, or when the same pointer comes back.
     ChCh_Get_Next_Item("a\0b\0") -> "b" */
KORVEL_API char *ChCh_Get_Next_Item(const char *item);

/* Returns the number of items of list; an empty list counts 1.
     ChCh_Count_Item("a\0b\0") -> 2
     ChCh_Count_Item("") -> 1 */
KORVEL_API int ChCh_Count_Item(const char *list);

/* Makes the separated list s a list of strings by replacing every "+" and "," by a NUL; "-" is no
   separator here and stays. The caller has put the second NUL after the terminator before, for
   example by ChCh_Put_00.
     ChCh_Cut("a+b-c\0") -> s = "a\0b-c\0" */
KORVEL_API void ChCh_Cut(char *s);

/* As ChCh_Cut with the character separator in place of both.
     ChCh_Cut_sep("a;b+c\0", ';') -> s = "a\0b+c\0" */
KORVEL_API void ChCh_Cut_sep(char *s, int separator);

/* Makes list one text by replacing every NUL between two items by "+". An empty list stays
   empty.
     ChCh_Bind("a\0b\0") -> list = "a+b\0" */
KORVEL_API void ChCh_Bind(char *list);

/* As ChCh_Bind with the character separator in place of "+"; only its low 8 bits count.
     ChCh_Bind_sep("a\0b\0", ';') -> list = "a;b\0" */
KORVEL_API void ChCh_Bind_sep(char *list, int separator);

/* Removes item from its list by moving what is after it, final NULs included, onto it. The last
   item is replaced by the final NUL; removing the only item leaves an empty list. Leaves an empty
   item alone.
     ChCh_Delete_Item("a\0b\0") -> item = "b\0"
     item = "a\0b\0"; ChCh_Delete_Item(item + 2) -> item = "a\0" */
KORVEL_API void ChCh_Delete_Item(char *item);

/* Looks for the first item of a list that names no file: directory, ":" and the item are not a path
   for which File_Is_Existing (files.h) gives 1. With an empty (or null) directory the item is the
   whole path; a ":" at the end of directory is not taken off.
   Returns 1 and stores the address of the item in *item; 0, with *item as it was, when all files
   exist and for an empty list. */
KORVEL_API int ChCh_Detect_Missing_File(const char *directory, const char *list, char **item);

/* Removes the items of a list that name no file, in place, as ChCh_Delete_Item does. directory must
   not overlap list.
   Returns 1 when the last item that was tested names a file, 0 when it did not and was removed; 1
   for an empty list. */
KORVEL_API int ChCh_Remove_Missing_File(const char *directory, char *list);

#ifdef __cplusplus
}
#endif

#endif
