// SPDX-License-Identifier: MIT
// A morning in the example's practice by way of a screen reader alone: no key is pressed, and
// nothing is looked for by its place.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/desktop/screen_reader.h"
#include "tests/desktop/screen_user.h"

namespace korvel::test {
namespace {

using Lines = std::vector<std::string>;

std::string newFolder() {
  std::string name = std::filesystem::temp_directory_path() / "korvel-fiche-XXXXXX";
  return mkdtemp(name.data());
}

class FicheAccess : public testing::Test {
 protected:
  ~FicheAccess() override { std::filesystem::remove_all(folder_); }

  bool comesUp(const std::string &title) { return reader_.finds(title); }
  bool enter(const std::string &field, const std::string &text) {
    return reader_.setText(field, text) &&
           reader_.waitUntil([&] { return reader_.text(field) == text; });
  }
  bool check(const std::string &box) {
    return reader_.act(box, "Toggle") && reader_.waitUntil([&] { return reader_.isChecked(box); });
  }
  bool press(const std::string &button) {
    return reader_.waitUntil([&] { return reader_.isEnabled(button); }) &&
           reader_.act(button, "Press");
  }
  // The first row that begins with the text, once the list has one.
  bool choose(const std::string &list, const std::string &start) {
    std::string row;
    const auto isThere = [&] {
      for (const std::string &each : reader_.rows(list))
        if (each.starts_with(start)) row = each;
      return !row.empty();
    };
    return reader_.waitUntil(isThere) && reader_.actOnRow(list, row, "Toggle");
  }
  // The first row that holds the text; empty when there is none.
  std::string rowWith(const std::string &list, const std::string &text) {
    for (const std::string &row : reader_.rows(list))
      if (row.find(text) != std::string::npos) return row;
    return {};
  }
  bool open(const std::string &menu, const std::string &task) {
    return comesUp(menu) && choose("list Tâches", task) && press("push button Ouvrir");
  }
  // All that can have the focus, but for the pair of buttons, in the order of the names.
  Lines fields() {
    Lines all = reader_.fields();
    std::erase_if(all, [](const std::string &each) { return each.starts_with("push button "); });
    std::sort(all.begin(), all.end());
    return all;
  }
  bool choosePatient() {
    return comesUp("Choix du patient") && choose("list Patients", "") &&
           press("push button Choisir");
  }
  // On one line, however it is wrapped.
  std::string message() {
    std::string text = reader_.message();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
  }
  std::string kept(const std::string &name) const {
    std::ifstream file(folder_ + "/Cabinet/" + name, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
  }

  const std::string folder_ = newFolder();
  ScreenReader reader_;
  Application application_{{FICHE},
                           {"FICHE_VOLUMES=" + folder_, kTellsScreenReaders, "LC_ALL=C.UTF-8"}};
};

TEST_F(FicheAccess, AMorningIsPlayedWithoutKeysAndPixels) {
  ASSERT_TRUE(open("Cabinet médical", "Réglages"));
  ASSERT_TRUE(comesUp("Réglages"));
  EXPECT_EQ(fields(),
            (Lines{"check box Demander avant de quitter", "text Adresse", "text Consultation (€)",
                   "text Nom", "text Praticien", "text Téléphone"}));
  EXPECT_TRUE(enter("text Nom", "Cabinet des Tilleuls"));
  EXPECT_TRUE(enter("text Praticien", "Dr Anne-Sophie Müller"));
  EXPECT_TRUE(check("check box Demander avant de quitter"));
  ASSERT_TRUE(press("push button OK"));

  const std::string menu = "Cabinet des Tilleuls";
  ASSERT_TRUE(open(menu, "Nouvelle fiche"));
  ASSERT_TRUE(comesUp("Nouvelle fiche"));
  EXPECT_EQ(fields(), (Lines{"check box Accord de transmission",
                             "check box Choisir la commune",
                             "check box Choisir le médecin",
                             "check box Suivi régulier",
                             "combo box Civilité",
                             "combo box Pays",
                             "combo box Pays de naissance",
                             "combo box Sexe",
                             "password text Code d’accès",
                             "text Code INSEE",
                             "text Code de la profession",
                             "text Commune de naissance",
                             "text Département",
                             "text Enfants",
                             "text IMC",
                             "text Nom",
                             "text Nom du département",
                             "text Né(e) le : année",
                             "text Né(e) le : jour",
                             "text Né(e) le : mois",
                             "text Poids (kg)",
                             "text Profession",
                             "text Prénom",
                             "text Taille (m)"}));
  EXPECT_TRUE(enter("text Nom", "Lefèvre"));
  EXPECT_TRUE(enter("text Prénom", "Françoise"));
  EXPECT_TRUE(enter("combo box Civilité", "Madame"));
  EXPECT_TRUE(enter("combo box Sexe", "Féminin"));
  EXPECT_TRUE(enter("text Né(e) le : jour", "28"));
  EXPECT_TRUE(enter("text Né(e) le : mois", "2"));
  EXPECT_TRUE(enter("text Né(e) le : année", "2075"));
  EXPECT_TRUE(enter("text Département", "69"));
  EXPECT_TRUE(
      reader_.waitUntil([this] { return reader_.text("text Nom du département") == "Rhône"; }));
  EXPECT_TRUE(enter("text Poids (kg)", "64,5"));
  EXPECT_TRUE(enter("text Taille (m)", "1,68"));
  EXPECT_TRUE(press("push button Calculer"));
  EXPECT_TRUE(reader_.waitUntil([this] { return reader_.text("text IMC") != ""; }));
  EXPECT_TRUE(enter("text Enfants", "2"));
  EXPECT_TRUE(reader_.setText("password text Code d’accès", "4711"));
  EXPECT_TRUE(
      reader_.waitUntil([this] { return reader_.text("password text Code d’accès") == "****"; }));
  EXPECT_TRUE(check("check box Suivi régulier"));
  ASSERT_TRUE(press("push button OK"));

  ASSERT_TRUE(comesUp("Saisie non acceptée"));
  EXPECT_EQ(message(), "La date de naissance est dans le futur.");
  ASSERT_TRUE(press("push button OK"));
  ASSERT_TRUE(comesUp("Nouvelle fiche"));
  EXPECT_TRUE(enter("text Né(e) le : année", "1975"));
  ASSERT_TRUE(press("push button OK"));

  ASSERT_TRUE(comesUp("Commune de résidence"));
  EXPECT_EQ(fields(),
            (Lines{"list Communes", "text Choix", "text Code INSEE", "text Premières lettres"}));
  EXPECT_TRUE(enter("text Premières lettres", "villeurb"));
  EXPECT_TRUE(choose("list Communes", "Villeurbanne"));
  EXPECT_TRUE(reader_.waitUntil([this] { return reader_.text("text Code INSEE") == "69266"; }));
  ASSERT_TRUE(press("push button OK"));

  ASSERT_TRUE(comesUp("Sélection de praticien en base"));
  EXPECT_EQ(fields(), (Lines{"list Praticiens", "text Initiales"}));
  EXPECT_TRUE(enter("text Initiales", "J"));
  EXPECT_TRUE(choose("list Praticiens", "J"));
  ASSERT_TRUE(press("push button OK"));

  ASSERT_TRUE(open(menu, "Modifier une fiche"));
  ASSERT_TRUE(comesUp("Choix du patient"));
  EXPECT_EQ(fields(), (Lines{"list Patients", "text Premières lettres"}));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp("Françoise Lefèvre"));
  const struct {
    const char *field;
    const char *text;
  } kKept[] = {{"text Nom", "Lefèvre"},
               {"combo box Civilité", "Madame"},
               {"text Né(e) le : mois", "2"},
               {"text Né(e) le : année", "1975"},
               {"text Nom du département", "Rhône"},
               {"text Taille (m)", "1.68"},
               {"text Enfants", "2"},
               {"password text Code d’accès", "****"}};
  for (const auto &[field, text] : kKept) EXPECT_EQ(reader_.text(field), text) << field;
  EXPECT_TRUE(reader_.isChecked("check box Suivi régulier"));
  EXPECT_FALSE(reader_.isChecked("check box Accord de transmission"));
  ASSERT_TRUE(press("push button Annuler"));

