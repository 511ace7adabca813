/* SPDX-License-Identifier: MIT */
/* The dialog in which the practice's table of professions is looked after. */
#ifndef FICHE_UPKEEP_H
#define FICHE_UPKEEP_H

/* Lets the user add, rename and remove professions. Every change is in the table at once; leaving
   by "Annuler" brings the table back as it was. */
void enterProfessions(void);

#endif
