/* SPDX-License-Identifier: MIT */
/* The practitioners that the practice works with: its table "MT.par". Texts are CP1252. */
#ifndef FICHE_DOCTORS_H
#define FICHE_DOCTORS_H

/* Lets the user choose one. Returns 1, or 0 with the code untouched when none was chosen. */
int chooseDoctor(char *code, int size);

/* Name; and name, speciality and town of a practitioner. Returns 1, or 0 with the text empty when
   there is no such code. */
int doctorName(const char *code, char *out, int size);
int doctorCard(const char *code, char *out, int size);

#endif