  ASSERT_TRUE(open(menu, "Ordonnance"));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp("Ordonnance, ligne 1"));
  EXPECT_TRUE(enter("text Premières lettres", "doli"));
  EXPECT_TRUE(
      reader_.waitUntil([this] { return reader_.text("text Spécialité").starts_with("DOLI"); }));
  const std::string drug = reader_.text("text Spécialité");
  EXPECT_TRUE(press("push button Suivant"));
  EXPECT_TRUE(reader_.waitUntil([&] { return reader_.text("text Spécialité") != drug; }));
  EXPECT_TRUE(enter("text Posologie", "1 comprimé trois fois par jour"));
  EXPECT_TRUE(enter("text Pendant", "5"));
  ASSERT_TRUE(press("push button Prescrire"));
  ASSERT_TRUE(comesUp("Ordonnance, ligne 2"));
  ASSERT_TRUE(press("push button Terminer"));

  ASSERT_TRUE(open(menu, "Table des professions"));
  ASSERT_TRUE(comesUp("Table des professions"));
  EXPECT_EQ(fields(), (Lines{"list Professions", "text Libellé"}));
  EXPECT_TRUE(choose("list Professions", ""));
  EXPECT_TRUE(reader_.waitUntil([this] { return reader_.text("text Libellé") != ""; }));
  EXPECT_TRUE(enter("text Libellé", "Apiculteur"));
  EXPECT_TRUE(press("push button Modifier"));
  const auto isListed = [this] { return rowWith("list Professions", "Apiculteur") != ""; };
  EXPECT_TRUE(reader_.waitUntil(isListed));
  EXPECT_TRUE(choose("list Professions", rowWith("list Professions", "Apiculteur")));
  EXPECT_TRUE(press("push button Supprimer"));
  ASSERT_TRUE(comesUp("Suppression"));
  EXPECT_EQ(message(), "Supprimer «\u00A0Apiculteur\u00A0» de la table\u00A0?");
  ASSERT_TRUE(press("push button Oui"));
  ASSERT_TRUE(comesUp("Table des professions"));
  EXPECT_TRUE(reader_.waitUntil([&] { return !isListed(); }));
  ASSERT_TRUE(press("push button Fermer"));

