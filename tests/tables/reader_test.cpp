// SPDX-License-Identifier: MIT
// Tests of the reader: blocks, whole lines, the handles taken, files that change meanwhile.
#include "tables/reader.h"

#include <random>

#include <unistd.h>

#include "tests/tables/tables.h"

namespace korvel {
namespace {

using tables::LineReader;
using tables::Slots;
using tables::TableReader;

class Reader : public test::Tables {
 protected:
  // What is kept has no blocks.
  Reader() { tables::keeping = tables::Keeping::Never; }

  static std::string allOf(TableReader &reader) {
    std::string all;
    for (auto block = reader.next(); !block.empty(); block = reader.next()) all += block;
    return all;
  }

  // Writes the table and returns its path.
  std::string path(std::string_view bytes) const {
    table("t", bytes);
    return "Data:tables:t.tab";
  }
};

TEST_F(Reader, GivesTheWholeFileInBlocks) {
  std::mt19937 random(1);
  for (const std::size_t size : {0U, 1U, 262143U, 262144U, 262145U, 600000U}) {
    const std::string bytes = test::randomBytes(random, size);
    const std::string file = path(bytes);
    for (const Slots slots : {Slots::File, Slots::FileAndMemory}) {
      TableReader reader;
      ASSERT_TRUE(reader.open(file.c_str(), slots));
      EXPECT_TRUE(allOf(reader) == bytes) << size;
      EXPECT_TRUE(reader.next().empty());
    }
  }
}

TEST_F(Reader, HoldsTheSlotsItSays) {
  const std::string file = path("x");
  const struct {
    Slots slots;
    int file;
    int memory;
  } kCases[] = {{Slots::File, 0, -1}, {Slots::FileAndMemory, 0, 0}, {Slots::Memory, -1, 0}};
  for (const auto &row : kCases) {
    TableReader reader;
    ASSERT_TRUE(reader.open(file.c_str(), row.slots));
    EXPECT_EQ(DATA_FILE_ID, row.file);
    EXPECT_EQ(DATA_MFIL_ID, row.memory);
    reader.close();
    EXPECT_EQ(DATA_FILE_ID, -1);
    EXPECT_EQ(DATA_MFIL_ID, -1);
  }
}

TEST_F(Reader, NeedsTheSlotsItSays) {
  const std::string file = path("x");
  for (int i = 0; i < 5; ++i) ASSERT_EQ(MFil_Open("", 0, 0), i);
  TableReader reader;
  EXPECT_TRUE(reader.open(file.c_str(), Slots::File));
  EXPECT_FALSE(reader.open(file.c_str(), Slots::FileAndMemory));
  EXPECT_FALSE(reader.open(file.c_str(), Slots::Memory));
  EXPECT_EQ(DATA_FILE_ID, -1);
  EXPECT_EQ(DATA_MFIL_ID, 4);
}

TEST_F(Reader, OpensAnotherTableInsteadOfTheOneBefore) {
  table("t", "first");
  table("u", "second");
  TableReader reader;
  ASSERT_TRUE(reader.openTable("t", Slots::FileAndMemory));
  ASSERT_TRUE(reader.openTable("u", Slots::FileAndMemory));
  EXPECT_EQ(reader.next(), "second");
  EXPECT_EQ(DATA_FILE_ID, 0);
  EXPECT_EQ(DATA_MFIL_ID, 0);
  reader.close();
  EXPECT_EQ(DATA_FILE_ID, -1);
  EXPECT_EQ(DATA_MFIL_ID, -1);
}

TEST_F(Reader, InsideAnotherOneHasItsOwnBlocks) {
  const std::string file = path("outer\r");
  table("u", "inner");
  for (const Slots slots : {Slots::Memory, Slots::FileAndMemory}) {
    TableReader outer;
    ASSERT_TRUE(outer.open(file.c_str(), slots));
    const std::string_view block = outer.nextLines();
    for (int i = 0; i < 2; ++i) {  // and gives back no others than those
      TableReader inner;
      ASSERT_TRUE(inner.open("Data:tables:u.tab", Slots::FileAndMemory));
      EXPECT_EQ(inner.next(), "inner");
      EXPECT_EQ(block, "outer\r") << i;
    }
  }
}

TEST_F(Reader, EndsWhereAFileIsCutShort) {
  const std::string file = path(std::string(600000, 'x'));
  TableReader reader;
  ASSERT_TRUE(reader.open(file.c_str(), Slots::FileAndMemory));
  EXPECT_EQ(reader.next().size(), TableReader::kLargestBlock);
  ASSERT_EQ(truncate(posixPath("t").c_str(), 300000), 0);
  EXPECT_EQ(reader.next().size(), 300000 - TableReader::kLargestBlock);
  EXPECT_TRUE(reader.next().empty());
}

TEST_F(Reader, DoesNotReadWhatAFileGrowsBy) {
  const std::string file = path("before");
  TableReader reader;
  ASSERT_TRUE(reader.open(file.c_str(), Slots::FileAndMemory));
  path("before and after");
  EXPECT_EQ(allOf(reader), "before");
}

// --- Whole lines ---------------------------------------------------------------------------------

// The lines without line feeds, cut to what a reader keeps.
std::string kept(const std::string &lines) {
  std::string all;
  std::size_t length = 0;
  for (const char c : lines) {
    if (c == '\n') continue;
    length = c == '\r' ? 0 : length + 1;
    if (length <= 1023) all += c;
  }
  return all;
}

// What nextLines() gives: lines that end with a carriage return, and in front of them a line end
// like the first line's.
TEST_F(Reader, GivesWholeLinesWhereverABlockEnds) {
  const std::string longLine(1500, 'a');
  const std::string tables[] = {
      "a\r\nbc\r\n\r\nlast\r\n",      "a\rbc\r\rlast", "\na\r\nb\nc\n\rd\n", "\r\n", "\n\n", "",
      longLine + "\r\n\n" + longLine,
  };
  for (const std::string &bytes : tables) {
    const std::string file = path(bytes);
    std::string expected = kept(bytes);
    if (!expected.empty() && !expected.ends_with('\r')) expected += '\r';
    for (const Slots slots : {Slots::File, Slots::FileAndMemory, Slots::Memory}) {
      for (const std::size_t block : {1U, 2U, 3U, 4U, 5U, 1023U, 1024U, 1025U, 262144U}) {
        TableReader::blockSize = block;
        TableReader reader;
        ASSERT_TRUE(reader.open(file.c_str(), slots));
        std::string all;
        for (auto lines = reader.nextLines(); !lines.empty(); lines = reader.nextLines()) {
          EXPECT_TRUE(lines.ends_with('\r'));
          const bool isCrLf = lines.data()[lines.find('\r') + 1] == '\n';
          EXPECT_EQ(std::string_view(lines.data() - 2, 2), isCrLf ? "\r\n" : "\r\r");
          all += lines;
        }
        EXPECT_EQ(kept(all), expected) << block;
        EXPECT_TRUE(reader.nextLines().empty());
        EXPECT_TRUE(reader.isWhole());
      }
    }
  }
}

// --- Line by line --------------------------------------------------------------------------------

std::vector<std::string> linesOf(const std::string &path, std::size_t size) {
  TableReader table;
  EXPECT_TRUE(table.open(path.c_str(), Slots::File));
  LineReader reader(table, size);
  std::vector<std::string> all;
  for (std::string_view kept; reader.next(kept);) all.emplace_back(kept);
  std::string_view kept;
  EXPECT_FALSE(reader.next(kept));
  return all;
}

TEST_F(Reader, GivesLines) {
  using Lines = std::vector<std::string>;
  const struct {
    std::string_view bytes;
    Lines lines;
  } kCases[] = {
      {"", {}},
      {"\n", {}},
      {"a", {"a"}},
      {"a\n", {"a"}},
      {"a\r\n", {"a"}},
      {"a\rb", {"a", "b"}},
      {"\r\r", {"", ""}},
      {"\r\n\r\nb\r\n", {"", "", "b"}},
      {"a\nb\r\nc\n\r", {"ab", "c"}},
  };
  for (const auto &row : kCases) {
    const std::string file = path(row.bytes);
    for (const std::size_t block : {1U, 2U, 3U, 100U}) {
      TableReader::blockSize = block;
      EXPECT_EQ(linesOf(file, 1024), row.lines) << row.bytes << ' ' << block;
    }
  }
}

TEST_F(Reader, CutsLinesToTheBuffer) {
  const std::string file = path(std::string(1500, 'a') + "\r\n" + std::string(300, 'b') + "\n");
  for (const std::size_t block : {1U, 100U, 1500U, 100000U}) {
    TableReader::blockSize = block;
    EXPECT_EQ(linesOf(file, 1024),
              (std::vector<std::string>{std::string(1023, 'a'), std::string(300, 'b')}));
    EXPECT_EQ(linesOf(file, 256),
              (std::vector<std::string>{std::string(255, 'a'), std::string(255, 'b')}));
  }
}

}  // namespace
}  // namespace korvel
