/* SPDX-License-Identifier: MIT */
/* Calendar dates: display and stored texts, the clock, the calendar, day and minute counts, names.

   Dates are texts or numbers; there is no date structure:
     display date    DD/MM/YYYY or DD/MM/YY
     time of day     HH:MM or HH:MM:SS
     stored date     YYYYMMDD, YYYYMMDDHHMM or YYYYMMDDHHMMSS
     number          the int YYYYMMDD, so that numeric order is date order; a time is HHMM.
   The fields of a text are taken by position and never checked; separators are not looked at. A
   text shorter than its layout is read as if NULs followed, and these are copied: the result, seen
   as a text, then ends where the missing characters would be. Outputs are owned by the caller,
   always terminated, and may be the input itself. A null pointer is never followed: a null input is
   an empty text, and with a null output nothing is written and the status is KorvelWidthStatus
   (codecs.h lists the status codes).

   In the examples the call's arguments and results have the names of the parameters. */
#ifndef KORVEL_DATES_H
#define KORVEL_DATES_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The origin year, initially 1950. It places two-digit years: YY below a_org - 1900 is 20YY, any
   other 19YY. Written by the application at any time; the library reads it at each call.
     a_org = 1950; ZRV_Build_Date_short("07/03/49", out) -> 0, out = "20490307"
     a_org = 1950; ZRV_Build_Date_short("07/03/50", out) -> 0, out = "19500307"
     a_org = 1980; ZRV_Build_Date_short("07/03/79", out) -> 0, out = "20790307" */
KORVEL_API extern int a_org;

/* ---- Display to stored ---- */

/* The status of ZRV_Build_Date_SV for a year of four digits. */
enum { KorvelYearCopiedStatus = 10 };

/* Stores DD/MM/YYYY as YYYYMMDD (9 bytes); the year is copied as it is.
     ZRV_Build_Date("07/03/2004", out) -> out = "20040307" */
KORVEL_API void ZRV_Build_Date(const char *date, char *out);

/* Stores DD/MM/YY as YYYYMMDD (9 bytes), the year placed by a_org.
   Returns the code of LongToNUM for the year, 0 on success.
     ZRV_Build_Date_short("07/03/04", out) -> 0, out = "20040307" */
KORVEL_API int ZRV_Build_Date_short(const char *date, char *out);

/* Stores DD/MM/YY and HH:MM as YYYYMMDDHHMM (13 bytes). Returns as ZRV_Build_Date_short.
     ZRV_Build_Date_long("07/03/04", "09:05", out) -> 0, out = "200403070905" */
KORVEL_API int ZRV_Build_Date_long(const char *date, const char *time, char *out);

/* Stores DD/MM/YY and HH:MM:SS as YYYYMMDDHHMMSS (15 bytes). Returns as ZRV_Build_Date_short.
     ZRV_Build_Date_slong("07/03/04", "09:05:30", out) -> 0, out = "20040307090530" */
KORVEL_API int ZRV_Build_Date_slong(const char *date, const char *time, char *out);

/* Stores the midnight of a display date as YYYYMMDD0000 (13 bytes). Exactly 10 characters are
   DD/MM/YYYY, any other length is DD/MM/YY.
   Returns KorvelYearCopiedStatus when the year was copied, else as ZRV_Build_Date_short.
     ZRV_Build_Date_SV("07/03/2004", out) -> KorvelYearCopiedStatus, out = "200403070000"
     ZRV_Build_Date_SV("07/03/04", out) -> 0, out = "200403070000" */
KORVEL_API int ZRV_Build_Date_SV(const char *date, char *out);

/* ---- Stored to display ---- */

/* Shows a stored date as DD/MM/YYYY (11 bytes).
     ZRV_Inv_Date("20040307", out) -> out = "07/03/2004" */
KORVEL_API void ZRV_Inv_Date(const char *stored, char *out);

/* Shows a stored date as DD/MM/YY (9 bytes).
     ZRV_Inv_Date_2("20040307", out) -> out = "07/03/04" */
KORVEL_API void ZRV_Inv_Date_2(const char *stored, char *out);

/* Shows YYYYMMDDHHMMSS as DD/MM/YYYY HH:MM:SS (20 bytes).
     ZRV_Inv_Date_Time("20040307090530", out) -> out = "07/03/2004 09:05:30" */
KORVEL_API void ZRV_Inv_Date_Time(const char *stored, char *out);

/* Shortens a display date to DD/MM/YY (9 bytes): exactly 10 characters are DD/MM/YYYY, any other
   length is DD/MM/YY. Returns the length of the input.
     ZRV_Reduc_Date("07/03/2004", out) -> 10, out = "07/03/04"
     ZRV_Reduc_Date("07/03/04", out) -> 8, out = "07/03/04" */
KORVEL_API int ZRV_Reduc_Date(const char *date, char *out);

/* ---- Clock ---- */

