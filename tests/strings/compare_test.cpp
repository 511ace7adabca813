// SPDX-License-Identifier: MIT
// Comparison of counted runs, exact and with wildcards, and the search for a run, beside models on
// whole strings.
#include <algorithm>
#include <climits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"

namespace {

using korvel::test::GuardedPages;
using korvel::test::RandomText;

int length(std::string_view s) { return static_cast<int>(s.size()); }

using Compare = int (*)(const char *, int, const char *, int);

struct Row {
  std::string_view a;
  std::string_view b;
  int result;
};

template <std::size_t N>
void expectRows(Compare compare, const Row (&rows)[N]) {
  for (const auto &[a, b, result] : rows) {
    EXPECT_EQ(compare(a.data(), length(a), b.data(), length(b)), result)
        << '"' << a << "\" with \"" << b << '"';
  }
}

TEST(Szcomp, HoldsForEqualRuns) {
  constexpr Row kRows[] = {
      {"a", "a", 1},
      {"abc", "abc", 1},
      {"abc", "abd", 0},
      {"abc", "abcd", 0},
      {"abcd", "abc", 0},
      {"a", "A", 0},
      {"\xE9", "\xE9", 1},
      {"\xE9", "e", 0},
      // No wildcards here.
      {"a?c", "abc", 0},
      {"a*", "abc", 0},
      // Runs may hold terminators.
      {std::string_view("a\0b", 3), std::string_view("a\0b", 3), 1},
      {std::string_view("a\0b", 3), std::string_view("a\0c", 3), 0},
  };
  expectRows(szcomp, kRows);
}

TEST(Szcompex, AQuestionMarkInEitherRunMatchesAnyByte) {
  constexpr Row kRows[] = {
      {"A?C", "ABC", 1}, {"ABC", "A?C", 1},
      {"A?C", "AB?", 1}, {"?", "\xE9", 1},
      {"\xE9", "?", 1},  {"???", "abc", 1},
      {"a?c", "abd", 0}, {"a?", "abc", 0},
      {"abc", "a?", 0},  {"?", std::string_view("\0", 1), 1},
      {"?", "?", 1},     {"a*", "a*", 1},
      {"a*", "ab", 0},
  };
  expectRows(szcompex, kRows);
}

TEST(Szcompex, AJokerInTheMiddleMatches) { EXPECT_EQ(szcompex("A?C", 3, "ABC", 3), 1); }

TEST(Szcompex2, AStarMatchesALongerRun) { EXPECT_EQ(szcompex2("AB*", 3, "ABCD", 4), 1); }

TEST(Szcompex2, ATrailingStarStandsForWhateverFollows) {
  constexpr Row kRows[] = {
      {"AB*", "ABCD", 1},
      {"AB*", "AB", 1},
      {"AB*", "ABC", 1},
      {"AB*", "AC", 0},
      {"AB*", "A", 0},
      {"ABCD", "AB*", 1},
      {"AB", "AB*", 1},
      {"A", "AB*", 0},
      {"A?*", "ABCD", 1},
      {"ABCD", "?B*", 1},
      {"ABC", "ABC", 1},
      {"ABC", "AB?", 1},
      {"ABC", "ABCD", 0},
      // A star that is not the last byte is a byte like any other.
      {"A*C", "A*C", 1},
      {"A*C", "ABC", 0},
      // Both end in a star: a decides.
      {"AB*", "AB*", 1},
      {"AB*", "ABC*", 1},
      {"ABC*", "AB*", 1},
      {"ABC*", "ABX*", 0},
      {"A*", "ABC*", 1},
      // a is too long for b, so b decides.
      {"ABCD*", "AB*", 1},
      {"ABCD*", "AX*", 0},
      // A lone star matches every run.
      {"*", "ABC", 1},
      {"*", "A", 1},
      {"ABC", "*", 1},
      {"*", "*", 1},
      {"*", "AB*", 1},
      {"AB*", "*", 1},
      // Kept: only a star of b under the last byte before the star of a is left out.
      {"ABX*", "AB*", 1},
      {"ABX*", "AB*Y", 1},
      {"AXB*", "A*B", 0},
      {"X*", "*", 1},
      {"X*", "*Z", 1},
      {"ABX", "AB*", 1},
  };
  expectRows(szcompex2, kRows);
}

TEST(Szcompex2, ALoneStarReadsNoByteInFrontOfARun) {
  GuardedPages star;
  GuardedPages other;
  EXPECT_EQ(szcompex2(star.runAtStart("*"), 1, other.runAtStart("*"), 1), 1);
  EXPECT_EQ(szcompex2(star.runAtStart("*"), 1, other.runAtStart("A"), 1), 1);
  EXPECT_EQ(szcompex2(other.runAtStart("A"), 1, star.runAtStart("*"), 1), 1);
}

TEST(Szincl, FindsTheRunAnywhere) {
  constexpr Row kRows[] = {
      {"a", "abc", 1},
      {"c", "abc", 1},
      {"bc", "abc", 1},
      {"abc", "abc", 1},
      {"abcd", "abc", 0},
      {"ac", "abc", 0},
      {"aab", "aaab", 1},
      {"\xE9", "t\xE9", 1},
      {"?", "abc", 0},
      {"*", "abc", 0},
      {std::string_view("\0b", 2), std::string_view("a\0b", 3), 1},
      {std::string_view("a\0", 2), std::string_view("ab\0", 3), 0},
  };
  expectRows(szincl, kRows);
}

TEST(CountedRuns, ALengthBelow1Gives0) {
  for (Compare compare : {szcomp, szcompex, szcompex2, szincl}) {
    for (int below1 : {0, -1, INT_MIN}) {
      EXPECT_EQ(compare("*", below1, "*", 1), 0);
      EXPECT_EQ(compare("*", 1, "*", below1), 0);
      EXPECT_EQ(compare("*", below1, "*", below1), 0);
      EXPECT_EQ(compare("?", below1, "?", INT_MIN), 0);
    }
  }
}

// --- Models ------------------------------------------------------------------------------------

int modelCompex(const std::string &a, const std::string &b) {
  const auto agree = [](char x, char y) { return x == y || x == '?' || y == '?'; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), agree) ? 1 : 0;
}

