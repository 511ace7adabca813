// SPDX-License-Identifier: MIT
// Profiles written by the library, read by others.
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include <glib.h>
#include <gtest/gtest.h>

#include <korvel/profile.h>

#include "tests/files/volumes.h"

namespace {

using korvel::test::Volumes;
using Values = std::map<std::pair<std::string, std::string>, std::string>;

constexpr char kPath[] = "Data:p.ini";

// Writes keys one by one, changes and removes some, and gives what then must be read.
Values writeProfile() {
  const std::array<std::string, 3> sections = {"Fenetre", "Dernier praticien", "\xC9tat"};
  const std::array<std::string, 6> values = {"640",
                                             "",
                                             "a=b=c",
                                             "M\xE9"
                                             "decin g\xE9n\xE9raliste",
                                             "; not a comment",
                                             "C:\\dossier\\x"};
  std::mt19937 random(5);
  Values written;
  for (int i = 0; i < 120; ++i) {
    const std::string &section = sections[random() % sections.size()];
    const std::string key = "cle" + std::to_string(random() % 20);
    if (random() % 5 == 0) {
      EXPECT_EQ(WritePrivateProfileString(section.c_str(), key.c_str(), nullptr, kPath), 1);
      written.erase({section, key});
      continue;
    }
    const std::string &value = values[random() % values.size()];
    EXPECT_EQ(WritePrivateProfileString(section.c_str(), key.c_str(), value.c_str(), kPath), 1);
    written[{section, key}] = value;
  }
  EXPECT_EQ(WritePrivateProfileSection("Liste", "a=1\r\nb=deux", kPath), 1);
  written[{"Liste", "a"}] = "1";
  written[{"Liste", "b"}] = "deux";
  return written;
}

Values readByGLib(const std::string &path) {
  Values values;
  const std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> file(g_key_file_new(),
                                                                   &g_key_file_free);
  GError *error = nullptr;
  if (!g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, &error)) {
    ADD_FAILURE() << error->message;
    g_error_free(error);
    return values;
  }
  gchar **groups = g_key_file_get_groups(file.get(), nullptr);
  for (gchar **group = groups; *group != nullptr; ++group) {
    gchar **keys = g_key_file_get_keys(file.get(), *group, nullptr, nullptr);
    for (gchar **key = keys; *key != nullptr; ++key) {
      gchar *value = g_key_file_get_value(file.get(), *group, *key, nullptr);
      values[{*group, *key}] = value;
      g_free(value);
    }
    g_strfreev(keys);
  }
  g_strfreev(groups);
  return values;
}

std::string fromHex(const std::string &hex) {
  std::string bytes;
  if (hex == "-") return bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  return bytes;
}

Values readByPython(const std::string &path) {
  const std::string command = std::string(PYTHON) + " '" + CONFIGPARSER_SCRIPT + "' '" + path + "'";
  std::string output;
  std::FILE *pipe = popen(command.c_str(), "r");
  char piece[4096];
  for (std::size_t got; (got = std::fread(piece, 1, sizeof piece, pipe)) > 0;)
    output.append(piece, got);
  EXPECT_EQ(pclose(pipe), 0);
  Values values;
  std::istringstream lines(output);
  for (std::string section, key, value; lines >> section >> key >> value;)
    values[{fromHex(section), fromHex(key)}] = fromHex(value);
  return values;
}

TEST(ForeignReaders, ReadTheSameValues) {
  Volumes volumes;
  const Values written = writeProfile();
  ASSERT_GT(written.size(), 30U);
  const std::string path = volumes.posix("p.ini");
  EXPECT_EQ(readByGLib(path), written);
  EXPECT_EQ(readByPython(path), written);
}

}  // namespace
