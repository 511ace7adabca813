// SPDX-License-Identifier: MIT
// The vaccination register: the library's dialogs over a window of the application's own, what is
// kept on the disk, and the booklet.
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tests/desktop/screen_user.h"

namespace korvel::test {
namespace {

constexpr char kMain[] = "Registre des vaccinations", kNew[] = "Nouvelle personne",
               kRefused[] = "Saisie non acceptée", kZoe[] = "Zoé Lefèvre",
               kDoseOfZoe[] = "Vaccination\u00A0: Zoé Lefèvre";

// Zoé Lefèvre as the register keeps her, and her doses, each with the next one far away or late.
constexpr char kRecord[] =
    "[Personne]\r\nnom=Lef\xE8vre\r\nprenom=Zo\xE9\r\nsexe=F\xE9minin\r\nnaissance=20010203\r\n"
    "remarques=l\x92\x9Cuf\r\n";
constexpr char kDoses[] =
    "\r\n[Vaccinations]\r\n1=20200304\tDTP\tU34-B\tDr M\xFCller\t20400304\r\n"
    "2=20190102\tGRI\tG1\tDr M\xFCller\t20200102\r\n";

testing::AssertionResult comesUp(const std::string &title) {
  if (waitForWindow(title)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "active is: " << activeWindow();
}

// A register in a folder of its own.
class Register : public testing::Test {
 protected:
  Register() {
    std::string name = std::filesystem::temp_directory_path() / "korvel-register-XXXXXX";
    folder_ = mkdtemp(name.data());
  }
  ~Register() override { std::filesystem::remove_all(folder_); }

  Application start(const std::vector<std::string> &arguments = {},
                    const std::string &setting = "KORVEL_DEBUG=1") const {
    std::vector<std::string> command{REGISTER};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return Application(command, {"REGISTER_VOLUMES=" + folder_, setting});
  }

  std::string path(const std::string &name) const { return folder_ + "/Registre/" + name; }

  void keep(const std::string &name, const std::string &bytes) const {
    std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
    std::ofstream(path(name), std::ios::binary) << bytes;
  }
  void keepZoe() const { keep("personnes/0001.per", std::string(kRecord) + kDoses); }

  std::string kept(const std::string &name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // Of 500 characters, as many as the form takes; the last word is longer than a line.
  static std::string longRemark() {
    std::string remark;
    for (int i = 0; remark.size() < 400; ++i) remark += "allergie" + std::to_string(i) + ' ';
    return remark + std::string(500 - remark.size(), 'W');
  }
  static std::string recordWith(const std::string &remark) {
    const std::string record = kRecord;
    return record.substr(0, record.find("remarques=")) + "remarques=" + remark + "\r\n";
  }
  static std::string withoutBlanks(std::string text) {
    std::erase(text, ' ');
    return text;
  }

  // The words of a PDF file with one blank between them.
  static std::string textOf(const std::string &pdf) {
    std::string text;
    FILE *output = popen(("pdftotext -layout '" + pdf + "' - | tr -s ' \\n\\f' ' '").c_str(), "r");
    for (int byte; (byte = std::fgetc(output)) != EOF;) text += static_cast<char>(byte);
    EXPECT_EQ(pclose(output), 0);
    return text;
  }

  std::filesystem::perms modeOf(const std::string &name) const {
    return std::filesystem::status(path(name)).permissions();
  }

  static int leave(Application &application) {
    if (!comesUp(kMain)) return -1;
    press("ctrl+q");
    return application.wait();
  }

 private:
  std::string folder_;
};

// From the day of a dose to its lot.
void writeDose(std::initializer_list<const char *> date, const char *lot) {
  for (const char *part : date) {
    write(part);
    press("Tab");
  }
  press("Tab");
  write(lot);
}

// "Oui" to the question whether something may be lost.
void loseIt(const std::string &caption) {
  ASSERT_TRUE(comesUp(caption));
  press("alt+o");
  ASSERT_TRUE(comesUp(kMain));
}

// As a record keeps it; in a year the 29th of February is the 28th.
std::string today(int laterYears = 0) {
  const std::time_t now = std::time(nullptr);
  std::tm day = *std::localtime(&now);
  day.tm_year += laterYears;
  if (laterYears > 0 && day.tm_mon == 1) day.tm_mday = std::min(day.tm_mday, 28);
  char text[9];
  std::strftime(text, sizeof text, "%Y%m%d", &day);
  return text;
}

constexpr Colour kTeal{0, 128, 128}, kRed{255, 0, 0};

// The first row and how many there are with a band of the colour, longer than a mark or a sign of
// the key.
struct Rows {
  int first = 0, count = 0;
};
Rows bandsOf(const Picture &picture, Colour colour) {
  constexpr int kLongerThanAMark = 30;
  Rows rows;
  for (int y = 0; y < picture.height; ++y) {
    int run = 0, longest = 0;
    for (int x = 0; x < picture.width; ++x) {
      run = picture.at(x, y) == colour ? run + 1 : 0;
      longest = std::max(longest, run);
    }
    if (longest >= kLongerThanAMark && rows.count++ == 0) rows.first = y;
  }
  return rows;
}

// The library has told of nothing: neither of a misuse nor of a failure.
void expectNothingTold(const Application &application) {
  for (const std::string &line : application.errors())
    EXPECT_FALSE(line.starts_with("korvel: ")) << line;
}

TEST_F(Register, KeepsWhatIsEnteredAndWritesTheBooklet) {
  auto application = start();
  ASSERT_TRUE(comesUp(kMain));
  press("ctrl+p ctrl+n");  // nobody's booklet, first
  ASSERT_TRUE(comesUp(kNew));
  write("Lefèvre");
  press("Tab");
  write("Zoé");
  press("Tab Home Tab");
  write("3");
  press("Tab");
  write("2");
  press("Tab");
  write("2101");
  press("Return ctrl+a");
  ASSERT_EQ(activeWindow(), kNew) << "a birth that is still to come was accepted";
  write("2001");
  press("Tab");
  write("l’œuf");
  press("Return");

  ASSERT_TRUE(comesUp(kMain));
  EXPECT_EQ(kept("personnes/0001.per"), kRecord);
  press("ctrl+d");
  ASSERT_TRUE(comesUp(kDoseOfZoe));
  press("shift+Tab Home Down Down Tab");
  writeDose({"4", "3", "2000"}, "u34-b");
  press("Tab");
  write("Dr Müller");
  press("Return");
  ASSERT_TRUE(comesUp(kRefused)) << "a dose before the birth was accepted";
  press("Return");
  ASSERT_TRUE(comesUp(kDoseOfZoe));
  press("shift+Tab shift+Tab shift+Tab ctrl+a");
  write("2020");
  press("Return");

  // The practitioner is still known; a next dose that is late is told.
  ASSERT_TRUE(comesUp(kMain));
  press("ctrl+d");
  ASSERT_TRUE(comesUp(kDoseOfZoe));
  press("shift+Tab Home Down Down Down Down Down Down Down Tab");
  writeDose({"2", "1", "2019"}, "g1");
  press("Return");
  ASSERT_TRUE(comesUp(kMain));
  EXPECT_EQ(kept("personnes/0001.per"), std::string(kRecord) + kDoses);

  press("ctrl+p");
  ASSERT_TRUE(comesUp("Carnet PDF"));
  press("Return");
  ASSERT_EQ(leave(application), 0);
  expectNothingTold(application);
  for (const char *folder : {"", "personnes", "carnets"})
    EXPECT_EQ(modeOf(folder), std::filesystem::perms::owner_all) << folder;
  const std::string text = textOf(path("carnets/0001.pdf"));
  for (const char *words :
       {"Carnet de vaccination Zoé Lefèvre Né(e) le 03/02/2001, féminin Remarques : l’œuf",
        "dose administrée prochaine dose retard aujourd’hui",
        "Date Vaccin Lot Praticien Prochaine dose",
        "04/03/2020 Diphtérie-tétanos-poliomyélite U34-B Dr Müller 04/03/2040",
        "02/01/2019 Grippe saisonnière G1 Dr Müller 02/01/2020"})
    EXPECT_NE(text.find(words), std::string::npos) << words << "\nis not in\n" << text;
}

TEST_F(Register, FindsAPersonWithoutAccentsAndDoesNotLoseHerByAQuickAnswer) {
  keepZoe();
  keep("personnes/0002.per", "[Personne]\r\nnom=Abel\r\nprenom=Jo\r\nnaissance=19800101\r\n");
  auto application = start();
  ASSERT_TRUE(comesUp(kMain));
  write("LEFEVRE z");
  press("Tab Down alt+p Down Down Return");
  ASSERT_TRUE(comesUp("Supprimer une personne"));
  press("Return");
  ASSERT_TRUE(comesUp(kMain));
  EXPECT_EQ(kept("personnes/0001.per"), std::string(kRecord) + kDoses);
  press("Return");
  ASSERT_TRUE(comesUp(kZoe));
  press("Tab ctrl+a");
  write("Chloé");
  press("Return");
  ASSERT_TRUE(comesUp(kMain));
  EXPECT_NE(kept("personnes/0001.per").find("prenom=Chlo\xE9\r\n"), std::string::npos);
  EXPECT_NE(kept("personnes/0001.per").find(kDoses), std::string::npos);
  EXPECT_EQ(leave(application), 0);
  expectNothingTold(application);
}

TEST_F(Register, ARecordThatCannotBeKeptStaysInItsDialog) {
  keepZoe();
  auto application = start();
  ASSERT_TRUE(comesUp(kMain));
  press("ctrl+m");
  ASSERT_TRUE(comesUp(kZoe));
  const std::string file = path("personnes/0001.per");
  std::filesystem::rename(file, file + "-");
  std::filesystem::create_directory(file);
  write("Blanc");
  press("Return");
  ASSERT_TRUE(comesUp(kRefused));
  press("Return");
  ASSERT_TRUE(comesUp(kZoe));
  std::filesystem::remove(file);
  std::filesystem::rename(file + "-", file);
  press("Return");
  ASSERT_EQ(leave(application), 0);
  EXPECT_NE(kept("personnes/0001.per").find("nom=Blanc\r\n"), std::string::npos);
}

TEST_F(Register, ARecordWithAGapInItsDosesLosesNone) {
  std::string record = std::string(kRecord) + kDoses;
  record.replace(record.find("2=2019"), 1, "4");
  keep("personnes/0001.per", record);
  auto application = start();
  ASSERT_TRUE(comesUp(kMain));
  press("ctrl+d");
  ASSERT_TRUE(comesUp(kDoseOfZoe));
  press("shift+Tab Home Down Down Tab");
  writeDose({"5", "6", "2018"}, "r7");
  press("Tab");
  write("Dr Roy");
  press("Return");
  ASSERT_EQ(leave(application), 0);
  const std::string after = kept("personnes/0001.per");
  EXPECT_EQ(after.find(std::string(kRecord) + kDoses + "3=20180605\t"), 0u) << after;
}

TEST_F(Register, ADamagedRecordIsToldAndStaysAsItIs) {
  const std::string head = std::string(kRecord) + "[Vaccinations]\r\n";
  const std::string damaged[] = {head + "1=20200304\tDTP\r\n", head + "junk\r\n",
                                 head + std::string("1=20200304\tDTP\t\0\tDr\t0\r\n", 23)};
  const auto name = [](int i) { return "personnes/000" + std::to_string(i + 1) + ".per"; };
  for (int i = 0; i < 3; ++i) keep(name(i), damaged[i]);
  auto application = start();
  ASSERT_TRUE(comesUp("Fiches illisibles"));
  press("Return");
  ASSERT_EQ(leave(application), 0);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(kept(name(i)), damaged[i]);
    EXPECT_EQ(start({"--carnet", std::to_string(i + 1), path("zoe.pdf")}).wait(), 1) << i;
  }
}

TEST_F(Register, ADoseIsEditedAndRemovedAndThenThePersonWithHerBooklet) {
  keepZoe();
  keep("carnets/0001.pdf", "made before");
  auto application = start();
  ASSERT_TRUE(comesUp(kMain));
  press("Tab Tab Tab Down ctrl+shift+m");  // the second dose
  ASSERT_TRUE(comesUp(kDoseOfZoe));
  press("Tab Tab Tab Tab ctrl+a");
  write("u[9");
  press("Return");
  ASSERT_TRUE(comesUp(kRefused)) << "the profile would lose what follows the bracket";
  press("Return");
  ASSERT_TRUE(comesUp(kDoseOfZoe));
  EXPECT_EQ(kept("personnes/0001.per"), std::string(kRecord) + kDoses);
  press("ctrl+a");
  write("u9");
  press("shift+Tab space Return");
  ASSERT_TRUE(comesUp(kMain));
  const std::string flu = std::string(kRecord) + "\r\n[Vaccinations]\r\n1=" + today() +
                          "\tGRI\tU9\tDr M\xFCller\t" + today(1) + "\r\n";
  const std::string other = "2=20200304\tDTP\tU34-B\tDr M\xFCller\t";
  EXPECT_EQ(kept("personnes/0001.per"), flu + other + "20400304\r\n");

  // Now the other one is the second; the check box rules its date.
  press("Down ctrl+shift+m");
  ASSERT_TRUE(comesUp(kDoseOfZoe));
  press("Tab Tab Tab Tab Tab Tab space Return");
  ASSERT_TRUE(comesUp(kMain));
  EXPECT_EQ(kept("personnes/0001.per"), flu + other + "0\r\n");

  press("Down alt+v Down Down Return");
  loseIt("Supprimer une vaccination");
  EXPECT_EQ(kept("personnes/0001.per"), flu);
  press("alt+p Down Down Return");
  loseIt("Supprimer une personne");
  for (const char *left : {"personnes", "carnets"})
    EXPECT_TRUE(std::filesystem::is_empty(path(left))) << left;
  EXPECT_EQ(leave(application), 0);
  expectNothingTold(application);
}

TEST_F(Register, TheBookletOfTheWindowShowsTheRemarksAndBandsUntilTheNextDoses) {
  keep("personnes/0001.per", recordWith(longRemark()) + kDoses);
  auto application = start();
  const auto booklet = [] { return picture(400, 70, 560, 330); };
  ASSERT_TRUE(comesUp(kMain));
  const Rows teal = bandsOf(booklet(), kTeal), red = bandsOf(booklet(), kRed);
  EXPECT_EQ(teal.count, 4);
  EXPECT_EQ(red.count, 4);
  EXPECT_LT(red.first, teal.first) << "the vaccine that was given first is not in front";
  press("ctrl+m");
  ASSERT_TRUE(comesUp(kZoe));
  press("Tab Tab Tab Tab Tab Tab ctrl+a Delete Return");
  ASSERT_TRUE(comesUp(kMain));
  constexpr int kFourLines = 60;
  EXPECT_GT(teal.first, bandsOf(booklet(), kTeal).first + kFourLines);
  EXPECT_EQ(leave(application), 0);
  expectNothingTold(application);
}

TEST_F(Register, ALongRemarkIsWholeInTheBooklet) {
  keep("personnes/0001.per", recordWith(longRemark()));
  const std::string pdf = path("zoe.pdf");
  ASSERT_EQ(start({"--carnet", "1", pdf}).wait(), 0);
  EXPECT_NE(withoutBlanks(textOf(pdf)).find(withoutBlanks(longRemark())), std::string::npos)
      << textOf(pdf);
}

TEST_F(Register, ALongBookletHasAllDosesOnItsPages) {
  constexpr int kDosesOfMany = 60;
  const std::string lot = "ABCDEFGH-2024/0123";  // and a number: as long as one can be
  std::string record = std::string(kRecord) + "[Vaccinations]\r\n";
  for (int i = 1; i <= kDosesOfMany; ++i)
    record += std::to_string(i) + "=20200304\tXY\t" + lot + std::to_string(i) + "\tDr\t0\r\n";
  keep("personnes/0001.per", record);
  const std::string pdf = path("zoe.pdf");
  ASSERT_EQ(start({"--carnet", "1", pdf}).wait(), 0);
  const std::string text = textOf(pdf);
  for (int i = 1; i <= kDosesOfMany; ++i)
    EXPECT_NE(text.find("04/03/2020 XY " + lot + std::to_string(i) + " Dr"), std::string::npos)
        << i;
  EXPECT_NE(text.find("page 2"), std::string::npos);
  EXPECT_EQ(text.find("page 3"), std::string::npos);
}

TEST_F(Register, WritesABookletWithoutAWindowOrSaysWhyNot) {
  keepZoe();
  const std::string pdf = path("zoe.pdf");
  EXPECT_EQ(start({"--carnet", "1", pdf}).wait(), 0);
  EXPECT_NE(textOf(pdf).find("04/03/2020 Diphtérie-tétanos-poliomyélite"), std::string::npos);
  const std::string pipe = path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::vector<std::string> failing[] = {
      {"2", pdf}, {"1", path("nowhere/zoe.pdf")}, {"1", pipe}};
  for (const auto &row : failing) {
    auto application = start({"--carnet", row[0], row[1]});
    EXPECT_EQ(application.wait(), 1) << row[1];
    EXPECT_EQ(application.errors().size(), 1u) << row[1];
  }
  auto incomplete = start({"--carnet", "1"});
  EXPECT_EQ(incomplete.wait(), 2);
  EXPECT_EQ(incomplete.errors().size(), 1u);
  std::filesystem::remove(pdf);
  EXPECT_EQ(start({"--carnet", "1", pdf}, "KORVEL_DESKTOP=/nowhere/korvel-qt.so").wait(), 1);
  EXPECT_FALSE(std::filesystem::exists(pdf));
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

}  // namespace
}  // namespace korvel::test
