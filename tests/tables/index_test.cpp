// SPDX-License-Identifier: MIT
// Tests of the index of a table's lines.
#include "tables/index.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>
#include <random>

#include <malloc.h>

#include "tables/loaded.h"
#include "tests/tables/model.h"
#include "tests/tables/tables.h"

namespace {

std::atomic<std::size_t> taken = 0;  // bytes of memory
std::atomic<std::size_t> mostTaken = 0;

}  // namespace

void *operator new(std::size_t size) {
  void *block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  taken += malloc_usable_size(block);
  mostTaken = std::max(mostTaken.load(), taken.load());
  return block;
}

void operator delete(void *block) noexcept {
  taken -= malloc_usable_size(block);
  std::free(block);
}

void operator delete(void *block, std::size_t /*size*/) noexcept { operator delete(block); }

namespace korvel {
namespace {

using tables::LineIndex;

// Lines with the margins that the reader gives them.
class Indexed {
 public:
  explicit Indexed(const std::string &lines)
      : bytes_(std::string(tables::kMargin, '\0') + lines + std::string(tables::kMargin, '\0')),
        lines_(std::string_view(bytes_).substr(tables::kMargin, lines.size())) {
    index.build(lines_);
  }

  // The starts of the lines, and the code of each, taken byte by byte.
  struct Line {
    std::size_t start;
    std::string code;
  };
  std::vector<Line> walked() const {
    std::vector<Line> all;
    for (std::size_t start = 0; start < lines_.size();) {
      const std::size_t end = lines_.find('\r', start);
      std::string kept;
      for (const char c : lines_.substr(start, end - start)) {
        if (c != '\n') kept += c;
      }
      all.push_back({start, kept.substr(0, 1022).substr(0, kept.find_first_of(kEnds))});
      start = end + 1;
    }
    return all;
  }

  LineIndex index;

