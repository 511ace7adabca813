// SPDX-License-Identifier: MIT
// Values found in the text of a profile, beside a reader by characters.
#include "profile/find.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/profile/literal_profile.h"
#include "tests/profile/random_profiles.h"
#include "tests/support/page_end.h"
#include "tests/support/sanitizer.h"

namespace {

using namespace std::string_view_literals;
using korvel::test::literalRead;
using korvel::test::PageEnd;
using korvel::test::RandomProfiles;

std::optional<std::string> valueOf(std::string_view text, std::string_view section,
                                   std::string_view key) {
  auto value = korvel::profile::findValue(text, section, key);
  if (!value) return std::nullopt;
  std::string bytes(text.size(), '\0');
  bytes.resize(value->copyTo(bytes.data(), bytes.size()));
  return bytes;
}

struct Row {
  std::string_view text;
  std::string_view section;
  std::string_view key;
  std::optional<std::string_view> value;
};

TEST(FindValue, FollowsTheFormat) {
  const Row kRows[] = {
      {"[A]\r\nx=1\r\n", "A", "x", "1"},
      // Upper and lower case differ, for keys and sections.
      {"[A]\r\nx=1\r\n", "A", "X", {}},
      {"[A]\r\nx=1\r\n", "a", "x", {}},
      // Blanks are characters.
      {"[A]\r\n x=1\r\n", "A", "x", {}},
      {"[A]\r\nx= 1\r\n", "A", "x", " 1"},
      {"[A]\r\nx =1\r\n", "A", "x", {}},
      {"[A]\r\nx=1 \t\r\n", "A", "x", "1 \t"},
      {"[A ]\r\nx=1\r\n", "A", "x", {}},
      {" [A]\r\nx=1\r\n", "A", "x", {}},
      {"[ A]\r\nx=1\r\n", " A", "x", "1"},
      // A carriage return alone ends a line; the last line needs no end.
      {"[A]\rx=1\ry=2", "A", "x", "1"},
      {"[A]\rx=1\ry=2", "A", "y", "2"},
      {"[A]\r\nx=1\r", "A", "x", "1"},
      {"[A]\r\nx=", "A", "x", ""},
      {"[A]\r\nx=\r\n", "A", "x", ""},
      // Line feeds are skipped everywhere.
      {"\n[\nA\n]\n\r\n\nx\n=\n1\n2\n\r\n", "A", "x", "12"},
      {"[A]\r\n\r\n\r\nx=1\r\n", "A", "x", "1"},
      {"[A]\n\rx=1\n\r", "A", "x", "1"},
      // Line feeds alone: all is one line, the header's.
      {"[A]\nx=1\n", "A", "x", {}},
      // Behind ']' anything may follow, even another '['.
      {"[A] comment\r\nx=1\r\n", "A", "x", "1"},
      {"[A][B]\r\nx=1\r\n", "A", "x", "1"},
      {"[A][B]\r\nx=1\r\n", "B", "x", {}},
      {"[A\r\nx=1\r\n", "A", "x", {}},
      {"[A]b]\r\nx=1\r\n", "A]b", "x", "1"},
      {"[A]b]\r\nx=1\r\n", "A", "x", "1"},
      {"[]\r\nx=1\r\n", "", "x", "1"},
      // Each '=' is tried in turn.
      {"[A]\r\na=b=c\r\n", "A", "a", "b=c"},
      {"[A]\r\na=b=c\r\n", "A", "a=b", "c"},
      {"[A]\r\na=b=c\r\n", "A", "b", {}},
      {"[A]\r\n=v\r\n", "A", "", "v"},
      {"[A]\r\nx==v\r\n", "A", "x", "=v"},
      {"[A]\r\nx\r\nx=1\r\n", "A", "x", "1"},
      // The first line with the key counts.
      {"[A]\r\nx=1\r\nx=2\r\n", "A", "x", "1"},
      // There are no comments.
      {"[A]\r\n;x=1\r\n", "A", "x", {}},
      {"[A]\r\n;x=1\r\n", "A", ";x", "1"},
      // Keys outside the section do not count.
      {"x=0\r\n[A]\r\ny=1\r\n[B]\r\nx=2\r\n", "A", "x", {}},
      {"x=0\r\n[A]\r\ny=1\r\n[B]\r\nx=2\r\n", "B", "x", "2"},
      // Any '[' ends the section, but not one after the key that is looked for.
      {"[A]\r\np=[1]\r\nx=2\r\n", "A", "p", "[1]"},
      {"[A]\r\np=[1]\r\nx=2\r\n", "A", "x", {}},
      {"[A]\r\n[p=1\r\n", "A", "[p", {}},
      {"[A]\r\n[p=1\r\nx=2\r\n", "A", "x", {}},
      // A later section of the same name is searched too.
      {"[A]\r\nx=1\r\n[B]\r\n[A]\r\ny=2\r\n", "A", "y", "2"},
      {"[A]\r\nx=1\r\n[A]\r\nx=2\r\ny=3\r\n", "A", "y", "3"},
      {"[A]\r\nx=1\r\n[A]\r\nx=2\r\ny=3\r\n", "A", "x", "1"},
      // 8-bit letters.
      {"[\xE9t\xE9]\r\ncl\xE9=\xE0\r\n", "\xE9t\xE9", "cl\xE9", "\xE0"},
      {"[\xE9t\xE9]\r\ncl\xE9=\xE0\r\n", "\xE9t\xE8", "cl\xE9", {}},
      // A NUL is a character of its line.
      {"[A]\r\nx\0=1\r\nx=a\0b\r\n"sv, "A", "x", "a\0b"sv},
      {"", "A", "x", {}},
      {"[A]", "A", "x", {}},
      {"\r\n", "", "", {}},
  };
  for (const Row &row : kRows) {
    // No byte after the text is read.
    PageEnd text(row.text);
    EXPECT_EQ(valueOf(text.bytes(), row.section, row.key), row.value)
        << row.text << " / " << row.section << " / " << row.key;
    EXPECT_EQ(literalRead(row.text, row.section, row.key), row.value)
        << "model: " << row.text << " / " << row.section << " / " << row.key;
  }
}

TEST(FindValue, ValuesOfEveryLengthAreRead) {
  for (const std::size_t length : {1020U, 1021U, 1022U, 1023U, 3000U, 16381U, 16382U, 100000U}) {
    const std::string value = std::string(length - 1, 'v') + "\xE9";
    const std::string text = "[A]\r\nx=" + value + "\r\ny=1\r\n";
    EXPECT_EQ(valueOf(text, "A", "x"), value);
    EXPECT_EQ(valueOf(text, "A", "y"), "1");
  }
  // Even one that begins after the characters that count for the key.
  const std::string key(1022, 'k');
  EXPECT_EQ(valueOf("[A]\r\n" + key + "=[v]=\r\n", "A", key), "[v]=");
  const std::string feeds =
      "[A]\r\nx=" + std::string(600, 'v') + std::string(600, '\n') + std::string(600, 'w');
  EXPECT_EQ(valueOf(feeds, "A", "x"), std::string(600, 'v') + std::string(600, 'w'));
}

TEST(FindValue, NothingBehind1023CharactersCounts) {
  const auto withByteAt = [](std::size_t index, char c) {
    std::string line(1100, 'l');
    line[index] = c;
    return "[A]\r\n" + line + "\r\ny=1\r\n";
  };
  EXPECT_EQ(valueOf(withByteAt(1022, '['), "A", "y"), std::nullopt);
  EXPECT_EQ(valueOf(withByteAt(1023, '['), "A", "y"), "1");
  EXPECT_EQ(valueOf(withByteAt(1022, '='), "A", std::string(1022, 'l')), std::string(77, 'l'));
  EXPECT_EQ(valueOf(withByteAt(1023, '='), "A", std::string(1023, 'l')), std::nullopt);
  const auto header = [](std::size_t length) {
    return "[" + std::string(length, 's') + "]\r\nx=1\r\n";
  };
  EXPECT_EQ(valueOf(header(1021), std::string(1021, 's'), "x"), "1");
  EXPECT_EQ(valueOf(header(1022), std::string(1022, 's'), "x"), std::nullopt);
  // Line feeds are not counted.
  EXPECT_EQ(
      valueOf("[" + std::string(2000, '\n') + header(1021).substr(1), std::string(1021, 's'), "x"),
      "1");
}

// Files large enough for the search in blocks, with the key at every distance from a block's end.
TEST(FindValue, FindsAKeyAtEveryPlaceOfALargeFile) {
  for (std::size_t before = 0; before < 300; ++before) {
    std::string text = "[Section]\r\nfirst=1\r\n";
    for (std::size_t i = 0; i < 10; ++i) text += "key" + std::to_string(i) + "7=v\r\n";
    text += "pad=" + std::string(before, 'p') + "\r\nkey17=v\r\nwanted_key17=found\r\n";
    for (const std::size_t behind : {0U, 1U, 127U, 128U, 400U}) {
      PageEnd page(text + std::string(behind, 'z'));
      ASSERT_EQ(valueOf(page.bytes(), "Section", "wanted_key17"), "found") << before;
      ASSERT_EQ(valueOf(page.bytes(), "Section", "anted_key17"), std::nullopt) << before;
      ASSERT_EQ(valueOf(page.bytes(), "Section", "wanted_key1"), std::nullopt) << before;
    }
  }
}

// The bytes, from now on, right behind a page that may not be touched.
std::string_view behindPage(const std::vector<char> &bytes) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void *mapped = mmap(nullptr, page + bytes.size(), PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::runtime_error("no page for the test");
  char *begin = static_cast<char *>(mapped) + page;
  std::memcpy(begin, bytes.data(), bytes.size());
  if (mprotect(mapped, page, PROT_NONE) != 0) throw std::runtime_error("no page for the test");
  return {begin, bytes.size()};
}

// A line that ends like the key is compared from where the key would begin. The sanitizer guards
// every block.
TEST(FindValue, ReadsNothingInFrontOfTheText) {
  for (const std::size_t length : {2U, 10U, 900U}) {
    const std::string key(length, 'k');
    const std::string lines =
        "[]\r\nkk=short\r\npad=" + std::string(300, 'p') + "\r\n" + key + "=found\r\n";
    const std::vector<char> block(lines.begin(), lines.end());
    const std::string_view text = korvel::test::kUnderSanitizer
                                      ? std::string_view(block.data(), block.size())
                                      : behindPage(block);
    EXPECT_EQ(valueOf(text, "", key), length == 2 ? "short" : "found") << length;
  }
}

// Lines that a search in blocks must not skip, at every place of a block.
TEST(FindValue, PassesOverNothingThatMatters) {
  constexpr std::string_view kStops[] = {"\r\na[b\r\n",   "\r\nx\n=2\r\n",     "\rx=3\r\n",
                                         "\r\n\nx=4\r\n", "\r\n\r\r\nx=5\r\n", "\r\nx=6\r\n"};
  for (std::size_t before = 0; before < 400; ++before) {
    for (const std::string_view stop : kStops) {
      const std::string text = "[A]\r\nfirst=1\r\npad=" + std::string(before, 'p') +
                               std::string(stop) + "x=9\r\n" + std::string(200, 'z');
      ASSERT_EQ(valueOf(text, "A", "x"), literalRead(text, "A", "x"))
          << before << testing::PrintToString(stop);
    }
  }
}

TEST(FindValue, AgreesWithALiteralReaderOnRandomFiles) {
  RandomProfiles random(61);
  for (int run = 0; run < korvel::test::rounds(60000); ++run) {
    const std::string file = random.file();
    const std::string section = random.section();
    const std::string key = random.key();
    ASSERT_EQ(valueOf(file, section, key), literalRead(file, section, key))
        << testing::PrintToString(file) << " / " << section << " / " << testing::PrintToString(key);
  }
}

}  // namespace
