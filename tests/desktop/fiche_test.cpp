// The example application with its real tables: what a person enters, and the record it keeps.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/desktop/screen_user.h"

namespace korvel::test {
namespace {

constexpr char kPatient[] = "Fiche patient", kHome[] = "Commune de résidence",
               kFirstLine[] = "Ordonnance, ligne 1", kSecondLine[] = "Ordonnance, ligne 2",
               kThirdLine[] = "Ordonnance, ligne 3";

// A practice in a folder of its own: what the application keeps stays for its next start.
class Fiche : public testing::Test {
 protected:
  Fiche() {
    std::string name = std::filesystem::temp_directory_path() / "korvel-fiche-XXXXXX";
    folder_ = mkdtemp(name.data());
  }
  ~Fiche() override { std::filesystem::remove_all(folder_); }

  Application start() const {
    return Application({FICHE}, {"FICHE_VOLUMES=" + folder_,
                                 std::string("LSAN_OPTIONS=suppressions=") + TOOLKIT_LEAKS});
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

  // A record from an earlier day, with these further lines.
  void keepRecord(const std::string &lines) const {
    std::filesystem::create_directory(folder_ + "/Cabinet");
    std::ofstream(path("fiche.ini"), std::ios::binary)
        << "[Patient]\r\nnom=Martin\r\nprenom=Paul\r\n"
        << lines;
  }

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

TEST_F(Fiche, KeepsWhatIsEnteredByWayOfTheTables) {
  auto application = start();
  ASSERT_TRUE(comesUp(kPatient));
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

  ASSERT_TRUE(comesUp(kFirstLine));
  write("dolip");
  press("Tab space Tab");
  write("1 sachet");
  press("Tab");
  write("3");
  press("Return");
  ASSERT_TRUE(comesUp(kSecondLine));
  press("Escape");

  ASSERT_EQ(application.wait(), 0);
  const auto printed = application.output();
  for (const char *line :
       {"Profession : Éleveuse d’abeilles (12)", "Pays de naissance : Belgique (BE)",
        "Commune de naissance : Ajaccio (2A004)", "Pays : Algérie (DZ)",
        "Département : Haute-Corse (2B)", "Commune : L'Île-Rousse (2B134)"})
    EXPECT_TRUE(holds(printed, line));
  const auto record = kept("fiche.ini");
  for (const char *line :
       {"nom=Lef\xE8vre", "prenom=Zo\xEB",
        "profession=\xC9leveuse d\x92"
        "abeilles",
        "naissance=19800102", "paysNaissance=BE", "communeNaissance=2A004", "pays=DZ",
        "departement=2B", "commune=2B134", "ligne1=60234100 3 1 sachet"})
    EXPECT_TRUE(holds(record, line));
  EXPECT_TRUE(holds(kept("professions.tab"),
                    "12,\xC9leveuse d\x92"
                    "abeilles"));
}

// The commune's name is the one it bore at birth, also where the date is typed behind the code.
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
  for (const auto &row : kCases) {
    SCOPED_TRACE(row.year);
    keepRecord("communeNaissance=01033\r\n");
    auto application = start();
    ASSERT_TRUE(comesUp(kPatient));
    press("Tab Tab Tab Tab Tab Tab");
    for (const char *part : {row.day, row.month, row.year}) {
      write(part);
      press("Tab");
    }
    press("Return");
    ASSERT_TRUE(comesUp(kFirstLine));
    press("Escape");
    ASSERT_EQ(application.wait(), 0);
    EXPECT_TRUE(holds(application.output(),
                      std::string("Commune de naissance : ") + row.name + " (01033)"));
  }
}

TEST_F(Fiche, AnUnknownCodeIsNotAccepted) {
  keepRecord("naissance=19750228\r\ncommuneNaissance=99999\r\n");
  auto application = start();
  ASSERT_TRUE(comesUp(kPatient));
  press("Return");
  // On to the birth place, which is cleared, and to the département.
  press("Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab ctrl+a Delete Tab Tab");
  write("99");
  press("Return ctrl+a");
  write("75");
  press("Return");
  ASSERT_TRUE(comesUp(kHome));
  press("Escape");
  ASSERT_TRUE(comesUp(kFirstLine));
  press("Escape");
  ASSERT_EQ(application.wait(), 0);
  EXPECT_TRUE(holds(application.output(), "Commune de naissance : "));
  EXPECT_TRUE(holds(application.output(), "Département : Paris (75)"));
  EXPECT_TRUE(holds(application.output(), "Commune : "));
}

TEST_F(Fiche, ACommuneIsChosenInTheList) {
  keepRecord("naissance=19750228\r\ndepartement=69\r\n");
  auto application = start();
  ASSERT_TRUE(comesUp(kPatient));
  press("Return");
  ASSERT_TRUE(comesUp(kHome));
  press("Tab End Up");
  press("Return");
  ASSERT_TRUE(comesUp(kFirstLine));
  press("Escape");
  ASSERT_EQ(application.wait(), 0);
  EXPECT_TRUE(holds(application.output(), "Commune : Vourles (69268)"));
}

TEST_F(Fiche, ADoubleClickInTheListOfCommunesAcceptsIt) {
  keepRecord("naissance=19750228\r\ndepartement=69\r\n");
  auto application = start();
  ASSERT_TRUE(comesUp(kPatient));
  press("Return");
  ASSERT_TRUE(comesUp(kHome));
  constexpr Place kFirstRow{200, 101};
  click(kFirstRow, 2);
  ASSERT_TRUE(comesUp(kFirstLine));
  press("Escape");
  ASSERT_EQ(application.wait(), 0);
  EXPECT_TRUE(holds(application.output(), "Commune : Affoux (69001)"));
}

TEST_F(Fiche, AProfessionIsAddedOnceAndFoundInWhateverCase) {
  keepRecord("naissance=19750228\r\nprofession=Sellier\r\n");
  auto application = start();
  ASSERT_TRUE(comesUp(kPatient));
  press("Tab Tab Tab Tab Tab space space");
  press("shift+Tab ctrl+a");
  write("SELLIER");
  press("Tab space shift+Tab ctrl+a");
  write("bourrelier+sellier");
  press("Tab space Return");
  ASSERT_TRUE(comesUp(kFirstLine));
  press("Escape");
  ASSERT_EQ(application.wait(), 0);
  const auto table = kept("professions.tab");
  ASSERT_EQ(table.size(), 16u);
  EXPECT_EQ(table[13], "11,Sans profession");
  EXPECT_EQ(table[14], "12,Sellier");
  EXPECT_EQ(table[15], "#FIN");
  EXPECT_EQ(kept("professions.bak").size(), 15u);
}

TEST_F(Fiche, WhatIsTypedOverALabelGoes) {
  keepRecord("naissance=19750228\r\ncommuneNaissance=69123\r\n");
  auto application = start();
  ASSERT_TRUE(comesUp(kPatient));
  // The labels are the last fields; the second one is the birth place.
  press("shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab");
  write("x");
  press("ctrl+a ctrl+c Return");
  EXPECT_EQ(clipboard(), "Lyon");
  ASSERT_TRUE(comesUp(kFirstLine));
  press("Escape");
  EXPECT_EQ(application.wait(), 0);
}

TEST_F(Fiche, BehindTheLastDrugOfTheLettersComesTheFirst) {
  keepRecord("naissance=19750228\r\n");
  auto application = start();
  ASSERT_TRUE(comesUp(kPatient));
  press("Return");
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
  ASSERT_EQ(application.wait(), 0);
  const auto record = kept("fiche.ini");
  EXPECT_TRUE(holds(record, "ligne1=65458013 0 1"));
  EXPECT_TRUE(holds(record, "ligne2=67681303 0 2"));
}

}  // namespace
}  // namespace korvel::test
