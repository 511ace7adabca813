#include "profile/scan.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/page_end.h"

namespace {

using korvel::profile::isOddLineEnd;
using korvel::profile::KeyEnd;
using korvel::profile::KeyProbe;
using korvel::profile::Scan;
using korvel::test::PageEnd;

// All that this machine can run: a wider one runs the narrower ones, too.
std::vector<Scan> scansOfThisMachine() {
  using namespace korvel::profile;
  std::vector<Scan> scans = {&scanPlain};
#ifdef __x86_64__
  if (widestScan() != &scanPlain) scans.push_back(&scanAvx2);
  if (widestScan() == &scanAvx512) scans.push_back(&scanAvx512);
#endif
  return scans;
}

bool isOfInterest(const char *at, KeyEnd key) {
  const bool keyMayEnd = at[0] == '=' && at[-1] == key.last && at[-2] == key.lastButOne;
  return isOddLineEnd(at) || *at == '[' || keyMayEnd;
}

TEST(Scan, StopsAtTheFirstByteOfInterestAndPassesNone) {
  constexpr std::ptrdiff_t kWidestBlock = 64;
  std::mt19937 random(512);
  for (int run = 0; run < 3000; ++run) {
    std::string text(random() % 700 + 2, 'a');
    for (char &c : text) c = "key=\x8A\xDB\xBD\r"[random() % 7];
    for (std::size_t i = 2; i + 1 < text.size(); i += 2 + random() % 40) {
      text[i] = '\r';
      text[i + 1] = '\n';
    }
    // Rare, so that all of a block's bytes get their turn.
    if (random() % 3 == 0) text[random() % text.size()] = "\r\n[="[random() % 4];
    PageEnd page(text);
    const char *begin = page.data() + 2;
    const char *end = page.data() + text.size();
    const KeyEnd key = KeyProbe(random() % 2 == 0 ? "key" : "y").end();
    const char *first = begin;
    while (first != end && !isOfInterest(first, key)) ++first;
    for (const Scan scan : scansOfThisMachine()) {
      const char *stop = scan(begin, end, key);
      ASSERT_LE(stop, first);
      ASSERT_TRUE(stop == first || end - stop < kWidestBlock);
    }
  }
}

TEST(Scan, KnowsTheBytesBeforeTheEqualsSign) {
  const auto endOf = [](std::string_view key) {
    const KeyEnd end = KeyProbe(key).end();
    return std::string{end.lastButOne, end.last};
  };
  EXPECT_EQ(endOf("key"), "ey");
  EXPECT_EQ(endOf("ey"), "ey");
  EXPECT_EQ(endOf("y"), "\ny");
  EXPECT_EQ(endOf(""), "\r\n");
}

TEST(Scan, KnowsAKeyByAllOfItsBytes) {
  const std::string_view text = "\r\nkey=\r\nkay=\r\nakey=\r\n=";
  EXPECT_TRUE(KeyProbe("key").endsAt(text.data() + 5));
  EXPECT_FALSE(KeyProbe("key").endsAt(text.data() + 4));
  EXPECT_FALSE(KeyProbe("key").endsAt(text.data() + 11));
  EXPECT_FALSE(KeyProbe("key").endsAt(text.data() + 18));
  EXPECT_TRUE(KeyProbe("").endsAt(text.data() + 21));
}

}  // namespace
