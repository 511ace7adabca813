/* Calendar dates: display and stored texts, the clock, the calendar, day and minute counts, names.

   Dates are texts or numbers, there is no date structure:
     display date    DD/MM/YYYY or DD/MM/YY
     time of day     HH:MM or HH:MM:SS
     stored date     YYYYMMDD, YYYYMMDDHHMM or YYYYMMDDHHMMSS
     number          the int YYYYMMDD, so that numeric order is date order; a time is HHMM.
   The fields of a text are taken by position and never checked; separators are not looked at. A
   text shorter than its layout is read as if NULs followed, and these are copied: the result, seen
   as a text, then ends where the missing characters would stand. Outputs are owned by the caller,
   always terminated, and may be the input itself. A null pointer is never followed: a null input is
   an empty text, and with a null output nothing is written and the status is 11. */
#ifndef KORVEL_DATES_H
#define KORVEL_DATES_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The origin year, initially 1950. It places two-digit years: YY below a_org - 1900 is 20YY, any
   other 19YY. Written by the application at any time; the library reads it at each call. */
KORVEL_API extern int a_org;

/* ---- Display to stored ---- */

/* Stores DD/MM/YYYY as YYYYMMDD (9 bytes); the year is copied as it stands.
   "07/03/2004" gives "20040307". */
KORVEL_API void ZRV_Build_Date(const char *date, char *out);

/* Stores DD/MM/YY as YYYYMMDD (9 bytes), the year placed by a_org.
   Returns the code of LongToNUM for the year, 0 on success.
   With an a_org of 1950, "07/03/49" gives "20490307" and "07/03/50" gives "19500307". */
KORVEL_API int ZRV_Build_Date_short(const char *date, char *out);

/* Stores DD/MM/YY and HH:MM as YYYYMMDDHHMM (13 bytes). Returns as ZRV_Build_Date_short.
   "07/03/04" and "09:05" give "200403070905". */
KORVEL_API int ZRV_Build_Date_long(const char *date, const char *time, char *out);

/* Stores DD/MM/YY and HH:MM:SS as YYYYMMDDHHMMSS (15 bytes). Returns as ZRV_Build_Date_short.
   "07/03/04" and "09:05:00" give "20040307090500". */
KORVEL_API int ZRV_Build_Date_slong(const char *date, const char *time, char *out);

/* Stores the midnight of a display date as YYYYMMDD0000 (13 bytes). Exactly 10 characters are
   DD/MM/YYYY, any other length is DD/MM/YY.
   Returns 10 when the year was copied, else as ZRV_Build_Date_short.
   "07/03/2004" gives "200403070000" and 10. */
KORVEL_API int ZRV_Build_Date_SV(const char *date, char *out);

/* ---- Stored to display ---- */

/* Shows a stored date as DD/MM/YYYY (11 bytes). "20040307" gives "07/03/2004". */
KORVEL_API void ZRV_Inv_Date(const char *stored, char *out);

/* Shows a stored date as DD/MM/YY (9 bytes). "20040307" gives "07/03/04". */
KORVEL_API void ZRV_Inv_Date_2(const char *stored, char *out);

/* Shows YYYYMMDDHHMMSS as DD/MM/YYYY HH:MM:SS (20 bytes). "20040307090500" gives
   "07/03/2004 09:05:00". */
KORVEL_API void ZRV_Inv_Date_Time(const char *stored, char *out);

/* Shortens a display date to DD/MM/YY (9 bytes): exactly 10 characters are DD/MM/YYYY, any other
   length is DD/MM/YY. Returns the length of the input. "07/03/2004" gives "07/03/04"
   and 10. */
KORVEL_API int ZRV_Reduc_Date(const char *date, char *out);

/* ---- Clock ---- */

/* Gives the current local date as YYYYMMDD (9 bytes).
   Returns the code of LongToNUM for the last field written, 0 on success. */
KORVEL_API int ZRV_Get_Date_short(char *out);

/* Gives the current local date and minute as YYYYMMDDHHMM (13 bytes). Returns as
   ZRV_Get_Date_short. */
KORVEL_API int ZRV_Get_Date_long(char *out);

/* Gives the current local date and second as YYYYMMDDHHMMSS (15 bytes). Returns as
   ZRV_Get_Date_short. */
KORVEL_API int ZRV_Get_Date_slong(char *out);

/* ---- Calendar ---- */

/* Returns 1 for a leap year, else 0: 1 for 2000, 0 for 1900. */
KORVEL_API int utdately(int year);

/* Returns the days of a month, 28 to 31, or 0 for a month outside 1 to 12. 2004 and 2 give 29. */
KORVEL_API int utdatedm(int year, int month);

/* Returns the day of the week, 0 (Sunday) to 6 (Saturday). 2000, 1 and 1 give 6. */
KORVEL_API int utdatedw(int year, int month, int day);

/* Returns 1 when the number is a date of the years 1800 to 2100, else 0. Of a longer year, only the
   last four digits count. 20000229 gives 1, 19000229 gives 0. */
KORVEL_API int Validate_Date(int date);

/* Returns the date n days later. A month outside 1 to 12 has no days and is stepped over; a result
   that an int cannot hold is 2147483647. 20001231 and 1 give 20010101. */
KORVEL_API int Get_Date_Incr(int date, unsigned int n);

/* Returns the date n days earlier. Whole years are taken off by the length of the calendar year
   before, whatever the month, so that across a leap day dates after February come out one day off.
   Whole months are taken off by their own length and keep the day, so that the result may be a day
   that does not exist: 20010331 less 30 gives 20010229. Validate_Date tells.
   A month above 12 has no days and is stepped over, a month below 1 steps back as January does; a
   result that an int cannot hold is -2147483648. 20000315 less 20 gives 20000224. */
KORVEL_API int Get_Date_Diff(int date, unsigned int n);

/* Returns the minutes from the origin year to a date (YYYYMMDD) and time (HHMM): 1 January of the
   origin year at 00:00 counts 1440. Each year adds its own leap day to the years behind it, that of
   the date's year included from January on and that of the origin year left out: counts agree with
   each other, not with a calendar. A count that an int cannot hold is the nearest that it can. */
KORVEL_API int Min_depuis_org(int date, int time, int origin);

/* ---- Names ---- */

/* Returns the French name of a month 1 to 12, else "Illégal". The bytes of the names are those of
   the DOS Latin code page: é is 0x82. The text is the library's and must not be changed. */
KORVEL_API char *utdatemy(int month);

/* Returns the French name of a day 0 (Dimanche) to 6, else "Illégal"; as utdatemy. */
KORVEL_API char *utdatedn(int day);

/* Returns the first three letters of utdatemy's name, ASCII letters in upper case, in a buffer that
   the next call of utdatemm or utdatedd overwrites. */
KORVEL_API char *utdatemm(int month);

/* Returns the first three letters of utdatedn's name, as utdatemm and in the same buffer. */
KORVEL_API char *utdatedd(int day);

#ifdef __cplusplus
}
#endif

#endif
