/* SPDX-License-Identifier: MIT */
/* Data-entry dialogs: described by exported tables, built, run modally, validated and read back.

   A dialog is described before it is shown: for each field type in use one _param call with the
   number of fields and the first identifier, then per field its place, value and limits; then
   ZRVDlgBoxEx builds and shows it, or ZRVDlgBox shows it in a layout drawn beforehand. The values
   stay in the tables, where the _retrieve functions or the application itself read them afterwards.
   The tables are part of the interface: an application and its callbacks may read and write them at
   any time, also while the dialog is shown.

   Units. Places and sizes are in dialog units; pixels are 2 * x, 2 * cx, 7 * y / 4 and 5 * cy / 4
   (divisions truncate toward zero). The dialog itself is 7 * cy / 4 pixels high.

   Texts are CP1252, NUL-terminated. The character set of the screen is CP1252 but for the seven
   bytes that w2mstr (strings.h) writes: 0x88, 0x8D, 0x8E, 0x8F, 0x90, 0x95 and 0xA1 are à, ç, é, è,
   ê, ï and the degree sign there. A text goes to the screen converted as by w2mstr and comes back
   as by m2wstr, unless a comment says otherwise; one that goes without conversion shows the same.

   Conventions. Every function returns int 0 unless its comment says otherwise. A field index i runs
   from 0 and selects a field of its type; an index below 0, or not below the type's count, does
   nothing and returns 0. A null text or null output pointer does nothing. A _param function
   refuses a count below 0 or above the type's capacity (for text fields also 0): it changes nothing
   and returns -1. Coordinates and ranks are stored as shorts (truncated). Library code never
   follows a count beyond the capacity of its tables, nor a null pointer in them.

   Items, identifiers and ranks. A field has up to three numbers:
   - its item, the place in the dialog: item 1 accepts ("OK"), item 2 cancels, and the fields' items
     follow. A date consists of three items: day, month, year;
   - its identifier, by which callbacks name it: first identifier + i, for dates + 3 * i. It does
     not depend on the rank;
   - its rank, which orders the items: ZRVDlgBoxEx adds the fields by ascending rank, and inside a
     rank in the order text, check box, integer, number, date, push button. A field with a negative
     rank is not added: its item, which a template may have, is its identifier.
   Example: TexteDlgBox_param(2, 100) and DateDlgBox_param(1, 400), text 0 at rank 0, date 0 at
   rank 1, text 1 at rank 2:

     field    rank   items       identifier   Dlg_rkOffset[rank]   Dlg_itemOffset[item]
     text 0   0      3           100          0 - 3 = -3           3 - 100 = -97
     date 0   1      4, 5, 6     400          1 - 4 = -3           -396, -395, -394
     text 1   2      7           101          2 - 7 = -5           7 - 101 = -94

   The two offsets lead from one number to the other: the field of rank r is item
   r - Dlg_rkOffset[r], and item n belongs to the field with the identifier n - Dlg_itemOffset[n].
   For a template (ZRVDlgBox) all offsets are 0.

   One dialog at a time, on the interface thread: the one that made the application's QApplication
   or, where it has none, the first one that asked for a dialog or a message or drew anything. In
   another thread a dialog ends at once as cancelled, after one line on standard error.

   A screen is one that somebody can see: X11 or Wayland. Any other platform of Qt's (offscreen,
   minimal, vnc, eglfs, linuxfb and the like), also of the application's own QApplication, counts as
   no screen, unless the environment variable KORVEL_UNSEEN is 1, which says that it is meant.

   When the X server goes away, all dialogs that are up end as cancelled, with one line on standard
   error, and the later ones end as without a screen. Only in a loop of Qt's that the application
   runs itself does Qt end the process, with a line on standard error and exit status 1. Under
   Wayland Qt always does so, as soon as the compositor goes away. */
#ifndef KORVEL_DIALOGS_H
#define KORVEL_DIALOGS_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Numbers that applications pass ---- */

/* The button pair: its item numbers, and the numbers of its buttons. */
enum { KorvelAcceptItem = 1, KorvelCancelItem = 2 };

/* The rank of a field without one. */
enum { KorvelNoRank = -1 };

/* Modes of IntDlgBox_set and NumDlgBox_set: which values the field accepts. */
enum {
  KorvelAnyValue = 0,
  KorvelNotNegative = 1,
  KorvelPositive = 2,
  KorvelKeepValidation = -1 /* the validation function stays; also for DateDlgBox_set */
};

/* Modes of DateDlgBox_set. */
enum {
  KorvelUncheckedDate = 0, /* any number of 0 and above */
  KorvelCalendarDate = 1   /* a day of the years 1800 to 2100 */
};

/* Types of a static (StaticDlgBox_set_type). */
enum { KorvelGroupBox = -1, KorvelStaticText = 0, KorvelIcon = 1 };

/* The status of intcod_l_date for a number that is no day; codecs.h lists the others. */
enum { KorvelNoDayStatus = 2 };

/* ---- Functions that an application supplies ---- */

/* A function written in C++ may throw: that ends the handling of the key or click that led to it,
   and the dialog goes on. A final callback that throws has not accepted; nor has a validation
   function, whose field is not acceptable. While the dialog is being filled, before it is shown, a
   validation function that throws ends it as cancelled.
   None may leave by longjmp: the dialog would stay on the screen, where nothing answers any more,
   and every further dialog of the process would end as cancelled. */

