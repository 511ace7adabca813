/* Values to text and back: integers, reals and fixed-digit numbers.

   Texts are NUL-terminated 8-bit strings; a text that is read is trimmed of its leading and
   trailing blanks in place and stays trimmed whatever the outcome. Buffers to fill are given with
   their capacity in bytes, terminator included; a capacity below 1 is never written. Nothing
   depends on the locale of the process. A null pointer is never followed: a reader answers as for
   an empty text, a writer as for a buffer that is too small, a reader or writer of NUMs as for a
   wrong width; what splits a real does nothing. */
#ifndef KORVEL_CODECS_H
#define KORVEL_CODECS_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Integers ---- */

/* Reads a decimal integer of magnitude 0 to 32767: blanks around, one sign, digits, any number of
   leading zeros ("  +12  " gives 12 and leaves "+12" in the text).
   Returns 0 and stores the value, or leaves *value untouched and returns
   1  empty after trimming,
   2  a sign with no digit behind it,
   3  a character that is not a digit 0 to 9,
   4  magnitude above 32767 (-32768 too). */
KORVEL_API int intcod_i(char *text, int *value);

/* As intcod_i, for magnitudes 0 to 2147483647 (-2147483648 gives 4). */
KORVEL_API int intcod_l(char *text, int *value);

/* Writes an integer in decimal: "-" when negative, no "+", no blanks, no leading zeros. The whole
   range of int is accepted; -2147483648 has no positive magnitude and is written as "-" alone.
   Returns
   0  written,
   1  written, but a capacity of 6 or less does not hold every 16-bit value,
   2  does not fit: the buffer holds what did, the lowest digits ("-5" in 2 bytes leaves "5");
      nothing is written when the capacity is below 1. */
KORVEL_API int intdco_i(int value, char *buffer, int capacity);

/* As intdco_i, with 1 for a capacity of 11 or less, which does not hold every 32-bit value. */
KORVEL_API int intdco_l(int value, char *buffer, int capacity);

/* Validator: reads with intcod_i and accepts values of 0 and above.
   Returns 0 when accepted, 1 when empty or below 0, else the code of intcod_i. A value that is read
   but refused is stored all the same. */
KORVEL_API int intcod_i_sup0(char *text, int *value);

/* As intcod_i_sup0, accepting values of 1 and above. */
KORVEL_API int intcod_i_ssup0(char *text, int *value);

/* As intcod_i_sup0, reading with intcod_l. */
KORVEL_API int intcod_l_sup0(char *text, int *value);

/* ---- Reals ---- */

/* Reads a decimal real: blanks around, one sign, digits with at most one separator, an exponent
   ("  -1,5 " gives -1.5; "1.5e+2" gives 150). The separator is the first point, or the first comma
   when the text has no point; there is no grouping. The digits before or behind it may be missing:
   "." is 0. The exponent stands behind the first "e", or the first "E" when the text has no "e"; it
   is an integer as intcod_l reads it, trimmed in place too, and a mark with nothing behind it is
   ignored. Values too large become infinite, too small 0; both are accepted.
   The digits of the integral part are summed from the last to the first in double precision, then
   those of the fraction from the first to the last, and the exponent is applied in steps of ten:
   the result may differ in its last bits from the nearest double.
   Returns 0 and stores the value, or leaves *value untouched and returns the first that applies:
   1  empty after trimming,
   2  a sign with nothing behind it,
   3  a character that is not a digit in the integral part,
   4  a character that is not a digit in the fraction,
   5 to 8  4 plus the code of intcod_l for the exponent. */
KORVEL_API int realcod_d(char *text, double *value);

/* As realcod_d; the double result is rounded to single precision when it is stored. */
KORVEL_API int realcod_f(char *text, float *value);

/* Writes a real with a fixed number of decimals behind a point, rounded half away from zero at the
   last one (1.25 with 1 decimal gives "1.3"). A value that rounds to 0 keeps its sign: -0.4 with no
   decimals gives "-0". No decimals write no point; a negative number of decimals writes the
   integral part followed by a lone point. Values are exact below a magnitude of 2147483648. From
   there on the integral part stays 2147483647 (2147483648 for a negative value) and the decimals
   are the lowest digits of what is left of the value; they are zeros when that is too large for a
   double. NaN is written as 0. Decimals past the 308th are zeros.
   Returns
   0  written,
   1  written, and the capacity is 20 or less,
   2  does not fit: the buffer holds what did (the lowest digits of the integral part; or all of
      them, the point and the lowest decimals; or everything but the sign); nothing is written when
      the capacity is below 1. */
KORVEL_API int realdco_d(double value, char *buffer, int capacity, int decimals);

