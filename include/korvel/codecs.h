/* SPDX-License-Identifier: MIT */
/* Values to text and back: integers, reals and fixed-digit numbers.

   Texts are NUL-terminated 8-bit strings; a text that is read is trimmed of its leading and
   trailing blanks in place and stays trimmed whatever the outcome. Buffers to fill are given with
   their capacity in bytes, terminator included; a capacity below 1 is never written. Nothing
   depends on the locale of the process. A null pointer is never followed: a reader answers as for
   an empty text, a writer as for a buffer that is too small, a reader or writer of NUMs as for a
   wrong width; a function that splits a real does nothing.

   In the examples the call's arguments and results have the names of the parameters. */
#ifndef KORVEL_CODECS_H
#define KORVEL_CODECS_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Status codes ---- */

/* Codes of the readers. With any code but the first one *value is untouched, unless the comment of
   the function says otherwise. */
enum {
  KorvelDoneStatus = 0,
  KorvelEmptyStatus = 1,            /* empty after trimming */
  KorvelRefusedStatus = 1,          /* validators: read and stored, but out of their range */
  KorvelSignOnlyStatus = 2,         /* a sign with nothing after it */
  KorvelNoDigitStatus = 3,          /* a character that is not a digit 0 to 9 */
  KorvelTooLargeStatus = 4,         /* integers: the magnitude is above the limit */
  KorvelFractionStatus = 4,         /* reals: a character that is not a digit in the fraction */
  KorvelExponentSignOnlyStatus = 6, /* reals: 2 to 4 of an integer for the exponent, plus 4 */
  KorvelExponentNoDigitStatus = 7,
  KorvelExponentTooLargeStatus = 8
};

/* Further codes of the writers. */
enum {
  KorvelTightStatus = 1, /* written, but the capacity is too small for some other value */
  KorvelCutStatus = 2    /* does not fit: the buffer holds a part */
};

/* Further codes of the functions for NUMs. */
enum {
  KorvelWidthStatus = 11,   /* writing: too small for the value; reading: too large or below 0 */
  KorvelNegativeStatus = 12 /* the value read is below 0 */
};

/* ---- Integers ---- */

/* Reads a decimal integer of magnitude 0 to 32767: blanks around, one sign, digits, any number of
   leading zeros.
   Returns 0 and stores the value, or leaves *value untouched and returns
   1  empty after trimming,
   2  a sign with no digit after it,
   3  a character that is not a digit 0 to 9,
   4  magnitude above 32767 (-32768 too).
     intcod_i("  +12  ", value) -> 0, text = "+12", value = 12
     intcod_i("32768", value) -> 4 */
KORVEL_API int intcod_i(char *text, int *value);

/* As intcod_i, for magnitudes 0 to 2147483647.
     intcod_l("032768", value) -> 0, value = 32768
     intcod_l("-2147483648", value) -> 4 */
KORVEL_API int intcod_l(char *text, int *value);

/* Writes an integer in decimal: "-" when negative, no "+", no blanks, no leading zeros. The whole
   range of int is accepted; -2147483648 has no positive magnitude and is written as "-" alone.
   Returns
   0  written,
   1  written, but a capacity of 6 or less does not hold every 16-bit value,
   2  does not fit: the buffer holds what did, the lowest digits; nothing is written when the
      capacity is below 1.
     intdco_i(-5, buffer, 7) -> 0, buffer = "-5"
     intdco_i(-5, buffer, 6) -> 1, buffer = "-5"
     intdco_i(-5, buffer, 2) -> 2, buffer = "5" */
KORVEL_API int intdco_i(int value, char *buffer, int capacity);

/* As intdco_i, with 1 for a capacity of 11 or less, which does not hold every 32-bit value.
     intdco_l(-2147483647, buffer, 12) -> 0, buffer = "-2147483647" */
KORVEL_API int intdco_l(int value, char *buffer, int capacity);

/* Validator: reads with intcod_i and accepts values of 0 and above.
   Returns 0 when accepted, 1 when empty or below 0, else the code of intcod_i. A value that is read
   but refused is stored all the same.
     intcod_i_sup0("0", value) -> 0, value = 0
     intcod_i_sup0("-5", value) -> 1, value = -5 */
KORVEL_API int intcod_i_sup0(char *text, int *value);

/* As intcod_i_sup0, accepting values of 1 and above.
     intcod_i_ssup0("0", value) -> 1, value = 0 */
KORVEL_API int intcod_i_ssup0(char *text, int *value);

/* As intcod_i_sup0, reading with intcod_l.
     intcod_l_sup0("40000", value) -> 0, value = 40000 */
KORVEL_API int intcod_l_sup0(char *text, int *value);

