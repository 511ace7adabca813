// SPDX-License-Identifier: MIT
// UTF-8 to CP1252 and back, against a model that looks well-formed characters up in a table.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"
#include "tests/support/poisoned_buffer.h"

namespace {

using korvel::test::GuardedPages;
using korvel::test::PoisonedBuffer;
using korvel::test::RandomText;

struct Converted {
  int result;
  std::string text;

  bool operator==(const Converted &) const = default;
  friend std::ostream &operator<<(std::ostream &out, const Converted &converted) {
    return out << converted.result << ", " << testing::PrintToString(converted.text);
  }
};

using Function = int (*)(const char *, char *, int);

Converted by(Function function, const std::string &text) {
  std::string out(3 * text.size() + 1, 'x');
  const int result = function(text.c_str(), out.data(), static_cast<int>(out.size()));
  return {result, out.c_str()};
}

Converted fromUtf8(const std::string &text) { return by(KorvelFromUtf8, text); }
Converted toUtf8(const std::string &text) { return by(KorvelToUtf8, text); }

// --- The model ---------------------------------------------------------------------------------

// What stands for the bytes 0x80 to 0x9F; the five that have no character stand for controls.
constexpr std::array<std::string_view, 32> kOwn = {
    "€", "\xC2\x81", "‚",        "ƒ", "„",        "…",        "†", "‡",        "ˆ", "‰", "Š",
    "‹", "Œ",        "\xC2\x8D", "Ž", "\xC2\x8F", "\xC2\x90", "‘", "’",        "“", "”", "•",
    "–", "—",        "˜",        "™", "š",        "›",        "œ", "\xC2\x9D", "ž", "Ÿ"};

std::string modelCharacter(unsigned byte) {
  if (byte < 0x80) return {static_cast<char>(byte)};
  if (byte < 0xA0) return std::string(kOwn[byte - 0x80]);
  return {byte < 0xC0 ? '\xC2' : '\xC3', static_cast<char>(byte < 0xC0 ? byte : byte - 0x40)};
}

// Well-formed UTF-8, as the standard lists it: the first and the last of what each byte may be.
struct Form {
  std::string_view first, last;
};
constexpr Form kForms[] = {{"\x01", "\x7F"},
                           {"\xC2\x80", "\xDF\xBF"},
                           {"\xE0\xA0\x80", "\xE0\xBF\xBF"},
                           {"\xE1\x80\x80", "\xEC\xBF\xBF"},
                           {"\xED\x80\x80", "\xED\x9F\xBF"},
                           {"\xEE\x80\x80", "\xEF\xBF\xBF"},
                           {"\xF0\x90\x80\x80", "\xF0\xBF\xBF\xBF"},
                           {"\xF1\x80\x80\x80", "\xF3\xBF\xBF\xBF"},
                           {"\xF4\x80\x80\x80", "\xF4\x8F\xBF\xBF"}};

bool begins(std::string_view text, const Form &form) {
  if (text.size() < form.first.size()) return false;
  for (std::size_t i = 0; i < form.first.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < static_cast<unsigned char>(form.first[i])) return false;
    if (byte > static_cast<unsigned char>(form.last[i])) return false;
  }
  return true;
}

// 1 for a byte that begins no character.
std::size_t modelLength(std::string_view text) {
  for (const Form &form : kForms)
    if (begins(text, form)) return form.first.size();
  return 1;
}

Converted modelFromUtf8(std::string_view text) {
  Converted converted{};
  while (!text.empty()) {
    const std::string_view character = text.substr(0, modelLength(text));
    unsigned byte = 1;
    while (byte < 256 && modelCharacter(byte) != character) ++byte;
    converted.text += byte < 256 ? static_cast<char>(byte) : '?';
    if (byte == 256) ++converted.result;
    text.remove_prefix(character.size());
  }
  return converted;
}

Converted modelToUtf8(const std::string &text) {
  std::string all;
  for (const char byte : text) all += modelCharacter(static_cast<unsigned char>(byte));
  return {0, all};
}

// --- Characters --------------------------------------------------------------------------------

TEST(Utf8, EveryByteHasItsCharacterAndComesBack) {
  for (unsigned byte = 1; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(toUtf8(text), (Converted{0, modelCharacter(byte)})) << byte;
    EXPECT_EQ(fromUtf8(modelCharacter(byte)), (Converted{0, text})) << byte;
  }
}

