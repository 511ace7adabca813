// SPDX-License-Identifier: MIT
// The example application with its real tables: what a person enters, and the record it keeps.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tests/desktop/screen_user.h"

namespace korvel::test {
namespace {

constexpr char kMenu[] = "Cabinet médical", kNew[] = "Nouvelle fiche", kPaul[] = "Paul Martin",
               kChoice[] = "Choix du patient", kHome[] = "Commune de résidence",
               kDoctors[] = "Sélection de praticien en base", kRefused[] = "Saisie non acceptée",
               kFirstLine[] = "Ordonnance, ligne 1", kSecondLine[] = "Ordonnance, ligne 2",
               kThirdLine[] = "Ordonnance, ligne 3", kProfessions[] = "Table des professions",
               kSettings[] = "Réglages", kNote[] = "Note de visite\u00A0: Paul Martin";

// The tasks of the menu, in their order.
enum Task {
  kNewRecord,
  kEditRecord,
  kDoctor,
  kPrescribe,
  kVisit,
  kTable,
  kSetUp,
  kImport,
  kSearch
};

// A practice in a folder of its own: what the application keeps stays for its next start.
class Fiche : public testing::Test {
 protected:
  Fiche() {
    std::string name = std::filesystem::temp_directory_path() / "korvel-fiche-XXXXXX";
    folder_ = mkdtemp(name.data());
  }
  ~Fiche() override { std::filesystem::remove_all(folder_); }

  // Whether misuse is told, which leave() wants to hear nothing of.
  const char *debug_ = "KORVEL_DEBUG=1";

  // With its volumes in the test's folder, or in one below it.
  Application start(const std::string &below = "") const {
    return Application({FICHE}, {"FICHE_VOLUMES=" + folder_ + below, debug_});
  }

  std::filesystem::perms modeOf(const std::string &below) const {
    return std::filesystem::status(folder_ + below).permissions();
  }

  std::string path(const std::string &name) const { return folder_ + "/Cabinet/" + name; }

  // The lines of a file of the practice, as its bytes are.
  std::vector<std::string> kept(const std::string &name) const {
    std::ifstream file(path(name), std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      EXPECT_TRUE(line.ends_with('\r')) << line;
      lines.push_back(line.substr(0, line.size() - 1));
    }
    return lines;
  }

  // The first record of the practice, from an earlier day, with these further lines.
  void keepRecord(const std::string &lines) const {
    std::filesystem::create_directories(path("fiches"));
    std::ofstream(path(kRecord), std::ios::binary) << "nom=Martin\r\nprenom=Paul\r\n" << lines;
  }

  static constexpr char kRecord[] = "fiches/0001.fic";

