// SPDX-License-Identifier: MIT
// Profiles in files beside the files that an edit must make of them, byte for byte.
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include <korvel/profile.h>

#include "tests/files/volumes.h"

namespace {

using korvel::test::content;
using korvel::test::Volumes;

constexpr char kPath[] = "Data:p.ini";

std::string profile(const std::string &name) {
  const std::string bytes = content(PROFILES "/" + name + ".ini");
  EXPECT_FALSE(bytes.empty()) << name;
  return bytes;
}

struct Edit {
  const char *before;
  const char *section;
  const char *key;  // null: the text replaces the section
  const char *text;
  const char *after;
};

TEST(ExpectedFiles, AreWhatEachEditMakes) {
  const Edit kEdits[] = {
      {"cabinet", "Fen\xEAtre", "largeur", "800", "cabinet_key_changed"},
      {"cabinet", "Fen\xEAtre", "largeur", nullptr, "cabinet_key_removed"},
      {"cabinet", "Fen\xEAtre", "couleur", nullptr, "cabinet_later_section_key_removed"},
      {"cabinet", "Praticien", "t\xE9l", "01 23 45 67 89", "cabinet_key_added"},
      {"cabinet", "\xC9t\xE9", "ferm\xE9", "ao\xFBt", "cabinet_section_added"},
      {"cabinet", "Praticien", nullptr, "nom=Zo\xE9\r\nnote= \xFF ", "cabinet_section_replaced"},
      {"cabinet", "Praticien", nullptr, nullptr, "cabinet_section_emptied"},
      {"carriage_returns", "A", "z", "3", "carriage_returns_key_added"},
      {"line_feeds", "A", "x", "3", "line_feeds_key_changed"},
      // Nothing to remove: what is regular stays as it is.
      {"cabinet", "Praticien", "tarif", nullptr, "cabinet"},
      {"cabinet", "praticien", nullptr, nullptr, "cabinet"},
  };
  for (const Edit &edit : kEdits) {
    const Volumes volumes;
    volumes.file("p.ini", profile(edit.before));
    EXPECT_EQ(edit.key == nullptr
                  ? WritePrivateProfileSection(edit.section, edit.text, kPath)
                  : WritePrivateProfileString(edit.section, edit.key, edit.text, kPath),
              1);
    EXPECT_EQ(content(volumes.posix("p.ini")), profile(edit.after))
        << edit.before << " to " << edit.after;
  }
}

TEST(ExpectedFiles, AreReadToTheByte) {
  const Volumes volumes;
  volumes.file("p.ini", profile("cabinet"));
  const struct {
    const char *section;
    const char *key;
    const char *value;
  } kRows[] = {
      {"Fen\xEAtre", "largeur", "640"},
      {"Fen\xEAtre", "couleur", "bleu"},
      {"Fen\xEAtre", ";largeur", "800"},
      {"Praticien", "nom", "\xC9lodie No\xEBl"},
      {"Praticien", " nom", "avec un blanc devant"},
      {"Praticien", "tarif", "(default)"},
      {"Praticien", "tarif ", " 25,00 \x80"},
      {"Praticien", "chemin", "C:\\dossier=a;b"},
      {"Praticien", "chemin=C:\\dossier", "a;b"},
      {"Praticien", "couleur", "(default)"},
  };
  for (const auto &row : kRows) {
    char value[64];
    GetPrivateProfileString(row.section, row.key, "(default)", value, sizeof value, kPath);
    EXPECT_STREQ(value, row.value) << row.section << " / " << row.key;
  }
}

}  // namespace