/* ---- Reals ---- */

/* Reads a decimal real: blanks around, one sign, digits with at most one separator, an exponent.
   The separator is the first point, or the first comma when the text has no point; there is no
   grouping. The digits before or after it may be missing: "." is 0. The exponent follows the first
   "e", or the first "E" when the text has no "e"; it is an integer as intcod_l reads it, and is
   trimmed in place too. An "e" with nothing after it is ignored. Values too large become infinite,
   values too small 0; both are accepted.
   The digits of the integral part are summed from the last to the first in double precision, then
   the digits of the fraction from the first to the last, and the exponent is applied in steps of
   ten: the result may differ in its last bits from the nearest double.
   Returns 0 and stores the value, or leaves *value untouched and returns the first that applies:
   1  empty after trimming,
   2  a sign with nothing after it,
   3  a character that is not a digit in the integral part,
   4  a character that is not a digit in the fraction,
   6  an exponent of a sign alone,
   7  a character that is not a digit in the exponent,
   8  an exponent of a magnitude above 2147483647.
     realcod_d("  -1,5 ", value) -> 0, text = "-1,5", value = -1.5
     realcod_d("1.5e+2", value) -> 0, value = 150
     realcod_d("1,234.5", value) -> 3
     realcod_d("1.2.3", value) -> 4
     realcod_d("1.5ex", value) -> 7 */
KORVEL_API int realcod_d(char *text, double *value);

/* As realcod_d; the double result is rounded to single precision when it is stored.
     realcod_f("0,1", value) -> 0, value = 0.1f */
KORVEL_API int realcod_f(char *text, float *value);

/* Writes a real with a fixed number of decimals after a point, rounded half away from zero at the
   last one. A value that rounds to 0 keeps its sign. No decimals write no point; a negative number
   of decimals writes the integral part followed by a lone point. Values are exact below a magnitude
   of 2147483648. From there on the integral part stays 2147483647 (2147483648 for a negative value)
   and the decimals are the lowest digits of the rest of the value; they are zeros when the rest is
   too large for a double. NaN is written as 0. Decimals past the 308th are zeros.
   Returns
   0  written,
   1  written, and the capacity is 20 or less,
   2  does not fit: the buffer holds what did (the lowest digits of the integral part; or all of
      them, the point and the lowest decimals; or everything but the sign); nothing is written when
      the capacity is below 1.
     realdco_d(1.25, buffer, 32, 1) -> 0, buffer = "1.3"
     realdco_d(1.25, buffer, 20, 1) -> 1, buffer = "1.3"
     realdco_d(12.5, buffer, 4, 2) -> 2, buffer = "12."
     realdco_d(-0.4, buffer, 32, 0) -> 0, buffer = "-0"
     realdco_d(7, buffer, 32, -1) -> 0, buffer = "7." */
KORVEL_API int realdco_d(double value, char *buffer, int capacity, int decimals);

/* Writes a real with `digits` + 1 significant digits, truncated, as d.ddd with an exponent where it
   is not 0; 0 gives "0", and so does NaN. Values are exact below a magnitude of 2147483648. From
   there on (infinities included) the integral part stays 2147483647 (2147483648 for a negative
   value); where that leaves 1 or more of the value, every digit after it is 9.
   With a negative `digits`, one digit of an integral part is written, and no digit of a fraction.
   Returns 0, or 2 when the text does not fit (the buffer holds what did). An exponent that does not
   fit after its "e" is cut or left out and still gives 0. Nothing is written when the capacity is
   below 1.
     realdco_sd(1234.5, buffer, 32, 3) -> 0, buffer = "1.234e3"
     realdco_sd(0.05, buffer, 32, 0) -> 0, buffer = "5.e-2" */
KORVEL_API int realdco_sd(double value, char *buffer, int capacity, int digits);

/* Validator: reads with realcod_d and accepts values of 0 and above.
   Returns 0 when accepted, 1 when empty or below 0, else the code of realcod_d. A value that is
   read but refused is stored all the same.
     realcod_d_sup0("-0,5", value) -> 1, value = -0.5 */
KORVEL_API int realcod_d_sup0(char *text, double *value);

/* As realcod_d_sup0, accepting values above 0.
     realcod_d_ssup0("0", value) -> 1, value = 0
     realcod_d_ssup0("0,5", value) -> 0, value = 0.5 */
KORVEL_API int realcod_d_ssup0(char *text, double *value);

/* Splits *x into its integral part, truncated toward 0 and clamped to the range of int, and the
   rest, which has the sign of *x. NaN has the integral part 0. Either result may be stored over *x.
     utrealds(-2.75, integral, fraction) -> integral = -2, fraction = -0.75 */
