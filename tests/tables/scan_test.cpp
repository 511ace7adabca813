// SPDX-License-Identifier: MIT
// Tests of the search kernels: each finds every candidate, and only those, wherever it is.
#include "tables/scan.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "strings/machine.h"
#include "tables/pattern.h"
#include "tables/reader.h"
#include "tests/files/volumes.h"

namespace korvel::tables {
namespace {

// Those that this machine can run.
std::vector<const ScanKernel *> usableKernels() {
  std::vector<const ScanKernel *> kernels = {&kBaselineKernel};
  if (strings::usesAvx2()) kernels.push_back(&kAvx2Kernel);
  return kernels;
}

// Bytes with the margins that the kernels may read.
class Padded {
 public:
  explicit Padded(const std::string &text)
      : bytes_(std::string(kMargin, '\xAA') + text + std::string(kMargin, '\xAA')),
        size_(text.size()) {}
  const char *begin() const { return bytes_.data() + kMargin; }
  const char *end() const { return begin() + size_; }

 private:
  std::string bytes_;
  std::size_t size_;
};

struct Found {
  std::ptrdiff_t place;
  std::int64_t lines;

  friend bool operator==(const Found &, const Found &) = default;
};

std::vector<Found> candidates(const ScanKernel &kernel, const Pattern &pattern, LineEnds ends,
                              const Padded &text, bool &regular) {
  Scan scan = {ends, text.begin(), text.end()};
  std::vector<Found> found;
  while (const char *at = kernel.next(pattern, scan)) {
    found.push_back({at - text.begin(), scan.lines});
    if (!scan.regular) break;
  }
  regular = scan.regular;
  found.push_back({-1, scan.lines});
  return found;
}

bool byteMatches(const Pattern &pattern, const Probe &probe, char c) {
  const auto byte = static_cast<std::uint8_t>(c);
  if (c == '?' || (byte | probe.ignore) == probe.value) return true;
  return pattern.bytes == Pattern::Bytes::Folded && byte >= 0x80;
}

bool beginningMatches(const Pattern &pattern, const char *field) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, field, sizeof bytes);
  return ((bytes ^ pattern.beginning) & pattern.counted) == 0 ||
         std::memchr(field, '?', sizeof bytes) != nullptr;
}

bool isCandidate(const Pattern &pattern, LineEnds ends, const char *at) {
  const bool lineStart = *at == (ends == LineEnds::CrLf ? '\n' : '\r');
  const bool start =
      lineStart || (pattern.start == Pattern::Start::OfField && (*at == ',' || *at == '+'));
  if (!start || pattern.bytes == Pattern::Bytes::Any)
    return start && beginningMatches(pattern, at + 1);
  const auto pairMatches = [&](const Probe(&pair)[2]) {
    return byteMatches(pattern, pair[0], at[pair[0].offset]) &&
           byteMatches(pattern, pair[1], at[pair[1].offset]);
  };
  return std::any_of(pattern.pairs, pattern.pairs + pattern.pairCount, pairMatches) &&
         beginningMatches(pattern, at + 1);
}

std::vector<Found> literalCandidates(const Pattern &pattern, LineEnds ends, const Padded &text) {
  std::vector<Found> found;
  std::int64_t lines = 0;
  for (const char *at = text.begin(); at != text.end(); ++at) {
    lines += *at == (ends == LineEnds::CrLf ? '\n' : '\r');
    if (isCandidate(pattern, ends, at)) found.push_back({at - text.begin(), lines});
  }
  found.push_back({-1, lines});
  return found;
}

// Lines of few different characters. With CrLf they begin with the LF after the first CR, with Cr
// with that CR itself.
std::string randomStretch(std::mt19937 &random, LineEnds ends, std::size_t size) {
  constexpr std::string_view kCharacters = "aAbBc01,+?\xE9\x8E";
  std::string text;
  while (text.size() < size) {
    text += ends == LineEnds::CrLf ? '\n' : '\r';
    for (auto n = random() % 12; n > 0; --n) text += kCharacters[random() % kCharacters.size()];
    if (ends == LineEnds::CrLf) text += '\r';
  }
  return text;
}

