// SPDX-License-Identifier: MIT
// Lists of strings at the end of readable memory: walked, cut, bound, and items deleted.
#include <algorithm>
#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "tests/support/page_end.h"
#include "tests/support/poisoned_buffer.h"

namespace {

using korvel::test::PageEnd;
using korvel::test::PoisonedBuffer;
using Items = std::vector<std::string>;

// The bytes of a list of strings, final NUL included.
std::string listOf(const Items &items) {
  std::string bytes;
  for (const std::string &item : items) bytes.append(item).append(1, '\0');
  return bytes.append(1, '\0');
}

// Lists that fill readable memory to its last byte.
class ListAtPageEnd : public PageEnd {
 public:
  explicit ListAtPageEnd(const Items &items) : PageEnd(listOf(items)) {}
  char *item(std::size_t index) {
    char *at = data();
    for (; index > 0; --index) at += std::strlen(at) + 1;
    return at;
  }
};

TEST(PutTwoNuls, WritesTheSecondNul) {
  PoisonedBuffer buffer(8, "abc");
  ChCh_Put_00(buffer.data(), buffer.capacity());
  EXPECT_EQ(std::string_view(buffer.data(), 5), std::string_view("abc\0\0", 5));
  EXPECT_TRUE(buffer.untouchedFrom(5));
  EXPECT_TRUE(buffer.guardsIntact());
}

TEST(PutTwoNuls, CutsTheTextWhereThereIsNoRoom) {
  const std::string_view text = "abcd";
  constexpr struct {
    int capacity;
    std::string_view left;
  } kCases[] = {
      // One byte more than needed, exactly enough, one less, and so on.
      {7, {"abcd\0\0\x5A", 7}}, {6, {"abcd\0\0", 6}}, {5, {"abc\0\0", 5}}, {4, {"ab\0\0", 4}},
      {3, {"a\0\0", 3}},        {2, {"\0\0", 2}},     {1, {"\0", 1}},
  };
  for (const auto &c : kCases) {
    // The text may be longer than the capacity: the bytes after it do not change.
    std::string bytes("abcd\0\x5A\x5A\x5A", 8);
    ChCh_Put_00(bytes.data(), c.capacity);
    EXPECT_EQ(std::string_view(bytes).substr(0, c.left.size()), c.left) << c.capacity;
    const std::string_view behind("abcd\0\x5A\x5A\x5A", 8);
    EXPECT_EQ(std::string_view(bytes).substr(c.left.size()), behind.substr(c.left.size()))
        << c.capacity;
  }
  for (const int capacity : {0, -1, INT_MIN}) {
    PoisonedBuffer buffer(8, text);
    ChCh_Put_00(buffer.data(), capacity);
    EXPECT_EQ(buffer.text(), text) << capacity;
    EXPECT_TRUE(buffer.untouchedFrom(5)) << capacity;
  }
  ChCh_Put_00(nullptr, 5);
}

TEST(PutTwoNuls, MakesAnEmptyListOfAnEmptyText) {
  PoisonedBuffer buffer(2, "");
  ChCh_Put_00(buffer.data(), 2);
  EXPECT_EQ(std::string_view(buffer.data(), 2), std::string_view("\0\0", 2));
  EXPECT_TRUE(buffer.guardsIntact());
}

TEST(PutTwoNuls, CutsATextThatNeverEnds) {
  PageEnd bytes("abcdef");
  ChCh_Put_00(bytes.data(), 6);
  EXPECT_EQ(bytes.bytes(), std::string_view("abcd\0\0", 6));
}

TEST(IsLastItem, IsTrueForTheLastAndForAnEmptyOne) {
  ListAtPageEnd list({"a", "bc", "d"});
  EXPECT_EQ(ChCh_Is_00(list.item(0)), 0);
  EXPECT_EQ(ChCh_Is_00(list.item(1)), 0);
  EXPECT_EQ(ChCh_Is_00(list.item(2)), 1);
  EXPECT_EQ(ChCh_Is_00(list.item(3)), 1);
  ListAtPageEnd empty({});
  EXPECT_EQ(ChCh_Is_00(empty.data()), 1);
  EXPECT_EQ(ChCh_Is_00(nullptr), 1);
}

TEST(NextItem, StopsAtTheLastByGivingItAgain) {
  ListAtPageEnd list({"a", "bc", "d"});
  EXPECT_EQ(ChCh_Get_Next_Item(list.item(0)), list.item(1));
  EXPECT_EQ(ChCh_Get_Next_Item(list.item(1)), list.item(2));
  EXPECT_EQ(ChCh_Get_Next_Item(list.item(2)), list.item(2));
  EXPECT_EQ(ChCh_Get_Next_Item(list.item(3)), list.item(3));
  ListAtPageEnd empty({});
  EXPECT_EQ(ChCh_Get_Next_Item(empty.data()), empty.data());
  EXPECT_EQ(ChCh_Get_Next_Item(nullptr), nullptr);
}

TEST(CountStrings, CountsOneAtLeast) {
  // Kept: an empty list counts as one item.
  EXPECT_EQ(ChCh_Count_Item(nullptr), 1);
  EXPECT_EQ(ChCh_Count_Item(ListAtPageEnd({}).data()), 1);
  EXPECT_EQ(ChCh_Count_Item(ListAtPageEnd({"a"}).data()), 1);
  EXPECT_EQ(ChCh_Count_Item(ListAtPageEnd({"a", "b"}).data()), 2);
  EXPECT_EQ(ChCh_Count_Item(ListAtPageEnd({"\xE9t\xE9", "b", "-"}).data()), 3);
  EXPECT_EQ(ChCh_Count_Item(ListAtPageEnd(Items(100, "item")).data()), 100);
}

TEST(Cut, MakesItemsOfASeparatedList) {
  constexpr struct {
    std::string_view text;
    std::string_view bytes;  // without the final NULs
  } kCases[] = {
      // Kept: '-' separates the items of a separated list but is not cut at.
      {"a+b-c", {"a\0b-c", 5}},
      {"a,b+c", {"a\0b\0c", 5}},
      {"abc", "abc"},
      {"", ""},
      {"+", {"\0", 1}},
      {"a++b", {"a\0\0b", 4}},
      {"\xE9t\xE9,\xE0", {"\xE9t\xE9\0\xE0", 5}},
      // The neighbours of '+' and ',' in the character set are text.
      {"a*b.c/d", "a*b.c/d"},
  };
  for (const auto &c : kCases) {
    PageEnd buffer(std::string(c.text) + std::string(2, '\0'));
    ChCh_Cut(buffer.data());
    EXPECT_EQ(buffer.bytes(), std::string(c.bytes) + std::string(2, '\0')) << c.text;
  }
  ChCh_Cut(nullptr);
}

TEST(Cut, WithPutTwoNulsGivesAList) {
  PoisonedBuffer buffer(16, "a+b-c");
  ChCh_Put_00(buffer.data(), buffer.capacity());
  ChCh_Cut(buffer.data());
  EXPECT_EQ(ChCh_Count_Item(buffer.data()), 2);
  EXPECT_STREQ(buffer.data(), "a");
  EXPECT_STREQ(ChCh_Get_Next_Item(buffer.data()), "b-c");
}

TEST(CutAtSeparator, TakesOneCharacterOfTheCallersChoice) {
  constexpr struct {
    std::string_view text;
    int separator;
    std::string_view bytes;
  } kCases[] = {
      {"a;b+c", ';', {"a\0b+c", 5}},
      {"a;b", '+', "a;b"},
      {"a-b", '-', {"a\0b", 3}},
      // A separator is compared as a signed byte.
      {"a\xE9z", static_cast<signed char>(0xE9), {"a\0z", 3}},
      {"a\xE9z", 0xE9, "a\xE9z"},
      {"a;b", ';' + 256, "a;b"},
      {"a;b", 0, "a;b"},
  };
  for (const auto &c : kCases) {
    PageEnd buffer(std::string(c.text) + std::string(2, '\0'));
    ChCh_Cut_sep(buffer.data(), c.separator);
    EXPECT_EQ(buffer.bytes(), std::string(c.bytes) + std::string(2, '\0')) << c.text;
  }
  ChCh_Cut_sep(nullptr, ';');
}

TEST(Bind, MakesOneTextOfAList) {
  const struct {
    Items items;
    std::string_view text;
  } kCases[] = {
      {{}, ""},
      {{"a"}, "a"},
      {{"a", "b"}, "a+b"},
      {{"a", "b-c", "\xE9"}, "a+b-c+\xE9"},
  };
  for (const auto &c : kCases) {
    ListAtPageEnd list(c.items);
    ChCh_Bind(list.data());
    EXPECT_EQ(list.bytes(), std::string(c.text) + std::string(c.items.empty() ? 1 : 2, '\0'))
        << c.text;
  }
  ChCh_Bind(nullptr);
}

TEST(Bind, LeavesAnEmptyListAndWhatIsBehindItAlone) {
  std::string bytes("\0b\0\0", 4);
  ChCh_Bind(bytes.data());
  EXPECT_EQ(bytes, std::string("\0b\0\0", 4));
}

TEST(BindWithSeparator, TakesTheCallersCharacter) {
  ListAtPageEnd list({"a", "b", "c"});
  ChCh_Bind_sep(list.data(), ';');
  EXPECT_EQ(list.bytes(), std::string("a;b;c\0\0", 7));
  ListAtPageEnd signedByte({"a", "b"});
  ChCh_Bind_sep(signedByte.data(), -23);
  EXPECT_EQ(signedByte.bytes(), std::string("a\xE9"
                                            "b\0\0",
                                            5));
  ListAtPageEnd nul({"a", "b"});
  ChCh_Bind_sep(nul.data(), 0);
  EXPECT_EQ(nul.bytes(), listOf({"a", "b"}));
  ChCh_Bind_sep(nullptr, ';');
}

TEST(DeleteItem, MovesTheRestOntoTheItem) {
  const struct {
    Items items;
    std::size_t index;
    Items left;
  } kCases[] = {
      {{"a", "b"}, 0, {"b"}},
      {{"a", "b"}, 1, {"a"}},
      {{"a", "long item", "b"}, 0, {"long item", "b"}},
      {{"a", "long item", "b"}, 1, {"a", "b"}},
      {{"a", "long item", "b"}, 2, {"a", "long item"}},
      {{"long item", "a"}, 0, {"a"}},
      // Removing the only item leaves an empty list.
      {{"a"}, 0, {}},
      {{"long item"}, 0, {}},
      // An empty item is left alone.
      {{"a", "b"}, 2, {"a", "b"}},
      {{}, 0, {}},
  };
  for (const auto &c : kCases) {
    ListAtPageEnd list(c.items);
    ChCh_Delete_Item(list.item(c.index));
    const std::string left = listOf(c.left);
    EXPECT_EQ(list.bytes().substr(0, left.size()), left)
        << listOf(c.items) << " without " << c.index;
  }
  ChCh_Delete_Item(nullptr);
}

TEST(DeleteItem, WritesNothingBehindTheList) {
  PoisonedBuffer buffer(16);
  const std::string list = listOf({"ab", "cd"});
  std::copy(list.begin(), list.end(), buffer.data());
  ChCh_Delete_Item(buffer.data());
  EXPECT_EQ(std::string_view(buffer.data(), 4), std::string_view("cd\0\0", 4));
  EXPECT_TRUE(buffer.untouchedFrom(list.size()));
  EXPECT_TRUE(buffer.guardsIntact());
}

// strings.h declares the functions on files, too: files.h is not included here.
TEST(StringLists, OfFilesNeedNoOtherHeader) {
  char list[] = "";
  char *missing = list;
  EXPECT_EQ(ChCh_Detect_Missing_File("", list, &missing), 0);
  EXPECT_EQ(missing, list);
  EXPECT_EQ(ChCh_Remove_Missing_File("", list), 1);
}

TEST(StringLists, AgreeWithVectorsOfStrings) {
  std::mt19937 random(19890714);
  const auto item = [&] {
    return std::string(1 + random() % 5, static_cast<char>('a' + random() % 26));
  };
  for (int run = 0; run < 5000; ++run) {
    Items items(1 + random() % 6);
    std::generate(items.begin(), items.end(), item);
    ListAtPageEnd list(items);
    ASSERT_EQ(ChCh_Count_Item(list.data()), static_cast<int>(items.size()));
    char *at = list.data();
    for (std::size_t i = 0; i < items.size(); ++i) {
      ASSERT_EQ(at, items[i]);
      ASSERT_EQ(ChCh_Is_00(at), i + 1 == items.size() ? 1 : 0);
      at = ChCh_Get_Next_Item(at);
    }
    const std::size_t victim = random() % items.size();
    ChCh_Delete_Item(list.item(victim));
    items.erase(items.begin() + static_cast<std::ptrdiff_t>(victim));
    const std::string left = listOf(items);
    ASSERT_EQ(list.bytes().substr(0, left.size()), left);
    // Bind and cut are inverse to each other for items without "+" and ",".
    ChCh_Bind(list.data());
    ChCh_Cut(list.data());
    ASSERT_EQ(list.bytes().substr(0, left.size()), left);
  }
}

}  // namespace
