// SPDX-License-Identifier: MIT
// The screen set: every byte shown, every character typed.
#include "platform/screentext.h"

#include <map>
#include <set>

#include <gtest/gtest.h>

namespace korvel::platform {
namespace {

// The set from 0x80 on, in the order of its bytes, with "@" for a control character.
constexpr std::u16string_view kUpperHalf =
    u"€@‚ƒ„…†‡à‰Š‹Œçéè"
    u"ê‘’“”ï–—˜™š›œ@žŸ"
    u"\u00A0°¢£¤¥¦§¨©ª«¬\u00AD®¯"
    u"°±²³´µ¶·¸¹º»¼½¾¿"
    u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏ"
    u"ÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
    u"àáâãäåæçèéêëìíîï"
    u"ðñòóôõö÷øùúûüýþÿ";

// Bytes that are read back as others.
const std::map<int, int> kReadBackAs = {
    {0x90, 0xEA}, {0x95, 0xEF},                              // ê ï
    {0xB0, 0xA1}, {0xE0, 0x88}, {0xE7, 0x8D}, {0xE8, 0x8F},  // ° à ç è
    {0xE9, 0x8E},                                            // é
};

std::string oneByte(int byte) { return std::string(1, static_cast<char>(byte)); }

TEST(ScreenText, ShowsEveryByte) {
  for (int byte = 0; byte < 0x80; ++byte)
    EXPECT_EQ(characterOf(static_cast<unsigned char>(byte)), byte);
  ASSERT_EQ(kUpperHalf.size(), 128u);
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const char16_t shown = kUpperHalf[static_cast<std::size_t>(byte - 0x80)];
    EXPECT_EQ(characterOf(static_cast<unsigned char>(byte)), shown == u'@' ? byte : shown) << byte;
  }
}

TEST(ScreenText, ReadsEveryByteBack) {
  for (int byte = 0; byte < 0x100; ++byte) {
    const auto other = kReadBackAs.find(byte);
    const int expected = other == kReadBackAs.end() ? byte : other->second;
    EXPECT_EQ(asReadBack(oneByte(byte)), oneByte(expected)) << byte;
  }
}

TEST(ScreenText, ReadingBackTwiceChangesNothingMore) {
  for (int byte = 0; byte < 0x100; ++byte) {
    const std::string once = asReadBack(oneByte(byte));
    EXPECT_EQ(asReadBack(once), once) << byte;
    EXPECT_EQ(toCharacters(once), toCharacters(oneByte(byte))) << byte;
  }
}

TEST(ScreenText, FiveLettersAreTypedAsTheirMacBytes) {
  EXPECT_EQ(toBytes(u"àçèé°"), "\x88\x8D\x8F\x8E\xA1");
}

TEST(ScreenText, OtherLettersAreTypedAsTheirCp1252Bytes) {
  EXPECT_EQ(toBytes(u"êïÉœ€Ÿ"), "\xEA\xEF\xC9\x9C\x80\x9F");
}

TEST(ScreenText, ExactlyTheShownCharactersHaveAByte) {
  std::set<int> shown;
  for (int byte = 0; byte < 0x100; ++byte)
    shown.insert(characterOf(static_cast<unsigned char>(byte)));
  for (int character = 0; character < 0x10000; ++character)
    EXPECT_EQ(byteOf(static_cast<char16_t>(character)).has_value(), shown.count(character) == 1)
        << character;
}

TEST(ScreenText, CharactersWhoseByteShowsAnotherLetterHaveNone) {
  for (const char16_t character : {u'Ž', u'¡', u'•', u'ˆ'})
    EXPECT_EQ(byteOf(character), std::nullopt) << static_cast<int>(character);
}

TEST(ScreenText, ACharacterWithoutAByteBecomesAQuestionMark) {
  EXPECT_EQ(toBytes(u"a中b•"), "a?b?");
}

TEST(ScreenText, TextsKeepTheirLengthAndTheirNulBytes) {
  EXPECT_EQ(toCharacters(std::string_view("a\0b", 3)), std::u16string_view(u"a\0b", 3));
  EXPECT_EQ(toBytes(std::u16string_view(u"a\0b", 3)), std::string("a\0b", 3));
  EXPECT_EQ(asReadBack(""), "");
}

}  // namespace
}  // namespace korvel::platform