/* A validation function of an integer or date field. text: what was entered; may be changed in
   place and never lengthened beyond 255 characters. value: the field's slot in its value table.
   Converts the text into the slot and returns 0 when it is acceptable, anything else when not;
   whatever a refusing function stored stays. */
typedef int (*ValidInt_t)(char *text, int *value);

/* The same for a number field. */
typedef int (*ValidNum_t)(char *text, double *value);

/* The action of a push button. window: the dialog's. The result is not used. */
typedef int (*PushAction_t)(WindowRef window);

/* The global callback, called when a field has changed to an acceptable value, a check box was
   toggled or a push button pressed.
   item: the identifier of the field. Then for text fields, check boxes, integers, numbers and
   dates: in-use flag, first identifier, value table, count. The callback may change any table.
   redisplay: room for `capacity` identifiers of fields to bring up to date on the screen: the
   identifier itself shows the table's value, its negative clears the field. A field's flag _bOK
   then says whether what it shows is acceptable, so a value corrected here may enable button 1.
   Push buttons and static texts cannot be named; an identifier that matches no field is skipped.
   capacity: 32 while a dialog runs; 0, and redisplay null, when called through a _global function.
   Returns the number of identifiers written; a negative number means none. */
typedef int (*DlgBoxGlobal_t)(int item, int textInUse, int textFirstItem, char **texts,
                              int textCount, int boolInUse, int boolFirstItem, int *bools,
                              int boolCount, int intInUse, int intFirstItem, int *ints,
                              int intCount, int numInUse, int numFirstItem, double *nums,
                              int numCount, int dateInUse, int dateFirstItem, int *dates,
                              int dateCount, int *redisplay, int capacity);

/* The final callback, called when the user accepts.
   window: the dialog's (through ZRVDlgBox_end: that function's argument). Then for text fields,
   check boxes, integers, numbers and dates: in-use flag, value table, count.
   Returns non-zero to accept, which closes the dialog, 0 to refuse, which keeps it open. */
typedef int (*DlgBoxFinal_t)(WindowRef window, int textInUse, char **texts, int textCount,
                             int boolInUse, int *bools, int boolCount, int intInUse, int *ints,
                             int intCount, int numInUse, double *nums, int numCount, int dateInUse,
                             int *dates, int dateCount);

/* ---- Text fields: at most 20 ---- */

KORVEL_API extern int TDB;            /* 1 while the type is in use */
KORVEL_API extern int TDB_N;          /* number of fields */
KORVEL_API extern int TDB_ID_TEXTE;   /* first identifier */
KORVEL_API extern int TDB_BUFFERSIZE; /* bytes of a slice: 8192 / TDB_N */

/* Place and size in dialog units, and rank. A pop-up is 14 pixels high, whatever TDB_cy says. */
KORVEL_API extern short TDB_x[20];
KORVEL_API extern short TDB_y[20];
KORVEL_API extern short TDB_cx[20];
KORVEL_API extern short TDB_cy[20];
KORVEL_API extern short TDB_rk[20];

KORVEL_API extern int TDB_bInit[20];         /* 1 once the field was given a text */
KORVEL_API extern int TDB_bMand[20];         /* 1: may not be empty */
KORVEL_API extern int TDB_bOK[20];           /* 1: acceptable */
KORVEL_API extern int TDB_bPassw[20];        /* 1: shown as one "*" per character */
KORVEL_API extern int TDB_iCarac[20];        /* longest acceptable text, in characters */
KORVEL_API extern int TDBC[20];              /* 1: a pop-up choice */
KORVEL_API extern int TDBL[20];              /* 1: a list (unless a pop-up) */
KORVEL_API extern char *TDB_pszBuffer[20];   /* the text: a slice of TDB_szBuffer */
KORVEL_API extern char *TDB_PSZLBUFFER[20];  /* the choices: a slice of TDB_SZLBUFFER */
KORVEL_API extern int *TDB_PITABSTOPS[20];   /* a row of TDB_ITABSTOPS; fields 5 to 19: null */
KORVEL_API extern char TDB_szBuffer[8192];   /* TDB_N slices of TDB_BUFFERSIZE bytes */
KORVEL_API extern char TDB_SZLBUFFER[8192];  /* likewise */
KORVEL_API extern int TDB_ITABSTOPS[5][128]; /* each row ends in 0 */

/* Takes n text fields (1 to 20) into use, the first with identifier idFirst. Each is empty,
   mandatory, valid, without place or rank, neither pop-up nor list, and may hold 8192 / n - 1
   characters. Leaves TDB_bPassw and the tab stops as they are. */
KORVEL_API int TexteDlgBox_param(int n, int idFirst);

/* Gives field i its text, cut to TDB_BUFFERSIZE - 1 characters, and marks it as set. */
KORVEL_API int TexteDlgBox_set(int i, const char *text);

/* Place and size in dialog units, and rank (KorvelNoRank: none). A pop-up is 14 pixels high,
   whatever cy says. A text as high as two lines of its font or more, unless it is masked, is
   wrapped at words and scrolls; Return and Tab do in it what they do everywhere, and a line end
   that is pasted becomes a blank. */
KORVEL_API int TexteDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk);

/* Lowers the longest acceptable text of field i to n characters (below 0 counts as 0). The limit is
   never raised: a larger n is ignored. It decides validity only and cuts nothing. */
KORVEL_API int TexteDlgBox_set_ncarac(int i, int n);