  ASSERT_TRUE(open(menu, "Note de visite"));
  ASSERT_TRUE(choosePatient());
  ASSERT_TRUE(comesUp("Note de visite\u00A0: Françoise Lefèvre"));
  const Lines visit = fields();
  for (const char *field : {"text Date : jour", "text Date : mois", "text Date : année",
                            "text Motif", "text Tension", "text Pouls", "text Conclusion"})
    EXPECT_NE(std::find(visit.begin(), visit.end(), field), visit.end()) << field;
  for (const std::string &field : visit)
    EXPECT_NE(field.back(), ' ') << "without a name: " << field;
  EXPECT_TRUE(enter("text Motif", "Fièvre depuis deux jours"));
  EXPECT_TRUE(enter("text Tension", "12/7"));
  EXPECT_TRUE(enter("text Pouls", "84"));
  EXPECT_TRUE(enter("text Conclusion", "Gastro-entérite aiguë."));
  EXPECT_TRUE(reader_.isChecked("check box Consultation"));
  EXPECT_FALSE(reader_.isChecked("check box Vaccination"));
  for (const char *act : {"check box Électrocardiogramme", "check box Vaccination"})
    EXPECT_TRUE(check(act)) << act;
  EXPECT_TRUE(reader_.act("check box Consultation", "Toggle"));
  EXPECT_TRUE(reader_.waitUntil([this] { return !reader_.isChecked("check box Consultation"); }));
  ASSERT_TRUE(press("push button Enregistrer"));
  ASSERT_TRUE(comesUp("Note de visite"));
  EXPECT_NE(message().find("dans le dossier des notes"), std::string::npos);
  ASSERT_TRUE(press("push button OK"));

  ASSERT_TRUE(comesUp(menu));
  ASSERT_TRUE(press("push button Quitter"));
  ASSERT_TRUE(comesUp("Quitter"));
  EXPECT_EQ(message(), "Quitter «\u00A0Cabinet des Tilleuls\u00A0»\u00A0?");
  ASSERT_TRUE(press("push button Oui"));
  EXPECT_EQ(application_.wait(), 0);

  EXPECT_EQ(kept("professions.tab").find("Apiculteur"), std::string::npos);
  const std::string record = kept("fiches/0001.fic");
  for (const char *line :
       {"nom=Lef\xE8vre\r\n", "prenom=Fran\xE7oise\r\n", "19750228", "69266", "64.5", "4711"})
    EXPECT_NE(record.find(line), std::string::npos) << line << "\n" << record;
}

}  // namespace
}  // namespace korvel::test
