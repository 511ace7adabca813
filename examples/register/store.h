// SPDX-License-Identifier: MIT
// The register on the disk: the volume "Registre" with a profile for each person.
#ifndef REGISTER_STORE_H
#define REGISTER_STORE_H

#include <QList>
#include <QString>
#include <QStringList>

#include "person.h"

namespace registry {

// Where volumes are: REGISTER_VOLUMES, else the user's folder for data of this application. Makes
// the folders, for their owner alone, and puts the table of vaccines there. Returns why that is not
// possible; empty when it is done.
QString openRegister();

struct Contents {
  QList<Person> people;
  QStringList unreadable;  // names of files
};
Contents readRegister();

// A person without a number gets one. False, with the disk as it was, when that is not possible.
bool savePerson(Person &person);
bool saveVaccinations(const Person &person);
// And the booklet, as the next new person may get the number. False where the person is still kept.
bool erasePerson(const Person &person);

// What a profile cannot keep in this text: empty when it can keep it.
QString unkeepable(const QString &text);

// The practitioner who was entered last.
QString lastPractitioner();
void keepPractitioner(const QString &name);

// A file of the system for the person's booklet.
QString bookletPath(const Person &person);

}  // namespace registry

#endif
