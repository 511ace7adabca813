// SPDX-License-Identifier: MIT
// A profile is replaced as a whole at each write: whatever happens meanwhile, there is the old one
// or the new one. What cannot be read in full counts as unreadable, and is so never written over.
#include "store.h"

#include <algorithm>
#include <optional>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <korvel/desktop.h>
#include <korvel/files.h>
#include <korvel/profile.h>
#include <korvel/tables.h>

#include "text.h"

namespace registry {
namespace {

constexpr char kVolume[] = "Registre", kPeople[] = "Registre:personnes",
               kBooklets[] = "Registre:carnets", kSettings[] = "Registre:registre.ini",
               kSuffix[] = ".per";
constexpr char kPerson[] = "Personne", kVaccinations[] = "Vaccinations";
constexpr int kDigits = 4;

// ---- Files ----

QString fileName(int number, const char *suffix = kSuffix) {
  return QString("%1").arg(number, kDigits, 10, QLatin1Char('0')) + QLatin1String(suffix);
}

std::string pathOf(int number) { return kPeople + (':' + fileName(number).toStdString()); }

QString systemPath(const std::string &path) {
  char out[256];
  return MAC2UNIX(path.c_str(), out) > 0 ? QFile::decodeName(out) : QString();
}

// The library's MakeDir opens a folder to everybody; a register is nobody else's affair.
bool haveFolder(const QString &path) {
  constexpr auto kPrivate =
      QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
  const QFileInfo folder(path);
  return folder.isDir() || (QDir().mkpath(folder.path()) && QDir().mkdir(path, kPrivate));
}

bool isReadable(const std::string &path) {
  const int file = File_Open(path.c_str(), 1, 0);
  if (file >= 0) File_Close(file);
  return file >= 0;
}

// A write to a file that may not be read would succeed with nothing written.
bool writeSection(const Person &person, const char *section, const QStringList &entries) {
  const std::string path = pathOf(person.number);
  if (File_Is_Existing(path.c_str()) != 0 && !isReadable(path)) return false;
  const std::string text = toBytes(entries.join("\r\n"));
  return WritePrivateProfileSection(section, text.c_str(), path.c_str()) == 1;
}

QStringList filesOfPeople() {
  static QStringList names;
  names.clear();
  Dir_ProcessFiles(kPeople, kSuffix, [](const char *name) {
    names.append(fromBytes(name));
    return 0;
  });
  names.sort();
  return names;
}

int highestNumber() {
  int highest = 0;
  for (const QString &name : filesOfPeople())
    highest = std::max(highest, name.section(u'.', 0, 0).toInt());
  return highest;
}

// ---- A person as entries of a profile ----

QStringList entriesOf(const Person &person) {
  return {"nom=" + person.name, "prenom=" + person.firstName, "sexe=" + person.sex,
          "naissance=" + QString::number(toNumber(person.birth)), "remarques=" + person.remarks};
}

QString valueOf(const Vaccination &dose) {
  return QStringList{QString::number(toNumber(dose.day)), dose.vaccine, dose.lot, dose.practitioner,
                     QString::number(toNumber(dose.due))}
      .join(u'\t');
}

QString valueIn(const std::string &path, const char *key) {
  char text[16384];  // as long as a profile keeps a line
  GetPrivateProfileString(kPerson, key, "", text, sizeof text, path.c_str());
  return fromBytes(text);
}

// The values of a person's vaccinations, in the order of their entries. By their numbers those
// behind a gap would not be found, and so be lost at the next write. Nothing where they cannot be
// read.
std::optional<QStringList> dosesIn(const std::string &path) {
  QFile file(systemPath(path));
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray bytes = file.readAll();
  if (bytes.contains('\0')) return {};
  const QString header = u'[' + QLatin1String(kVaccinations) + u']';
  bool isInside = false;
  QStringList doses;
  for (const QString &each : fromBytes(bytes).remove(u'\n').split(u'\r')) {
    if (each.startsWith(u'['))
      isInside = each.startsWith(header);
    else if (isInside && !each.isEmpty())
      doses.append(each.section(u'=', 1));
  }
  return doses;
}

// Nothing where a part is missing or is not what it should be.
std::optional<Vaccination> vaccinationOf(const QString &value) {
  const QStringList parts = value.split(u'\t');
  if (parts.size() != 5) return {};
  const Vaccination dose{fromNumber(parts[0].toInt()), parts[1], parts[2], parts[3],
                         fromNumber(parts[4].toInt())};
  const bool isDueRight = dose.due.isValid() || parts[4] == "0";
  return dose.day.isValid() && isDueRight ? std::optional(dose) : std::nullopt;
}

std::optional<Person> readPerson(int number) {
  const std::string path = pathOf(number);
  Person person{number,
                valueIn(path, "nom"),
                valueIn(path, "prenom"),
                valueIn(path, "sexe"),
                fromNumber(valueIn(path, "naissance").toInt()),
                valueIn(path, "remarques"),
                {}};
  const auto doses = dosesIn(path);
  if (person.name.isEmpty() || !person.birth.isValid() || !doses) return {};
  for (const QString &value : *doses) {
    const auto dose = vaccinationOf(value);
    if (!dose) return {};
    person.vaccinations.append(*dose);
  }
  return person;
}

QString dataFolder() {
  const QString own = qEnvironmentVariable("REGISTER_VOLUMES");
  return own.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) : own;
}

}  // namespace