 private:
  std::string folder_;
};

testing::AssertionResult holds(const std::vector<std::string> &lines, const std::string &line) {
  if (std::find(lines.begin(), lines.end(), line) != lines.end())
    return testing::AssertionSuccess();
  auto failure = testing::AssertionFailure() << "no line \"" << line << "\" in\n";
  for (const std::string &other : lines) failure << "  " << other << "\n";
  return failure;
}

testing::AssertionResult comesUp(const std::string &title) {
  if (waitForWindow(title)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "active is: " << activeWindow();
}

// Chooses a task of the menu, which is up or comes up.
testing::AssertionResult choose(Task task, const std::string &menu = kMenu) {
  const auto isUp = comesUp(menu);
  if (!isUp) return isUp;
  press("Home");
  for (int i = 0; i < task; ++i) press("Down");
  press("Return");
  return testing::AssertionSuccess();
}

// Chooses the first patient of the list.
testing::AssertionResult choosePatient() {
  const auto isUp = comesUp(kChoice);
  if (isUp) press("Tab Home Return");
  return isUp;
}

// Opens the note of a visit of the first patient.
testing::AssertionResult openVisit() {
  for (const auto &step : {choose(kVisit), choosePatient(), comesUp(kNote)})
    if (!step) return step;
  return testing::AssertionSuccess();
}

// From the first field on, to the one behind the date.
void dateVisit() {
  for (const char *part : {"5", "3", "2024"}) {
    press("ctrl+a");
    write(part);
    press("Tab");
  }
}

// Waits for the end. The application misuses nothing of the library, which would tell.
int waitForEnd(Application &application) {
  const int status = application.wait();
  for (const std::string &line : application.errors())
    EXPECT_FALSE(line.starts_with("korvel: ")) << line;
  return status;
}

// Leaves the menu and waits for the end.
int leave(Application &application) {
  const auto isUp = comesUp(kMenu);
  EXPECT_TRUE(isUp);
  if (!isUp) return -1;
  press("Escape");
  return waitForEnd(application);
}

TEST_F(Fiche, KeepsWhatIsEnteredByWayOfTheTables) {
  auto application = start();
  ASSERT_TRUE(choose(kNewRecord));
  ASSERT_TRUE(comesUp(kNew));
  write("Lefèvre");
  press("Tab");
  write("Zoë");
  press("Tab Tab Tab");
  write("Éleveuse d’abeilles");
  press("Tab space Tab");
  write("2");
  press("Tab");
  write("1");
  press("Tab");
  write("1980");
  press("Tab");
  write("belg");
  press("Tab");
  write("2a004");
  press("Tab");
  write("algé");
  press("Tab");
  write("2b");
  press("Return");

  ASSERT_TRUE(comesUp(kHome));
  write("l'ile");
  press("Return");

  ASSERT_TRUE(comesUp(kDoctors));
  write("JL");
  press("Tab Home Return");

  ASSERT_TRUE(choose(kPrescribe));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp(kFirstLine));
  write("dolip");
  press("Tab space Tab");
  write("1 sachet");
  press("Tab");
  write("3");
  press("Return");
  ASSERT_TRUE(comesUp(kSecondLine));
  press("Escape");

  ASSERT_EQ(leave(application), 0);
  const auto record = kept(kRecord);
  for (const char *line :
       {"nom=Lef\xE8vre", "prenom=Zo\xEB",
        "profession=\xC9leveuse d\x92"
        "abeilles",
        "naissance=19800102", "paysNaissance=BE", "communeNaissance=2A004", "pays=DZ",
        "departement=2B", "commune=2B134", "medecin=JLE", "ligne=60234100 3 1 sachet"})
    EXPECT_TRUE(holds(record, line));
  EXPECT_TRUE(holds(kept("professions.tab"),
                    "12,\xC9leveuse d\x92"
                    "abeilles"));
}

// The commune's name is the one it bore at birth, also where the date is typed after the code.
TEST_F(Fiche, ABirthplaceHasItsNameOfTheDayOfBirth) {
  constexpr struct {
    const char *day, *month, *year, *name;
  } kCases[] = {
      // 01033 changed its name on 1 January 2019; the history begins in 1970.
      {"31", "12", "2018", "Bellegarde-sur-Valserine"},
      {"1", "1", "2019", "Valserhône"},
      {"2", "1", "2019", "Valserhône"},
      {"14", "7", "1950", "Bellegarde-sur-Valserine"},
  };
  keepRecord("communeNaissance=01033\r\n");
  for (const auto &row : kCases) {
    SCOPED_TRACE(row.year);
    auto application = start();
    ASSERT_TRUE(choose(kEditRecord));
    ASSERT_TRUE(choosePatient());
    ASSERT_TRUE(comesUp(kPaul));
    press("Tab Tab Tab Tab Tab Tab");
    for (const char *part : {row.day, row.month, row.year}) {
      write(part);
      press("Tab");
    }
    // Back to the first field, and on to the label of the birth place among the last ones.
    for (int n = 0; n < 9 + 5; ++n) press("shift+Tab");
    press("ctrl+a ctrl+c");
    EXPECT_EQ(clipboard(), row.name);
    press("Escape");
    EXPECT_EQ(leave(application), 0);
  }
}

TEST_F(Fiche, AnUnknownCodeIsNotAccepted) {
  keepRecord("naissance=19750228\r\ncommuneNaissance=99999\r\n");
  auto application = start();
  ASSERT_TRUE(choose(kEditRecord));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp(kPaul));
  press("Return");
  // On to the birth place, which is cleared, and to the département.
  press("Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab ctrl+a Delete Tab Tab");
  write("99");
  press("Return ctrl+a");
  write("75");
  press("Return");
  ASSERT_TRUE(comesUp(kHome));
  press("Escape");
  ASSERT_TRUE(comesUp(kDoctors));
  press("Escape");
  ASSERT_EQ(leave(application), 0);
  const auto record = kept(kRecord);
  for (const char *line : {"communeNaissance=", "departement=75", "commune=", "medecin="})
    EXPECT_TRUE(holds(record, line));
}

TEST_F(Fiche, ABirthInTheFutureIsRefusedWithAMessage) {
  keepRecord("naissance=19750228\r\n");
  auto application = start();
  ASSERT_TRUE(choose(kEditRecord));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp(kPaul));
  press("Tab Tab Tab Tab Tab Tab Tab Tab ctrl+a");
  write("2099");
  press("Return");
  ASSERT_TRUE(comesUp(kRefused));
  press("Return");
  ASSERT_TRUE(comesUp(kPaul));
  press("Escape");
  ASSERT_EQ(leave(application), 0);
  EXPECT_TRUE(holds(kept(kRecord), "naissance=19750228"));
}

