/* SPDX-License-Identifier: MIT */
/* What the menu offers. */
#ifndef FICHE_TASKS_H
#define FICHE_TASKS_H

/* Each asks for the patient, if it is about one. */
void newRecord(void);
void editRecord(void);
void assignDoctor(void);
void prescribe(void);
void noteVisit(void);
void keepProfessions(void);
void changeSettings(void);
void importNewTable(void);
void searchAllNotes(void);

#endif
