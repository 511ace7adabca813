// SPDX-License-Identifier: MIT
// The text of a profile after an edit, beside a writer by lines.
#include "profile/rewrite.h"

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/profile/literal_profile.h"
#include "tests/profile/random_profiles.h"
#include "tests/support/page_end.h"
#include "tests/support/sanitizer.h"

namespace {

using korvel::test::literalWriteKey;
using korvel::test::literalWriteSection;
using korvel::test::PageEnd;
using korvel::test::RandomProfiles;
using Text = std::optional<std::string>;

class StringOutput final : public korvel::profile::Output {
 public:
  void write(std::string_view piece) override {
    bytes.append(piece);
    ++pieces;
  }
  std::string bytes;
  std::size_t pieces = 0;
};

std::string withKey(std::string_view file, const std::string &section, const std::string &key,
                    const Text &value) {
  StringOutput output;
  korvel::profile::rewriteKey(file, section, key, value, output);
  return output.bytes;
}

std::string withSection(std::string_view file, const std::string &section, const Text &content) {
  StringOutput output;
  korvel::profile::rewriteSection(file, section, content, output);
  return output.bytes;
}

TEST(RewriteKey, FollowsTheFormat) {
  const struct {
    std::string_view file;
    const char *section;
    const char *key;
    Text value;
    std::string_view result;
  } kRows[] = {
      // A new key is added after its section's last line, a new section at the end.
      {"[A]\r\nx=1\r\n", "A", "y", "2", "[A]\r\nx=1\r\ny=2\r\n"},
      {"[A]\r\nx=1\r\n", "B", "z", "3", "[A]\r\nx=1\r\n\r\n[B]\r\nz=3\r\n"},
      {"[A]\r\n", "A", "x", "1", "[A]\r\nx=1\r\n"},
      {"[A]", "A", "x", "1", "[A]\r\nx=1\r\n"},
      {"", "A", "x", "1", "[A]\r\nx=1\r\n"},
      // A file of line feeds has content but no line.
      {"\n", "A", "x", "1", "\r\n[A]\r\nx=1\r\n"},
      // The first line with the key is replaced, later ones stay.
      {"[A]\r\nx=1\r\nx=2\r\n", "A", "x", "3", "[A]\r\nx=3\r\nx=2\r\n"},
      {"[A]\r\nx=1\r\n", "A", "x", "", "[A]\r\nx=\r\n"},
      {"[A]\r\nX=1\r\n x=1\r\n", "A", "x", "2", "[A]\r\nX=1\r\n x=1\r\nx=2\r\n"},
      {"[A]\r\na=b=c\r\n", "A", "a=b", "d", "[A]\r\na=b=d\r\n"},
      // Without a value the line is removed.
      {"[A]\r\nx=1\r\n", "A", "x", {}, "[A]\r\n"},
      {"[A]\r\nx=1\r\nx=2\r\n", "A", "x", {}, "[A]\r\nx=2\r\n"},
      {"[A]\r\nx=1\r\n\r\n[B]\r\nx=2\r\n", "B", "x", {}, "[A]\r\nx=1\r\n\r\n[B]\r\n"},
      {"[A]\r\n\r\nx=1\r\n\r\ny=2\r\n", "A", "x", {}, "[A]\r\n\r\n\r\ny=2\r\n"},
      // Without a value nothing is added.
      {"[A]\r\nx=1\r\n\r\n", "A", "y", {}, "[A]\r\nx=1\r\n\r\n"},
      {"[A]\r\nx=1\r\n\r\n", "B", "y", {}, "[A]\r\nx=1\r\n\r\n"},
      {"", "A", "x", {}, ""},
      // The line removed is the one that a reader finds, even in a second section of the name.
      {"[A]\r\n[A]\r\nx=1\r\n", "A", "x", {}, "[A]\r\n[A]\r\n"},
      {"[A]\r\n[A]\r\nx=1\r\n", "A", "x", "2", "[A]\r\nx=2\r\n[A]\r\nx=1\r\n"},
      // A new key is added before the empty lines between its section and the next.
      {"[A]\r\nx=1\r\n\r\n[B]\r\n", "A", "y", "2", "[A]\r\nx=1\r\ny=2\r\n\r\n[B]\r\n"},
      {"[A]\r\n\r\n\r\n[B]\r\n", "A", "y", "2", "[A]\r\ny=2\r\n\r\n\r\n[B]\r\n"},
      {"[A]\r\n\r\nx=1\r\n[B]\r\n", "A", "y", "2", "[A]\r\n\r\nx=1\r\ny=2\r\n[B]\r\n"},
      // Empty lines at the end of the file stay there.
      {"[A]\r\nx=1\r\n\r\n\r\n", "A", "y", "2", "[A]\r\nx=1\r\ny=2\r\n\r\n\r\n"},
      {"[A]\r\nx=1\r\n\r\n", "A", "x", "2", "[A]\r\nx=2\r\n\r\n"},
      {"[A]\r\nx=1\r\n\r\n", "B", "z", "3", "[A]\r\nx=1\r\n\r\n[B]\r\nz=3\r\n\r\n"},
      {"\r\n\r\n", "A", "x", "1", "\r\n[A]\r\nx=1\r\n\r\n\r\n"},
      // Empty lines elsewhere stay in place.
      {"\r\n[A]\r\n\r\nx=1\r\n\r\ny=2\r\n", "A", "y", "3", "\r\n[A]\r\n\r\nx=1\r\n\r\ny=3\r\n"},
      // Any '[' ends the section.
      {"[A]\r\np=[1]\r\nx=2\r\n", "A", "x", "3", "[A]\r\nx=3\r\np=[1]\r\nx=2\r\n"},
      {"[A]\r\np=[1]\r\nx=2\r\n", "A", "p", "3", "[A]\r\np=3\r\nx=2\r\n"},
      // Text after ']' is kept.
      {"[A] note\r\nx=1\r\n", "A", "x", "2", "[A] note\r\nx=2\r\n"},
      // Every line then ends with "\r\n".
      {"[A]\rx=1\ry=2", "A", "x", "3", "[A]\r\nx=3\r\ny=2\r\n"},
      {"[A]\r\nx=1\r\ny=2", "A", "x", "3", "[A]\r\nx=3\r\ny=2\r\n"},
      {"[A]\n\rx=1\n\r", "A", "z", "3", "[A]\r\nx=1\r\nz=3\r\n"},
      {"[A]\r\nx=1\r\n\n\n", "A", "y", "2", "[A]\r\nx=1\r\ny=2\r\n"},
      // A file with line feeds alone is one line and is joined.
      {"[A]\nx=1\ny=2\n", "B", "z", "3", "[A]x=1y=2\r\n\r\n[B]\r\nz=3\r\n"},
      {"[A]\nx=1\n", "A", "x", "2", "[A]x=1\r\nx=2\r\n"},
      // A value is written as it is.
      {"[A]\r\n", "A", "x", "1\r\ny=2", "[A]\r\nx=1\r\ny=2\r\n"},
      {"[A]\r\nx=\xE9\r\n", "A", "y", "\xE0\xFF", "[A]\r\nx=\xE9\r\ny=\xE0\xFF\r\n"},
  };
  for (const auto &row : kRows) {
    PageEnd file(row.file);
    EXPECT_EQ(withKey(file.bytes(), row.section, row.key, row.value), row.result) << row.file;
    EXPECT_EQ(literalWriteKey(row.file, row.section, row.key, row.value), row.result)
        << "model: " << row.file;
  }
}

TEST(RewriteKey, NulBytesOfOtherLinesStay) {
  const std::string file("[A]\r\na\0b\r\nx=1\r\n", 15);
  EXPECT_EQ(withKey(file, "A", "x", "2"), std::string("[A]\r\na\0b\r\nx=2\r\n", 15));
}

TEST(RewriteSection, FollowsTheFormat) {
  const struct {
    std::string_view file;
    const char *section;
    Text content;
    std::string_view result;
  } kRows[] = {
      {"[A]\r\nx=1\r\ny=2\r\n", "A", "z=3", "[A]\r\nz=3\r\n"},
      {"[A]\r\nx=1\r\n[B]\r\ny=2\r\n", "A", "z=3", "[A]\r\nz=3\r\n[B]\r\ny=2\r\n"},
      {"[A]\r\nx=1\r\n", "A", "z=3\r\nt=4", "[A]\r\nz=3\r\nt=4\r\n"},
      // Without a text the header stays alone; an empty text is an empty line.
      {"[A]\r\nx=1\r\n[B]\r\n", "A", {}, "[A]\r\n[B]\r\n"},
      {"[A]\r\nx=1\r\n[B]\r\n", "A", "", "[A]\r\n\r\n[B]\r\n"},
      {"[A] note\r\nx=1\r\n", "A", {}, "[A] note\r\n"},
      // All empty lines of the old section come out before the next header.
      {"[A]\r\n\r\nx=1\r\n\r\n[B]\r\n", "A", "z=3", "[A]\r\nz=3\r\n\r\n\r\n[B]\r\n"},
      {"[A]\r\n\r\nx=1\r\n\r\n[B]\r\n", "A", {}, "[A]\r\n\r\n\r\n[B]\r\n"},
      // Kept: the empty lines of a section that runs to the end of the file go with it.
      {"[A]\r\n\r\nx=1\r\n\r\n", "A", "z=3", "[A]\r\nz=3\r\n"},
      {"[A]\r\nx=1\r\n\r\n[B]\r\n\r\n", "A", "z=3", "[A]\r\nz=3\r\n\r\n[B]\r\n\r\n"},
      // Empty lines before the header stay in place.
      {"\r\n[B]\r\n\r\n[A]\r\nx=1\r\n", "A", "z=3", "\r\n[B]\r\n\r\n[A]\r\nz=3\r\n"},
      // A '[' inside a line does not make it a header.
      {"[A]\r\np=[1]\r\nx=2\r\n[B]\r\n", "A", "z=3", "[A]\r\nz=3\r\n[B]\r\n"},
      // A missing section is added, if there is a text.
      {"[A]\r\nx=1\r\n", "B", "z=3", "[A]\r\nx=1\r\n\r\n[B]\r\nz=3\r\n"},
      {"[A]\r\nx=1\r\n\r\n", "B", "z=3", "[A]\r\nx=1\r\n\r\n[B]\r\nz=3\r\n\r\n"},
      {"[A]\r\nx=1\r\n\r\n", "B", {}, "[A]\r\nx=1\r\n\r\n"},
      {"", "B", "z=3", "[B]\r\nz=3\r\n"},
      {"", "B", {}, ""},
      // Only the first section of the name is replaced.
      {"[A]\r\nx=1\r\n[A]\r\nx=2\r\n", "A", "z=3", "[A]\r\nz=3\r\n[A]\r\nx=2\r\n"},
      // Line ends become regular everywhere.
      {"[B]\ry=2\r[A]\rx=1\r[C]\rw=4", "A", "z=3", "[B]\r\ny=2\r\n[A]\r\nz=3\r\n[C]\r\nw=4\r\n"},
      {"[A]\r\nx=1\r\n\n\n[B]\r\n", "A", "z=3", "[A]\r\nz=3\r\n[B]\r\n"},
  };
  for (const auto &row : kRows) {
    PageEnd file(row.file);
    EXPECT_EQ(withSection(file.bytes(), row.section, row.content), row.result) << row.file;
    EXPECT_EQ(literalWriteSection(row.file, row.section, row.content), row.result)
        << "model: " << row.file;
  }
}

TEST(Rewrite, LinesAreCutAt16383Characters) {
  for (const std::size_t length : {16382U, 16383U, 16384U, 40000U}) {
    const std::string line(length, 'l');
    const std::string kept = line.substr(0, 16383);
    const std::string file = "[B]\r\na=1\r\n" + line + "\r\nb=2\r\n[A]\r\nx=1\r\n";
    EXPECT_EQ(withKey(file, "A", "x", "2"), "[B]\r\na=1\r\n" + kept + "\r\nb=2\r\n[A]\r\nx=2\r\n");
    EXPECT_EQ(withKey("[A]\r\n" + line, "A", "x", "2"), "[A]\r\n" + kept + "\r\nx=2\r\n");
    // Many such lines in a row.
    std::string many = "[A]\r\n";
    std::string manyKept = "[A]\r\n";
    for (int i = 0; i < 40; ++i) {
      many += line + "\r\n";
      manyKept += kept + "\r\n";
    }
    EXPECT_EQ(withKey(many, "A", "x", "2"), manyKept + "x=2\r\n");
  }
  // A value that is written is not a line that is read: it is not cut.
  EXPECT_EQ(withKey("[A]\r\n", "A", "x", std::string(20000, 'v')),
            "[A]\r\nx=" + std::string(20000, 'v') + "\r\n");
}

TEST(Rewrite, BracketsBehindTheCutDoNotEndASection) {
  const auto file = [](std::size_t index) {
    std::string line(17000, 'l');
    line[index] = '[';
    return "[A]\r\n" + line + "\r\ny=1\r\n";
  };
  const std::string line(16383, 'l');
  EXPECT_EQ(withKey(file(16383), "A", "y", "2"), "[A]\r\n" + line + "\r\ny=2\r\n");
  EXPECT_EQ(withKey(file(16382), "A", "y", "2"),
            "[A]\r\ny=2\r\n" + line.substr(1) + "[\r\ny=1\r\n");
}

TEST(Rewrite, HandsRegularStretchesOnAsTheyAre) {
  std::string file = "[A]\r\n";
  for (int i = 0; i < 2000; ++i) file += "key" + std::to_string(i) + "=value\r\n\r\n";
  StringOutput output;
  korvel::profile::rewriteKey(file, "A", "key1000", "new", output);
  EXPECT_EQ(output.bytes, literalWriteKey(file, "A", "key1000", "new"));
  EXPECT_LE(output.pieces, 6U);
}

TEST(Rewrite, AgreesWithALiteralWriterOnRandomFiles) {
  RandomProfiles random(6100);
  for (int run = 0; run < korvel::test::rounds(60000); ++run) {
    const std::string file = random.file();
    const std::string section = random.section();
    const Text value = random.oneIn(3) ? Text() : Text(random.value());
    if (random.oneIn(4)) {
      ASSERT_EQ(withSection(file, section, value), literalWriteSection(file, section, value))
          << testing::PrintToString(file) << " / " << section;
      continue;
    }
    const std::string key = random.key();
    ASSERT_EQ(withKey(file, section, key, value), literalWriteKey(file, section, key, value))
        << testing::PrintToString(file) << " / " << section << " / " << testing::PrintToString(key);
  }
}

// What is written is read back, and writing it again changes nothing.
TEST(Rewrite, ValueReadBackIsTheValueWritten) {
  RandomProfiles random(7);
  for (int run = 0; run < 20000; ++run) {
    const std::string file = random.file();
    const std::string value = "v" + std::to_string(run);
    const std::string once = withKey(file, "A", "key12", value);
    ASSERT_EQ(korvel::test::literalRead(once, "A", "key12"), value) << testing::PrintToString(file);
    ASSERT_EQ(withKey(once, "A", "key12", value), once) << testing::PrintToString(file);
  }
}

}  // namespace
