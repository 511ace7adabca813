/* SPDX-License-Identifier: MIT */
/* What the practice has set, in a profile file on the volume "Cabinet". Texts are CP1252. */
#ifndef FICHE_SETTINGS_H
#define FICHE_SETTINGS_H

typedef struct Settings {
  char cabinet[64]; /* name of the practice */
  char praticien[64];
  char adresse[64];
  char telephone[24];
  double honoraires; /* of a consultation, in euros */
  int confirmer;     /* 1: leaving the application is asked about */
} Settings;

/* What is not kept yet has a usual value. */
void readSettings(Settings *settings);

/* Returns 1, or 0 when something could not be written. */
int keepSettings(const Settings *settings);

/* Lets the user change and keep the settings. */
void enterSettings(void);

#endif