/* Gives the current local date as YYYYMMDD (9 bytes).
   Returns the code of LongToNUM for the last field written, 0 on success.
     now = "2004-03-07 09:05:30"; ZRV_Get_Date_short(out) -> 0, out = "20040307" */
KORVEL_API int ZRV_Get_Date_short(char *out);

/* Gives the current local date and minute as YYYYMMDDHHMM (13 bytes). Returns as
   ZRV_Get_Date_short.
     now = "2004-03-07 09:05:30"; ZRV_Get_Date_long(out) -> 0, out = "200403070905" */
KORVEL_API int ZRV_Get_Date_long(char *out);

/* Gives the current local date and second as YYYYMMDDHHMMSS (15 bytes). Returns as
   ZRV_Get_Date_short.
     now = "2004-03-07 09:05:30"; ZRV_Get_Date_slong(out) -> 0, out = "20040307090530" */
KORVEL_API int ZRV_Get_Date_slong(char *out);

/* ---- Calendar ---- */

/* Days of the week. */
enum {
  KorvelSunday = 0,
  KorvelMonday = 1,
  KorvelTuesday = 2,
  KorvelWednesday = 3,
  KorvelThursday = 4,
  KorvelFriday = 5,
  KorvelSaturday = 6
};

/* Returns 1 for a leap year, else 0.
     utdately(2000) -> 1
     utdately(1900) -> 0 */
KORVEL_API int utdately(int year);

/* Returns the days of a month, 28 to 31, or 0 for a month outside 1 to 12.
     utdatedm(2004, 2) -> 29
     utdatedm(2004, 13) -> 0 */
KORVEL_API int utdatedm(int year, int month);

/* Returns the day of the week, 0 (Sunday) to 6 (Saturday).
     utdatedw(2000, 1, 1) -> KorvelSaturday */
KORVEL_API int utdatedw(int year, int month, int day);

/* Returns 1 when the number is a date of the years 1800 to 2100, else 0. Of a longer year, only the
   last four digits count.
     Validate_Date(20000229) -> 1
     Validate_Date(19000229) -> 0 */
KORVEL_API int Validate_Date(int date);

/* Returns the date n days later. A month outside 1 to 12 has no days and is stepped over; a result
   that an int cannot hold is 2147483647.
     Get_Date_Incr(20001231, 1) -> 20010101
     Get_Date_Incr(20040131, 30) -> 20040301 */
KORVEL_API int Get_Date_Incr(int date, unsigned int n);

/* Returns the date n days earlier. Whole years are taken off by the length of the calendar year
   before, whatever the month: across a leap day a date after February comes out one day off (in the
   second example late, in the third one early). Whole months are taken off by their own length and
   keep the day: the result may be a day that does not exist, as Validate_Date tells.
   A month above 12 has no days and is stepped over, a month below 1 steps back as January does; a
   result that an int cannot hold is -2147483648.
     Get_Date_Diff(20000315, 20) -> 20000224
     Get_Date_Diff(20010301, 367) -> 20000229
     Get_Date_Diff(20000301, 366) -> 19990228
     Get_Date_Diff(20010331, 30) -> 20010229 */
KORVEL_API int Get_Date_Diff(int date, unsigned int n);

/* Returns the minutes from the origin year to a date (YYYYMMDD) and time (HHMM): 1 January of the
   origin year at 00:00 counts 1440. Each year after the origin year, the year of the date included,
   adds 365 days and its own leap day already on 1 January; the leap day of the origin year is left
   out. Counts agree with each other, not with a calendar: the last example is one day more than a
   calendar gives. A count that an int cannot hold becomes the nearest one that it can.
     Min_depuis_org(19990101, 0, 1999) -> 1440
     Min_depuis_org(19990102, 905, 1999) -> 3425
     Min_depuis_org(20000101, 0, 1999) -> 528480 */
KORVEL_API int Min_depuis_org(int date, int time, int origin);

/* ---- Names ---- */

/* Returns the French name of a month 1 to 12, else "Illégal". The names are in the DOS Latin code
   page: é is 0x82 (octal 202). The text is the library's and must not be changed.
     utdatemy(2) -> "F\202vrier"
     utdatemy(8) -> "Aout"
     utdatemy(13) -> "Ill\202gal" */
KORVEL_API char *utdatemy(int month);

/* Returns the French name of a day 0 (Dimanche) to 6, else "Illégal"; as utdatemy.
     utdatedn(KorvelSaturday) -> "Samedi" */
KORVEL_API char *utdatedn(int day);

/* Returns the first three letters of utdatemy's name, ASCII letters in upper case, in a buffer that
   the next call of utdatemm or utdatedd overwrites.
     utdatemm(2) -> "F\202V" */
KORVEL_API char *utdatemm(int month);

/* Returns the first three letters of utdatedn's name, as utdatemm and in the same buffer.
     utdatedd(KorvelSunday) -> "DIM" */
KORVEL_API char *utdatedd(int day);

#ifdef __cplusplus
}
#endif

#endif