// A run that ends in a star and is not too long for the other loses the star, and the other what
// the star matches. A star of b that is then its last byte matches any byte.
int modelCompex2(std::string a, std::string b) {
  if (a.ends_with('*') && a.size() <= b.size() + 1) {
    a.pop_back();
    b.resize(a.size());
    if (b.ends_with('*')) b.back() = '?';
  } else if (b.ends_with('*') && b.size() <= a.size() + 1) {
    b.pop_back();
    a.resize(b.size());
  }
  return modelCompex(a, b);
}

int modelIncl(std::string_view p, std::string_view s) {
  return s.find(p) != std::string_view::npos ? 1 : 0;
}

// Two runs that agree in most places, so that each place is tried.
struct Pair {
  std::string a;
  std::string b;
};

Pair similarRuns(RandomText &random) {
  Pair pair;
  pair.a = random.text(random.number(1, 80), "ab\xE9");
  pair.b = pair.a;
  const int changes = random.number(0, 3);
  for (int i = 0; i < changes; ++i) {
    std::string &changed = random.number(0, 1) == 0 ? pair.a : pair.b;
    changed[static_cast<std::size_t>(random.number(0, length(changed) - 1))] =
        random.text(1, "?*xy")[0];
  }
  if (random.number(0, 2) == 0) pair.b.resize(static_cast<std::size_t>(random.number(1, 80)), 'z');
  if (random.number(0, 2) == 0) pair.a.back() = '*';
  if (random.number(0, 3) == 0) pair.b.back() = '*';
  return pair;
}

TEST(Szcompex, AgreesWithTheModelAtThePagesEdges) {
  RandomText random(5);
  GuardedPages pagesA;
  GuardedPages pagesB;
  for (int i = 0; i < 40000; ++i) {
    const auto [a, b] = similarRuns(random);
    const char *pa = i % 2 == 0 ? pagesA.runAtEnd(a) : pagesA.runAtStart(a);
    const char *pb = i % 3 == 0 ? pagesB.runAtEnd(b) : pagesB.runAtStart(b);
    ASSERT_EQ(szcompex(pa, length(a), pb, length(b)), modelCompex(a, b)) << a << " with " << b;
    ASSERT_EQ(szcompex2(pa, length(a), pb, length(b)), modelCompex2(a, b)) << a << " with " << b;
    ASSERT_EQ(szcomp(pa, length(a), pb, length(b)), a == b ? 1 : 0) << a << " with " << b;
  }
}

