// SPDX-License-Identifier: MIT
// The two character-set conversions and the capitals, on every byte and every length.
#include "strings/charsets.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "strings/capitals.h"
#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"

namespace {

using korvel::test::GuardedPages;
using korvel::test::RandomText;

std::string toMac(std::string s) {
  w2mstr(s.data());
  return s;
}

std::string fromMac(std::string s) {
  m2wstr(s.data());
  return s;
}

std::string upper(std::string s) {
  EXPECT_EQ(strupr(s.data()), s.data());
  return s;
}

// --- The two sets ------------------------------------------------------------------------------

char modelToMac(char c) {
  switch (static_cast<unsigned char>(c)) {
    case 0xB0:
      return '\xA1';
    case 0xE0:
      return '\x88';
    case 0xE7:
      return '\x8D';
    case 0xE8:
      return '\x8F';
    case 0xE9:
      return '\x8E';
    case 0xEA:
      return '\x90';
    case 0xEF:
      return '\x95';
    default:
      return c;
  }
}

char modelFromMac(char c) {
  switch (static_cast<unsigned char>(c)) {
    case 0xA1:
      return '\xB0';
    case 0x88:
      return '\xE0';
    case 0x8D:
      return '\xE7';
    case 0x8F:
      return '\xE8';
    case 0x8E:
      return '\xE9';
    default:
      return c;
  }
}

TEST(W2mstr, ConvertsSevenCharactersAndKeepsEveryOther) {
  for (int c = 1; c < 256; ++c) {
    const std::string s(1, static_cast<char>(c));
    EXPECT_EQ(toMac(s), std::string(1, modelToMac(s[0]))) << c;
  }
}

TEST(M2wstr, ConvertsFiveCharactersAndKeepsEveryOther) {
  for (int c = 1; c < 256; ++c) {
    const std::string s(1, static_cast<char>(c));
    EXPECT_EQ(fromMac(s), std::string(1, modelFromMac(s[0]))) << c;
  }
}

TEST(W2mstr, ConvertsAWholeText) {
  EXPECT_EQ(toMac("37\xB0, d\xE9j\xE0, re\xE7u, m\xEAme, na\xEFve, \xC9t\xE9"),
            "37\xA1, d\x8Ej\x88, re\x8Du, m\x90me, na\x95ve, \xC9t\x8E");
  EXPECT_EQ(toMac(""), "");
}

// Kept: e circumflex and i diaeresis go to the Mac set and are never brought back.
TEST(M2wstr, IsNotTheInverseForECircumflexAndIDiaeresis) {
  EXPECT_EQ(fromMac(toMac("\xEA")), "\x90");
  EXPECT_EQ(fromMac(toMac("\xEF")), "\x95");
  EXPECT_EQ(fromMac(toMac("\xB0\xE0\xE7\xE8\xE9")), "\xB0\xE0\xE7\xE8\xE9");
}

template <typename Model>
std::string modelled(std::string s, Model model) {
  std::transform(s.begin(), s.end(), s.begin(), model);
  return s;
}

TEST(CharacterSets, ConvertWholeStringsWithTheirNuls) {
  using namespace std::string_literals;
  using namespace std::string_view_literals;
  EXPECT_EQ(korvel::strings::toMac("d\xE9j\xE0\0\xE9"sv), "d\x8Ej\x88\0\x8E"sv);
  EXPECT_EQ(korvel::strings::toWindows("d\x8Ej\x88\0\x8E"s), "d\xE9j\xE0\0\xE9"sv);
  EXPECT_EQ(korvel::strings::toMac(""), "");
}

TEST(CharacterSets, AgreeWithTheModelAtThePagesEdges) {
  RandomText random(9);
  GuardedPages pages;
  for (int i = 0; i < 20000; ++i) {
    const std::string text = random.anyText(random.number(0, 150));
    char *s = i % 2 == 0 ? pages.textAtEnd(text) : pages.textAtStart(text);
    w2mstr(s);
    ASSERT_EQ(std::string(s), modelled(text, modelToMac)) << text;
    s = i % 2 == 0 ? pages.textAtEnd(text) : pages.textAtStart(text);
    m2wstr(s);
    ASSERT_EQ(std::string(s), modelled(text, modelFromMac)) << text;
  }
}

// --- Capitals ----------------------------------------------------------------------------------

// The bytes of the Mac set that become each capital.
constexpr struct {
  unsigned char capital;
  std::string_view letters;
} kMacLetters[] = {
    {'A', "\x80\x81\x87\x88\x89\x8A\x8B\x8C\xCB\xCC\xE5\xE7"},
    {'C', "\x82\x8D"},
    {'E', "\x83\x8E\x8F\x90\x91\xE6\xE8\xE9"},
    {'I', "\x92\x93\x94\x95\xEA\xEB\xEC\xED\xF5"},
    {'N', "\x84\x96"},
    {'O', "\x85\x97\x98\x99\x9A\x9B\xCD\xEE\xEF\xF1"},
    {'U', "\x86\x9C\x9D\x9E\x9F\xF2\xF3\xF4"},
    {'Y', "\xD8\xD9"},
    // AE, O with a stroke and OE are letters of their own.
    {0xAE, "\xAE\xBE"},
    {0xAF, "\xAF\xBF"},
    {0xCE, "\xCE\xCF"},
};

char modelCapital(char c) {
  if (c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
  for (const auto &[capital, letters] : kMacLetters) {
    if (letters.find(c) != std::string_view::npos) return static_cast<char>(capital);
  }
  return c;
}

// One length byte and at most 255 bytes of text.
using PascalString = std::array<unsigned char, 256>;

void modelUpperString(PascalString &s) {
  for (std::size_t i = 1; i <= s[0]; ++i) {
    s[i] = static_cast<unsigned char>(modelCapital(static_cast<char>(s[i])));
  }
}

// In chunks of 255 bytes, while the index i of the chunk has length / 255 >= i.
std::string modelUpper(std::string s) {
  constexpr std::size_t kChunk = 255;
  for (std::size_t i = 0; s.size() / kChunk >= i; ++i) {
    const std::size_t count = std::min(kChunk, s.size() - i * kChunk);
    PascalString chunk{};
    chunk[0] = static_cast<unsigned char>(count);
    const auto place = s.begin() + static_cast<std::ptrdiff_t>(i * kChunk);
    std::copy_n(place, count, chunk.begin() + 1);
    modelUpperString(chunk);
    std::copy_n(chunk.begin() + 1, count, place);
  }
  return s;
}

TEST(Strupr, EveryByteHasItsCapital) {
  for (int c = 1; c < 256; ++c) {
    const std::string s(1, static_cast<char>(c));
    EXPECT_EQ(upper(s), std::string(1, modelCapital(s[0]))) << c;
  }
}

TEST(Strupr, DropsDiacriticsOfSmallAndOfCapitalLetters) {
  EXPECT_EQ(upper(toMac("d\xE9j\xE0 re\xE7u, m\xEAme na\xEFve")), "DEJA RECU, MEME NAIVE");
  EXPECT_EQ(upper("\xCB\x83\x82"), "AEC");
  EXPECT_EQ(upper("c\xCFur \xA7 1\xA1"), "C\xCEUR \xA7 1\xA1");
  EXPECT_EQ(upper("123 (a-z)!"), "123 (A-Z)!");
  EXPECT_EQ(upper(""), "");
}

TEST(Strupr, AccentsOfTheOtherSetAreNotLetters) {
  // In the Mac set E9 is E grave and E0 is a double dagger.
  EXPECT_EQ(upper("\xE9\xE0"), "E\xE0");
}

TEST(Strupr, ACapitalIsItsOwnCapital) {
  for (int c = 1; c < 256; ++c) {
    const std::string once = upper(std::string(1, static_cast<char>(c)));
    EXPECT_EQ(upper(once), once) << c;
  }
}

TEST(Strupr, AgreesWithTheChunkedModelAroundMultiplesOf255) {
  RandomText random(10);
  for (int length : {0, 1, 254, 255, 256, 509, 510, 511, 764, 765, 766, 5100}) {
    const std::string text = random.anyText(length);
    EXPECT_EQ(upper(text), modelUpper(text)) << length;
    const std::string accents = random.text(length, "\x8E\x88z");
    EXPECT_EQ(upper(accents), modelUpper(accents)) << length;
  }
}

TEST(Strupr, AgreesWithTheModelAtThePagesEdges) {
  RandomText random(11);
  GuardedPages pages;
  for (int i = 0; i < 20000; ++i) {
    const int length = random.number(0, 300);
    const std::string text =
        i % 3 == 0 ? random.anyText(length) : random.text(length, "abcxyz@[`{ ABZ\x8E");
    char *s = i % 2 == 0 ? pages.textAtEnd(text) : pages.textAtStart(text);
    ASSERT_EQ(strupr(s), s);
    ASSERT_EQ(std::string(s), modelUpper(text)) << text;
  }
}

TEST(Strupr, EveryByteHasItsCapitalAtEveryPlace) {
  for (int c = 1; c < 256; ++c) {
    for (std::size_t place = 0; place < 64; ++place) {
      std::string text(64, 'a');
      text[place] = static_cast<char>(c);
      ASSERT_EQ(upper(text), modelUpper(text)) << c << ' ' << place;
    }
  }
}

// --- Vectors -----------------------------------------------------------------------------------

TEST(CharsetVectors, AgreeWithTheModelsAtEveryLength) {
  RandomText random(12);
  GuardedPages pages;
  for (int length = 0; length <= 200; ++length) {
    for (int round = 0; round < 20; ++round) {
      const std::string text = random.anyText(length);
      const auto n = static_cast<std::size_t>(length);
      char *s = pages.runAtEnd(text);
      korvel::strings::convertToMac({s, n});
      ASSERT_EQ(std::string(s, n), modelled(text, modelToMac));
      s = pages.runAtEnd(text);
      korvel::strings::convertToWindows({s, n});
      ASSERT_EQ(std::string(s, n), modelled(text, modelFromMac));
      s = pages.runAtEnd(text);
      korvel::strings::capitalise({s, n});
      ASSERT_EQ(std::string(s, n), modelUpper(text));
    }
  }
}

}  // namespace
