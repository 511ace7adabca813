// SPDX-License-Identifier: MIT
// What the tables of the main window show.
#ifndef REGISTER_MODELS_H
#define REGISTER_MODELS_H

#include <QSortFilterProxyModel>
#include <QStandardItemModel>

#include "person.h"

namespace registry {

// A line for each person, in their order.
class PeopleModel : public QStandardItemModel {
 public:
  explicit PeopleModel(QObject *parent);
  void set(const QList<Person> &people);
};

// Those of them whose name is searched for, in whatever case and with or without accents; all, or
// only those whose next dose is due or soon to be.
class PeopleFilter : public QSortFilterProxyModel {
 public:
  PeopleFilter(PeopleModel *people, QObject *parent);
  void search(const QString &text);
  void showDueOnly(bool isOn);

 protected:
  bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

 private:
  QString wanted_;
  bool isDueOnly_ = false;
};

// A line for each vaccination of one person, in their order.
class VaccinationsModel : public QStandardItemModel {
 public:
  explicit VaccinationsModel(QObject *parent);
  void set(const Person &person);
};

}  // namespace registry

#endif
