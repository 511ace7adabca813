/* A patient record. Texts are CP1252. */
#ifndef FICHE_RECORD_H
#define FICHE_RECORD_H

#include <stdio.h>

typedef struct Record {
  char nom[64];
  char prenom[64];
  char civilite[32];
  char sexe[16];
  char praticien[64];
  int naissance; /* YYYYMMDD; 0 while unknown */
  int enfants;
  int code;      /* access code; 0 for none */
  double poids;  /* kg; 0 while unknown */
  double taille; /* m; 0 while unknown */
  int suivi;     /* 0 or 1 */
  int accord;    /* 0 or 1 */
} Record;

/* The body-mass index, in kg per square metre; 0 while weight or height is unknown. */
double bodyMassIndex(double poids, double taille);

/* Writes the record as lines of UTF-8 text. */
void printRecord(FILE *out, const Record *record);

#endif
