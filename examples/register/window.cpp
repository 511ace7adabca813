// SPDX-License-Identifier: MIT
// The library's dialogs and messages come up over this window; all else is the toolkit's.
#include "window.h"

#include <algorithm>

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollArea>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include "booklet.h"
#include "dialogs.h"
#include "form.h"
#include "models.h"
#include "pages.h"
#include "store.h"
#include "text.h"
#include "vaccines.h"

namespace registry {
namespace {

QTableView *tableOf(QAbstractItemModel *model) {
  auto *view = new QTableView;
  view->setModel(model);
  view->setSelectionBehavior(QAbstractItemView::SelectRows);
  view->setSelectionMode(QAbstractItemView::SingleSelection);
  view->setAlternatingRowColors(true);
  view->setShowGrid(false);
  view->setTabKeyNavigation(false);
  view->verticalHeader()->hide();
  view->horizontalHeader()->setHighlightSections(false);
  view->horizontalHeader()->setResizeContentsPrecision(-1);
  view->horizontalHeader()->setStretchLastSection(true);
  return view;
}

}  // namespace

Window::Window()
    : peopleModel_(new QStandardItemModel(this)),
      vaccinationsModel_(new QStandardItemModel(this)),
      filter_(new QSortFilterProxyModel(this)) {
  setWindowTitle("Registre des vaccinations");
  auto *sides = new QSplitter;
  sides->addWidget(peopleSide());
  sides->addWidget(bookletSide());
  sides->setStretchFactor(1, 1);
  sides->setSizes({400, 580});
  setCentralWidget(sides);
  makeActions();
  resize(980, 620);
  showSelected();  // nobody, as an empty register leaves it
  reload(0);
  search_->setFocus();
}

// ---- Its parts ----

QAction *Window::action(const QString &text, const QKeySequence &keys, Task task) {
  auto *action = new QAction(text, this);
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this, task);
  return action;
}

void Window::makeActions() {
  auto *newPerson = action("Nouvelle personne", QKeySequence::New, &Window::addPerson);
  auto *newDose = action("Nouvelle vaccination", Qt::CTRL | Qt::Key_D, &Window::addVaccination);
  auto *booklet = action("Carnet PDF", QKeySequence::Print, &Window::makeBooklet);
  forPerson_ = {action("Modifier…", Qt::CTRL | Qt::Key_M, &Window::editPerson),
                action("Supprimer…", {}, &Window::removePerson), newDose, booklet};
  forDose_ = {action("Modifier…", Qt::CTRL | Qt::SHIFT | Qt::Key_M, &Window::editVaccination),
              action("Supprimer…", {}, &Window::removeVaccination)};

  auto *person = menuBar()->addMenu("&Personne");
  person->addActions({newPerson, forPerson_[0], forPerson_[1], booklet});
  person->addSeparator();
  person->addAction("Quitter", QKeySequence::Quit, this, &QWidget::close);
  auto *dose = menuBar()->addMenu("&Vaccination");
  dose->addActions({newDose, forDose_[0], forDose_[1]});
  auto *bar = addToolBar("Tâches");
  bar->setMovable(false);
  bar->addActions({newPerson, newDose, booklet});
  addAction(action("Rechercher", QKeySequence::Find, &Window::search));
}

QWidget *Window::peopleSide() {
  search_ = new QLineEdit;
  search_->setPlaceholderText("Rechercher un nom");
  search_->setClearButtonEnabled(true);
  connect(search_, &QLineEdit::textChanged,
          [this](const QString &text) { filter_->setFilterFixedString(plain(text.simplified())); });
  showPeople(*peopleModel_, {});  // the columns, to be sorted by
  filter_->setSourceModel(peopleModel_);
  filter_->setFilterRole(kSearchRole);
  filter_->setSortRole(kSortRole);
  peopleView_ = tableOf(filter_);
  peopleView_->setAccessibleName("Personnes");
  peopleView_->setSortingEnabled(true);
  peopleView_->sortByColumn(0, Qt::AscendingOrder);
  connect(peopleView_, &QTableView::activated, this, &Window::editPerson);
  connect(peopleView_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &Window::showSelected);

  auto *side = new QWidget;
  auto *column = new QVBoxLayout(side);
  column->addWidget(search_);
  column->addWidget(peopleView_);
  return side;
}