// What was entered stays in the dialog, and the file as it was.
TEST_F(Fiche, ARecordThatCannotBeSavedIsNotLost) {
  keepRecord("naissance=19750228\r\n");
  debug_ = "KORVEL_DEBUG=0";  // of what stands in the way
  const std::string obstacle = path(std::string(kRecord) + ".tmp");
  std::filesystem::create_directories(obstacle + "/full");
  auto application = start();
  ASSERT_TRUE(choose(kEditRecord));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp(kPaul));
  write("Marteau");
  press("Return");
  ASSERT_TRUE(comesUp(kRefused));
  EXPECT_TRUE(holds(kept(kRecord), "nom=Martin"));
  std::filesystem::remove_all(obstacle);
  press("Return");
  ASSERT_TRUE(comesUp(kPaul));
  press("Return");
  ASSERT_TRUE(comesUp(kDoctors));
  press("Escape");
  ASSERT_EQ(leave(application), 0);
  EXPECT_TRUE(holds(kept(kRecord), "nom=Marteau"));
  EXPECT_FALSE(std::filesystem::exists(obstacle));
}

// Opens the choice of a commune of the département 69.
class FicheCommune : public Fiche {
 protected:
  void SetUp() override {
    keepRecord("naissance=19750228\r\ndepartement=69\r\nmedecin=JLE\r\n");
    ASSERT_TRUE(choose(kEditRecord));
    ASSERT_TRUE(choosePatient());
    ASSERT_TRUE(comesUp(kPaul));
    press("Return");
    ASSERT_TRUE(comesUp(kHome));
  }

  Application application_ = start();
};

TEST_F(FicheCommune, IsChosenInTheList) {
  press("Tab End Up");
  press("Return");
  ASSERT_EQ(leave(application_), 0);
  EXPECT_TRUE(holds(kept(kRecord), "commune=69268"));
}

TEST_F(FicheCommune, IsChosenAmongThoseThatBeginWithTheLetters) {
  write("ville");
  press("Tab End");
  press("Return");
  ASSERT_EQ(leave(application_), 0);
  EXPECT_TRUE(holds(kept(kRecord), "commune=69266"));
}

TEST_F(FicheCommune, IsAcceptedByADoubleClick) {
  constexpr Place kFirstRow{200, 101};
  click(kFirstRow, 2);
  ASSERT_EQ(leave(application_), 0);
  EXPECT_TRUE(holds(kept(kRecord), "commune=69001"));
}

TEST_F(Fiche, AProfessionIsAddedOnceAndFoundInWhateverCase) {
  keepRecord("naissance=19750228\r\nprofession=Sellier\r\nmedecin=JLE\r\n");
  auto application = start();
  ASSERT_TRUE(choose(kEditRecord));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp(kPaul));
  press("Tab Tab Tab Tab Tab space space");
  press("shift+Tab ctrl+a");
  write("SELLIER");
  press("Tab space shift+Tab ctrl+a");
  write("bourrelier+sellier");
  press("Tab space");
  ASSERT_TRUE(comesUp("Professions"));
  press("Return");
  ASSERT_TRUE(comesUp(kPaul));
  press("Escape");
  ASSERT_EQ(leave(application), 0);
  const auto table = kept("professions.tab");
  ASSERT_EQ(table.size(), 16u);
  EXPECT_EQ(table[13], "11,Sans profession");
  EXPECT_EQ(table[14], "12,Sellier");
  EXPECT_EQ(table[15], "#FIN");
}