const Folding &capitals() {
  static const Folding table = [] {
    Folding folding = {};
    for (int i = 1; i < 256; ++i) {
      char text[2] = {static_cast<char>(i), '\0'};
      folding[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(*strupr(text));
    }
    return folding;
  }();
  return table;
}

std::vector<Pattern> patterns() {
  const char *labels[] = {"aA", "b*", "?c", "0"};
  const char *all[] = {"ab", "*"};
  return {lineWithCode("a"),
          lineWithCode("01"),
          lineWithCode("?"),
          lineWithCode("a?b0c1a"),
          lineWithField("bA"),
          lineWithField("??"),
          lineWithField("a"),
          lineWithFoldedField("AB", capitals()),
          lineWithFoldedField("0A?", capitals()),
          lineWithOneOf(labels, false),
          lineWithOneOf(labels, true),
          lineWithOneOf(all, false),
          lineWithOneOf({labels, 1}, false)};
}

TEST(Scan, FindsWhatALoopOverTheBytesFinds) {
  std::mt19937 random(20);
  for (const LineEnds ends : {LineEnds::CrLf, LineEnds::Cr}) {
    for (const std::size_t size : {0U, 1U, 15U, 16U, 31U, 33U, 64U, 65U, 100U, 500U, 20000U}) {
      const std::string text = randomStretch(random, ends, size);
      // With Cr the first byte before the text is of no matter, with CrLf it is the first CR.
      const Padded padded("\r" + text);
      const Padded stretch(text);
      for (const Pattern &pattern : patterns()) {
        const auto expected = literalCandidates(pattern, ends, stretch);
        for (const ScanKernel *kernel : usableKernels()) {
          std::string preceded(text);
          Padded bytes(preceded);
          const_cast<char *>(bytes.begin())[-1] = '\r';
          bool regular = false;
          EXPECT_TRUE(candidates(*kernel, pattern, ends, bytes, regular) == expected)
              << size << ' ' << static_cast<int>(pattern.bytes);
          EXPECT_TRUE(regular);
        }
      }
    }
  }
}

TEST(Scan, IsTheWidestThatIsAllowed) {
  EXPECT_EQ(&scanKernel(), usableKernels().back());
  const test::Restored<bool> restored{strings::avx2Allowed};
  strings::avx2Allowed = false;
  EXPECT_EQ(&scanKernel(), &kBaselineKernel);
}

TEST(Scan, SeesEveryIrregularLineEnd) {
  const Pattern pattern = lineWithCode("zz");
  std::string text;
  for (int i = 0; i < 30; ++i) text += "\nabc,d\r";
  for (const ScanKernel *kernel : usableKernels()) {
    for (std::size_t at = 0; at < text.size(); ++at) {
      for (const char c : {'\r', '\n', 'x'}) {
        std::string changed = text;
        changed[at] = c;
        Padded bytes(changed);
        const_cast<char *>(bytes.begin())[-1] = '\r';
        // The LF of the last line is outside, its CR inside.
        const bool irregular = text[at] != c && (c != 'x' || text[at] == '\n' || text[at] == '\r');
        if (at + 1 == text.size()) continue;
        bool regular = false;
        candidates(*kernel, pattern, LineEnds::CrLf, bytes, regular);
        EXPECT_EQ(regular, !irregular) << at << ' ' << static_cast<int>(c);
      }
    }
    for (std::size_t at = 0; at < 100; ++at) {
      std::string crs(100, '\r');
      bool regular = false;
      candidates(*kernel, pattern, LineEnds::Cr, Padded(crs), regular);
      EXPECT_TRUE(regular);
      crs[at] = '\n';
      candidates(*kernel, pattern, LineEnds::Cr, Padded(crs), regular);
      EXPECT_FALSE(regular) << at;
    }
  }
}

TEST(Scan, CountsLineEnds) {
  std::mt19937 random(3);
  for (std::size_t size = 0; size < 300; ++size) {
    std::string text(size, 'x');
    for (char &c : text) c = random() % 3 == 0 ? '\r' : '\n';
    const auto expected = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
    for (const ScanKernel *kernel : usableKernels()) {
      EXPECT_EQ(kernel->countLineEnds(text.data(), text.data() + size), expected);
    }
  }
  const std::string many(100000, '\r');
  for (const ScanKernel *kernel : usableKernels()) {
    EXPECT_EQ(kernel->countLineEnds(many.data(), many.data() + many.size()), many.size());
  }
}

// Folded patterns take for granted that no two ASCII characters fold alike but the two cases of a
// letter, and that '?' is its own.
TEST(Scan, FoldedPatternsFindEveryByteThatFoldsAlike) {
  const Folding &folding = capitals();
  for (int wanted = 1; wanted < 256; ++wanted) {
    const auto folded = folding[static_cast<std::size_t>(wanted)];
    const char label[] = {static_cast<char>(folded), '\0'};
    const Pattern pattern = lineWithFoldedField(label, folding);
    if (folded == '?') continue;
    for (int byte = 1; byte < 256; ++byte) {
      if (folding[static_cast<std::size_t>(byte)] != folded) continue;
      EXPECT_TRUE(byteMatches(pattern, pattern.pairs[0][0], static_cast<char>(byte)))
          << wanted << ' ' << byte;
    }
  }
}

TEST(Scan, StarInTheFileIsIrregularForLabelsWithStars) {
  const char *labels[] = {"zz*", "yy"};
  for (const ScanKernel *kernel : usableKernels()) {
    for (std::size_t at = 0; at < 150; ++at) {
      std::string text(150, 'x');
      bool regular = false;
      candidates(*kernel, lineWithOneOf(labels, false), LineEnds::Cr, Padded(text), regular);
      EXPECT_TRUE(regular);
      text[at] = '*';
      candidates(*kernel, lineWithOneOf(labels, false), LineEnds::Cr, Padded(text), regular);
      EXPECT_FALSE(regular) << at;
      candidates(*kernel, lineWithField("zz*"), LineEnds::Cr, Padded(text), regular);
      EXPECT_TRUE(regular);
    }
  }
}

TEST(FixedCharacters, AreNeitherWildNorTheFinalStar) {
  const struct {
    const char *label;
    std::size_t count;
  } kCases[] = {{"", 0}, {"*", 0}, {"??", 0}, {"a?c", 2}, {"abc*", 3}, {"a*b", 3}, {"**", 1}};
  for (const auto &row : kCases) EXPECT_EQ(fixedCharacters(row.label), row.count) << row.label;
}

}  // namespace
}  // namespace korvel::tables