TEST(Szcompex2, AgreesWithTheModelOnAllShortRuns) {
  constexpr std::string_view kBytes = "A?*B";
  std::vector<std::string> all{""};
  for (std::size_t i = 0; all[i].size() < 4; ++i) {
    for (char c : kBytes) all.push_back(all[i] + c);
  }
  all.erase(all.begin());
  for (const std::string &a : all) {
    for (const std::string &b : all) {
      ASSERT_EQ(szcompex2(a.data(), length(a), b.data(), length(b)), modelCompex2(a, b))
          << a << " with " << b;
    }
  }
}

TEST(Szincl, AgreesWithTheModelAtThePagesEdges) {
  RandomText random(6);
  GuardedPages pagesP;
  GuardedPages pagesS;
  for (int i = 0; i < 40000; ++i) {
    const std::string s = random.text(random.number(1, 160), "ab");
    std::string p = random.text(random.number(1, 12), "ab");
    if (i % 4 == 0) {
      p = s.substr(static_cast<std::size_t>(random.number(0, length(s) - 1)));
      p.resize(static_cast<std::size_t>(random.number(1, length(p))));
    }
    const char *ps = i % 2 == 0 ? pagesS.runAtEnd(s) : pagesS.runAtStart(s);
    ASSERT_EQ(szincl(pagesP.runAtEnd(p), length(p), ps, length(s)), modelIncl(p, s))
        << p << " in " << s;
  }
}

TEST(Szincl, PatternsThatResembleThemselvesCostNoSquare) {
  // Byte by byte this would be some 10^11 steps.
  const std::string s(1 << 20, 'a');
  const std::string p = std::string(1 << 18, 'a') + "b" + std::string(1 << 18, 'a');
  EXPECT_EQ(szincl(p.data(), length(p), s.data(), length(s)), 0);
  const std::string found = s + p;
  EXPECT_EQ(szincl(p.data(), length(p), found.data(), length(found)), 1);
}

// --- Every place of every length ---------------------------------------------------------------

int compex(const char *a, const char *b, std::size_t n) {
  return szcompex(a, static_cast<int>(n), b, static_cast<int>(n));
}

int incl(const char *p, std::size_t np, const char *s, std::size_t ns) {
  return szincl(p, static_cast<int>(np), s, static_cast<int>(ns));
}

TEST(Szcompex, ADifferenceIsSeenAtEveryPlaceOfEveryLength) {
  GuardedPages pagesA;
  GuardedPages pagesB;
  for (std::size_t n = 1; n <= 150; ++n) {
    const std::string same(n, '\x80');
    const char *a = pagesA.runAtEnd(same);
    EXPECT_EQ(compex(a, pagesB.runAtEnd(same), n), 1);
    for (std::size_t at = 0; at < n; ++at) {
      char *b = pagesB.runAtEnd(same);
      b[at] = '\x81';
      EXPECT_EQ(compex(a, b, n), 0) << at << " of " << n;
      EXPECT_EQ(compex(b, a, n), 0) << at << " of " << n;
      b[at] = '?';
      EXPECT_EQ(compex(a, b, n), 1) << at << " of " << n;
      EXPECT_EQ(compex(b, a, n), 1) << at << " of " << n;
    }
  }
}

TEST(Szincl, APatternIsFoundAtEveryPlaceOfEveryLength) {
  GuardedPages pagesP;
  GuardedPages pagesS;
  for (std::size_t np = 1; np <= 20; ++np) {
    // The ends of the pattern are everywhere, its inside is not.
    std::string p(np, np < 3 ? '\x90' : 'i');
    if (np >= 3) p.front() = p.back() = 'x';
    const char *pattern = pagesP.runAtEnd(p);
    for (std::size_t ns = np; ns <= 150; ++ns) {
      const std::string without(ns, 'x');
      EXPECT_EQ(incl(pattern, np, pagesS.runAtEnd(without), ns), 0);
      for (std::size_t at = 0; at + np <= ns; ++at) {
        std::string with = without;
        with.replace(at, np, p);
        ASSERT_EQ(incl(pattern, np, pagesS.runAtEnd(with), ns), 1)
            << np << " at " << at << " of " << ns;
      }
    }
  }
}

TEST(Szincl, LongPatternsAreFoundAboveAndBelowTheLongestProbedOne) {
  for (std::size_t np = 255; np <= 257; ++np) {
    std::string p(np, 'a');
    p[np / 2] = 'b';
    const std::string s = std::string(700, 'a') + p;
    EXPECT_EQ(incl(p.data(), np, s.data(), s.size()), 1);
    EXPECT_EQ(incl(p.data(), np, s.data(), s.size() - np / 2), 0);
  }
}

}  // namespace
