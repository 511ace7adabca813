// SPDX-License-Identifier: MIT
// A vaccination, by a dialog that is built of its description. The day of the next dose follows
// from the vaccine and the day, until somebody enters another one.
#include <korvel/dialogs.h>

#include "dialogs.h"
#include "form.h"
#include "store.h"
#include "text.h"
#include "vaccines.h"

namespace registry {
namespace {

enum Text { kVaccine, kLot, kPractitioner, kTexts };
enum Date { kDay, kDue, kDates };
enum Bool { kHasDue, kBools };
enum Push { kToday, kPushes };
enum Rank {
  kRankVaccine,
  kRankDay,
  kRankToday,
  kRankLot,
  kRankPractitioner,
  kRankHasDue,
  kRankDue
};

constexpr int kLongestLot = 20, kLongestName = 60;

// The layout, in dialog units.
constexpr int kWidth = 224, kHeight = 162, kLabel = 18, kField = 84, kLine = 12, kPitch = 17;
constexpr int kDoseTop = 6, kNextTop = 96;
constexpr int rowAt(int top, int row) { return top + 15 + kPitch * row; }

// ---- The description ----

void describeStatic(int i, const char *text, int y) {
  StaticDlgBox_set(i, toBytes(text).c_str());
  StaticDlgBox_set_geo(i, kLabel, y, kField - kLabel, kLine);
}

void describeGroup(int i, const char *title, int top, int rows) {
  describeStatic(i, title, top);
  StaticDlgBox_set_geo(i, 8, top, kWidth - 16, kPitch * rows + 16);
  StaticDlgBox_set_type(i, KorvelGroupBox);
}

void describeLabels() {
  StaticDlgBox_param(6);
  describeGroup(0, "Dose administrée", kDoseTop, 4);
  describeStatic(1, "Vaccin", rowAt(kDoseTop, 0));
  describeStatic(2, "Date", rowAt(kDoseTop, 1));
  describeStatic(3, "Numéro de lot", rowAt(kDoseTop, 2));
  describeStatic(4, "Praticien", rowAt(kDoseTop, 3));
  describeGroup(5, "Prochaine dose", kNextTop, 1);
}

void describeDose(const Vaccination &dose) {
  TexteDlgBox_param(kTexts, kFirstText);
  TexteDlgBox_set_geo(kVaccine, kField, rowAt(kDoseTop, 0), 124, kLine, kRankVaccine);
  describeText(kVaccine, dose.vaccine.isEmpty() ? QString() : vaccineLabel(dose.vaccine),
               kLongestName, true);
  TexteDlgBox_set_liste(kVaccine, vaccineChoices().c_str());
  TexteDlgBox_set_geo(kLot, kField, rowAt(kDoseTop, 2), 60, kLine, kRankLot);
  describeText(kLot, dose.lot, kLongestLot, true);
  TexteDlgBox_set_geo(kPractitioner, kField, rowAt(kDoseTop, 3), 124, kLine, kRankPractitioner);
  describeText(kPractitioner, dose.practitioner, kLongestName, true);
}

void describeDates(const Vaccination &dose) {
  DateDlgBox_param(kDates, kFirstDate);
  DateDlgBox_set_geo(kDay, kField, rowAt(kDoseTop, 1), 0, kLine, kRankDay);
  describeDate(kDay, dose.day);
  DateDlgBox_set_fvalid(kDay, notInFuture);
  DateDlgBox_set_geo(kDue, kField, rowAt(kNextTop, 0), 0, kLine, kRankDue);
  describeDate(kDue, dose.due);
  DateDlgBox_set_fvalid(kDue, intcod_l_date);
  DateDlgBox_mandatory(kDue, dose.due.isValid() ? 1 : 0);
  KorvelItemName(dateItem(kDue), "Prochaine dose");
}

void describe(const Vaccination &dose) {
  TailleDlgBox_set(kWidth, kHeight);
  describeLabels();
  describeDose(dose);
  describeDates(dose);
  BoolDlgBox_param(kBools, kFirstBool);
  BoolDlgBox_set_geo(kHasDue, toBytes("À prévoir le").c_str(), kLabel, rowAt(kNextTop, 0),
                     kField - kLabel - 2, kLine, kRankHasDue);
  BoolDlgBox_set(kHasDue, dose.due.isValid() ? 1 : 0);
  PushDlgBox_param(kPushes, kFirstPush);
  PushDlgBox_set_geo(kToday, "Aujourd'hui", kField + 76, rowAt(kDoseTop, 1) - 1, 48, kLine + 3,
                     kRankToday);
}

// ---- What follows from what ----

// The day is mandatory exactly while a next dose is meant.
void showDue(Change &change, QDate due) {
  change.showBool(kHasDue, due.isValid());
  DateDlgBox_mandatory(kDue, due.isValid() ? 1 : 0);
  if (due.isValid())
    change.showDate(kDue, due);
  else
    change.clearDate(kDue);
}

QDate proposedDue() {
  const int months = monthsToNext(vaccineCode(enteredText(kVaccine)));
  const QDate day = enteredDate(kDay);
  return months > 0 && day.isValid() ? day.addMonths(months) : QDate();
}

// A next dose is wanted though the table proposes none.
QDate wantedDue() {
  const QDate proposed = proposedDue(), day = enteredDate(kDay);
  if (proposed.isValid()) return proposed;
  return (day.isValid() ? day : QDate::currentDate()).addYears(1);
}

void changed(Change &change) {
  if (change.isOfPush(kToday)) change.showDate(kDay, QDate::currentDate());
  if (change.isOfText(kVaccine) || change.isOfDate(kDay) || change.isOfPush(kToday))
    showDue(change, proposedDue());
  if (change.isOfText(kLot)) change.showText(kLot, fromBytes(TDB_pszBuffer[kLot]).toUpper());
  if (change.isOfBool(kHasDue)) showDue(change, enteredBool(kHasDue) ? wantedDue() : QDate());
  if (change.isOfDate(kDue)) change.showBool(kHasDue, true);
}

// ---- Keeping it ----

Vaccination entered() {
  return {enteredDate(kDay), vaccineCode(enteredText(kVaccine)), enteredText(kLot),
          enteredText(kPractitioner), enteredBool(kHasDue) ? enteredDate(kDue) : QDate()};
}

QString faultOf(const Vaccination &dose, const Person &person) {
  const QString sign = unkeepable(dose.lot + dose.practitioner);
  if (!sign.isEmpty()) return QString("Un texte contient %1.").arg(sign);
  if (dose.vaccine.isEmpty()) return "Le vaccin n’est pas dans la table.";
  if (!dose.day.isValid()) return "La date de la dose n’existe pas.";
  if (dose.day < person.birth)
    return QString("%1 n’était pas né(e) à cette date\u00A0: naissance le %2.")
        .arg(fullName(person), shown(person.birth));
  if (enteredBool(kHasDue) && dose.due <= dose.day)
    return "La prochaine dose doit venir après celle-ci.";
  return {};
}

QString keep(Person &person, qsizetype place) {
  const Vaccination dose = entered();
  QString fault = faultOf(dose, person);
  if (!fault.isEmpty()) return fault;
  Person fresh = person;
  if (place >= 0)
    fresh.vaccinations[place] = dose;
  else
    fresh.vaccinations.append(dose);
  sortByDay(fresh.vaccinations);
  if (!saveVaccinations(fresh)) return "La vaccination n’a pas pu être enregistrée.";
  person = fresh;
  keepPractitioner(dose.practitioner);
  return {};
}

}  // namespace

bool enterVaccination(QWidget *owner, Person &person, qsizetype place) {
  Vaccination dose;
  dose.practitioner = lastPractitioner();
  if (place >= 0) dose = person.vaccinations[place];
  describe(dose);
  const Reactions reactions{changed, [&person, place] { return keep(person, place); }};
  return runBuilt(QString("Vaccination\u00A0: %1").arg(fullName(person)), owner, reactions);
}

}  // namespace registry
