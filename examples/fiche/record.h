/* A patient record. Texts are CP1252. */
#ifndef FICHE_RECORD_H
#define FICHE_RECORD_H

#include <stdio.h>

#include "places.h"

enum { kMaxLines = 5 };

/* A line of the prescription. */
typedef struct Prescription {
  char drug[9]; /* code of the speciality */
  char dose[64];
  int days; /* 0 for no limit */
} Prescription;

typedef struct Record {
  char nom[64];
  char prenom[64];
  char civilite[32];
  char sexe[16];
  char profession[64];
  int naissance; /* YYYYMMDD; 0 while unknown */
  char paysNaissance[kCountryCode];
  char communeNaissance[kCommuneCode]; /* code; empty while unknown */
  char pays[kCountryCode];
  char departement[kDepartmentCode];
  char commune[kCommuneCode]; /* code of a commune of the département; empty while unknown */
  char praticien[64];
  int enfants;
  int code;      /* access code; 0 for none */
  double poids;  /* kg; 0 while unknown */
  double taille; /* m; 0 while unknown */
  int suivi;     /* 0 or 1 */
  int accord;    /* 0 or 1 */
  int lignes;    /* of the prescription */
  Prescription ordonnance[kMaxLines];
} Record;

/* The body-mass index, in kg per square metre; 0 while weight or height is unknown. */
double bodyMassIndex(double poids, double taille);

/* Writes the record as lines of UTF-8 text. */
void printRecord(FILE *out, const Record *record);

#endif
