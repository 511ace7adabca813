// SPDX-License-Identifier: MIT
// The main window: the persons on the left, the booklet of one of them on the right.
#ifndef REGISTER_WINDOW_H
#define REGISTER_WINDOW_H

#include <QMainWindow>

#include "person.h"

class QAction;
class QLineEdit;
class QSortFilterProxyModel;
class QStandardItemModel;
class QTableView;

namespace registry {

class Booklet;

class Window : public QMainWindow {
 public:
  Window();

 private:
  using Task = void (Window::*)();

  QAction *action(const QString &text, const QKeySequence &keys, Task task);
  void makeActions();
  QWidget *peopleSide();
  QWidget *bookletSide();

  // Reads the disk anew and selects the person of that number, else the first one.
  void reload(int number);
  void showSelected();
  void showCounts();
  // Null while nobody is selected.
  const Person *selected() const;
  qsizetype selectedDose() const;

  void addPerson();
  void editPerson();
  void removePerson();
  void addVaccination();
  void editVaccination();
  void removeVaccination();
  void makeBooklet();
  void search();

  QList<Person> people_;
  QStandardItemModel *peopleModel_, *vaccinationsModel_;
  QSortFilterProxyModel *filter_;
  QTableView *peopleView_ = nullptr, *vaccinationsView_ = nullptr;
  QLineEdit *search_ = nullptr;
  Booklet *booklet_ = nullptr;
  QList<QAction *> forPerson_, forDose_;
  QStringList unreadable_;
};

}  // namespace registry

#endif