/* Writes a real with `digits` + 1 significant digits, truncated, as d.ddd with an exponent where it
   is not 0 (1234.5 with 3 gives "1.234e3", 0.05 with 0 gives "5.e-2"); 0 gives "0", and so does
   NaN. Values are exact below a magnitude of 2147483648. From there on (infinities included) the
   integral part stays 2147483647 (2147483648 for a negative value); where that leaves 1 or more of
   the value, every digit behind it is 9.
   With a negative `digits`, one digit of an integral part is written, and none of a fraction.
   Returns 0, or 2 when the text does not fit (the buffer holds what did). An exponent that does not
   fit behind its "e" is cut or left out and still gives 0. Nothing is written when the capacity is
   below 1. */
KORVEL_API int realdco_sd(double value, char *buffer, int capacity, int digits);

/* Validator: reads with realcod_d and accepts values of 0 and above.
   Returns 0 when accepted, 1 when empty or below 0, else the code of realcod_d. A value that is
   read but refused is stored all the same. */
KORVEL_API int realcod_d_sup0(char *text, double *value);

/* As realcod_d_sup0, accepting values above 0. */
KORVEL_API int realcod_d_ssup0(char *text, double *value);

/* Splits *x into its integral part, truncated toward 0 and held to -2147483648 to 2147483647, and
   what is left, which has the sign of *x. NaN has the integral part 0. The results may be stored
   over *x. */
KORVEL_API void utrealds(const double *x, double *integral, double *fraction);

/* Splits a single-precision *x into its integral part, truncated toward 0 without bounds (0 for
   magnitudes below 1), and what is left, which has the sign of *x. Infinities and NaN are their own
   integral part and leave NaN. The results may be stored over *x. */
KORVEL_API void utrealfs(const float *x, float *integral, float *fraction);

/* ---- Fixed-digit numbers (NUM) ----

   A NUM is a run of `width` characters inside a record, without terminator: decimal digits,
   right-aligned and filled with "0" on the left. Writers write exactly `width` bytes or none;
   readers read no more than `width` bytes, stop at a NUL, accept blanks around the digits and one
   sign, and refuse values below 0.

   Codes of all of them:
   0  done,
   1 to 8  those of the reader of integers or reals underneath,
   11  the width is too small for the value (writing), too large for a number or below 0 (reading),
   12  the value read is below 0. */

/* Writes an integer as a NUM: 7 at width 2 gives "07". The sign stands behind the fill: -5 at width
   4 gives "00-5".
   Returns 0, or 11 with nothing written. */
KORVEL_API int LongToNUM(int value, char *destination, int width);

/* The same as LongToNUM, for values of 16 bits. */
KORVEL_API int IntToNUM(int value, char *destination, int width);

/* Reads a NUM of at most 11 characters with intcod_l. " 042" gives 42, "-042" fails with 12. On
   failure *result is 0. */
KORVEL_API int NUMToLong(const char *num, int width, int *result);

/* Reads a NUM of at most 11 characters with intcod_i. On failure *result is 0. */
KORVEL_API int NUMToInt(const char *num, int width, int *result);

/* Reads a percentage: a NUM for NUMToLong, then blanks, "%" and blanks, each of which may be
   missing. "25 %" gives 25. On failure *result is 0. */
KORVEL_API int NUMP100ToLong(const char *num, int width, int *result);

/* Reads an interval of two bounds of 0 and above with ",", "-" or ";" between them, within brackets
   or without: "[10-20]", "10,20" and " [ 10 ; 20 ] " give 10 and 20.
   Returns the sum of the codes of NUMToLong for both bounds, so 0 when both were read; a bound that
   fails is 0. Without a separator the high bound fails with 11. */
KORVEL_API int NUMPInterToLong(const char *text, int width, int *low, int *high);

/* Writes nothing and returns 1, whatever it is given: the conversion rests on a working area of 20
   bytes, for which realdco_d never answers 0. Do not rely on it to fill a field. */
KORVEL_API int DoubleToNUMD(double value, char *destination, int width, int decimals);

/* Reads a NUM of at most 19 characters with realcod_d; a "%" as its last character, with the blanks
   before it, is not counted and divides the value by 100: "12,5%" gives 0.125. On failure *result
   is 0.0. */
KORVEL_API int NUMDToDouble(const char *num, int width, double *result);

/* Counts the items of a NUL-terminated list of NUMs separated by "+", "," or "-" ("1+2,3" has 3).
   Returns 0 unless NUMToLong reads every one of them; an empty item is not read. */
KORVEL_API int Teste_NUM_liste(const char *list);

/* Gives the item of such a list at an index from 0. An index past the last item gives the last one.
   Returns 0 when an item up to that one is not read by NUMToLong, and for an index below 0. */
KORVEL_API int Get_NUM_liste(const char *list, int index);

#ifdef __cplusplus
}
#endif

#endif
