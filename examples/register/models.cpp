// SPDX-License-Identifier: MIT
// Persons and vaccinations as rows of tables. What is late is said in words and in red.
#include "models.h"

#include <QBrush>

#include "text.h"
#include "vaccines.h"

namespace registry {
namespace {

QStandardItem *cell(const QString &text, const QVariant &sort = {}) {
  auto *item = new QStandardItem(text);
  item->setEditable(false);
  item->setData(sort, kSortRole);
  return item;
}

QStandardItem *dueCell(QDate due) {
  const Urgency urgency = urgencyOf(due);
  const bool isLate = urgency == Urgency::kOverdue;
  auto *item = cell(isLate ? shown(due) + " (en retard)" : shown(due), due);
  if (isLate) item->setForeground(QColor(0xB0, 0x00, 0x20));
  if (urgency == Urgency::kSoon) item->setForeground(QColor(0x8A, 0x4B, 0x00));
  return item;
}

QList<QStandardItem *> rowOf(const Person &person) {
  const QString name = plain(person.name + u' ' + person.firstName);
  auto *first = cell(person.name, name);
  first->setData(QString(name + u' ' + plain(person.firstName + u' ' + person.name)), kSearchRole);
  return {first, cell(person.firstName, plain(person.firstName)),
          cell(shown(person.birth), person.birth), dueCell(nextDue(person))};
}

}  // namespace

QString plain(const QString &text) {
  QString letters;
  for (const QChar each : text.normalized(QString::NormalizationForm_KD))
    if (!each.isMark()) letters += each.toLower();
  return letters;
}

void showPeople(QStandardItemModel &model, const QList<Person> &people) {
  model.setRowCount(0);
  model.setHorizontalHeaderLabels({"Nom", "Prénom", "Naissance", "Prochaine dose"});
  for (const Person &person : people) model.appendRow(rowOf(person));
}

void showVaccinations(QStandardItemModel &model, const Person &person) {
  model.setRowCount(0);
  model.setHorizontalHeaderLabels({"Date", "Vaccin", "Lot", "Praticien", "Prochaine dose"});
  for (const Vaccination &dose : person.vaccinations)
    model.appendRow({cell(shown(dose.day)), cell(vaccineLabel(dose.vaccine)), cell(dose.lot),
                     cell(dose.practitioner), dueCell(dueAfter(person, dose))});
}

}  // namespace registry
