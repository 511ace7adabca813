// SPDX-License-Identifier: MIT
// The functions of profiles.
#include <korvel/profile.h>

#include "tests/faults/operations.h"

namespace korvel::faults {
namespace {

using namespace korvel::faults::place;

constexpr char kPath[] = "Data:p.ini";

// A profile of so many keys; of 1500 it is written in several pieces.
template <int Keys>
void putProfile() {
  std::string text = "[Main]\r\n";
  for (int i = 0; i < Keys; ++i)
    text += "key" + std::to_string(i) + "=value " + std::to_string(i) + "\r\n";
  put("p.ini", text);
}

void putLink() {
  putProfile<3>();
  link("link.ini", "p.ini");
}

Answer replaceKey() { return {WritePrivateProfileString("Main", "key1", "new", kPath)}; }
Answer addSection() { return {WritePrivateProfileString("More", "key", "new", kPath)}; }
Answer replaceSection() { return {WritePrivateProfileSection("Main", "a=1\r\nb=2", kPath)}; }

Answer readText(const char *path) {
  char out[32] = "";
  const int length = GetPrivateProfileString("Main", "key1", "default", out, sizeof out, path);
  return {length, out};
}

constexpr Operation kProfiles[] = {
    // What cannot be read gives the default text.
    {"GetPrivateProfileString", putProfile<3>, [] { return readText(kPath); }, "7", "7"},
    {"GetPrivateProfileString, of a large file", putProfile<1500>, [] { return readText(kPath); },
     "7", "7"},
    {"GetPrivateProfileInt", [] { put("p.ini", "[Main]\r\nkey1=12\r\n"); },
     [] { return Answer{GetPrivateProfileInt("Main", "key1", 5, kPath)}; }, "12", "5"},
    {"WritePrivateProfileString", putProfile<3>, replaceKey, "1", "0", kReplaces},
    {"WritePrivateProfileString, in a large file", putProfile<1500>, replaceKey, "1", "0",
     kReplaces},
    {"WritePrivateProfileString, a new section", putProfile<1500>, addSection, "1", "0", kReplaces},
    {"WritePrivateProfileString, a new file", nullptr, replaceKey, "1", "0", kReplaces},
    {"WritePrivateProfileString, through a link", putLink,
     [] { return Answer{WritePrivateProfileString("Main", "key1", "new", "Data:link.ini")}; }, "1",
     "0", kReplaces},
    {"WritePrivateProfileSection", putProfile<3>, replaceSection, "1", "0", kReplaces},
    {"WritePrivateProfileSection, in a large file", putProfile<1500>, replaceSection, "1", "0",
     kReplaces},
};

}  // namespace

std::span<const Operation> profileOperations() { return kProfiles; }

}  // namespace korvel::faults
