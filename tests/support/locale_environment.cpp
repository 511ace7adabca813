// SPDX-License-Identifier: MIT
// Linked into a test program, puts all of it under the host's locale when KORVEL_TEST_LOCALE names
// that locale, as an application does that calls setlocale: no result of the library may change.
// The locale must be one that hurts, with a decimal comma.
#include <cctype>
#include <clocale>
#include <cstdlib>
#include <string>

#include <langinfo.h>

#include <gtest/gtest.h>

namespace {

class HostLocale : public ::testing::Environment {
 public:
  explicit HostLocale(const char *name) : name_(name) {}

  // A failure here fails the program without running a test.
  void SetUp() override {
    const char *const set = std::setlocale(LC_ALL, "");
    ASSERT_NE(set, nullptr) << "the locale " << name_ << " is not installed";
    ASSERT_EQ(set, name_);
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    // In an 8-bit code page, bytes above 0x7F are letters for the standard library.
    const bool isEightBit = std::string(nl_langinfo(CODESET)) == "ISO-8859-1";
    ASSERT_EQ(std::isalpha(0xE9) != 0, isEightBit);
  }
  void TearDown() override { std::setlocale(LC_ALL, "C"); }

 private:
  std::string name_;
};

bool addHostLocale() {
  const char *const name = std::getenv("KORVEL_TEST_LOCALE");
  if (name != nullptr) ::testing::AddGlobalTestEnvironment(new HostLocale(name));
  return name != nullptr;
}

[[maybe_unused]] const bool kAdded = addHostLocale();

}  // namespace
