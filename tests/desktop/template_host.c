/* SPDX-License-Identifier: MIT */
/* template_host <folder> <scenario>: an application that runs the template "visite" of the resource
   folder, and writes what happened: "hit <identifier>" for each call of the global callback,
   "final <answer>", "result <n>" at the end of each run, then the values as dialog_host does, and
   "end <number of the run>".

   Scenarios: plain; refuse (the final callback refuses the text "non" with a message box);
   changes (what is typed into the number changes the other fields); three (three runs in a row);
   missing (of a template that is not there); untouched (opens with every high byte in the name);
   nested (the action asks for two further dialogs and then shows a message box).

   The action also writes whether the port of the dialog's window is the current one, the end of a
   run whether any is: "port <0 or 1>". */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

/* Items of the template. */
enum { kName = 10, kChoice = 11, kList = 12, kNumber = 20, kDate = 30, kBox = 40, kAction = 50 };

static const char *scenario;

static int is(const char *name) { return strcmp(scenario, name) == 0; }

static void print(const char *label, const char *text) {
  printf("%s ", label);
  for (; *text; text++) {
    unsigned char byte = (unsigned char)*text;
    if (byte >= 0x20 && byte < 0x7F) {
      putchar(byte);
    } else {
      printf("\\x%02X", byte);
    }
  }
  putchar('\n');
  fflush(stdout);
}

static void changeOthers(double number) {
  if (number < 10) {
    ZRVDlgBox_texte_set(0, "P\xE9niche");
    TexteDlgBox_set_liste(1, "neuf+No\xEBl");
    ZRVDlgBox_texte_set_liste(1);
    ZRVDlgBox_texte_set(1, "No\xEBl");
  } else {
    ZRVDlgBox_texte_set(0, "");
  }
}

static int recordHit(int item, int t, int t0, char **texts, int tn, int b, int b0, int *bools,
                     int bn, int in, int i0, int *ints, int intn, int n, int n0, double *nums,
                     int nn, int d, int d0, int *dates, int dn, int *redisplay, int capacity) {
  (void)t, (void)t0, (void)texts, (void)tn, (void)b, (void)b0, (void)bools, (void)bn, (void)in;
  (void)i0, (void)ints, (void)intn, (void)n, (void)n0, (void)nn, (void)d, (void)d0;
  (void)dates, (void)dn, (void)redisplay, (void)capacity;
  if (is("changes") && item == kNumber) changeOthers(nums[0]);
  printf("hit %d\n", item);
  fflush(stdout);
  return 0;
}

static int refuseNon(WindowRef window, int t, char **texts, int tn, int b, int *bools, int bn,
                     int i, int *ints, int in, int n, double *nums, int nn, int d, int *dates,
                     int dn) {
  (void)t, (void)tn, (void)b, (void)bools, (void)bn, (void)i, (void)ints, (void)in;
  (void)n, (void)nums, (void)nn, (void)d, (void)dates, (void)dn;
  int accept = strcmp(texts[0], "non") != 0;
  printf("final %d\n", accept);
  fflush(stdout);
  if (!accept) DlgBoxFinal_MessageBox(window, "Pas \"non\"", "Refus", 0);
  return accept;
}

static CGrafPtr currentPort(void) {
  CGrafPtr port = 0;
  GetPort(&port);
  return port;
}

static int action(WindowRef window) {
  if (is("nested")) {
    printf("nested %d %d\n", ZRVDlgBox("visite"), ZRVDlgBoxEx("Autre", 0));
    fflush(stdout);
    MessageBox(window, "Un seul dialogue", "Note", 0);
  }
  printf("action %d\nport %d\n", window != 0,
         currentPort() && currentPort() == GetWindowPort(window));
  fflush(stdout);
  return 0;
}

static void setAllHighBytes(void) {
  char text[129] = "";
  for (int i = 0; i < 128; i++) text[i] = (char)(0x80 + i);
  TexteDlgBox_set(0, text);
}

static void define(void) {
  TexteDlgBox_param(3, kName);
  IntDlgBox_param(0, 0);
  NumDlgBox_param(1, kNumber);
  DateDlgBox_param(1, kDate);
  BoolDlgBox_param(1, kBox);
  PushDlgBox_param(1, kAction);
  TexteDlgBox_set(0, "");
  TexteDlgBox_set_liste(1, "Madame+Ma\xEEtre");
  TexteDlgBox_set(1, "Ma\xEEtre");
  TexteDlgBox_set_liste(2, "F\xE9minin$Masculin");
  TexteDlgBox_change_liste(2);
  TexteDlgBox_set(2, "");
  TexteDlgBox_mandatory(2, 0);
  NumDlgBox_set_nchiff(0, 2);
  NumDlgBox_set(0, 1.5, 0);
  DateDlgBox_set(0, 20000229, 1);
  PushDlgBox_set_fvalid(0, action);
  DlgBoxGlobal_set(recordHit);
  if (is("refuse")) DlgBoxFinal_set(refuseNon);
  if (is("untouched")) setAllHighBytes();
}

static void run(void) {
  define();
  printf("result %d\n", ZRVDlgBox(is("missing") ? "absent" : "visite"));
  print("text 0", TDB_pszBuffer[0]);
  print("text 1", TDB_pszBuffer[1]);
  print("text 2", TDB_pszBuffer[2]);
  printf("num 0 %.2f\ndate 0 %d\nbool 0 %d\nin use %d\n", NDB_dNums[0], DDB_lDates[0],
         BDB_bFlags[0], TDB);
  fflush(stdout);
}

int main(int argc, char **argv) {
  if (argc != 3) return 2;
  strncpy(szResources, argv[1], sizeof szResources - 1);
  scenario = argv[2];
  for (int n = 0; n < (is("three") ? 3 : 1); n++) {
    run();
    printf("port %d\nend %d\n", currentPort() != 0, n + 1);
    fflush(stdout);
  }
  return 0;
}
