// SPDX-License-Identifier: MIT
// A person and what was given to him; when the next dose is due.
#ifndef REGISTER_PERSON_H
#define REGISTER_PERSON_H

#include <QDate>
#include <QList>
#include <QString>

namespace registry {

struct Vaccination {
  QDate day;
  QString vaccine;  // its code in the table of vaccines
  QString lot;
  QString practitioner;
  QDate due;  // of the next dose; null for none
};

struct Person {
  int number = 0;  // from 1; 0 until it is saved
  QString name;
  QString firstName;
  QString sex;
  QDate birth;
  QString remarks;
  QList<Vaccination> vaccinations;  // by day, the latest first
};

QString fullName(const Person &person);

// As they are told; empty where there are none.
QString shownRemarks(const Person &person);

// "48 ans", for a child of less than two years "7 mois". Empty for one that is still to be born.
QString ageOn(QDate day, QDate birth);

void sortByDay(QList<Vaccination> &vaccinations);

// The day that the person is to come again for this dose's vaccine; null when nothing is due, also
// because a later dose was given.
QDate dueAfter(const Person &person, const Vaccination &dose);

// The first of these days; null when there is none.
QDate nextDue(const Person &person);

enum class Urgency { kNone, kLater, kSoon, kOverdue };

// Soon is within three months.
Urgency urgencyOf(QDate due);

}  // namespace registry

#endif