TEST(Utf8, ConvertsWholeTexts) {
  EXPECT_EQ(fromUtf8("L’œuvre coûte 5 €, déjà"),
            (Converted{0, "L\x92\x9Cuvre co\xFBte 5 \x80, d\xE9j\xE0"}));
  EXPECT_EQ(toUtf8("L\x92\x9Cuvre co\xFBte 5 \x80, d\xE9j\xE0"),
            (Converted{0, "L’œuvre coûte 5 €, déjà"}));
  EXPECT_EQ(fromUtf8(""), (Converted{0, ""}));
  EXPECT_EQ(toUtf8(""), (Converted{0, ""}));
}

TEST(Utf8, CountsTheCharactersThatCp1252DoesNotHave) {
  EXPECT_EQ(fromUtf8("π ≈ 3"), (Converted{2, "? ? 3"}));
  EXPECT_EQ(fromUtf8("un 🙂 et un é"), (Converted{1, "un ? et un \xE9"}));
  EXPECT_EQ(fromUtf8("\xC2\x80\xC2\x9F"), (Converted{2, "??"}))
      << "controls, whose bytes are taken";
  EXPECT_EQ(fromUtf8("e\xCC\x81"), (Converted{1, "e?"})) << "an accent of its own";
  EXPECT_EQ(fromUtf8("\xEF\xBB\xBF"
                     "a"),
            (Converted{1, "?a"}))
      << "a mark at the beginning";
  EXPECT_EQ(fromUtf8("Ā\uFFFD"), (Converted{2, "??"}));
  EXPECT_EQ(fromUtf8("?"), (Converted{0, "?"}));
}

TEST(Utf8, EachByteOfNoCharacterIsLost) {
  EXPECT_EQ(fromUtf8("\xE9t\xE9"), (Converted{2, "?t?"})) << "CP1252";
  EXPECT_EQ(fromUtf8("\xE9t\xE9 pass\xE9s"), (Converted{3, "?t? pass?s"})) << "CP1252";
  EXPECT_EQ(fromUtf8("a\x80"), (Converted{1, "a?"})) << "nothing to follow";
  EXPECT_EQ(fromUtf8("\xC3"), (Converted{1, "?"})) << "cut";
  EXPECT_EQ(fromUtf8("\xE2\x82"), (Converted{2, "??"})) << "cut";
  EXPECT_EQ(fromUtf8("\xE2\x82"
                     "a\xC3\xA9"),
            (Converted{2, "??a\xE9"}))
      << "cut";
  EXPECT_EQ(fromUtf8("\xF0\x9F\x99"), (Converted{3, "???"})) << "cut";
  EXPECT_EQ(fromUtf8("\xC1\xA9"), (Converted{2, "??"})) << "overlong";
  EXPECT_EQ(fromUtf8("\xC0\x80"), (Converted{2, "??"})) << "overlong, a NUL";
  EXPECT_EQ(fromUtf8("\xE0\x83\xA9"), (Converted{3, "???"})) << "overlong";
  EXPECT_EQ(fromUtf8("\xF0\x80\x83\xA9"), (Converted{4, "????"})) << "overlong";
  EXPECT_EQ(fromUtf8("\xC1\xBF"), (Converted{2, "??"})) << "the last overlong of two";
  EXPECT_EQ(fromUtf8("\xE0\x9F\xBF"), (Converted{3, "???"})) << "the last overlong of three";
  EXPECT_EQ(fromUtf8("\xF0\x8F\xBF\xBF"), (Converted{4, "????"})) << "the last overlong of four";
  EXPECT_EQ(fromUtf8("\xED\xA0\x80"), (Converted{3, "???"})) << "the first surrogate";
  EXPECT_EQ(fromUtf8("\xED\xBF\xBF"), (Converted{3, "???"})) << "the last surrogate";
  EXPECT_EQ(fromUtf8("\xF4\x90\x80\x80"), (Converted{4, "????"})) << "above all characters";
  EXPECT_EQ(fromUtf8("\xF8\x88\x80\x80\x80"), (Converted{5, "?????"})) << "five bytes";
  EXPECT_EQ(fromUtf8("\xFE\xFF"), (Converted{2, "??"}));
}

TEST(Utf8, TheOutermostOfEachLengthAreOneCharacter) {
  for (const Form &form : kForms) {
    EXPECT_EQ(fromUtf8(std::string(form.first)).text.size(), 1U)
        << testing::PrintToString(form.first);
    EXPECT_EQ(fromUtf8(std::string(form.last)).text.size(), 1U)
        << testing::PrintToString(form.last);
  }
}

// --- Buffers -----------------------------------------------------------------------------------