QString openRegister() {
  const QString folder = dataFolder();
  const QByteArray volumes = QFile::encodeName(folder);
  if (volumes.size() >= static_cast<int>(sizeof szVolumes))
    return QString("Le chemin du dossier est trop long\u00A0: %1").arg(folder);
  qstrncpy(szVolumes, volumes.constData(), sizeof szVolumes);
  for (const QString &each :
       {folder, systemPath(kVolume), systemPath(kPeople), systemPath(kBooklets)})
    if (!haveFolder(each)) return QString("Le dossier ne peut pas être créé\u00A0: %1").arg(each);
  const QString table = systemPath(std::string(kVolume) + ":vaccins.tab");
  const QString initial = QCoreApplication::applicationDirPath() + "/tables/vaccins.tab";
  if (!QFile::exists(table) && !QFile::copy(initial, table))
    return QString("La table des vaccins ne peut pas être copiée\u00A0: %1").arg(initial);
  setDirTables(kVolume);
  return {};
}

Contents readRegister() {
  Contents contents;
  for (const QString &name : filesOfPeople()) {
    const int number = name.section(u'.', 0, 0).toInt();
    if (number < 1 || name != fileName(number)) continue;
    if (auto person = readPerson(number)) {
      sortByDay(person->vaccinations);
      contents.people.append(*person);
    } else {
      contents.unreadable.append(name);
    }
  }
  return contents;
}

bool savePerson(Person &person) {
  Person saved = person;
  if (saved.number == 0) saved.number = highestNumber() + 1;
  if (!writeSection(saved, kPerson, entriesOf(saved))) return false;
  person.number = saved.number;
  return true;
}

bool saveVaccinations(const Person &person) {
  QStringList entries;
  for (const Vaccination &dose : person.vaccinations)
    entries.append(QString::number(entries.size() + 1) + u'=' + valueOf(dose));
  return writeSection(person, kVaccinations, entries);
}

bool erasePerson(const Person &person) {
  const QString booklet = bookletPath(person);
  if (QFile::exists(booklet) && !QFile::remove(booklet)) return false;
  return MACRemove(pathOf(person.number).c_str()) == 0;
}

QString unkeepable(const QString &text) {
  if (text.contains(u'[')) return "le crochet «\u00A0[\u00A0»";
  const auto isControl = [](QChar each) { return each.unicode() < 0x20; };
  return std::any_of(text.begin(), text.end(), isControl) ? "une tabulation" : QString();
}

QString lastPractitioner() {
  char name[256];
  GetPrivateProfileString("Saisie", "praticien", "", name, sizeof name, kSettings);
  return fromBytes(name);
}

void keepPractitioner(const QString &name) {
  WritePrivateProfileString("Saisie", "praticien", toBytes(name).c_str(), kSettings);
}

QString bookletPath(const Person &person) {
  return systemPath(kBooklets + (':' + fileName(person.number, ".pdf").toStdString()));
}

}  // namespace registry
