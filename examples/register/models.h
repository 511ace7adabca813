// SPDX-License-Identifier: MIT
// What the tables of the main window show.
#ifndef REGISTER_MODELS_H
#define REGISTER_MODELS_H

#include <QStandardItemModel>

#include "person.h"

namespace registry {

// What a row is sorted by, in each column, and what is searched in, in the first one.
enum Role { kSortRole = Qt::UserRole, kSearchRole };

// In lower case and without accents, as it is searched for.
QString plain(const QString &text);

// A row for each person, or for each vaccination of one, in their order.
void showPeople(QStandardItemModel &model, const QList<Person> &people);
void showVaccinations(QStandardItemModel &model, const Person &person);

}  // namespace registry

#endif
