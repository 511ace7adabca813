// SPDX-License-Identifier: MIT
// Persons and vaccinations as lines of tables. What is late is said in words and in red.
#include "models.h"

#include <QBrush>

#include "text.h"
#include "vaccines.h"

namespace registry {
namespace {

// What a line is sorted by, in each column; what is searched in, and how urgent the next dose is,
// in the first one.
enum Role { kSortRole = Qt::UserRole, kSearchRole, kUrgencyRole };

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

// In lower case and without accents.
QString plain(const QString &text) {
  QString letters;
  for (const QChar each : text.normalized(QString::NormalizationForm_KD))
    if (!each.isMark()) letters += each.toLower();
  return letters;
}

QList<QStandardItem *> lineOf(const Person &person) {
  const QString name = plain(person.name + u' ' + person.firstName);
  const QDate due = nextDue(person);
  auto *first = cell(person.name, name);
  first->setData(QString(name + u' ' + plain(person.firstName + u' ' + person.name)), kSearchRole);
  first->setData(static_cast<int>(urgencyOf(due)), kUrgencyRole);
  return {first, cell(person.firstName, plain(person.firstName)),
          cell(shown(person.birth), person.birth), dueCell(due)};
}

}  // namespace

PeopleModel::PeopleModel(QObject *parent) : QStandardItemModel(parent) {
  setHorizontalHeaderLabels({"Nom", "Prénom", "Naissance", "Prochaine dose"});
}

void PeopleModel::set(const QList<Person> &people) {
  setRowCount(0);
  for (const Person &person : people) appendRow(lineOf(person));
}

PeopleFilter::PeopleFilter(PeopleModel *people, QObject *parent) : QSortFilterProxyModel(parent) {
  setSourceModel(people);
  setSortRole(kSortRole);
}

void PeopleFilter::search(const QString &text) {
  wanted_ = plain(text.simplified());
  invalidateFilter();
}

void PeopleFilter::showDueOnly(bool isOn) {
  isDueOnly_ = isOn;
  invalidateFilter();
}

bool PeopleFilter::filterAcceptsRow(int row, const QModelIndex &parent) const {
  const QModelIndex first = sourceModel()->index(row, 0, parent);
  if (isDueOnly_ && first.data(kUrgencyRole).toInt() < static_cast<int>(Urgency::kSoon))
    return false;
  return first.data(kSearchRole).toString().contains(wanted_);
}

VaccinationsModel::VaccinationsModel(QObject *parent) : QStandardItemModel(parent) {
  setHorizontalHeaderLabels({"Date", "Vaccin", "Lot", "Praticien", "Prochaine dose"});
}

void VaccinationsModel::set(const Person &person) {
  setRowCount(0);
  for (const Vaccination &dose : person.vaccinations)
    appendRow({cell(shown(dose.day)), cell(vaccineLabel(dose.vaccine)), cell(dose.lot),
               cell(dose.practitioner), dueCell(dueAfter(person, dose))});
}

}  // namespace registry