QWidget *Window::bookletSide() {
  booklet_ = new Booklet;
  auto *area = new QScrollArea;
  area->setWidget(booklet_);
  area->setWidgetResizable(true);
  vaccinationsView_ = tableOf(vaccinationsModel_);
  vaccinationsView_->setAccessibleName("Vaccinations");
  connect(vaccinationsView_, &QTableView::activated, this, &Window::editVaccination);
  connect(vaccinationsView_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] {
            for (QAction *each : forDose_) each->setEnabled(selectedDose() >= 0);
          });

  auto *side = new QSplitter(Qt::Vertical);
  side->addWidget(area);
  side->addWidget(vaccinationsView_);
  side->setSizes({330, 220});
  return side;
}

// ---- What is shown ----

void Window::reload(int number) {
  Contents contents = readRegister();
  peopleView_->clearSelection();
  people_ = std::move(contents.people);
  showPeople(*peopleModel_, people_);
  peopleView_->resizeColumnsToContents();
  int chosen = 0;
  for (int row = 0; row < people_.size(); ++row)
    if (people_[row].number == number)
      chosen = std::max(filter_->mapFromSource(peopleModel_->index(row, 0)).row(), 0);
  peopleView_->selectRow(chosen);
  showCounts();
  if (contents.unreadable == unreadable_) return;
  unreadable_ = contents.unreadable;
  if (!unreadable_.isEmpty())
    warn(this, "Fiches illisibles",
         QString("Ces fiches ne peuvent pas être lues et restent telles quelles\u00A0: %1")
             .arg(unreadable_.join(", ")));
}

void Window::showCounts() {
  const auto late = std::count_if(people_.begin(), people_.end(), [](const Person &person) {
    return urgencyOf(nextDue(person)) == Urgency::kOverdue;
  });
  statusBar()->showMessage(
      QString("Personnes\u00A0: %1, en retard\u00A0: %2").arg(people_.size()).arg(late));
}

void Window::showSelected() {
  const Person *person = selected();
  showVaccinations(*vaccinationsModel_, person != nullptr ? *person : Person());
  vaccinationsView_->resizeColumnsToContents();
  booklet_->setPerson(person);
  for (QAction *each : forPerson_) each->setEnabled(person != nullptr);
  for (QAction *each : forDose_) each->setEnabled(false);
}

const Person *Window::selected() const {
  const QModelIndexList rows = peopleView_->selectionModel()->selectedRows();
  return rows.isEmpty() ? nullptr : &people_[filter_->mapToSource(rows.first()).row()];
}

qsizetype Window::selectedDose() const {
  const QModelIndexList rows = vaccinationsView_->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.first().row();
}

void Window::search() {
  search_->setFocus();
  search_->selectAll();
}

// ---- Tasks ----

void Window::addPerson() {
  Person person;
  if (!enterPerson(person)) return;
  search_->clear();
  reload(person.number);
}

void Window::editPerson() {
  if (selected() == nullptr) return;
  Person person = *selected();
  if (enterPerson(person)) reload(person.number);
}

void Window::removePerson() {
  const Person person = *selected();
  const QString caption = "Supprimer une personne";
  if (!mayLose(this, caption,
               QString("Supprimer %1 et toutes ses vaccinations\u00A0?").arg(fullName(person))))
    return;
  if (!erasePerson(person)) warn(this, caption, "La fiche n’a pas pu être supprimée.");
  reload(0);
}

void Window::addVaccination() {
  Person person = *selected();
  if (enterVaccination(this, person, -1)) reload(person.number);
}

void Window::editVaccination() {
  const qsizetype place = selectedDose();
  if (selected() == nullptr || place < 0) return;
  Person person = *selected();
  if (enterVaccination(this, person, place)) reload(person.number);
}

void Window::removeVaccination() {
  Person person = *selected();
  const Vaccination dose = person.vaccinations.takeAt(selectedDose());
  const QString caption = "Supprimer une vaccination";
  if (!mayLose(this, caption,
               QString("Supprimer la dose du %1 (%2)\u00A0?")
                   .arg(shown(dose.day), vaccineLabel(dose.vaccine))))
    return;
  if (!saveVaccinations(person)) warn(this, caption, "La fiche n’a pas pu être enregistrée.");
  reload(person.number);
}

void Window::makeBooklet() {
  const Person person = *selected();
  const QString caption = "Carnet PDF", path = bookletPath(person);
  if (!writePages(person, path))
    warn(this, caption, "Le carnet n’a pas pu être écrit.");
  else
    tell(this, caption,
         QString("Le carnet de %1 est dans le fichier\r%2").arg(fullName(person), path));
}

}  // namespace registry
