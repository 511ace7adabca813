/* SPDX-License-Identifier: MIT */
/* What the dialogs of the application are made of: fields with their labels, one callback for
   changes and one for the check at the end. Texts marked UTF-8 are the application's own; all
   others are CP1252. */
#ifndef FICHE_FORM_H
#define FICHE_FORM_H

/* First identifier of each type: the numbers by which the callbacks know the fields. */
enum {
  kFirstText = 100,
  kFirstInt = 200,
  kFirstNum = 300,
  kFirstDate = 400,
  kFirstBool = 500,
  kFirstPush = 600
};

/* Height of a field's line, and from one line to the next, in dialog units. */
enum { kLine = 12, kPitch = 16 };

/* The place of a line of a group that begins at groupY, in dialog units. */
int formLine(int groupY, int line);

/* How many fields of each type a dialog has. */
typedef struct FormFields {
  int texts, ints, nums, dates, bools, pushes;
} FormFields;

/* The values while the dialog is up; the callbacks may change them. */
typedef struct Form {
  int item; /* the identifier of the field that changed; 0 in the check at the end */
  char **texts;
  int *bools;
  int *ints;
  double *nums;
  int *dates;
  int *redisplay; /* see formShow */
  int room, shown;
} Form;

/* Called when a field has changed to an acceptable value, and for push buttons. */
typedef void (*FormChange)(Form *form);

/* Called when the entry is accepted. Returns why it cannot be (UTF-8), which the user is then told,
   or null. */
typedef const char *(*FormCheck)(const Form *form);

/* Begins a dialog of this size, in dialog units, with these texts of its two buttons (UTF-8).
   Either callback may be null. */
void formBegin(int cx, int cy, FormFields fields, const char *accept, const char *cancel,
               FormChange change, FormCheck check);

/* Decorations; texts are UTF-8. A group is as high as so many lines of fields. */
void formGroup(const char *title, int x, int y, int cx, int lines);
void formLabel(const char *text, int x, int y, int cx);
void formIcon(int x, int y);

/* A decoration whose text is CP1252. */
void formNote(const char *text, int x, int y, int cx);

/* Text field i; the buffer that takes its value has `capacity` bytes. */
void formText(int i, int x, int y, int cx, int rank, const char *text, int capacity, int mandatory);

/* Likewise, cy dialog units high: a text of several lines, never mandatory and empty at first. */
void formLines(int i, int x, int y, int cx, int cy, int rank, int capacity);

/* Pop-up i, never mandatory. Choices of TDB_BUFFERSIZE bytes or more are not copied: they must live
   until the dialog has ended. */
void formPopUp(int i, int x, int y, int cx, int rank, const char *text, char *choices);

/* List i, cy dialog units high, likewise. Nothing is chosen in it at first. */
void formList(int i, int x, int y, int cx, int cy, int rank, char *choices);

/* Push button i; its action, if it needs the window, is given to PushDlgBox_set_fvalid. */
void formPush(int i, const char *label, int x, int y, int cx, int rank);

/* Names a field for screen readers, where no label does or two fields share one. identifier:
   kFirstText + i and the like; the name is UTF-8. */
void formName(int identifier, const char *name);

/* Has a field shown anew: the table's value, or nothing (formClear). identifier: kFirstText + i and
   the like. */
void formShow(Form *form, int identifier);
void formClear(Form *form, int identifier);

/* Text fields in which something that was looked up is shown. */
void formShowText(Form *form, int i, const char *text);

/* Other rows, which must live until the dialog has ended, for list i. None of them is chosen. */
void formShowRows(Form *form, int i, char *rows);

/* Shows the dialog. Returns 1 when the entry was accepted, else 0. */
int formRun(const char *title);

#endif