TEST_F(Fiche, WhatIsTypedOverALabelGoes) {
  keepRecord("naissance=19750228\r\ncommuneNaissance=69123\r\n");
  auto application = start();
  ASSERT_TRUE(choose(kEditRecord));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp(kPaul));
  // The labels are the last fields; the second one is the birth place.
  press("shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab");
  write("x");
  press("ctrl+a ctrl+c Escape");
  EXPECT_EQ(clipboard(), "Lyon");
  EXPECT_EQ(leave(application), 0);
}

TEST_F(Fiche, BehindTheLastDrugOfTheLettersComesTheFirst) {
  keepRecord("naissance=19750228\r\n");
  auto application = start();
  ASSERT_TRUE(choose(kPrescribe));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp(kFirstLine));
  write("digoxine nati");
  press("Tab space space Tab");
  write("1");
  press("Return");
  ASSERT_TRUE(comesUp(kSecondLine));
  write("digoxine nati");
  press("Tab space space space Tab");
  write("2");
  press("Return");
  ASSERT_TRUE(comesUp(kThirdLine));
  press("Escape");
  ASSERT_EQ(leave(application), 0);
  const auto record = kept(kRecord);
  EXPECT_TRUE(holds(record, "ligne=65458013 0 1"));
  EXPECT_TRUE(holds(record, "ligne=67681303 0 2"));
}

TEST_F(Fiche, APatientIsFoundByTheFirstLettersAndGetsAPractitioner) {
  keepRecord("naissance=19750228\r\n");
  std::ofstream(path("fiches/0007.fic"), std::ios::binary)
      << "nom=\xC9t\xE9\r\nprenom=Jo\xEBl\r\nnaissance=19600101\r\nenfants=3\r\n";
  auto application = start();
  ASSERT_TRUE(choose(kDoctor));
  ASSERT_TRUE(comesUp(kChoice));
  write("ete");
  press("Tab Home Return");
  ASSERT_TRUE(comesUp(kDoctors));
  write("MG");
  press("Tab Home Return");
  ASSERT_EQ(leave(application), 0);
  const auto record = kept("fiches/0007.fic");
  EXPECT_TRUE(holds(record, "medecin=MGR"));
  EXPECT_TRUE(holds(record, "nom=\xC9t\xE9"));
  EXPECT_TRUE(holds(record, "enfants=3"));
  EXPECT_FALSE(holds(kept(kRecord), "medecin=MGR"));
}

// Opens the table of professions.
class FicheTable : public Fiche {
 protected:
  void SetUp() override {
    ASSERT_TRUE(choose(kTable));
    ASSERT_TRUE(comesUp(kProfessions));
  }

  // Renames the second profession, adds one and removes the first, answering the question.
  void changeTable() {
    press("shift+Tab Home Down Tab ctrl+a");
    write("Artisan d’art");
    press("Tab Tab space shift+Tab shift+Tab ctrl+a");
    write("Notaire");
    press("Tab space shift+Tab shift+Tab Home Tab Tab Tab Tab space");
    ASSERT_TRUE(comesUp("Suppression"));
    press("Left Return");
    ASSERT_TRUE(comesUp(kProfessions));
  }

  Application application_ = start();
};

TEST_F(FicheTable, KeepsWhatWasAddedRenamedAndRemoved) {
  changeTable();
  press("Tab Return");
  ASSERT_EQ(leave(application_), 0);
  const auto table = kept("professions.tab");
  ASSERT_EQ(table.size(), 15u);
  EXPECT_EQ(table[3],
            "02,Artisan d\x92"
            "art");
  EXPECT_EQ(table[13], "12,Notaire");
  EXPECT_EQ(table[14], "#FIN");
  EXPECT_TRUE(holds(kept("professions.bak"), "01,Agriculteur"));
}

TEST_F(FicheTable, IsAsBeforeWhenTheChangesAreCancelled) {
  changeTable();
  press("Escape");
  ASSERT_TRUE(comesUp("Annulation"));
  press("Left Return");
  ASSERT_EQ(leave(application_), 0);
  const auto table = kept("professions.tab");
  ASSERT_EQ(table.size(), 15u);
  EXPECT_EQ(table[3], "01,Agriculteur");
  EXPECT_EQ(table[4], "02,Artisan");
  EXPECT_EQ(table[13], "11,Sans profession");
}

