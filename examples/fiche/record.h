/* SPDX-License-Identifier: MIT */
/* A patient record. Texts are CP1252. */
#ifndef FICHE_RECORD_H
#define FICHE_RECORD_H

#include "places.h"

enum { kMaxLines = 5 };

/* Room for the code of a practitioner. */
enum { kDoctorCode = 8 };

/* A line of the prescription. */
typedef struct Prescription {
  char drug[9]; /* code of the speciality */
  char dose[64];
  int days; /* 0 for no limit */
} Prescription;

typedef struct Record {
  int number; /* of the record in the practice, from 1; 0 until it is saved */
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
  char medecin[kDoctorCode];  /* code of the practitioner; empty while unknown */
  int enfants;
  int code;      /* access code; 0 for none */
  double poids;  /* kg; 0 while unknown */
  double taille; /* m; 0 while unknown */
  int suivi;     /* 0 or 1 */
  int accord;    /* 0 or 1 */
  int lignes;    /* of the prescription */
  Prescription ordonnance[kMaxLines];
} Record;

/* A record of which nothing is known yet. */
Record emptyRecord(void);

/* The body-mass index, in kg per square metre; 0 while weight or height is unknown. */
double bodyMassIndex(double poids, double taille);

/* First name and name. */
void fullName(const Record *record, char *out, int size);

/* Today as YYYYMMDD, and such a date as DD/MM/YYYY (11 bytes; empty for 0). */
int today(void);
void showDate(int date, char *out);

#endif
