// SPDX-License-Identifier: MIT
// Sorted lists of files and the count of exchanges, beside bubble sort itself.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>

#include "tests/files/volumes.h"
#include "tests/support/page_end.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel {
namespace {

using test::PoisonedBuffer;
using test::Volumes;
using Texts = std::vector<std::string>;

PoisonedBuffer asRows(const Texts &texts) {
  PoisonedBuffer rows(texts.size() * 256);
  for (std::size_t i = 0; i < texts.size(); ++i)
    std::memcpy(rows.data() + 256 * i, texts[i].c_str(), texts[i].size() + 1);
  return rows;
}

Texts asTexts(PoisonedBuffer &rows) {
  Texts texts;
  for (int i = 0; i < rows.capacity(); i += 256) texts.emplace_back(rows.data() + i);
  return texts;
}

// Byte by byte on signed values.
int compared(const std::string &a, const std::string &b) {
  for (std::size_t i = 0;; ++i) {
    const int x = static_cast<signed char>(a.c_str()[i]);
    const int y = static_cast<signed char>(b.c_str()[i]);
    if (x != y) return x - y;
    if (x == 0) return 0;
  }
}

// Bubble sort: passes over neighbours until one makes no exchange.
int sortByPasses(
    Texts &texts,
    const std::function<bool(const std::string &, const std::string &)> &mustBeExchanged) {
  short exchanges = 0;
  bool again = true;
  while (again) {
    again = false;
    for (std::size_t i = 0; i + 1 < texts.size(); ++i) {
      if (!mustBeExchanged(texts[i], texts[i + 1])) continue;
      std::swap(texts[i], texts[i + 1]);
      exchanges = static_cast<short>(static_cast<unsigned short>(exchanges) + 1u);
      again = true;
    }
  }
  return exchanges;
}

void expectAsByPasses(const Texts &texts) {
  Texts model = texts;
  const int exchanges =
      sortByPasses(model, [](const auto &a, const auto &b) { return compared(a, b) > 0; });
  PoisonedBuffer rows = asRows(texts);
  EXPECT_EQ(Dir_SortFiles(rows.data(), static_cast<int>(texts.size())), exchanges);
  EXPECT_TRUE(rows.guardsIntact());
  EXPECT_TRUE(asTexts(rows) == model) << texts.size() << " rows";
}

TEST(SortFiles, FewerThanTwoRowsAreLeftAlone) {
  PoisonedBuffer rows = asRows({"b", "a"});
  for (const int count : {-1, 0, 1}) {
    EXPECT_EQ(Dir_SortFiles(rows.data(), count), 0) << count;
    EXPECT_EQ(Dir_SortSizeFiles(rows.data(), count), 0) << count;
  }
  EXPECT_EQ(asTexts(rows), (Texts{"b", "a"}));
  EXPECT_EQ(Dir_SortFiles(nullptr, 2), 0);
  EXPECT_EQ(Dir_SortSizeFiles(nullptr, 2), 0);
}

TEST(SortFiles, NamesAscendAsSignedBytes) {
  const struct {
    Texts rows;
    int exchanges;
    Texts sorted;
  } kCases[] = {
      {{"a", "b"}, 0, {"a", "b"}},
      {{"b", "a"}, 1, {"a", "b"}},
      {{"c", "b", "a"}, 3, {"a", "b", "c"}},
      {{"a", "a", "a"}, 0, {"a", "a", "a"}},
      {{"b", "a", "b", "a"}, 3, {"a", "a", "b", "b"}},
      {{"", "a", ""}, 1, {"", "", "a"}},
      // A prefix comes before longer texts.
      {{"abc", "ab", "a"}, 3, {"a", "ab", "abc"}},
      // Bytes of 0x80 and above come before all others, even before the end of a text.
      {{"a", "\xE9", "Z"}, 2, {"\xE9", "Z", "a"}},
      {{"a", "a\xE9"}, 1, {"a\xE9", "a"}},
      {{"a\xFF", "a\x80"}, 1, {"a\x80", "a\xFF"}},
      // Differences after the first eight bytes.
      {{"12345678b", "12345678a"}, 1, {"12345678a", "12345678b"}},
      {{"x12345678", "y", "x12345678\xE9", "x1234567"},
       5,
       {"x1234567", "x12345678\xE9", "x12345678", "y"}},
  };
  for (const auto &row : kCases) {
    PoisonedBuffer rows = asRows(row.rows);
    EXPECT_EQ(Dir_SortFiles(rows.data(), static_cast<int>(row.rows.size())), row.exchanges)
        << row.rows[0];
    EXPECT_EQ(asTexts(rows), row.sorted);
  }
}

// Kept: the count of exchanges has 16 bits and a sign.
TEST(SortFiles, TheCountHas16BitsAndASign) {
  const struct {
    int rows;
    int exchanges;  // of rows in descending order: rows * (rows - 1) / 2
  } kCases[] = {{256, 32640}, {257, 32896 - 65536}, {363, 65703 - 65536}, {400, 79800 - 65536}};
  for (const auto &row : kCases) {
    Texts texts;
    for (int i = row.rows; i > 0; --i) texts.push_back(std::to_string(1000 + i));
    PoisonedBuffer rows = asRows(texts);
    EXPECT_EQ(Dir_SortFiles(rows.data(), row.rows), row.exchanges) << row.rows;
    EXPECT_EQ(Dir_SortFiles(rows.data(), row.rows), 0);
  }
}

TEST(SortFiles, RandomRowsComeOutAsByPasses) {
  std::mt19937 random(9);
  const auto below = [&](unsigned n) { return static_cast<std::size_t>(random() % n); };
  for (int round = 0; round < 300; ++round) {
    const std::string prefix(below(3) * below(120), 'p');
    const std::string alphabet = below(2) == 0 ? "ab" : "aZ\x80\xFF\x01:";
    Texts texts(2 + below(70));
    for (std::string &text : texts) {
      text = prefix;
      for (std::size_t n = below(16); n > 0; --n)
        text += alphabet[below(unsigned(alphabet.size()))];
    }
    expectAsByPasses(texts);
  }
}

TEST(SortFiles, RowsAsLongAsTheyMayBe) {
  std::mt19937 random(10);
  for (const std::size_t shared : {0, 240, 247, 248, 249, 253, 254, 255}) {
    Texts texts;
    for (int i = 0; i < 40; ++i) {
      std::string text(shared, 'p');
      while (text.size() < 255) text += "ab\xE9"[random() % 3];
      text.resize(255 - random() % (256 - shared));
      texts.push_back(text);
    }
    expectAsByPasses(texts);
  }
}

// Rows that fill readable memory to its last byte, none with a terminator: a text ends before the
// last byte of its row.
TEST(SortFiles, ARowWithoutATerminatorIsNotReadPast) {
  const std::string x(256, 'x');
  for (const std::size_t different : {0, 1, 7, 8, 44, 247, 254}) {
    std::string a = x;
    a[different] = 'a';
    test::PageEnd rows(x + a + x);
    EXPECT_EQ(Dir_SortFiles(rows.data(), 3), 1) << different;
    EXPECT_EQ(rows.data(), a.substr(0, 255)) << different;
    EXPECT_EQ(rows.data() + 256, x.substr(0, 255)) << different;
    EXPECT_EQ(rows.bytes().substr(512), x) << different;
  }
  test::PageEnd same(x + x);
  EXPECT_EQ(Dir_SortFiles(same.data(), 2), 0);
  EXPECT_EQ(same.bytes(), x + x);
}

TEST(SortFiles, WhatStandsBehindATerminatorDoesNotCount) {
  for (const std::size_t length : {0, 3, 7, 8, 9, 100, 254}) {
    PoisonedBuffer rows = asRows({std::string(length, 'a'), std::string(length, 'a'), "b"});
    for (int row = 0; row < 2; ++row) {
      for (std::size_t i = length + 1; i < 256; ++i)
        rows.data()[256 * row + static_cast<int>(i)] = row == 0 ? 'z' : 'c';
    }
    EXPECT_EQ(Dir_SortFiles(rows.data(), 3), 0) << length;
  }
}

TEST(SortFiles, ThousandsOfRows) {
  std::mt19937 random(4);
  Texts texts;
  for (int i = 0; i < 1500; ++i) texts.push_back("Data:tables:" + std::to_string(random() % 3000));
  expectAsByPasses(texts);
}

class SortSizeFiles : public testing::Test {
 protected:
  void expectAsByPasses(const Texts &texts) {
    Texts model = texts;
    const int exchanges = sortByPasses(
        model, [](const std::string &a, const std::string &b) { return sizeOf(a) < sizeOf(b); });
    PoisonedBuffer rows = asRows(texts);
    EXPECT_EQ(Dir_SortSizeFiles(rows.data(), static_cast<int>(texts.size())), exchanges);
    EXPECT_TRUE(rows.guardsIntact());
    EXPECT_EQ(asTexts(rows), model);
  }
  static unsigned sizeOf(const std::string &path) {
    const int handle = File_Open(path.c_str(), 1, 0);
    if (handle < 0) return 0;
    const auto size = static_cast<unsigned>(File_Size(handle));
    File_Close(handle);
    return size;
  }