TEST_F(Fiche, ANoteOfAVisitIsAPictureAndKeepsTheWeight) {
  keepRecord("naissance=19750228\r\npoids=70.00\r\n");
  auto application = start();
  ASSERT_TRUE(openVisit());
  dateVisit();
  write("Contrôle");
  press("Tab ctrl+a");
  write("68,5");
  press("Return");
  ASSERT_TRUE(comesUp("Note de visite"));
  press("Return");
  ASSERT_EQ(leave(application), 0);
  EXPECT_TRUE(holds(kept(kRecord), "poids=68.50"));
  std::ifstream note(path("notes/0001-20240305.png"), std::ios::binary);
  std::string head(24, '\0');
  note.read(head.data(), static_cast<std::streamsize>(head.size()));
  // The signature, and width and height: 420 x 610.
  EXPECT_EQ(head.substr(0, 8), "\x89PNG\r\n\x1A\n");
  EXPECT_EQ(head.substr(16), std::string("\0\0\x01\xA4\0\0\x02\x62", 8));
  EXPECT_GT(std::filesystem::file_size(path("notes/0001-20240305.png")), 4000u);
}

// Before anything is typed, and with a date that is none.
TEST_F(Fiche, ANoteIsSeenFromTheBeginning) {
  keepRecord("naissance=19750228\r\npoids=70.00\r\n");
  auto application = start();
  ASSERT_TRUE(openVisit());
  const Picture before = picture(430, 20, 400, 200);
  EXPECT_GT(before.darkPixels(), 500);
  press("Tab ctrl+a");
  write("13");
  EXPECT_FALSE(picture(430, 20, 400, 200).pixels == before.pixels);
  press("Escape");
  EXPECT_EQ(leave(application), 0);
}

// The dialog of a visit, once its note has a reason.
class FicheVisit : public Fiche {
 protected:
  void SetUp() override {
    keepRecord(
        "naissance=19750228\r\nligne=60234100 3 1 sachet\r\nligne=65458013 0 2 le matin\r\n"
        "ligne=67681303 10 1 le soir\r\n");
    ASSERT_TRUE(openVisit());
    dateVisit();
    write("Fièvre");
  }

  // Most of the note, at once and when it has not changed for a while.
  static Picture note() { return picture(430, 20, 400, 560); }
  static Picture noteAtRest() {
    Picture last = note();
    for (int same = 0; same < 3;) {
      Picture next = note();
      same = next.pixels == last.pixels ? same + 1 : 0;
      last = std::move(next);
    }
    return last;
  }

  // Keeps the note, with the last of the dialog's items on.
  static void askForPrint() {
    for (int n = 0; n < 6; ++n) press("shift+Tab");
    press("space Return");
    ASSERT_TRUE(comesUp("Note de visite"));
    press("Return");
  }

  // Has the note printed as set up by the keys, from the margins at the sides on.
  void print(const char *keys) {
    askForPrint();
    ASSERT_TRUE(comesUp("Impression"));
    press(keys);
    press("Return");
    ASSERT_TRUE(comesUp("Impression terminée"));
    press("Return");
    ASSERT_EQ(leave(application_), 0);
  }

  // A word of the file and where it is, in points from the page's top left corner.
  struct Word {
    int page;
    double left, top, right, bottom;
    std::string text;
  };
  std::vector<Word> words() const {
    std::vector<Word> found;
    int page = 0;
    for (const std::string &line : linesOf("pdftotext -bbox '" + path(kPdf) + "' -")) {
      Word word{page, 0, 0, 0, 0, std::string(100, '\0')};
      if (line.find("<page ") != std::string::npos) ++page;
      if (std::sscanf(line.c_str(),
                      " <word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\">%99[^<]",
                      &word.left, &word.top, &word.right, &word.bottom, word.text.data()) != 5)
        continue;
      word.text.resize(word.text.find('\0'));
      found.push_back(word);
    }
    return found;
  }
  static bool hasWord(const std::vector<Word> &words, const std::string &text) {
    return std::any_of(words.begin(), words.end(), [&](auto &word) { return word.text == text; });
  }

