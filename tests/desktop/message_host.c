/* SPDX-License-Identifier: MIT */
/* message_host box [<flags> <caption> <text>]...: an application that shows one message after
   another, and writes "result <n>" for each. Texts are CP1252, flags as in C.
   message_host lines <lines> <caption> <text>: the same for one NoteDialog.
   message_host later <pipe>: a message, and two more when somebody has opened the pipe to write.
   message_host apart: a message; then a connection to the X server that the application had before
   it is lost, which its own function is told: "lost 1".
   message_host work <title> <steps>: a work of so many steps of ten milliseconds; "cancelled <n>"
   or "done <n>" after n of them.
   message_host dialog: a data-entry dialog whose fields ask when they are edited, or do a long work
   after a "?", and that asks before it ends; "edited <answer>", "final <answer>", then
   "result <n> text <text>". Where the dialog's port is not the current one after an answer,
   "port lost <answer>" comes in between.
   message_host slow: the same, which stops before it asks at an edit, until it is let go on. */
#define _POSIX_C_SOURCE 200809L
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include <dlfcn.h>
#include <sys/socket.h>
#include <unistd.h>

#include <korvel/korvel.h>

enum { kYes = 2 };

static int say(const char *what, int number) {
  printf("%s %d\n", what, number);
  fflush(stdout);
  return number;
}

static int isCurrentPortOf(WindowRef window) {
  CGrafPtr port = 0;
  GetPort(&port);
  return port && port == GetWindowPort(window);
}

static void showBoxes(char **argument) {
  for (; argument[0] && argument[1] && argument[2]; argument += 3)
    say("result", MessageBox(0, argument[2], argument[1], (unsigned)strtoul(argument[0], 0, 0)));
}

static void work(const char *title, int steps) {
  const struct timespec step = {0, 10000000};
  int done = 0;
  for (; done < steps && !KorvelProgress(title, done, steps); done++) nanosleep(&step, 0);
  say(KorvelProgress(title, steps, steps) ? "cancelled" : "done", done);
}

static void showLater(const char *pipe) {
  say("result", MessageBox(0, "Maintenant", "Un", 0));
  FILE *opened = fopen(pipe, "r");
  if (opened) fclose(opened);
  for (int n = 0; n < 2; n++) say("result", MessageBox(0, "Plus tard ?", "Deux", 0x10));
}

/* Functions of the library that the toolkit uses, too. */
static void *(*openDisplay)(const char *name);
static int (*descriptorOf)(void *display);
static int (*synchronise)(void *display, int discard);
static void *(*setLost)(int (*lost)(void *display));

static int findFunctions(void) {
  void *x11 = dlopen("libX11.so.6", RTLD_NOW);
  if (!x11) return 0;
  *(void **)&openDisplay = dlsym(x11, "XOpenDisplay");
  *(void **)&descriptorOf = dlsym(x11, "XConnectionNumber");
  *(void **)&synchronise = dlsym(x11, "XSync");
  *(void **)&setLost = dlsym(x11, "XSetIOErrorHandler");
  return openDisplay && descriptorOf && synchronise && setLost;
}

static void *ownDisplay;

/* The library would end the process after it. */
static int loseConnection(void *display) {
  say("lost", display == ownDisplay);
  _exit(0);
}

static void showBesideAConnection(void) {
  if (!findFunctions()) return;
  ownDisplay = openDisplay(NULL);
  if (!ownDisplay) return;
  setLost(loseConnection);
  say("result", MessageBox(0, "Maintenant", "Un", 0));
  shutdown(descriptorOf(ownDisplay), SHUT_RDWR);
  synchronise(ownDisplay, 0);
}

static int lastEdit = 0; /* the last answer at an edit */
static int isSlow = 0;

/* Asks at an "!" in the text, works at a "?". */
static int askAtEdit(int item, int t, int t0, char **texts, int tn, int b, int b0, int *bools,
                     int bn, int in, int i0, int *ints, int intn, int n, int n0, double *nums,
                     int nn, int d, int d0, int *dates, int dn, int *redisplay, int capacity) {
  (void)item, (void)t, (void)t0, (void)tn, (void)b, (void)b0, (void)bools, (void)bn, (void)in;
  (void)i0, (void)ints, (void)intn, (void)n, (void)n0, (void)nums, (void)nn, (void)d, (void)d0;
  (void)dates, (void)dn, (void)redisplay, (void)capacity;
  size_t length = strlen(texts[0]);
  if (length > 0 && texts[0][length - 1] == '?') work("Recherche", 2000);
  if (length == 0 || texts[0][length - 1] != '!') return 0;
  if (isSlow) raise(SIGSTOP);
  lastEdit = say("edited", MessageBox(0, "Vraiment ?", "Saisie", 0x10));
  return 0;
}

static int askAtEnd(WindowRef window, int t, char **texts, int tn, int b, int *bools, int bn, int i,
                    int *ints, int in, int n, double *nums, int nn, int d, int *dates, int dn) {
  (void)t, (void)texts, (void)tn, (void)b, (void)bools, (void)bn, (void)i, (void)ints, (void)in;
  (void)n, (void)nums, (void)nn, (void)d, (void)dates, (void)dn;
  if (!isCurrentPortOf(window)) say("port lost", lastEdit);
  int answer = say("final", MessageBox(window, "Enregistrer la fiche ?", "Fin", 0x50));
  if (!isCurrentPortOf(window)) say("port lost", answer);
  return answer == kYes;
}

static void showDialog(void) {
  TailleDlgBox_set(250, 200);
  TexteDlgBox_param(2, 100);
  TexteDlgBox_set_geo(0, 20, 14, 80, 12, 0);
  TexteDlgBox_set(0, "");
  TexteDlgBox_set_geo(1, 20, 34, 80, 12, 1);
  TexteDlgBox_set(1, "");
  TexteDlgBox_mandatory(1, 0);
  DlgBoxGlobal_set(askAtEdit);
  DlgBoxFinal_set(askAtEnd);
  printf("result %d", ZRVDlgBoxEx("Fiche", 0));
  printf(" text %s\n", TDB_pszBuffer[0]);
}

int main(int argc, char **argv) {
  const char *scenario = argc > 1 ? argv[1] : "";
  if (strcmp(scenario, "box") == 0) showBoxes(argv + 2);
  isSlow = strcmp(scenario, "slow") == 0;
  if (isSlow || strcmp(scenario, "dialog") == 0) showDialog();
  if (strcmp(scenario, "apart") == 0) showBesideAConnection();
  if (strcmp(scenario, "work") == 0 && argc > 3) work(argv[2], atoi(argv[3]));
  if (strcmp(scenario, "later") == 0 && argc > 2) showLater(argv[2]);
  if (strcmp(scenario, "lines") == 0 && argc > 4)
    say("result", NoteDialog(0, argv[3], argv[4], atoi(argv[2]), 0x02));
  return 0;
}