/* Makes field i a pop-up and copies its choices, cut to TDB_BUFFERSIZE - 1 characters, into its own
   slice: one string, separated by "+" or "," (by "$" for a field that is to become a list). They
   are shown only if the field was also given a text, which may be empty (TexteDlgBox_set). */
KORVEL_API int TexteDlgBox_set_liste(int i, const char *choices);

/* Turns a pop-up into a list, or a list into a pop-up; does nothing to other fields.
   A list shows no row as the chosen one when the dialog comes up, whatever text its field has: with
   a text given to it (TexteDlgBox_set) button 1 accepts a value that nobody has seen. Give a list
   field the empty text, so that a mandatory one waits for a choice.
   A list whose string is empty has no rows; a pop-up has one empty choice then. */
KORVEL_API int TexteDlgBox_change_liste(int i);

/* Has field i use the caller's own choices, not copied: they must live until the run has ended. */
KORVEL_API int TexteDlgBox_set_liste_buffer(int i, char *buffer);

/* Copies the text of field i to dst, only when it is shorter than size; else copies nothing. */
KORVEL_API int TexteDlgBox_retrieve(int i, char *dst, int size);

/* Copies the choices of field i to dst, which must have room for them all. */
KORVEL_API int TexteDlgBox_retrieve_liste(int i, char *dst);

/* on non-zero: field i may not be empty. 0: it may, and is marked valid. */
KORVEL_API int TexteDlgBox_mandatory(int i, int on);

/* on non-zero: field i shows one "*" per character; 0: its text. While a masked field is edited,
   a "*" at a position keeps the character that was there; a "*" after the old text's end ends
   the text. */
KORVEL_API int TexteDlgBox_password(int i, int on);

/* Copies tab positions, ended by 0, at most 127, into the field's row, which then ends in 0. Fields
   5 to 19 have no row: nothing is copied. The positions are kept for the application alone:
   lists do not use them. */
KORVEL_API int TexteDlgBox_set_tabstops(int i, const int *stops);

/* Returns 1 when field i is marked acceptable, else 0. */
KORVEL_API int TexteDlgBox_get_valid(int i);

/* ---- Check boxes: at most 64 ---- */

KORVEL_API extern int BDB;            /* 1 while the type is in use */
KORVEL_API extern int BDB_N;          /* number of fields */
KORVEL_API extern int BDB_ID_FLAG;    /* first identifier */
KORVEL_API extern int BDB_BUFFERSIZE; /* bytes of a label: 48 */

/* Place and size in dialog units, and rank. */
KORVEL_API extern short BDB_x[64];
KORVEL_API extern short BDB_y[64];
KORVEL_API extern short BDB_cx[64];
KORVEL_API extern short BDB_cy[64];
KORVEL_API extern short BDB_rk[64];

KORVEL_API extern int BDB_bFlags[64];      /* the value: 0 or 1 */
KORVEL_API extern char *BDB_pszBuffer[64]; /* the label: a slice of BDB_szBuffer */
KORVEL_API extern char BDB_szBuffer[3072]; /* 64 slices of BDB_BUFFERSIZE bytes */

/* Takes n check boxes (0 to 64) into use: off, without label, place or rank. */
KORVEL_API int BoolDlgBox_param(int n, int idFirst);

/* Sets the value, stored as given; above 0 counts as on, anything else as off. */
KORVEL_API int BoolDlgBox_set(int i, int value);

/* Label (cut to 47 characters), place and size in dialog units, rank. A null label leaves the
   label as it was. */
KORVEL_API int BoolDlgBox_set_geo(int i, const char *label, int x, int y, int cx, int cy, int rk);

/* Stores the value in *out. */
KORVEL_API int BoolDlgBox_retrieve(int i, int *out);

/* ---- Integer fields: at most 128 ---- */

KORVEL_API extern int IDB;        /* 1 while the type is in use */
KORVEL_API extern int IDB_N;      /* number of fields */
KORVEL_API extern int IDB_ID_INT; /* first identifier */

/* Place and size in dialog units, and rank. */
KORVEL_API extern short IDB_x[128];
KORVEL_API extern short IDB_y[128];
KORVEL_API extern short IDB_cx[128];
KORVEL_API extern short IDB_cy[128];
KORVEL_API extern short IDB_rk[128];

KORVEL_API extern int IDB_bInit[128];     /* 1 once the field was given a value */
KORVEL_API extern int IDB_bMand[128];     /* 1: may not be empty */
KORVEL_API extern int IDB_bOK[128];       /* 1: acceptable */
KORVEL_API extern int IDB_bPassw[128];    /* 1: shown as one "*" per character */
KORVEL_API extern int IDB_iInts[128];     /* the value */
KORVEL_API extern short IDB_lPassw[128];  /* length of the text last seen in a masked field */
KORVEL_API extern ValidInt_t vi_tab[128]; /* the validation functions */

/* Where they are looked up: initially vi_tab; may be pointed to a table of 128 of the
   application's own. */
KORVEL_API extern ValidInt_t *vi;

/* Takes n integer fields (0 to 128) into use: value 0, not set, mandatory, valid, not masked,
   without place or rank, validated by intcod_i. In a template a field that was never set and may
   be empty keeps the text drawn in it. */
KORVEL_API int IntDlgBox_param(int n, int idFirst);

/* Gives field i its value and marks it as set. mode: KorvelAnyValue has it validated by intcod_i,
   KorvelNotNegative by intcod_i_sup0, KorvelPositive by intcod_i_ssup0; any other mode keeps the
   validation function. */