  std::vector<std::string> linesOf(const std::string &command) const {
    std::vector<std::string> lines;
    FILE *output = popen(command.c_str(), "r");
    char line[1024];
    while (std::fgets(line, sizeof line, output) != nullptr) lines.emplace_back(line);
    EXPECT_EQ(pclose(output), 0) << command;
    return lines;
  }

  static constexpr char kPdf[] = "notes/0001-20240305.pdf";

  Application application_ = start();
};

// A point in millimetres.
constexpr double kMillimetre = 72 / 25.4;

TEST_F(FicheVisit, ANoteIsSeenAsItIsTyped) {
  const Picture before = picture(430, 20, 400, 200);
  EXPECT_GT(before.darkPixels(), 500);
  write("s");
  EXPECT_FALSE(picture(430, 20, 400, 200).pixels == before.pixels);
  press("BackSpace");
  EXPECT_TRUE(picture(430, 20, 400, 200).pixels == before.pixels);
  press("Escape");
  EXPECT_EQ(leave(application_), 0);
}

// One that is none, and one that is taken out again, too: weight and pulse.
TEST_F(FicheVisit, ANumberIsSeenAsItIsTyped) {
  const auto becomes = [](const Picture &expected) {
    return waitUntil(kPatience, [&] { return note().pixels == expected.pixels; });
  };
  Picture with;
  const auto changesFrom = [&](const Picture &before) {
    return waitUntil(kPatience, [&] { return (with = note()).pixels != before.pixels; });
  };
  const Picture without = noteAtRest();
  for (const char *keys : {"Tab", "Tab Tab"}) {
    press(keys);
    write("7");
    ASSERT_TRUE(changesFrom(without)) << keys;
    write("x");
    ASSERT_TRUE(becomes(without)) << keys;
    press("BackSpace");
    ASSERT_TRUE(becomes(with)) << keys;
    press("BackSpace");
    ASSERT_TRUE(becomes(without)) << keys;
  }
  press("Escape");
  EXPECT_EQ(leave(application_), 0);
}

TEST_F(FicheVisit, ANoteIsPrintedAsTextWithinTheMarginsThatAreSet) {
  print("3 0 Tab 2 5");
  const auto words = this->words();
  ASSERT_FALSE(words.empty());
  for (const char *text : {"Cabinet", "médical", "05/03/2024", "Martin,", "Fièvre", "DOLIPRANE",
                           "Consultation", "30,00", "€", "Total"})
    EXPECT_TRUE(hasWord(words, text)) << text;
  for (const Word &word : words) {
    EXPECT_EQ(word.page, 1);
    EXPECT_GE(word.left, 30 * kMillimetre - 1) << word.text;
    EXPECT_LE(word.right, (210 - 30) * kMillimetre + 1) << word.text;
    EXPECT_GE(word.top, 25 * kMillimetre - 1) << word.text;
    EXPECT_LE(word.bottom, (297 - 25) * kMillimetre + 1) << word.text;
  }
  EXPECT_NEAR(words.front().left, 30 * kMillimetre, 2);
  EXPECT_EQ(linesOf("pdfinfo '" + path(kPdf) + "' | sed -n 's/^Title: *//p'"),
            std::vector{std::string(kNote) + '\n'});
  // The pictures are as fine as the print: 600 to the inch.
  const auto pictures = linesOf("pdfimages -list '" + path(kPdf) + "' | grep ' image '");
  EXPECT_GE(pictures.size(), 4u);
  for (const std::string &line : pictures)
    EXPECT_NE(line.find(" 600   600 "), std::string::npos) << line;
}

// On A5 across, with wide margins, there is no room for all: pages end between two lines.
TEST_F(FicheVisit, ALongNoteGoesOnOnTheNextPage) {
  print("3 0 Tab 3 0 shift+Tab shift+Tab space shift+Tab Down");
  const auto words = this->words();
  ASSERT_FALSE(words.empty());
  EXPECT_GE(words.back().page, 2);
  for (const char *text : {"Cabinet", "Fièvre", "DOLIPRANE", "sachet,", "matin", "soir,", "Total"})
    EXPECT_TRUE(hasWord(words, text)) << text;
  for (const Word &word : words) {
    EXPECT_GE(word.top, 30 * kMillimetre - 1) << word.text;
    EXPECT_LE(word.bottom, (148 - 30) * kMillimetre + 1) << word.text;
    EXPECT_LE(word.right, (210 - 30) * kMillimetre + 1) << word.text;
  }
}

