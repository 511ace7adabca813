/* SPDX-License-Identifier: MIT */
/* Folders on the disk, made for their owner alone. */
#define _POSIX_C_SOURCE 200809L
#include "practice.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <sys/stat.h>

#include <korvel/korvel.h>

static const char kVolume[] = "Cabinet";

/* What is known of patients is for the account that runs the practice alone. The library's MakeDir
   opens a folder to everybody, and so are the files open that it makes. */
enum { kPrivate = 0700 };

int haveFolder(const char *path) {
  char posix[256];
  if (Dir_Is_Existing(path)) return 1;
  return MAC2UNIX(path, posix) > 0 && mkdir(posix, kPrivate) == 0;
}

/* Makes a folder and those above it. */
static void makeFolders(const char *path) {
  char folder[256];
  snprintf(folder, sizeof folder, "%s", path);
  for (char *slash = strchr(folder + 1, '/'); slash; slash = strchr(slash + 1, '/')) {
    *slash = '\0';
    mkdir(folder, kPrivate);
    *slash = '/';
  }
  mkdir(folder, kPrivate);
}

int openPractice(void) {
  const char *volumes = getenv("FICHE_VOLUMES"), *data = getenv("XDG_DATA_HOME");
  const char *home = getenv("HOME");
  int length;
  if (volumes)
    length = snprintf(szVolumes, sizeof szVolumes, "%s", volumes);
  else if (data && *data == '/')
    length = snprintf(szVolumes, sizeof szVolumes, "%s/fiche", data);
  else
    length = snprintf(szVolumes, sizeof szVolumes, "%s/.local/share/fiche", home ? home : "");
  if (length >= (int)sizeof szVolumes) return 0;
  makeFolders(szVolumes);
  return haveFolder(kVolume);
}