KORVEL_API int IntDlgBox_set(int i, int value, int mode);

/* Place and size in dialog units, and rank (KorvelNoRank: none). */
KORVEL_API int IntDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk);

/* Has field i validated by a function of the application's own. */
KORVEL_API int IntDlgBox_set_fvalid(int i, ValidInt_t function);

/* Stores the value in *out. */
KORVEL_API int IntDlgBox_retrieve(int i, int *out);

/* on non-zero: field i may not be empty. 0: it may, and is marked valid. */
KORVEL_API int IntDlgBox_mandatory(int i, int on);

/* on non-zero: field i shows one "*" per character; 0: its digits. While a masked field is edited,
   each "*" stands for a digit of the value, counted from the end; removing is taken to have
   removed the last one. */
KORVEL_API int IntDlgBox_password(int i, int on);

/* Returns 1 when field i is marked acceptable, else 0. */
KORVEL_API int IntDlgBox_get_valid(int i);

/* ---- Number fields: at most 128 ---- */

KORVEL_API extern int NDB;        /* 1 while the type is in use */
KORVEL_API extern int NDB_N;      /* number of fields */
KORVEL_API extern int NDB_ID_NUM; /* first identifier */

/* Place and size in dialog units, and rank. */
KORVEL_API extern short NDB_x[128];
KORVEL_API extern short NDB_y[128];
KORVEL_API extern short NDB_cx[128];
KORVEL_API extern short NDB_cy[128];
KORVEL_API extern short NDB_rk[128];

KORVEL_API extern int NDB_bInit[128];     /* 1 once the field was given a value */
KORVEL_API extern int NDB_bMand[128];     /* 1: may not be empty */
KORVEL_API extern int NDB_bOK[128];       /* 1: acceptable */
KORVEL_API extern double NDB_dNums[128];  /* the value */
KORVEL_API extern int NDB_iChiff[128];    /* decimals shown */
KORVEL_API extern ValidNum_t vf_tab[128]; /* the validation functions */

/* Where they are looked up: initially vf_tab; may be pointed to a table of 128 of the
   application's own. */
KORVEL_API extern ValidNum_t *vf;

/* Takes n number fields (0 to 128) into use: value 0.0 with 5 decimals, not set, mandatory, valid,
   without place or rank, validated by realcod_d. In a template a field that was never set keeps the
   text drawn in it. */
KORVEL_API int NumDlgBox_param(int n, int idFirst);

/* Gives field i its value and marks it as set. mode: KorvelAnyValue has it validated by realcod_d,
   KorvelNotNegative by realcod_d_sup0, KorvelPositive by realcod_d_ssup0; any other mode keeps the
   validation function. Showing a field rounds its value to the decimals shown, as its validation
   function reads the shown text back. */
KORVEL_API int NumDlgBox_set(int i, double value, int mode);

/* Sets the decimals shown; n below 0 counts as 0. */
KORVEL_API int NumDlgBox_set_nchiff(int i, int n);

/* Place and size in dialog units, and rank (KorvelNoRank: none). */
KORVEL_API int NumDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk);

/* Has field i validated by a function of the application's own. */
KORVEL_API int NumDlgBox_set_fvalid(int i, ValidNum_t function);

/* Stores the value in *out. */
KORVEL_API int NumDlgBox_retrieve(int i, double *out);

/* on non-zero: field i may not be empty. 0: it may, and is marked valid. */
KORVEL_API int NumDlgBox_mandatory(int i, int on);

/* Returns 1 when field i is marked acceptable, else 0. */
KORVEL_API int NumDlgBox_get_valid(int i);

/* ---- Date fields: at most 20 ---- */

/* A date is entered as three numbers. While one of them is 0, negative or (in an optional field)
   empty, the date counts as acceptable, but its validation function is not called and the value
   stays as it was: with 0 for the day, say, button 1 accepts the date that was stored before. */

KORVEL_API extern int DDB;   /* 1 while the type is in use */
KORVEL_API extern int DDB_N; /* number of fields */

/* First identifier; a date takes three. The two identifiers just below it also count as date 0: no
   push button should have them. */
KORVEL_API extern int DDB_ID_DATE;

/* Place and height in dialog units, and rank. cx is not used: the three items have widths of their
   own. */
KORVEL_API extern short DDB_x[20];
KORVEL_API extern short DDB_y[20];
KORVEL_API extern short DDB_cx[20];
KORVEL_API extern short DDB_cy[20];
KORVEL_API extern short DDB_rk[20];

KORVEL_API extern int DDB_bInit[20];     /* 1 once the field was given a value */
KORVEL_API extern int DDB_bMand[20];     /* 1: may not be empty */
KORVEL_API extern int DDB_bOK[20];       /* 1: acceptable */
KORVEL_API extern int DDB_lDates[20];    /* the value: yyyymmdd */
KORVEL_API extern ValidInt_t vd_tab[20]; /* the validation functions */

/* Where they are looked up: initially vd_tab; may be pointed to a table of 20 of the
   application's own. */
KORVEL_API extern ValidInt_t *vd;

/* Takes n date fields (0 to 20) into use: value 0, not set, mandatory, valid, without place or
   rank, validated by intcod_l. */
KORVEL_API int DateDlgBox_param(int n, int idFirst);

/* Gives field i its value and marks it as set. mode: KorvelUncheckedDate has it validated by
   intcod_l_sup0, KorvelCalendarDate by intcod_l_date; any other mode keeps the validation
   function. */