KORVEL_API void utrealds(const double *x, double *integral, double *fraction);

/* Splits a single-precision *x into its integral part, truncated toward 0 without bounds (0 for
   magnitudes below 1), and the rest, which has the sign of *x. Infinities and NaN are their own
   integral part and leave NaN. Either result may be stored over *x.
     utrealfs(2.75, integral, fraction) -> integral = 2, fraction = 0.75 */
KORVEL_API void utrealfs(const float *x, float *integral, float *fraction);

/* ---- Fixed-digit numbers (NUM) ----

   A NUM is a run of `width` characters inside a record, without terminator: decimal digits,
   right-aligned and filled with "0" on the left. Writers write exactly `width` bytes or none;
   readers read no more than `width` bytes, stop at a NUL, accept blanks around the digits and one
   sign, and refuse values below 0.

   Status codes of these functions:
   0  done,
   1 to 8  as the reader of integers or reals underneath,
   11  the width is too small for the value (writing), too large for a number or below 0 (reading),
   12  the value read is below 0.

   In the examples "..." follows a NUM: no terminator is written after it. */

/* Writes an integer as a NUM. The sign follows the fill.
   Returns 0, or 11 with nothing written.
     LongToNUM(7, destination, 2) -> 0, destination = "07"...
     LongToNUM(-5, destination, 4) -> 0, destination = "00-5"...
     LongToNUM(123, destination, 2) -> 11 */
KORVEL_API int LongToNUM(int value, char *destination, int width);

/* The same as LongToNUM, for values of 16 bits.
     IntToNUM(2004, destination, 4) -> 0, destination = "2004"... */
KORVEL_API int IntToNUM(int value, char *destination, int width);

/* Reads a NUM of at most 11 characters with intcod_l. On failure *result is 0.
     NUMToLong(" 042", 4, result) -> 0, result = 42
     NUMToLong("-042", 4, result) -> 12, result = 0 */
KORVEL_API int NUMToLong(const char *num, int width, int *result);

/* Reads a NUM of at most 11 characters with intcod_i. On failure *result is 0.
     NUMToInt("032767", 6, result) -> 0, result = 32767
     NUMToInt("032768", 6, result) -> 4, result = 0 */
KORVEL_API int NUMToInt(const char *num, int width, int *result);

/* Reads a percentage: a NUM for NUMToLong, then blanks, "%" and blanks, each of which may be
   missing. The value is not divided by 100. On failure *result is 0.
     NUMP100ToLong("25 %", 4, result) -> 0, result = 25 */
KORVEL_API int NUMP100ToLong(const char *num, int width, int *result);

/* Reads an interval of two bounds of 0 and above with ",", "-" or ";" between them, within brackets
   or without.
   Returns the sum of the codes of NUMToLong for both bounds, so 0 when both were read; a bound that
   fails is 0. Without a separator the high bound fails with 11.
     NUMPInterToLong("[10-20]", 7, low, high) -> 0, low = 10, high = 20
     NUMPInterToLong(" [ 10 ; 20 ] ", 13, low, high) -> 0, low = 10, high = 20
     NUMPInterToLong("10", 2, low, high) -> 11, low = 10, high = 0 */
KORVEL_API int NUMPInterToLong(const char *text, int width, int *low, int *high);

/* Writes nothing and returns 1, whatever it is given: the conversion rests on a working area of 20
   bytes, for which realdco_d never answers 0. Do not rely on it to fill a field.
     destination = "...."; DoubleToNUMD(2.5, destination, 4, 1) -> 1, destination = "...." */
KORVEL_API int DoubleToNUMD(double value, char *destination, int width, int decimals);

/* Reads a NUM of at most 19 characters with realcod_d; a "%" as its last character, with the blanks
   before it, is not counted and divides the value by 100. On failure *result is 0.0.
     NUMDToDouble("12,5%", 5, result) -> 0, result = 0.125 */
KORVEL_API int NUMDToDouble(const char *num, int width, double *result);

/* Counts the items of a NUL-terminated list of NUMs separated by "+", "," or "-".
   Returns 0 unless NUMToLong reads every one of them; an empty item is not read.
     Teste_NUM_liste("1+2,3") -> 3
     Teste_NUM_liste("1+x") -> 0 */
KORVEL_API int Teste_NUM_liste(const char *list);

/* Gives the item of such a list at an index from 0. An index past the last item gives the last one.
   Returns 0 when an item up to that one is not read by NUMToLong, and for an index below 0.
     Get_NUM_liste("1+2,3", 1) -> 2
     Get_NUM_liste("1+2,3", 7) -> 3 */
KORVEL_API int Get_NUM_liste(const char *list, int index);

#ifdef __cplusplus
}
#endif

#endif
