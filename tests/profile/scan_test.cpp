// SPDX-License-Identifier: MIT
// The scans for a key, beside a loop over single bytes.
#include "profile/scan.h"

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "strings/machine.h"
#include "tests/files/volumes.h"
#include "tests/support/page_end.h"

namespace {

using korvel::profile::scanReach;
using korvel::profile::stretchOf;
using korvel::strings::avx2Allowed;
using korvel::strings::usesAvx2;
using korvel::test::PageEnd;
using korvel::test::Restored;

using Scan = decltype(korvel::profile::scan);

// Those that this machine can run.
std::vector<Scan *> scansOfThisMachine() {
  using namespace korvel::profile;
  std::vector<Scan *> scans = {&scanBaseline};
  if (usesAvx2()) scans.push_back(&scanAvx2);
  return scans;
}

bool isOfInterest(const char *at, std::string_view key) {
  if (*at == '\n') return at[-1] != '\r';
  const char *begin = at - key.size();
  const bool beginsLine = begin[-1] == '\n' || begin[-1] == '\r';
  return *at == '[' || (*at == '=' && beginsLine && std::string_view(begin, key.size()) == key);
}

TEST(Scan, StopsAtTheFirstByteOfInterestAndPassesNone) {
  constexpr std::ptrdiff_t kWidestVector = 32;
  constexpr std::size_t kReach = 5;
  std::mt19937 random(512);
  for (int run = 0; run < 3000; ++run) {
    const std::string_view key = std::string_view("key").substr(random() % 3);
    std::string text(random() % 700 + kReach, 'a');
    for (char &c : text) c = "key=\x8A\xDB\xBD\r"[random() % 7];
    for (std::size_t i = 2; i + 1 < text.size(); i += 2 + random() % 40) {
      text[i] = '\r';
      text[i + 1] = '\n';
    }
    // Other keys that end alike.
    for (std::size_t i = 8; i + 8 < text.size(); i += 8 + random() % 100)
      text.replace(i, 4, random() % 40 == 0 ? "key=" : "dey=");
    // Rare, so that each byte of a block is hit at times.
    if (random() % 3 == 0) text[random() % text.size()] = "\r\n[="[random() % 4];
    PageEnd page(text);
    const char *begin = page.data() + kReach;
    const char *end = page.data() + text.size();
    const char *first = begin;
    while (first != end && !isOfInterest(first, key)) ++first;
    for (Scan *const scan : scansOfThisMachine()) {
      const char *stop = scan({begin, end}, stretchOf(key));
      ASSERT_LE(stop, first);
      ASSERT_TRUE(stop == first || end - stop < kWidestVector);
    }
  }
}

// Less than a wide vector: only a narrow one fits.
TEST(Scan, IsTheWidestThatIsAllowed) {
  const std::string text(29, 'a');
  const char *begin = text.data() + 5;
  const char *end = begin + 24;
  const Restored<bool> restored{avx2Allowed};
  EXPECT_EQ(korvel::profile::scan({begin, end}, stretchOf("key")) == begin, usesAvx2());
  avx2Allowed = false;
  EXPECT_NE(korvel::profile::scan({begin, end}, stretchOf("key")), begin);
}

TEST(Scan, ReachesAsFarBackAsTheKeyAndALineEnd) {
  EXPECT_EQ(scanReach(stretchOf("key")), 5U);
  EXPECT_EQ(scanReach(stretchOf("y")), 3U);
}

}  // namespace
