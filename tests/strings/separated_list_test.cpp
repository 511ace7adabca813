// SPDX-License-Identifier: MIT
// Separated lists: items counted, looked for and copied out.
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "tests/support/page_end.h"

namespace {

using korvel::test::PageEnd;

TEST(CountItems, IsTheSeparatorsPlusOne) {
  constexpr struct {
    const char *list;
    int items;
  } kCases[] = {
      // An empty text has one empty item.
      {"", 1},
      {"a", 1},
      {"abc def", 1},
      // The three separators are equal.
      {"a+b,c-d", 4},
      {"a+b", 2},
      {"a,b", 2},
      {"a-b", 2},
      // Empty items count.
      {"+", 2},
      {"-,+", 4},
      {"a++b", 3},
      {"a+", 2},
      // The neighbours of the separators in the character set, and 8-bit letters, are text.
      {"a*b.c/d", 1},
      {"\xAB+\xAC\xAD\xE9", 2},
  };
  for (const auto &c : kCases) EXPECT_EQ(Teste_liste(c.list), c.items) << c.list;
  EXPECT_EQ(Teste_liste(nullptr), 0);
}

TEST(SeparatedLists, AreSeparatedByThreeBytesAndNoOther) {
  const std::string_view separators = "+,-";
  for (int c = 1; c < 256; ++c) {
    const std::string list = {'a', static_cast<char>(c), 'b'};
    const bool separates = separators.find(list[1]) != std::string_view::npos;
    EXPECT_EQ(Teste_liste(list.c_str()), separates ? 2 : 1) << c;
    EXPECT_EQ(Teste_item_liste(list.c_str(), "b", 1), separates ? 1 : 0) << c;
    EXPECT_EQ(Teste_item_szliste(list.data(), 3, list.data(), 3), separates ? 0 : 1) << c;
    EXPECT_EQ(Get_item_liste(list.c_str(), 0), separates ? "a" : list) << c;
  }
}

TEST(FindItem, NeedsTheSameLengthAndBytes) {
  constexpr struct {
    const char *list;
    std::string_view item;
    int found;
  } kCases[] = {
      {"ab+abc", "ab", 1},
      {"ab+abc", "abc", 1},
      {"ab+abc", "a", 0},
      {"ab+abc", "b", 0},
      {"ab+abc", "abcd", 0},
      {"ab+abc", "AB", 0},
      // First, middle, last.
      {"x,y-z", "x", 1},
      {"x,y-z", "y", 1},
      {"x,y-z", "z", 1},
      {"x,y-z", "w", 0},
      // A text with a separator is never one item.
      {"x,y-z", "x,y", 0},
      {"x,y-z", ",", 0},
      // An item without bytes is found where an item is empty.
      {"", "", 1},
      {"a", "", 0},
      {"a,,b", "", 1},
      {"a,", "", 1},
      {",a", "", 1},
      {"", "a", 0},
      // Blanks and 8-bit letters are bytes like others.
      {"a +b", "a", 0},
      {"a +b", "a ", 1},
      {"\xE9t\xE9-\xE0", "\xE0", 1},
      {"\xE9t\xE9-\xE0", "\xE9t\xE8", 0},
  };
  for (const auto &c : kCases) {
    const int n = static_cast<int>(c.item.size());
    EXPECT_EQ(Teste_item_liste(c.list, c.item.data(), n), c.found) << c.list << " / " << c.item;
    const std::string_view list(c.list);
    EXPECT_EQ(Teste_item_szliste(list.data(), static_cast<int>(list.size()), c.item.data(), n),
              c.found)
        << c.list << " / " << c.item;
  }
}

TEST(FindItem, TakesTheGivenLengthOfTheItemOnly) {
  EXPECT_EQ(Teste_item_liste("ab+c", "abXX", 2), 1);
  EXPECT_EQ(Teste_item_liste("ab+c", "ab", 1), 0);
}

TEST(FindItem, RefusesNullPointersAndNegativeLengths) {
  EXPECT_EQ(Teste_item_liste(nullptr, "a", 1), 0);
  EXPECT_EQ(Teste_item_liste("a", nullptr, 1), 0);
  EXPECT_EQ(Teste_item_liste("a", "a", -1), 0);
  EXPECT_EQ(Teste_item_szliste(nullptr, 1, "a", 1), 0);
  EXPECT_EQ(Teste_item_szliste("a", -1, "a", 1), 0);
  EXPECT_EQ(Teste_item_szliste("a", 1, nullptr, 1), 0);
  EXPECT_EQ(Teste_item_szliste("a", 1, "a", -1), 0);
}

TEST(FindItemInRun, ListEndsAtItsLength) {
  EXPECT_EQ(Teste_item_szliste("ab+cd", 5, "cd", 2), 1);
  EXPECT_EQ(Teste_item_szliste("ab+cd", 4, "cd", 2), 0);
  EXPECT_EQ(Teste_item_szliste("ab+cd", 4, "c", 1), 1);
  EXPECT_EQ(Teste_item_szliste("ab+cd", 3, "", 0), 1);
  EXPECT_EQ(Teste_item_szliste("ab+cd", 2, "", 0), 0);
  EXPECT_EQ(Teste_item_szliste("ab", 0, "", 0), 1);
  EXPECT_EQ(Teste_item_szliste("ab", 0, "ab", 2), 0);
}

TEST(FindItemInRun, ReadsNothingBehindEitherRun) {
  PageEnd list("ab+cd");
  PageEnd item("cd");
  EXPECT_EQ(Teste_item_szliste(list.data(), 5, item.data(), 2), 1);
  PageEnd other("ce");
  EXPECT_EQ(Teste_item_szliste(list.data(), 5, other.data(), 2), 0);
}

TEST(FindItemInRun, NulIsAByteLikeOthers) {
  const std::string_view list("a\0b+c", 5);
  EXPECT_EQ(Teste_item_szliste(list.data(), 5, "a\0b", 3), 1);
  EXPECT_EQ(Teste_item_szliste(list.data(), 5, "c", 1), 1);
}

TEST(GetItem, CountsFromZero) {
  constexpr struct {
    const char *list;
    int index;
    const char *item;  // null past the last one
  } kCases[] = {
      {"a+b,c", 0, "a"},
      {"a+b,c", 1, "b"},
      {"a+b,c", 2, "c"},
      {"a+b,c", 3, nullptr},
      {"a+b,c", -1, nullptr},
      {"a+b,c", 2147483647, nullptr},
      {"a+b,c", -2147483647, nullptr},
      // An empty text has one empty item.
      {"", 0, ""},
      {"", 1, nullptr},
      {"+", 0, ""},
      {"+", 1, ""},
      {"+", 2, nullptr},
      {"a--b", 1, ""},
      {"\xE9t\xE9-\xE0", 1, "\xE0"},
  };
  for (const auto &c : kCases) {
    const char *item = Get_item_liste(c.list, c.index);
    if (c.item == nullptr) {
      EXPECT_EQ(item, nullptr) << c.list << " at " << c.index;
    } else {
      EXPECT_STREQ(item, c.item) << c.list << " at " << c.index;
    }
  }
  EXPECT_EQ(Get_item_liste(nullptr, 0), nullptr);
}

TEST(GetItem, IsCutTo63Characters) {
  for (const std::size_t length : {62U, 63U, 64U, 65U, 200U}) {
    const std::string item(length, 'i');
    const std::string cut = item.substr(0, 63);
    EXPECT_EQ(Get_item_liste(item.c_str(), 0), cut) << length;
    EXPECT_EQ(Get_item_liste((item + "+x").c_str(), 0), cut) << length;
    EXPECT_EQ(Get_item_liste(("x," + item).c_str(), 1), cut) << length;
  }
}

TEST(GetItem, UsesOneBufferThatTheNextCallOverwrites) {
  const char *first = Get_item_liste("first+second", 0);
  const char *second = Get_item_liste("first+second", 1);
  EXPECT_EQ(first, second);
  EXPECT_STREQ(first, "second");
  // Without an item the buffer stays as it was.
  EXPECT_EQ(Get_item_liste("x", 5), nullptr);
  EXPECT_STREQ(first, "second");
}

TEST(GetItem, TheBufferMayBeWritten) {
  static_assert(std::is_same_v<decltype(Get_item_liste("", 0)), char *>);
  const std::string longest(63, 'i');
  char *item = Get_item_liste(longest.c_str(), 0);
  for (int i = 0; i < 64; ++i) item[i] = '#';
  EXPECT_EQ(Get_item_liste(longest.c_str(), 0), longest);
}

TEST(GetItem, TakesItsOwnBufferAsList) {
  const char *item = Get_item_liste("abc", 0);
  EXPECT_STREQ(Get_item_liste(item, 0), "abc");
}

// Splits the list one byte at a time.
std::vector<std::string> itemsOf(std::string_view list) {
  std::vector<std::string> items(1);
  for (const char c : list) {
    if (c == '+' || c == ',' || c == '-') {
      items.emplace_back();
    } else {
      items.back() += c;
    }
  }
  return items;
}

TEST(SeparatedLists, AgreeWithAByteByByteReaderOnRandomTexts) {
  std::mt19937 random(20240214);
  constexpr std::string_view kBytes = "ab+,-\xE9 .";
  const auto text = [&](std::size_t most) {
    std::string s(random() % (most + 1), '\0');
    for (char &c : s) c = kBytes[random() % kBytes.size()];
    return s;
  };
  for (int run = 0; run < 20000; ++run) {
    const std::string list = text(12);
    const std::vector<std::string> items = itemsOf(list);
    const int count = static_cast<int>(items.size());
    ASSERT_EQ(Teste_liste(list.c_str()), count) << list;
    const std::string wanted = text(2);
    const int length = static_cast<int>(wanted.size());
    const int found = std::count(items.begin(), items.end(), wanted) > 0 ? 1 : 0;
    ASSERT_EQ(Teste_item_liste(list.c_str(), wanted.data(), length), found)
        << list << " / " << wanted;
    ASSERT_EQ(Teste_item_szliste(list.data(), static_cast<int>(list.size()), wanted.data(), length),
              found)
        << list << " / " << wanted;
    const int index = static_cast<int>(random() % 8) - 1;
    const char *item = Get_item_liste(list.c_str(), index);
    if (index < 0 || index >= count) {
      ASSERT_EQ(item, nullptr) << list << " at " << index;
    } else {
      ASSERT_EQ(item, items[static_cast<std::size_t>(index)]) << list << " at " << index;
    }
  }
}

}  // namespace