  Volumes volumes_;
};

TEST_F(SortSizeFiles, TheLargestComesFirstAndEqualOnesStay) {
  const Texts texts = {volumes_.file("small", "1"), volumes_.file("b", "22"),
                       volumes_.file("a", "22"),    "Data:missing",
                       volumes_.file("empty", ""),  volumes_.file("large", "333")};
  PoisonedBuffer rows = asRows(texts);
  EXPECT_EQ(Dir_SortSizeFiles(rows.data(), 6), 7);
  EXPECT_EQ(asTexts(rows),
            (Texts{"Data:large", "Data:b", "Data:a", "Data:small", "Data:missing", "Data:empty"}));
  EXPECT_EQ(Dir_SortSizeFiles(rows.data(), 6), 0);
}

TEST_F(SortSizeFiles, RandomSizesComeOutAsByPasses) {
  std::mt19937 random(6);
  for (int round = 0; round < 10; ++round) {
    Texts texts;
    for (int i = 0; i < 60; ++i) {
      const std::string name = std::to_string(round * 100 + i);
      texts.push_back(random() % 8 == 0 ? "Data:none" + name
                                        : volumes_.file(name, std::string(random() % 20, 'x')));
    }
    expectAsByPasses(texts);
  }
}

TEST_F(SortSizeFiles, FilesOf2GiBAndMoreComeByTheirRealSize) {
  const struct {
    const char *name;
    off_t size;
  } kFiles[] = {{"one byte", 1},        {"2 GiB less 1", 0x7FFFFFFF},
                {"2 GiB", 0x80000000},  {"4 GiB less 1", 0xFFFFFFFF},
                {"4 GiB", 0x100000000}, {"5 GiB", 0x140000000}};
  Texts texts;
  for (const auto &file : kFiles) {
    texts.push_back(volumes_.file(file.name, ""));
    ASSERT_EQ(truncate(volumes_.posix(file.name).c_str(), file.size), 0);
  }
  PoisonedBuffer rows = asRows(texts);
  EXPECT_EQ(Dir_SortSizeFiles(rows.data(), 6), 15);
  std::reverse(texts.begin(), texts.end());
  EXPECT_EQ(asTexts(rows), texts);
  for (const FileSlot &slot : DATA_FILE_TAB) EXPECT_EQ(slot.mode, -1);
}

TEST_F(SortSizeFiles, FilesWithLongPathsComeByTheirRealSize) {
  const std::string name(200, 'n');
  PoisonedBuffer rows = asRows({volumes_.file("a", "1"), volumes_.file(name, "22")});
  EXPECT_EQ(Dir_SortSizeFiles(rows.data(), 2), 1);
  EXPECT_EQ(asTexts(rows), (Texts{"Data:" + name, "Data:a"}));
}

TEST_F(SortSizeFiles, WhatIsNoFileCountsAsEmpty) {
  mkdir(volumes_.posix("folder").c_str(), 0777);
  mkfifo(volumes_.posix("pipe").c_str(), 0666);
  PoisonedBuffer rows = asRows({"Data:folder", "Data:pipe", volumes_.file("a", "1")});
  EXPECT_EQ(Dir_SortSizeFiles(rows.data(), 3), 2);
  EXPECT_EQ(asTexts(rows), (Texts{"Data:a", "Data:folder", "Data:pipe"}));
}

TEST_F(SortSizeFiles, ARowWithoutATerminatorIsNotReadPast) {
  const std::string x(256, 'x');
  test::PageEnd rows(x + x);
  EXPECT_EQ(Dir_SortSizeFiles(rows.data(), 2), 0);
  EXPECT_EQ(rows.bytes(), x + x);
}

TEST_F(SortSizeFiles, AllHandlesAreFreeAgain) {
  PoisonedBuffer rows = asRows({volumes_.file("a", "1"), volumes_.file("b", "22")});
  EXPECT_EQ(Dir_SortSizeFiles(rows.data(), 2), 1);
  EXPECT_EQ(DATA_FILE_ID, -1);
  for (const FileSlot &slot : DATA_FILE_TAB) EXPECT_EQ(slot.mode, -1);
}

TEST_F(SortSizeFiles, WithoutAFreeHandleEveryFileCountsAsEmpty) {
  const std::string a = volumes_.file("a", "1");
  PoisonedBuffer rows = asRows({a, volumes_.file("b", "22")});
  for (int i = 0; i < 5; ++i) File_Open(a.c_str(), 1, 0);
  EXPECT_EQ(Dir_SortSizeFiles(rows.data(), 2), 0);
  EXPECT_EQ(asTexts(rows), (Texts{"Data:a", "Data:b"}));
}

}  // namespace
}  // namespace korvel
