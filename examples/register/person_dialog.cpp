// SPDX-License-Identifier: MIT
// A person, by a form drawn with Qt Designer (resources/dialogs/personne.ui).
#include <korvel/dialogs.h>

#include "dialogs.h"
#include "form.h"
#include "store.h"
#include "text.h"

namespace registry {
namespace {

enum Text { kName, kFirstName, kSex, kRemarks, kAge, kTexts };
enum Date { kBirth, kDates };

constexpr int kLongestName = 40, kLongestRemark = 500;

Person entered(const Person &before) {
  Person person = before;
  person.name = enteredText(kName);
  person.firstName = enteredText(kFirstName);
  person.sex = enteredText(kSex);
  person.birth = enteredDate(kBirth);
  person.remarks = enteredText(kRemarks);
  return person;
}

QString keep(Person &person) {
  Person fresh = entered(person);
  const QString sign = unkeepable(fresh.name + fresh.firstName + fresh.remarks);
  if (!sign.isEmpty()) return QString("Un texte contient %1.").arg(sign);
  if (fresh.name.isEmpty()) return "Le nom est vide.";
  if (!fresh.birth.isValid()) return "La date de naissance n’existe pas.";
  for (const Vaccination &dose : fresh.vaccinations)
    if (dose.day < fresh.birth)
      return QString("Une vaccination du %1 serait avant la naissance.").arg(shown(dose.day));
  if (!savePerson(fresh)) return "La fiche n’a pas pu être enregistrée.";
  person = fresh;
  return {};
}

void describe(const Person &person) {
  TexteDlgBox_param(kTexts, kFirstText);
  describeText(kName, person.name, kLongestName, true);
  describeText(kFirstName, person.firstName, kLongestName, true);
  describeText(kSex, person.sex, kLongestName, false);
  TexteDlgBox_set_liste(kSex, toBytes("Féminin+Masculin").c_str());
  describeText(kRemarks, person.remarks, kLongestRemark, false);
  describeText(kAge, ageOn(QDate::currentDate(), person.birth), kLongestName, false);
  DateDlgBox_param(kDates, kFirstDate);
  describeDate(kBirth, person.birth);
  DateDlgBox_set_fvalid(kBirth, notInFuture);
  KorvelItemName(dateItem(kBirth), "Naissance");
}

}  // namespace

bool enterPerson(Person &person) {
  describe(person);
  const Reactions reactions{[](Change &change) {
                              if (change.isOfDate(kBirth))
                                change.showText(kAge,
                                                ageOn(QDate::currentDate(), enteredDate(kBirth)));
                            },
                            [&person] { return keep(person); }};
  const QString title = person.number == 0 ? "Nouvelle personne" : fullName(person);
  return runDrawn("personne", title, reactions);
}

}  // namespace registry