TEST_F(FicheVisit, MarginsThatLeaveNoRoomAreRefused) {
  askForPrint();
  ASSERT_TRUE(comesUp("Impression"));
  press("8 0 Return");
  ASSERT_TRUE(comesUp(kRefused));
  press("Return");
  ASSERT_TRUE(comesUp("Impression"));
  press("Escape");
  ASSERT_EQ(leave(application_), 0);
  EXPECT_FALSE(std::filesystem::exists(path(kPdf)));
}

// Opens the import of a table, whose file is beside the practice, in a folder with an accent.
class FicheImport : public Fiche {
 protected:
  void SetUp() override {
    keepRecord("naissance=19750228\r\ndepartement=69\r\n");
    std::filesystem::create_directories(path("Reçu"));
    ASSERT_TRUE(choose(kImport));
    ASSERT_TRUE(comesUp(kImporting));
  }

  // The table of this name with so many of its lines, or with all of them over and over.
  void import(const std::string &name, int lines, const std::string &changed = "",
              const std::string &into = "") {
    std::ifstream table(TABLES + ("/" + name), std::ios::binary);
    std::ofstream file(path("Reçu/" + name), std::ios::binary);
    std::string line;
    std::streampos first;
    for (int n = 0; n < lines + 3 && std::getline(table, line); ++n) {
      if (n == 2) first = table.tellg();
      if (line == "#FIN\r") {
        table.seekg(first);
        std::getline(table, line);
      }
      if (!changed.empty() && line.starts_with(changed)) line = into + line.substr(changed.size());
      file << line << '\n';
    }
    file << "#FIN\r\n";
    file.close();
    write(path("Reçu/" + name));
    burstOfKeys("Return");
  }

  bool isIn(const std::string &name) const {
    return std::filesystem::exists(path("tables/" + name));
  }

  static constexpr char kImporting[] = "Importer une table";

  Application application_ = start();
};

TEST_F(FicheImport, OfALongTableIsCancelledAndLeavesTheOneBefore) {
  import("communes_histo.tab", 300'000);
  ASSERT_TRUE(waitForWindowAtWork("Importation de communes_histo.tab")) << activeWindow();
  press("Escape");
  ASSERT_TRUE(comesUp(kImporting));
  press("Return");
  ASSERT_EQ(leave(application_), 0);
  EXPECT_FALSE(isIn("communes_histo.tab"));
  EXPECT_FALSE(isIn("import.new"));
}

TEST_F(FicheImport, AWholeTableIsUsedFromThenOn) {
  import("departements.tab", 101, "69,Rh\xF4ne,", "69,Rh\xF4ne et Lyon,");
  ASSERT_TRUE(comesUp(kImporting));
  press("Return");
  EXPECT_TRUE(isIn("departements.tab"));
  EXPECT_FALSE(isIn("import.new"));
  ASSERT_TRUE(choose(kEditRecord));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp(kPaul));
  // Back over the button pair and the body-mass index to the label of the département.
  press("shift+Tab shift+Tab shift+Tab shift+Tab ctrl+a ctrl+c Escape");
  EXPECT_EQ(clipboard(), "Rhône et Lyon");
  EXPECT_EQ(leave(application_), 0);
}

TEST_F(FicheImport, WhatIsNoTableOfItsOwnIsRefused) {
  std::ofstream(path("Reçu/communes.tab")) << "#DEBUT\r\n";
  for (const char *name : {"professions.tab", "communes.tab", "pays.tab"}) {
    press("ctrl+a");
    write(path(std::string("Reçu/") + name));
    press("Return");
    ASSERT_TRUE(comesUp(kRefused)) << name;
    press("Return");
    ASSERT_TRUE(comesUp(kImporting));
  }
  press("Escape");
  EXPECT_EQ(leave(application_), 0);
}

constexpr char kSearching[] = "Recherche dans les notes";

