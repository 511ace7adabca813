// SPDX-License-Identifier: MIT
// What follows from the days in a person's record.
#include "person.h"

#include <algorithm>

namespace registry {

QString fullName(const Person &person) { return person.firstName + u' ' + person.name; }

QString shownRemarks(const Person &person) {
  return person.remarks.isEmpty() ? QString() : "Remarques\u00A0: " + person.remarks;
}

QString ageOn(QDate day, QDate birth) {
  constexpr int kInfancy = 24;
  if (!birth.isValid() || birth > day) return {};
  int months = (day.year() - birth.year()) * 12 + day.month() - birth.month();
  if (birth.addMonths(months) > day) --months;
  return months < kInfancy ? QString("%1 mois").arg(months) : QString("%1 ans").arg(months / 12);
}

void sortByDay(QList<Vaccination> &vaccinations) {
  std::stable_sort(vaccinations.begin(), vaccinations.end(),
                   [](const auto &a, const auto &b) { return a.day > b.day; });
}

QDate dueAfter(const Person &person, const Vaccination &dose) {
  const auto isLater = [&](const Vaccination &other) {
    return other.vaccine == dose.vaccine && other.day > dose.day;
  };
  const auto &all = person.vaccinations;
  return std::any_of(all.begin(), all.end(), isLater) ? QDate() : dose.due;
}

QDate nextDue(const Person &person) {
  QDate next;
  for (const Vaccination &dose : person.vaccinations) {
    const QDate due = dueAfter(person, dose);
    if (due.isValid() && (!next.isValid() || due < next)) next = due;
  }
  return next;
}

Urgency urgencyOf(QDate due) {
  constexpr int kSoonMonths = 3;
  const QDate today = QDate::currentDate();
  if (!due.isValid()) return Urgency::kNone;
  if (due < today) return Urgency::kOverdue;
  return due <= today.addMonths(kSoonMonths) ? Urgency::kSoon : Urgency::kLater;
}

}  // namespace registry