KORVEL_API int DateDlgBox_set(int i, int yyyymmdd, int mode);

/* Place in dialog units and height, and rank (KorvelNoRank: none). cx is kept and not used. */
KORVEL_API int DateDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk);

/* Has field i validated by a function of the application's own, which is given the text
   yyyymmdd. */
KORVEL_API int DateDlgBox_set_fvalid(int i, ValidInt_t function);

/* Stores the value, yyyymmdd, in *out. */
KORVEL_API int DateDlgBox_retrieve(int i, int *out);

/* on non-zero: field i may not be empty. 0: it may, and is marked valid. */
KORVEL_API int DateDlgBox_mandatory(int i, int on);

/* Returns 1 when field i is marked acceptable, else 0. */
KORVEL_API int DateDlgBox_get_valid(int i);

/* Validates the date yyyymmdd in `text`, which is trimmed in place.
   Returns 0 and stores the value when it is a day of the years 1800 to 2100, else
   1 to 4  the code of intcod_l, nothing being stored,
   1  KorvelRefusedStatus: a value below 0, stored all the same,
   2  KorvelNoDayStatus: a number that is no day of those years, stored all the same.
   The text tells which 1 or 2 it is: it is empty after KorvelEmptyStatus, a sign alone after
   KorvelSignOnlyStatus, and holds a digit where a value was stored.
     intcod_l_date("20230228 ", value) -> 0, text = "20230228", value = 20230228
     intcod_l_date("20230230", value) -> KorvelNoDayStatus, value = 20230230
     intcod_l_date("30/02", value) -> KorvelNoDigitStatus */
KORVEL_API int intcod_l_date(char *text, int *value);

/* ---- Push buttons: at most 10 ---- */

KORVEL_API extern int PDB;            /* 1 while the type is in use */
KORVEL_API extern int PDB_N;          /* number of fields */
KORVEL_API extern int PDB_ID_PUSH;    /* first identifier */
KORVEL_API extern int PDB_BUFFERSIZE; /* bytes of a label: 16 */

/* Place and size in dialog units, and rank. */
KORVEL_API extern short PDB_x[10];
KORVEL_API extern short PDB_y[10];
KORVEL_API extern short PDB_cx[10];
KORVEL_API extern short PDB_cy[10];
KORVEL_API extern short PDB_rk[10];

KORVEL_API extern char *PDB_pszBuffer[10]; /* the label: a slice of PDB_szBuffer */
KORVEL_API extern char PDB_szBuffer[160];  /* 10 slices of PDB_BUFFERSIZE bytes */
KORVEL_API extern PushAction_t vp_tab[10]; /* the actions */

/* Where they are looked up: initially vp_tab; may be pointed to a table of 10 of the
   application's own. */
KORVEL_API extern PushAction_t *vp;

/* Takes n push buttons (0 to 10) into use: without label, action, place or rank. */
KORVEL_API int PushDlgBox_param(int n, int idFirst);

/* Label (cut to 15 characters), place and size in dialog units, rank. A null label leaves the
   label as it was. The label goes to the screen without conversion. */
KORVEL_API int PushDlgBox_set_geo(int i, const char *label, int x, int y, int cx, int cy, int rk);

/* Sets the action, or none (null). The global callback is called after it, and without one too. */
KORVEL_API int PushDlgBox_set_fvalid(int i, PushAction_t function);

/* ---- Static texts, group boxes and icons: at most 128 ---- */

KORVEL_API extern int SDB;            /* 1 while the type is in use */
KORVEL_API extern int SDB_N;          /* number of statics */
KORVEL_API extern int SDB_BUFFERSIZE; /* bytes of a text: 512 */

/* Place and size in dialog units. */
KORVEL_API extern short SDB_x[128];
KORVEL_API extern short SDB_y[128];
KORVEL_API extern short SDB_cx[128];
KORVEL_API extern short SDB_cy[128];

KORVEL_API extern short SDB_type[128];      /* as given to StaticDlgBox_set_type */
KORVEL_API extern char *SDB_pszBuffer[128]; /* the text: a slice of SDB_szBuffer */
KORVEL_API extern char SDB_szBuffer[65536]; /* 128 slices of SDB_BUFFERSIZE bytes */

/* Takes n statics (0 to 128) into use: no text, no place, KorvelStaticText. They are no items and
   have no rank. */
KORVEL_API int StaticDlgBox_param(int n);

/* Sets the text, cut to 511 characters. Building the dialog converts it in place to the character
   set of the screen: set it again for a further dialog. */
KORVEL_API int StaticDlgBox_set(int i, const char *text);

/* Place and size in dialog units. */
KORVEL_API int StaticDlgBox_set_geo(int i, int x, int y, int cx, int cy);

/* Sets what the static is.
   type: KorvelGroupBox, or any below 0: a group box titled with the text, 1.4 times as high as cy
   says. KorvelStaticText: the text, left-aligned and wrapped at words, in at least 15 pixels of
   height. KorvelIcon, or any above 0: the icon icons/2 of the resource folder (whatever the type),
   in 2 * cx by 2 * cy pixels. */
KORVEL_API int StaticDlgBox_set_type(int i, int type);

/* ---- Names for screen readers ---- */