void expectRoom(Function function, const char *text, std::size_t needed) {
  for (std::size_t capacity = 0; capacity <= needed + 1; ++capacity) {
    PoisonedBuffer out(capacity);
    const bool isRoom = capacity >= needed;
    EXPECT_EQ(function(text, out.data(), out.capacity()), isRoom ? 0 : -1) << capacity;
    EXPECT_TRUE(out.guardsIntact()) << capacity;
    EXPECT_TRUE(out.untouchedFrom(isRoom ? needed : 0)) << capacity;
    EXPECT_TRUE(!isRoom || out.text().size() == needed - 1) << capacity;
  }
}

TEST(Utf8, ABufferThatIsTooSmallStaysAsItWas) {
  expectRoom(KorvelFromUtf8, "été, 5 €", 9);
  expectRoom(KorvelFromUtf8, "", 1);
  expectRoom(KorvelToUtf8, "\xE9t\xE9, 5 \x80", 13);
  expectRoom(KorvelToUtf8, "", 1);
}

TEST(Utf8, NothingIsFollowedOrWrittenThatIsNotThere) {
  char out[8] = "abc";
  for (const Function function : {KorvelFromUtf8, KorvelToUtf8}) {
    EXPECT_EQ(function(nullptr, out, 8), -1);
    EXPECT_EQ(function("a", nullptr, 8), -1);
    EXPECT_EQ(function("a", out, 0), -1);
    EXPECT_EQ(function("a", out, -1), -1);
    EXPECT_STREQ(out, "abc");
  }
}

TEST(Utf8, OneBufferCanBeBoth) {
  char text[16] = "été à 5 €";
  EXPECT_EQ(KorvelFromUtf8(text, text, 9), -1);
  EXPECT_STREQ(text, "été à 5 €");
  EXPECT_EQ(KorvelFromUtf8(text, text, 10), 0);
  EXPECT_STREQ(text, "\xE9t\xE9 \xE0 5 \x80");
  EXPECT_EQ(KorvelToUtf8(text, text, 14), -1);
  EXPECT_STREQ(text, "\xE9t\xE9 \xE0 5 \x80");
  EXPECT_EQ(KorvelToUtf8(text, text, 15), 0);
  EXPECT_STREQ(text, "été à 5 €");
}

// --- Any text ----------------------------------------------------------------------------------

// Whole characters, parts of some, and any bytes.
std::string anyUtf8(RandomText &random) {
  static const std::string kPieces[] = {"a",    "?",        "é",        "€",        "🙂",
                                        "Ā",    "\xC3",     "\xE2\x82", "\xF0\x9F", "\xED\xA0\x80",
                                        "\xC0", "\xF4\x90", "\x80",     "\xBF",     "\xFF"};
  std::string text;
  for (int pieces = random.number(0, 12); pieces > 0; --pieces) {
    const int piece = random.number(0, static_cast<int>(std::size(kPieces)));
    text += piece == 0 ? random.anyText(random.number(1, 4)) : kPieces[piece - 1];
  }
  return text;
}

TEST(Utf8, AgreesWithTheModelAtThePagesEdges) {
  RandomText random(13);
  GuardedPages pages;
  for (int i = 0; i < 5000; ++i) {
    const std::string text = anyUtf8(random);
    const Converted expected = modelFromUtf8(text);
    char *s = i % 2 == 0 ? pages.textAtEnd(text) : pages.textAtStart(text);
    PoisonedBuffer out(expected.text.size() + 1);
    const int result = KorvelFromUtf8(s, out.data(), out.capacity());
    ASSERT_EQ((Converted{result, std::string(out.text())}), expected)
        << testing::PrintToString(text);
    ASSERT_TRUE(out.guardsIntact());
    ASSERT_EQ(KorvelFromUtf8(s, s, static_cast<int>(text.size()) + 1), expected.result);
    ASSERT_EQ(s, expected.text) << "in one buffer: " << testing::PrintToString(text);
  }
}

TEST(Utf8, EveryTextComesBack) {
  RandomText random(14);
  GuardedPages pages;
  for (int i = 0; i < 5000; ++i) {
    const std::string text = random.anyText(random.number(0, 60));
    const Converted expected = modelToUtf8(text);
    const auto needed = static_cast<int>(expected.text.size()) + 1;
    ASSERT_EQ(toUtf8(text), expected);
    ASSERT_EQ(fromUtf8(expected.text), (Converted{0, text}));
    char *s = pages.runAtEnd(text + std::string(expected.text.size() + 1 - text.size(), '\0'));
    ASSERT_EQ(KorvelToUtf8(s, s, needed), 0);
    ASSERT_EQ(s, expected.text) << "in one buffer";
  }
}

}  // namespace