TEST_F(FicheVisit, ANoteIsFoundByATextOfIt) {
  press("Return");
  ASSERT_TRUE(comesUp("Note de visite"));
  press("Return");
  ASSERT_TRUE(choose(kSearch));
  ASSERT_TRUE(comesUp(kSearching));
  write("toux");
  press("Return Return");
  ASSERT_TRUE(choose(kSearch));
  ASSERT_TRUE(comesUp(kSearching));
  write("FIEV");
  press("Return");
  ASSERT_TRUE(comesUp("Notes trouvées"));
  press("Home Return");
  ASSERT_TRUE(comesUp(kPaul));
  press("Escape");
  EXPECT_EQ(leave(application_), 0);
}

// With more notes than can be read in a moment.
TEST_F(Fiche, ASearchInManyNotesShowsItsProgressAndIsCancelled) {
  constexpr int kNotes = 60'000;
  keepRecord("naissance=19750228\r\n");
  std::filesystem::create_directories(path("notes"));
  const std::string first = path("notes/0001-00000000.txt");
  std::ofstream(first) << "Toux\r\n";
  for (int n = 1; n < kNotes; ++n) {
    char name[32];
    std::snprintf(name, sizeof name, "notes/0001-%08d.txt", n);
    std::filesystem::create_hard_link(first, path(name));
  }
  auto application = start();
  ASSERT_TRUE(choose(kSearch));
  ASSERT_TRUE(comesUp(kSearching));
  write("toux");
  burstOfKeys("Return");
  // The window of the work has the dialog's title, and a size of its own.
  ASSERT_TRUE(waitUntil(kPatience, [] {
    const Content shown = activeContent();
    return shown.width == 360 && shown.height == 82;
  }));
  application.pause();
  ASSERT_EQ(activeContent().height, 82) << "it has found all before it is cancelled";
  burstOfKeys("Escape");
  application.goOn();
  ASSERT_TRUE(comesUp(kMenu)) << "what it has found so far is not shown";
  EXPECT_EQ(leave(application), 0);
}

TEST_F(Fiche, KeepsWhatItKnowsInFoldersForItsOwnerAlone) {
  const mode_t mask = umask(0);
  auto application = start("/data/volumes");
  umask(mask);
  ASSERT_TRUE(choose(kNewRecord));
  ASSERT_TRUE(comesUp(kNew));
  write("Garçon");
  press("Tab");
  write("Loïc");
  press("Tab Tab Tab Tab Tab");
  for (const char *part : {"3", "9", "2016"}) {
    write(part);
    press("Tab");
  }
  press("Return");
  ASSERT_TRUE(comesUp(kDoctors));
  press("Escape");
  ASSERT_TRUE(choose(kVisit));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp("Note de visite\u00A0: Loïc Garçon"));
  press("Tab Tab Tab");
  write("Contrôle");
  press("Return");
  ASSERT_TRUE(comesUp("Note de visite"));
  press("Return");
  ASSERT_EQ(leave(application), 0);
  for (const char *folder : {"/data", "/data/volumes", "/data/volumes/Cabinet",
                             "/data/volumes/Cabinet/fiches", "/data/volumes/Cabinet/notes"})
    EXPECT_EQ(modeOf(folder), std::filesystem::perms::owner_all) << folder;
}

TEST_F(Fiche, SettingsNameTheMenuAndHaveItAskBeforeTheEnd) {
  auto application = start();
  ASSERT_TRUE(choose(kSetUp));
  ASSERT_TRUE(comesUp(kSettings));
  press("ctrl+a");
  write("Cabinet de l’Été");
  press("Tab Tab Tab Tab ctrl+a");
  write("31,5");
  press("Tab space Return");
  ASSERT_TRUE(comesUp("Cabinet de l’Été"));
  press("Escape");
  ASSERT_TRUE(comesUp("Quitter"));
  press("Escape");
  ASSERT_TRUE(comesUp("Cabinet de l’Été"));
  press("Escape");
  ASSERT_TRUE(comesUp("Quitter"));
  press("Return");
  ASSERT_EQ(waitForEnd(application), 0);
  const auto profile = kept("fiche.ini");
  EXPECT_TRUE(holds(profile, "nom=Cabinet de l\x92\xC9t\xE9"));
  EXPECT_TRUE(holds(profile, "honoraires=31.50"));
  EXPECT_TRUE(holds(profile, "confirmer=1"));
}

}  // namespace
}  // namespace korvel::test