/* Names a field for screen readers, in dialogs that are built and in templates, where the screen
   does not: without a name a field is told by the text beside or above it, else by the title of the
   group box around it. The three parts of a date are told as the name with "jour", "mois" and
   "année". Nothing that is seen changes.
   identifier: of a field in use, any of the three for a date; of two fields with one identifier the
   first in the order text, check box, integer, number, date, push button is named. text: of any
   length; empty takes the name back. Named again, a field has the last name. A name lasts until the
   run has ended or the type's _param is called again.
   Returns 1; 0, with nothing changed, for an identifier that no field in use has, for null, while a
   dialog runs and without memory. */
KORVEL_API int KorvelItemName(int identifier, const char *text);

/* ---- Title, size, background and the button pair ---- */

/* These settings, unlike the field types, stay in force for later dialogs; of them only the flag
   HDB is reset at the end of a run. */

KORVEL_API extern int HDB;                /* 1 once a title is set */
KORVEL_API extern char HDB_szHeader[128]; /* the title */

/* Sets the title, cut to 127 characters. It overrides the one given to ZRVDlgBoxEx. */
KORVEL_API int TitreDlgBox_set(const char *text);

/* Copies the title to dst, only when it is shorter than size; else copies nothing. */
KORVEL_API int TitreDlgBox_retrieve(char *dst, int size);

KORVEL_API extern int LDB;    /* 1 once a size is set */
KORVEL_API extern int LDB_cx; /* width and height of the dialog, in dialog units; ZRVDlgBoxEx */
KORVEL_API extern int LDB_cy; /* overwrites both with pixels, so set them again for each dialog */

KORVEL_API extern int FDB;             /* 1 once a background colour is set */
KORVEL_API extern RGBColor FDB_bkgcol; /* kept for the application: dialogs built from the */
KORVEL_API extern int FDB_hbrbkg;      /* tables have the desktop's own background */

/* Sets the dialog's size in dialog units: it is shown with 2 * cx by 7 * cy / 4 pixels (140 and 70:
   280 by 122). Without a width or height, or with a negative one, it is shown with room for its
   button pair. No side is shown longer than 16384 pixels; along a side cut to that, items that
   would lie outside are placed at the edge. A dialog larger than the free area of the screen
   scrolls, with the button pair below the part that does; the size in the tables stays whole. */
KORVEL_API int TailleDlgBox_set(int cx, int cy);

/* Records a background colour (see FDB_bkgcol). */
KORVEL_API int ColorDlgBox_bkg(RGBColor colour);

KORVEL_API extern char OK_sz1[16];     /* text of button 1, initially "OK"; empty: "OK" is shown */
KORVEL_API extern char OK_sz2[16];     /* text of button 2, initially "Annuler"; likewise */
KORVEL_API extern char OK_sz1_bak[16]; /* the texts before the last change */
KORVEL_API extern char OK_sz2_bak[16]; /* likewise */
KORVEL_API extern int OK_def;          /* the default button, 1 or 2; initially 1 */

/* Kept for the application: ZRVDlgBoxEx places the pair at the dialog's foot, without a shadow. */
KORVEL_API extern int OK_x;
KORVEL_API extern int OK_y;
KORVEL_API extern int OK_xt;
KORVEL_API extern int OK_yt;
KORVEL_API extern int OK_shadow;
KORVEL_API extern int OK_shadow_dx;
KORVEL_API extern int OK_shadow_dy;
KORVEL_API extern RGBColor OK_shadow_c;

/* Sets OK_x and OK_y. */
KORVEL_API int BOKDlgBox_set_geo(int x, int y);

/* Sets OK_xt and OK_yt. */
KORVEL_API int BOKDlgBox_pos(int x, int y);

/* Keeps the texts of both buttons in OK_sz1_bak and OK_sz2_bak, then sets them, each cut to 15
   characters. Nine characters or more in either make both buttons wider. A null text leaves that
   button's text as it was. Both go to the screen without conversion. */
KORVEL_API int BOKDlgBox_textes(const char *text1, const char *text2);

/* Brings back the texts kept by the last BOKDlgBox_textes, one level only. */
KORVEL_API int BOKDlgBox_textes_reset(void);

/* Makes button n (KorvelAcceptItem or KorvelCancelItem) the default button; any other n is ignored.
 */
KORVEL_API int BOKDlgBox_def(int n);

/* Makes button 1 the default button. */
KORVEL_API int BOKDlgBox_def_reset(void);

/* Records a shadow: offsets and colour, and OK_shadow = 1. */
KORVEL_API int BOKDlgBox_shadow(int dx, int dy, RGBColor colour);

/* ---- Callbacks ---- */

/* The callbacks of the next run; every end of a run sets them back to the two _nul functions. */
KORVEL_API extern DlgBoxGlobal_t DlgBoxGlobal_fonct;
KORVEL_API extern DlgBoxFinal_t DlgBoxFinal_fonct;

/* The error text last recorded by a final callback; not reset by the end of a run. */
KORVEL_API extern char DlgBoxFinal_szErr[256];

/* Means "no global callback" in DlgBoxGlobal_fonct, as null does, and returns 0. Never called
   through DlgBoxGlobal_fonct, whose type it does not have. */
KORVEL_API int DlgBoxGlobal_nul(void);

/* Sets the global callback. */
KORVEL_API int DlgBoxGlobal_set(DlgBoxGlobal_t callback);

/* Means "no final callback" in DlgBoxFinal_fonct, likewise, and returns 1 (accept). */
KORVEL_API int DlgBoxFinal_nul(void);

/* Sets the final callback. */
KORVEL_API int DlgBoxFinal_set(DlgBoxFinal_t callback);