 private:
  static constexpr std::string_view kEnds{",+\0", 3};
  std::string bytes_;
  std::string_view lines_;
};

void expectAsWalked(const Indexed &table, const std::vector<std::string> &codes) {
  const auto lines = table.walked();
  const LineIndex &index = table.index;
  ASSERT_EQ(index.count(), static_cast<int>(lines.size()));
  EXPECT_EQ(index.startBehind(-1), 0U);
  EXPECT_EQ(index.startBehind(INT_MAX), index.startBehind(index.count()));
  for (int i = 0; i < index.count(); ++i) {
    ASSERT_EQ(index.startBehind(i), lines[i].start) << i;
    ASSERT_EQ(index.numberAt(lines[i].start), i + 1);
  }
  if (!index.hasCodes()) return;
  for (const std::string &code : codes) {
    std::size_t expected = LineIndex::kNone;
    for (std::size_t i = lines.size(); i-- > 0;) {
      if (test::modelMatches(code, lines[i].code)) expected = lines[i].start;
      ASSERT_EQ(index.find(code, lines[i].start), expected) << code << ' ' << i;
    }
    EXPECT_EQ(index.find(code, 0), expected) << code;
  }
}

TEST(Index, FindsTheLinesOfRandomTables) {
  const unsigned seed = test::randomSeed();
  SCOPED_TRACE("KORVEL_SEED=" + std::to_string(seed));
  std::mt19937 random(seed);
  const std::vector<std::string> codes = {"01", "02", "03",    "07", "0?",          "AB", "A",
                                          "?",  "a",  "\xE9t", "A*", "ABCDEFGHIJK", "??"};
  std::vector<std::string> keys = {"no", "04", std::string(1022, 'A'), std::string(1023, 'A')};
  std::copy_if(codes.begin(), codes.end(), std::back_inserter(keys),
               [](const std::string &code) { return code.find('?') == std::string::npos; });
  int indexed = 0;
  for (int round = 0; round < 200; ++round) {
    std::string lines;
    const bool hasUncertain = random() % 2 == 0;
    for (auto n = random() % 200; n > 0; --n) {
      std::string code = codes[random() % codes.size()];
      if (!hasUncertain) std::erase(code, '?');
      if (random() % 50 == 0) code = std::string(1020 + random() % 5, 'A');
      if (random() % 40 == 0) code.insert(random() % (code.size() + 1), 1, '\n');
      if (random() % 40 == 0) code.insert(random() % (code.size() + 1), 1, '\0');
      lines += code + (random() % 2 == 0 ? "," : "+") + std::string(random() % 60, 'x');
      lines += random() % 3 == 0 ? "\r" : "\r\n";
    }
    lines = lines.substr(0, lines.rfind('\r') + 1);
    if (lines.empty()) continue;
    const Indexed table(lines);
    expectAsWalked(table, keys);
    indexed += table.index.hasCodes() ? 1 : 0;
    if (testing::Test::HasFailure()) return;
  }
  EXPECT_GT(indexed, 100);
}

std::string numbered(int lines, const std::string &rest) {
  std::string all;
  for (int i = 100000; i < 100000 + lines; ++i) all += std::to_string(i) + rest + "\r\n";
  return all;
}

TEST(Index, TakesHalfTheBytesOfTheLinesAtMost) {
  for (const char *name : {"communes", "communes_histo", "medicaments", "substances", "pays"}) {
    const std::string file = std::string(TABLES_DATA) + "/" + name + ".tab";
    const Indexed table(test::content(file));
    EXPECT_TRUE(table.index.hasCodes()) << name;
    EXPECT_LE(table.index.size() * 2, test::content(file).size()) << name;
  }
  // Lines that are too short for that are found without.
  const Indexed narrow(numbered(5000, ",a"));
  EXPECT_FALSE(narrow.index.hasCodes());
  EXPECT_LE(narrow.index.size() * 2, numbered(5000, ",a").size());
  EXPECT_EQ(narrow.index.count(), 5000);
  EXPECT_EQ(narrow.index.startBehind(7), 69U);
  EXPECT_TRUE(Indexed(numbered(5000, ",abcd")).index.hasCodes());
  // The further lines of a code take more.
  std::string alike;
  for (int i = 0; i < 5000; ++i) alike += "code,and a label\r";
  EXPECT_FALSE(Indexed(alike).index.hasCodes());
  // Lines without a code take none.
  std::string nameless;
  for (int i = 0; i < 5000; ++i) nameless += ",and a label\r";
  EXPECT_TRUE(Indexed(nameless).index.hasCodes());
}

// Whether it can be built or not: one code in each line, in all lines, and in many.
TEST(Index, TakesNoMoreWhileItIsBuilt) {
  for (const int codes : {1, 20000, 100000}) {
    for (const std::size_t label : {1, 4, 12, 26, 60}) {
      std::string lines(tables::kMargin, '\r');
      for (int i = 0; i < 100000; ++i)
        lines += std::to_string(100000 + i % codes) + "," + std::string(label, 'x') + "\r";
      lines.append(tables::kMargin, '\0');
      const auto all = std::string_view(lines).substr(tables::kMargin);
      LineIndex index;
      const std::size_t before = taken;
      mostTaken = before;
      index.build(all.substr(0, all.size() - tables::kMargin));
      constexpr std::size_t kRounding = 5 * 4096;
      EXPECT_LE(mostTaken - before, all.size() / LineIndex::kLeastRatio + kRounding)
          << codes << ' ' << label;
    }
  }
}

TEST(Index, DoesNotHoldManyCodesWithAQuestionMark) {
  for (const int count : {64, 65}) {
    std::string lines = numbered(300, ",some label");
    for (int i = 0; i < count; ++i) lines += "?" + std::to_string(i) + ",some label\r\n";
    EXPECT_EQ(Indexed(lines).index.hasCodes(), count == 64) << count;
  }
}

TEST(Index, IsBuiltInNoTimeOfLinesWithOneCode) {
  std::string lines;
  for (int i = 0; i < 100000; ++i) lines += "code,and a label of some length\r";
  const std::size_t length = lines.size() / 100000;
  const Indexed table(lines);
  ASSERT_TRUE(table.index.hasCodes());
  for (const std::size_t i : {0U, 1U, 50000U, 99999U})
    EXPECT_EQ(table.index.find("code", i * length), i * length) << i;
  EXPECT_EQ(table.index.find("code", 99999 * length + 1), LineIndex::kNone);
}

// Codes of ten digits whose hashes all lie in the lowest four-hundredth of their range, so that in
// an index of so many lines they crowd behind its first slots.
std::string crowded(int lines) {
  std::string all;
  for (long long number = 1000000000; lines > 0; ++number) {
    const std::string code = std::to_string(number);
    if (std::hash<std::string_view>()(code) >> 32 > UINT32_MAX / 400) continue;
    all += code + ",some label\r\n";
    --lines;
  }
  return all;
}

TEST(Index, DoesWithoutCodesThatCrowdInOnePlace) {
  EXPECT_TRUE(Indexed(crowded(1000)).index.hasCodes());
  EXPECT_FALSE(Indexed(crowded(1100)).index.hasCodes());
}

}  // namespace
}  // namespace korvel
