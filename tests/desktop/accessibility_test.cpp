// SPDX-License-Identifier: MIT
// A dialog as a screen reader lists, reads and changes it.
#include "tests/desktop/dialog_host.h"
#include "tests/desktop/screen_reader.h"

namespace korvel::test {
namespace {

constexpr char kName[] = "text Nom";
constexpr char kSecret[] = "password text Secret";
constexpr char kList[] = "list Préférence";
constexpr char kOkField[] = "push button OK";
constexpr char kMarked[] = "À compléter ou à corriger";

using Lines = std::vector<std::string>;

class Accessibility : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(reader_.finds(kTitle)); }

  // Waits until the application has handled the earlier requests.
  bool shows(const std::string &field, const std::string &text) {
    return reader_.waitUntil([&] { return reader_.text(field) == text; });
  }
  bool pressOk() {
    return reader_.waitUntil([this] { return reader_.isEnabled(kOkField); }) &&
           reader_.act(kOkField, "Press");
  }

  ScreenReader reader_;
  DialogHost host_{"plain", {kTellsScreenReaders, "LC_ALL=C.UTF-8"}};
};

TEST_F(Accessibility, EveryFieldIsListedByRoleAndName) {
  EXPECT_EQ(reader_.fields(),
            (Lines{"check box Coché & vu", "push button OK", "push button Annuler", "text Nom",
                   "password text Secret", "text Entiers", "password text Entiers", "text Nombre",
                   "text Date : jour", "text Date : mois", "text Date : année", "combo box Choix",
                   kList, "push button Action"}));
  EXPECT_EQ(reader_.rows("combo box Choix"), (Lines{"Madame", "Maître", "Noël", "Même", "Naïf"}));
  EXPECT_EQ(reader_.rows(kList), (Lines{"Féminin", "Masculin", "Chloë"}));
  press("Escape");
  EXPECT_TRUE(host_.endedWith({"result 0"}));
}

TEST_F(Accessibility, FieldsAreReadAsTheyStandOnTheScreen) {
  const struct {
    const char *field;
    const char *text;
  } kCases[] = {
      {"text Nom", ""},
      {"text Entiers", "12"},
      {"text Nombre", "1.50"},
      {"text Date : jour", "29"},
      {"text Date : mois", "2"},
      {"text Date : année", "2000"},
      {"combo box Choix", "Maître"},
      // A secret reveals its length.
      {"password text Entiers", "****"},
  };
  for (const auto &[field, text] : kCases) EXPECT_EQ(reader_.text(field), text) << field;
  press("Escape");
  EXPECT_TRUE(host_.endedWith({"result 0"}));
}

TEST_F(Accessibility, FieldsAreChangedAndTheEntryIsAccepted) {
  const struct {
    const char *field;
    const char *text;
  } kTexts[] = {
      {"text Nom", "Élodie Lefèvre"}, {"text Entiers", "42"},        {"text Nombre", "2,75"},
      {"text Date : jour", "28"},     {"text Date : année", "1999"}, {"combo box Choix", "Noël"},
  };
  for (const auto &[field, text] : kTexts) {
    EXPECT_TRUE(reader_.setText(field, text)) << field;
    EXPECT_TRUE(shows(field, text)) << field;
  }
  EXPECT_TRUE(reader_.actOnRow(kList, "Chloë", "Toggle"));
  EXPECT_TRUE(reader_.act("check box Coché & vu", "Toggle"));
  EXPECT_TRUE(reader_.waitUntil([this] { return reader_.isChecked("check box Coché & vu"); }));
  EXPECT_TRUE(reader_.act("push button Action", "Press"));
  EXPECT_TRUE(host_.says("hit 600"));
  EXPECT_TRUE(pressOk());
  EXPECT_TRUE(host_.endedWith({"result 1", "text 0 \\xC9lodie Lef\\xE8vre", "int 0 42",
                               "num 0 2.75", "date 0 19990228", "text 2 No\\xEBl",
                               "text 3 Chlo\\xEB", "bool 0 1", "action 1"}));
  for (const char *hit : {"hit 100", "hit 102", "hit 103", "hit 200", "hit 300", "hit 500"})
    EXPECT_EQ(host_.count(hit), 1) << hit;
}

TEST_F(Accessibility, APartOfATextIsInsertedAndDeleted) {
  EXPECT_TRUE(reader_.setText(kName, "Duont"));
  EXPECT_TRUE(shows(kName, "Duont"));
  EXPECT_TRUE(reader_.insertText(kName, 2, "p"));
  EXPECT_TRUE(shows(kName, "Dupont"));
  EXPECT_TRUE(reader_.deleteText(kName, 0, 3));
  EXPECT_TRUE(shows(kName, "ont"));
  EXPECT_TRUE(pressOk());
  EXPECT_TRUE(host_.endedWith({"result 1", "text 0 ont"}));
  EXPECT_EQ(host_.count("hit 100"), 3);
}

