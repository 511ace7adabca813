/* SPDX-License-Identifier: MIT */
/* A waiting room on a share: every workstation adds patients and sees those of the others.
   share <name> adds a patient; share alone shows who waits. */
#define _POSIX_C_SOURCE 200809L
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/korvel.h>

#include "french.h"

static const char kTable[] = "attente";
static const char kFile[] = "Cabinet:tables:attente.tab";
enum { kFirstText = 100, kFirstPush = 200 };

/* What takes a look and then an edit is one step only while no other workstation edits between: all
   take this lock first. It is a file of its own, as the library locks the table, and for all who
   may enter the folder, as the table is. */
static int lockWaitingRoom(void) {
  char posix[256];
  MAC2UNIX("Cabinet:tables:attente.lock", posix);
  int lock = open(posix, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (lock >= 0) fchmod(lock, 0666); /* refused where it is someone else's, who has done it */
  if (lock >= 0 && flock(lock, LOCK_EX) != 0) {
    close(lock);
    return -1;
  }
  return lock;
}

/* Commas and pluses end fields of a table, a dollar sign ends a row of the list. */
static int isName(const char *text) { return *text && !strpbrk(text, ",+$\r\n"); }

/* A new line in front of the last one, with the time. */
static int addPatient(const char *name) {
  char now[13] = "", line[300];
  if (ZRV_Get_Date_long(now) != KorvelDoneStatus) return 0;
  int lock = lockWaitingRoom();
  if (lock < 0) return 0;
  snprintf(line, sizeof line, "%s,%s\r\n#FIN", now, name);
  int done = ZRV_Table_create(kTable, "1", "Salle d'attente") &&
             ZRV_Libelle_NC("#FIN", 4, 0, kTable, NULL, 0) &&
             ZRV_Libelle_NC_idem_replace("", 0, 0, kTable, line);
  close(lock);
  return done;
}

/* ---- The list ---- */

static char rows[8192];

static void addRow(char *fields) {
  const char *name = ChCh_Get_Next_Item(fields);
  if (strlen(rows) + strlen(name) + 2 > sizeof rows) return;
  if (*rows) strcat(rows, "$");
  strcat(rows, name);
}

/* Finds the table of some moment, whole. Some shares refuse to read while another one writes. */
static void readRows(void) {
  *rows = '\0';
  if (!ZRV_Table_scan(kTable, NULL, NULL, addRow) && File_Is_Existing(kFile))
    strcpy(rows, french("Liste illisible : actualisez."));
}

static int refresh(WindowRef window) {
  (void)window;
  readRows();
  ZRVDlgBox_texte_set_liste(0);
  return 0;
}

int main(int argc, char **argv) {
  snprintf(szVolumes, sizeof szVolumes, "%s/volumes", getenv("HOME"));
  strcpy(szDirTables, "Cabinet:tables");
  if (argc > 1) {
    const char *name = french(argv[1]);
    if (!isName(name)) {
      puts("Un nom a 1 à 255 lettres, sans virgule, plus ni dollar.");
      return 1;
    }
    int done = addPatient(name);
    puts(done ? "ajouté" : "La salle d’attente ne peut pas être modifiée : réessayez.");
    return done ? 0 : 1;
  }
  readRows();
  TailleDlgBox_set(150, 112);
  TexteDlgBox_param(1, kFirstText);
  TexteDlgBox_set_geo(0, 10, 12, 130, 48, 0);
  TexteDlgBox_set_liste_buffer(0, rows);
  TDBL[0] = 1;
  TexteDlgBox_set(0, "");
  TexteDlgBox_mandatory(0, 0);
  KorvelItemName(kFirstText, "Salle d'attente");
  PushDlgBox_param(1, kFirstPush);
  PushDlgBox_set_geo(0, "Actualiser", 10, 66, 60, 15, 1);
  PushDlgBox_set_fvalid(0, refresh);
  ZRVDlgBoxEx("Salle d'attente", 0);
  return 0;
}