/* Records an error text, cut to 255 characters; null leaves the last one. Returns
   DlgBoxFinal_szErr. */
KORVEL_API char *DlgBoxFinal_Erreur_set(const char *text);

/* Returns DlgBoxFinal_szErr. */
KORVEL_API char *DlgBoxFinal_Erreur(void);

/* Records an error text as DlgBoxFinal_Erreur_set does, then shows it whole in front of the window
   owner (a final callback is given the dialog's) as MessageBox does, and returns what that returns
   (messages.h: text, caption, flags, results). Shows nothing and returns 0 when owner is null. */
KORVEL_API int DlgBoxFinal_MessageBox(WindowRef owner, const char *text, const char *caption,
                                      int flags);

/* Calls the global callback for field i of the type, with capacity 0; its result is ignored. */
KORVEL_API int TexteDlgBox_global(int i);
KORVEL_API int BoolDlgBox_global(int i);
KORVEL_API int IntDlgBox_global(int i);
KORVEL_API int NumDlgBox_global(int i);
KORVEL_API int DateDlgBox_global(int i);

/* As TexteDlgBox_global, but calls `callback` unless it is null. */
KORVEL_API int TexteDlgBox_global_ex(int i, DlgBoxGlobal_t callback);

/* ---- Running a dialog ---- */

/* The dialog of the current run; null while none is up. Set by the library only. */
KORVEL_API extern DialogRef DlgBox_hDlg;

/* Numbering, filled by ZRVDlgBoxEx while it adds items (the example at the top of this header): the
   identifier of item n is n - Dlg_itemOffset[n], the item of rank r is r - Dlg_rkOffset[r]. Fields
   that share a rank are all placed; the rank leads to the last of them. */
KORVEL_API extern int Dlg_itemOffset[128];
KORVEL_API extern int Dlg_rkOffset[128];

/* Dialog units to pixels, truncating toward zero: 2 * v, 2 * v, 7 * v / 4 and 5 * v / 4, each cut
   to 32 bits.
     Dlg_CoefX(-3) -> -6
     Dlg_CoefCX(-3) -> -6
     Dlg_CoefY(-3) -> -5
     Dlg_CoefCY(-3) -> -3 */
KORVEL_API int Dlg_CoefX(int x);
KORVEL_API int Dlg_CoefCX(int cx);
KORVEL_API int Dlg_CoefY(int y);
KORVEL_API int Dlg_CoefCY(int cy);

/* Builds the dialog described by the tables, centred on `parent` (null: on the active window, and
   where there is none on the screen), shows it and runs it to its end.
   title: at most 255 characters are shown; a title set with TitreDlgBox_set takes its place.

   At first a mandatory field that was never given a value is not acceptable; a text field then
   keeps its flag as it is. Values given are checked, which may clear a flag and never sets one.
   Each change of a field is stored at once, for an integer, number or date by its validation
   function, and its flag _bOK updated. An optional integer or number field that was emptied is
   acceptable and keeps its value; so do some dates (see the date fields). Button 1 is enabled only
   while the flags of all text, integer, number and date fields in use are 1; an acceptable change
   then calls the global callback. A text that is longer than its slice is stored cut and is not
   acceptable. Button 1, or a double click in a list, calls the final callback. A double click that
   it accepts still stores the row and, when the field is acceptable, calls the global callback
   before the dialog closes. When the dialog is made, the port of its window becomes the current one
   (desktop.h); it disappears with the dialog.

   Alt with a letter, underlined while Alt is held, presses a push button or clicks a check box. It
   is the first letter of the label, without its accent, that no label before it has; the button
   pair comes first, and a letter that a form marks with '&' is as it is there.

   Returns 1 when the entry was accepted, 0 when it was cancelled (button 2, Escape, the window's
   close box). Either end resets the in-use flags of all field types and HDB to 0 and both
   callbacks to the _nul functions; values, counts and flags stay. 0 with the same reset, after one
   line on standard error, also without a screen, and for a description that would need an item or
   a rank of 128 or more (nothing is then shown, and LDB_cx and LDB_cy stay as they were). 0, with
   nothing touched, while a dialog is up already. */
KORVEL_API int ZRVDlgBoxEx(const char *title, WindowRef parent);

/* Runs the dialog whose layout is the template `name`: the file dialogs/<name>.ui of the resource
   folder (szResources in desktop.h), a form drawn with Qt Designer. In the form a widget's dynamic
   property `item` (an int) is its item number: item 1 accepts, item 2 cancels, and the fields'
   items are given by their tables: without a rank the identifier, with rank r item r; a date takes
   three items. Push buttons, check boxes and list widgets are control items, combo boxes
   pop-ups, line edits and plain text edits editable text. All else is decoration and stays as
   drawn, and so do titles, fonts, style sheets, layouts, the pages of tab widgets, scroll areas and
   the order of the Tab key; the window's title is the form's unless TitreDlgBox_set gave one.
   Return presses the push button drawn as the default one, else item 1. A number of a label or a
   group box is for the form's reader; one of a layout or of the window is not looked at.
   Connections drawn in the form work where they enable, show or focus a widget, or set one that is
   no item; none reaches the window and items 1 and 2. A form loads and runs nothing else: widgets
   of plugins are plain ones, a style sheet that names a file (url, @import) or sets properties
   (qproperty-) is left out, a rich text with a picture is shown as its words, and a label's picture
   is a file of the resource folder.
   Choices of a list string come after the choices that the form has, rows before the form's rows.

   Sets all entries of Dlg_itemOffset and Dlg_rkOffset to 0 and then behaves as ZRVDlgBoxEx, with
   the same results; the global callback is given the identifier of a date whichever of its three
   items changed. 0 at once, with nothing touched, for null, while a dialog is up already, and,
   after one line on standard error, when there is no such template (a name with a '/' names none).
   0 with the reset of a cancelled dialog, after one line on standard error, without a screen and
   for a form that cannot be read, lacks item 1 or 2 or has a number twice. For a mandatory field
   whose item the form lacks there is one line on standard error; the dialog is shown. */
