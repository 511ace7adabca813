// SPDX-License-Identifier: MIT
// Linked into a test program, makes sure that the desktop's font is of the family that
// KORVEL_TEST_FONT names, when it does (desktop_font.conf.in): where that family is not installed
// another one would take its place unseen.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace {

std::string familyOfTheDesktop() {
  std::array<char, 256> line{};
  FILE *const match = popen("fc-match --format='%{family}' sans-serif", "r");
  if (match == nullptr) return "";
  const std::size_t length = std::fread(line.data(), 1, line.size(), match);
  pclose(match);
  return {line.data(), length};
}

class DesktopFont : public ::testing::Environment {
 public:
  explicit DesktopFont(const char *name) : name_(name) {}

  // A failure here fails the program without running a test.
  void SetUp() override { ASSERT_EQ(familyOfTheDesktop(), name_); }

 private:
  std::string name_;
};

bool addDesktopFont() {
  const char *const name = std::getenv("KORVEL_TEST_FONT");
  if (name != nullptr) ::testing::AddGlobalTestEnvironment(new DesktopFont(name));
  return name != nullptr;
}

[[maybe_unused]] const bool kAdded = addDesktopFont();

}  // namespace