TEST_F(Accessibility, ATextWithACharacterWithoutAByteIsRefusedWhole) {
  EXPECT_TRUE(reader_.setText(kName, "ab"));
  EXPECT_TRUE(shows(kName, "ab"));
  reader_.setText(kName, "x中y");
  reader_.insertText(kName, 1, "Ž");
  EXPECT_EQ(reader_.text(kName), "ab");
  EXPECT_TRUE(pressOk());
  EXPECT_TRUE(host_.endedWith({"result 1", "text 0 ab"}));
  EXPECT_EQ(host_.count("hit 100"), 1);
}

TEST_F(Accessibility, AChoiceThatIsNotOfferedIsRefused) {
  reader_.setText("combo box Choix", "Docteur");
  EXPECT_EQ(reader_.text("combo box Choix"), "Maître");
  EXPECT_TRUE(reader_.act("combo box Choix", "Increase"));
  EXPECT_TRUE(shows("combo box Choix", "Noël"));
  EXPECT_TRUE(reader_.act("combo box Choix", "Decrease"));
  EXPECT_TRUE(shows("combo box Choix", "Maître"));
  EXPECT_TRUE(reader_.setText(kName, "x"));
  EXPECT_TRUE(pressOk());
  EXPECT_TRUE(host_.endedWith({"result 1", "text 2 Ma\\xEEtre"}));
  EXPECT_EQ(host_.count("hit 102"), 2);
}

TEST_F(Accessibility, TheFieldsThatKeepOkDisabledSaySo) {
  EXPECT_EQ(reader_.description(kName), kMarked);
  EXPECT_EQ(reader_.description("text Entiers"), "");
  EXPECT_FALSE(reader_.isEnabled(kOkField));
  EXPECT_EQ(reader_.description(kOkField), "À compléter ou à corriger : Nom");
  EXPECT_TRUE(reader_.setText(kName, "x"));
  EXPECT_TRUE(reader_.waitUntil([this] { return reader_.isEnabled(kOkField); }));
  EXPECT_EQ(reader_.description(kName), "");
  EXPECT_EQ(reader_.description(kOkField), "");
  EXPECT_TRUE(reader_.setText("text Date : mois", "13"));
  EXPECT_TRUE(reader_.waitUntil([this] { return !reader_.isEnabled(kOkField); }));
  for (const char *part : {"text Date : jour", "text Date : mois", "text Date : année"})
    EXPECT_EQ(reader_.description(part),
              std::string(kMarked) + " : date (jour, mois, année à quatre chiffres)")
        << part;
  EXPECT_EQ(reader_.description(kOkField), "À compléter ou à corriger : Date");
  press("Escape");
  EXPECT_TRUE(host_.endedWith({"result 0"}));
}

TEST_F(Accessibility, NothingOfASecretIsTold) {
  press("Tab");
  write("geheim");
  press("Home");
  write("no");
  EXPECT_TRUE(shows(kSecret, "******"));
  EXPECT_TRUE(reader_.setText(kName, "fin"));
  EXPECT_TRUE(shows(kName, "fin"));
  // The name's text was told, so texts are told at all.
  EXPECT_TRUE(reader_.waitUntil([this] {
    const auto &told = reader_.toldTexts();
    return std::find(told.begin(), told.end(), "fin") != told.end();
  }));
  for (const std::string &told : reader_.toldTexts()) {
    if (told == "fin") continue;
    EXPECT_EQ(told.find_first_not_of('*'), std::string::npos) << told;
  }
  EXPECT_TRUE(pressOk());
  EXPECT_TRUE(host_.endedWith({"result 1", "text 1 noheim"}));
}

TEST_F(Accessibility, ASecretIsSetLikeAnyText) {
  EXPECT_TRUE(reader_.setText(kName, "x"));
  EXPECT_TRUE(reader_.setText(kSecret, "sésame"));
  EXPECT_TRUE(shows(kSecret, "******"));
  EXPECT_TRUE(reader_.setText("password text Entiers", "5678"));
  EXPECT_TRUE(host_.says("hit 201"));
  EXPECT_TRUE(pressOk());
  EXPECT_TRUE(host_.endedWith({"result 1", "text 1 s\\xE9same", "int 1 5678"}));
}

}  // namespace
}  // namespace korvel::test