KORVEL_API int ZRVDlgBox(const char *name);

/* Runs a built dialog to its end and disposes of it, as ZRVDlgBoxEx and ZRVDlgBox do; results as
   for ZRVDlgBoxEx. Applications have no use for it: DlgBox_hDlg is running whenever they see it.
   For null, for a dialog that runs already and for anything else it returns 0 and does nothing. */
KORVEL_API int DlgBoxFunc(DialogRef dialog);

/* ---- Changing fields while the dialog is up ---- */

/* For callbacks and actions. Each does nothing while no dialog runs, for a type that is not in use
   and for an index out of range, and returns 0. Button 1 follows the flags when the callback or
   action has returned. */

/* Puts a text, cut to TDB_BUFFERSIZE - 1 characters, into text field i and onto its item: an edit
   item shows it (masked: as stars); a pop-up chooses the last choice of its list string that is
   equal to it and keeps its choice when there is none; a list shows what it showed. Clears the flag
   TDB_bOK when the text is not acceptable and never sets it: a field that was not acceptable stays
   so until it is edited, redisplayed or validated. */
KORVEL_API int ZRVDlgBox_texte_set(int i, const char *text);

/* Builds the choices of pop-up field i, or the rows of list field i, anew from its list string,
   which stays as it is. A pop-up then shows no choice, a list no chosen row. Rows go to the screen
   without conversion. The field's text and flag stay, so button 1 may accept a value that nobody
   sees: put the empty text in with ZRVDlgBox_texte_set where that is not meant. */
KORVEL_API int ZRVDlgBox_texte_set_liste(int i);

/* Puts a text onto the item of number field i and hands it to the validation function, which stores
   the value; the flag NDB_bOK says whether it was acceptable. An empty text of a mandatory field is
   not handed over and not acceptable. */
KORVEL_API int ZRVDlgBox_num_set(int i, const char *text);

/* Change nothing and return 0. */
KORVEL_API int ZRVDlgBox_bool_set(int i, int value);
KORVEL_API int ZRVDlgBox_int_set(int i, int value);

/* ---- Without a dialog on the screen ---- */

/* Validates every text, integer, number and date field in use from its stored value, setting its
   flag _bOK. A field never set is valid exactly when it is not mandatory. Values go through their
   shown text and back, so a number is left rounded to its decimals (NDB_iChiff).
   Returns 1 when all are valid (or none is in use), else 0. */
KORVEL_API int ZRVDlgBox_valid(void);

/* Calls the final callback with `first` as its first argument, then resets in-use flags and
   callbacks as the end of a run does. Returns the callback's result. */
KORVEL_API int ZRVDlgBox_end(int first);

/* ---- The choice of practitioners ---- */

/* Most practitioners that SelectMT offers; further lines of the table are left out. */
enum { MAX_LIGNES = 4096 };

/* The entries of the call of SelectMT that runs: nbase slots of 80 bytes, each a NUL-terminated
   code, a tab and a name, in the order of chcomp while the dialog is shown. Owned by the library;
   null outside a call. */
KORVEL_API extern char *liste_base;
KORVEL_API extern int nbase;

/* Points to the address of the rows that the dialog's list shows, joined by '$'; that address is
   null outside a call. */
KORVEL_API extern char **liste;

/* The result of the last call of SelectMT. */
KORVEL_API extern char sz_MTliste[256];

/* Lets the user choose a practitioner of the table "MT.par": a list of code and name, which
   initials narrow as they are typed (case counts; none match no entry).
   dirTables: folder of the table, a colon path; set as by setDirTables. The first two arguments are
   not used.
   Returns sz_MTliste: the chosen entry with ';' for its tab; empty when the user cancelled, when
   the table has no data line or is missing, when a dialog is up, and when the entry has more than
   255 characters. Without memory, what it held before. */
KORVEL_API char *SelectMT(void *a, void *b, const char *dirTables);

/* Adds an entry to liste_base, unless MAX_LIGNES are there: the first field of the line (left out
   if it has 80 characters or more), a tab, and the second one (the first again if there is no
   second; left out where it does not fit). line: as a TableLine_t receives it. Does nothing outside
   a call of SelectMT. */
KORVEL_API void listeNoms(char *line);

/* The global callback of the dialog: has the list show the entries that begin with the initials,
   and clears the selection. Returns the number of identifiers in redisplay, 0 or 1. */
KORVEL_API int DlgBoxGlobal_BAS(int item, int textInUse, int textFirstItem, char **texts,
                                int textCount, int boolInUse, int boolFirstItem, int *bools,
                                int boolCount, int intInUse, int intFirstItem, int *ints,
                                int intCount, int numInUse, int numFirstItem, double *nums,
                                int numCount, int dateInUse, int dateFirstItem, int *dates,
                                int dateCount, int *redisplay, int capacity);

#ifdef __cplusplus
}
#endif

#endif
