// SPDX-License-Identifier: MIT
// Copies of counted runs and of terminated texts at every capacity.
#include <algorithm>
#include <climits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"
#include "tests/support/poisoned_buffer.h"

namespace {

using namespace std::string_view_literals;

using korvel::test::GuardedPages;
using korvel::test::PoisonedBuffer;
using korvel::test::RandomText;

constexpr std::string_view kSource =
    "abc\0\xE9"
    "f ghijklmnopqrstuvwxyz"sv;

// No byte may be written.
constexpr int kNoCapacities[] = {0, -1, INT_MIN};

std::string_view bytesOf(PoisonedBuffer &buffer, int n) {
  return {buffer.data(), static_cast<std::size_t>(n)};
}

TEST(Szcnum, TurnsEveryBlankOfTheRunIntoAZero) {
  constexpr struct {
    std::string_view before;
    std::string_view after;
  } kRows[] = {
      {"  15", "0015"},
      {"15  ", "1500"},
      {" 1 5 ", "01050"},
      {"    ", "0000"},
      {"1\t5", "1\t5"},
      {"\xA0\xE9", "\xA0\xE9"},
      // A terminator inside the run is a byte like any other.
      {std::string_view(" \0 ", 3), std::string_view("0\0"
                                                     "0",
                                                     3)},
  };
  for (const auto &[before, after] : kRows) {
    PoisonedBuffer buffer(before.size(), before);
    EXPECT_EQ(szcnum(buffer.data(), buffer.capacity()), 1);
    EXPECT_EQ(bytesOf(buffer, buffer.capacity()), after);
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

TEST(Szcnum, WorksOnNothingButTheRun) {
  for (std::size_t n = 0; n <= 80; ++n) {
    std::string text(90, ' ');
    EXPECT_EQ(szcnum(text.data() + 5, static_cast<int>(n)), 1);
    EXPECT_EQ(text, std::string(5, ' ') + std::string(n, '0') + std::string(85 - n, ' '));
  }
}

TEST(Szcnum, GivesOneForAnEmptyOrNegativeRun) {
  char s[] = "  ";
  EXPECT_EQ(szcnum(s, 0), 1);
  EXPECT_EQ(szcnum(s, -1), 1);
  EXPECT_EQ(szcnum(s, INT_MIN), 1);
  EXPECT_STREQ(s, "  ");
}

using Copy = int (*)(char *, int, const char *, int);

TEST(Szcopy, CopiesWhatFitsAtEveryCapacity) {
  for (Copy copy : {szcopy, szcopy_overlap}) {
    for (int n = 0; n <= 20; ++n) {
      for (int capacity = 1; capacity <= 22; ++capacity) {
        SCOPED_TRACE(testing::Message() << n << " into " << capacity);
        PoisonedBuffer buffer(static_cast<std::size_t>(capacity));
        EXPECT_EQ(copy(buffer.data(), capacity, kSource.data(), n), n <= capacity ? 1 : 0);
        const int copied = std::min(n, capacity);
        EXPECT_EQ(bytesOf(buffer, copied), kSource.substr(0, static_cast<std::size_t>(copied)));
        EXPECT_TRUE(buffer.untouchedFrom(static_cast<std::size_t>(copied)));
        EXPECT_TRUE(buffer.guardsIntact());
      }
    }
  }
}

TEST(Szcopy, ReadsNoByteBehindWhatItCopies) {
  GuardedPages pages;
  for (std::size_t n = 0; n <= 26; ++n) {
    PoisonedBuffer buffer(30);
    EXPECT_EQ(szcopy(buffer.data(), 30, pages.runAtEnd(kSource.substr(0, n)), static_cast<int>(n)),
              1);
    EXPECT_EQ(bytesOf(buffer, static_cast<int>(n)), kSource.substr(0, n));
  }
}

// The bytes to copy are taken out before any is overwritten.
std::string modelOverlap(std::string bytes, int to, int from, int capacity, int n) {
  const auto count = static_cast<std::size_t>(std::min(n, capacity));
  const std::string copied = bytes.substr(static_cast<std::size_t>(from), count);
  return bytes.replace(static_cast<std::size_t>(to), count, copied);
}

TEST(SzcopyOverlap, IsRightInBothDirectionsAndWithinTheCapacity) {
  constexpr int kFrom = 30;
  const std::string original =
      "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ????****";
  for (int to = kFrom - 20; to <= kFrom + 20; ++to) {
    for (int n = 0; n <= 20; ++n) {
      for (int capacity = 1; capacity <= 20; ++capacity) {
        std::string bytes = original;
        ASSERT_EQ(szcopy_overlap(bytes.data() + to, capacity, bytes.data() + kFrom, n),
                  n <= capacity ? 1 : 0);
        ASSERT_EQ(bytes, modelOverlap(original, to, kFrom, capacity, n))
            << n << " bytes from " << kFrom << " to " << to << ", capacity " << capacity;
      }
    }
  }
}

TEST(Szcopy0t, CopiesAndTerminatesAtEveryCapacity) {
  const std::string source = "abcdefghijklmnopqrst";
  for (int n = 0; n <= 18; ++n) {
    for (int capacity = 1; capacity <= 22; ++capacity) {
      SCOPED_TRACE(testing::Message() << n << " into " << capacity);
      PoisonedBuffer buffer(static_cast<std::size_t>(capacity));
      const bool fits = n + 1 <= capacity;
      EXPECT_EQ(szcopy_0t(buffer.data(), capacity, source.data(), n), fits ? 1 : 0);
      const auto copied = static_cast<std::size_t>(fits ? n : capacity - 1);
      EXPECT_EQ(buffer.text(), source.substr(0, copied));
      EXPECT_EQ(buffer.data()[copied], '\0');
      EXPECT_TRUE(buffer.untouchedFrom(copied + 1));
      EXPECT_TRUE(buffer.guardsIntact());
    }
  }
}

TEST(Szcopy0t, ATerminatorInTheSourceDoesNotEndTheRun) {
  PoisonedBuffer buffer(6);
  EXPECT_EQ(szcopy_0t(buffer.data(), 6, kSource.data(), 5), 1);
  EXPECT_EQ(bytesOf(buffer, 6), std::string_view("abc\0\xE9\0", 6));
}

TEST(Szconcat0t, AppendsAndTerminatesAtEveryCapacity) {
  const std::string source = "ABCDEFGHIJ";
  for (int length = 0; length <= 8; ++length) {
    const std::string before = std::string("abcdefgh").substr(0, static_cast<std::size_t>(length));
    for (int n = 0; n <= 8; ++n) {
      for (int capacity = length + 1; capacity <= 20; ++capacity) {
        SCOPED_TRACE(testing::Message() << n << " behind " << length << " in " << capacity);
        PoisonedBuffer buffer(static_cast<std::size_t>(capacity), before);
        const bool fits = length + n + 1 <= capacity;
        EXPECT_EQ(szconcat_0t(buffer.data(), capacity, source.data(), n), fits ? 1 : 0);
        const auto appended = static_cast<std::size_t>(fits ? n : capacity - 1 - length);
        EXPECT_EQ(buffer.text(), before + source.substr(0, appended));
        EXPECT_TRUE(buffer.untouchedFrom(before.size() + appended + 1));
        EXPECT_TRUE(buffer.guardsIntact());
      }
    }
  }
}

TEST(Szconcat0t, WithoutATerminatorWithinTheCapacityTheLastByteBecomesOne) {
  for (int n : {0, 1, 5}) {
    PoisonedBuffer buffer(4, "abcd");
    EXPECT_EQ(szconcat_0t(buffer.data(), 4, "ABCDE", n), 0);
    EXPECT_EQ(bytesOf(buffer, 4), std::string_view("abc\0", 4));
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

TEST(Szconcat0t, LooksForTheTerminatorWithinTheCapacityOnly) {
  GuardedPages pages;
  char *d = pages.runAtEnd("abcd");
  EXPECT_EQ(szconcat_0t(d, 4, "x", 1), 0);
  EXPECT_STREQ(d, "abc");
}

TEST(BoundedRuns, ACapacityOf0OrBelowIsNeverWrittenAndFails) {
  for (Copy copy : {szcopy, szcopy_overlap, szcopy_0t, szconcat_0t}) {
    for (int capacity : kNoCapacities) {
      for (int n : {0, 1, 3}) {
        PoisonedBuffer buffer(4);
        EXPECT_EQ(copy(buffer.data(), capacity, "abc", n), 0) << n << " into " << capacity;
        EXPECT_TRUE(buffer.untouchedFrom(0));
        EXPECT_TRUE(buffer.guardsIntact());
      }
    }
  }
}

TEST(BoundedRuns, ANegativeLengthFailsAndWritesNothing) {
  for (Copy copy : {szcopy, szcopy_overlap, szcopy_0t, szconcat_0t}) {
    for (int n : {-1, INT_MIN}) {
      PoisonedBuffer buffer(4);
      EXPECT_EQ(copy(buffer.data(), 4, "abc", n), 0);
      EXPECT_TRUE(buffer.untouchedFrom(0));
    }
  }
}

TEST(BoundedRuns, TheSourceMayBePartOfTheDestination) {
  for (Copy copy : {szcopy_overlap, szcopy, szcopy_0t}) {
    char text[] = "0123456789";
    EXPECT_EQ(copy(text, 8, text + 2, 5), 1);
    EXPECT_EQ(std::string_view(text, 5), "23456");
  }
}

TEST(SecureLstrcpy, CopiesTheWholeTextOrNothingAtEveryCapacity) {
  const std::string source = "abcdef";
  for (int capacity = 1; capacity <= 10; ++capacity) {
    PoisonedBuffer buffer(static_cast<std::size_t>(capacity));
    secure_lstrcpy(buffer.data(), capacity, source.c_str());
    const bool fits = capacity > 6;
    EXPECT_EQ(std::string_view(buffer.data(), fits ? 6 : 0), fits ? source : "");
    EXPECT_TRUE(buffer.untouchedFrom(fits ? 7 : 0)) << capacity;
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

TEST(SecureLstrcpy, ASourceOfExactlyTheCapacityCopiesNothing) {
  PoisonedBuffer buffer(6, "xy");
  secure_lstrcpy(buffer.data(), 6, "abcdef");
  EXPECT_EQ(buffer.text(), "xy");
  EXPECT_TRUE(buffer.untouchedFrom(3));
}

TEST(SecureLstrcpy, CopiesAnEmptyText) {
  PoisonedBuffer buffer(1, "x");
  secure_lstrcpy(buffer.data(), 1, "");
  EXPECT_EQ(buffer.text(), "");
}

TEST(SecureLstrcat, AppendsTheWholeTextOrNothingAtEveryCapacity) {
  for (int capacity = 4; capacity <= 10; ++capacity) {
    PoisonedBuffer buffer(static_cast<std::size_t>(capacity), "abc");
    secure_lstrcat(buffer.data(), capacity, "def");
    const bool fits = capacity > 6;
    EXPECT_EQ(buffer.text(), fits ? "abcdef" : "abc") << capacity;
    EXPECT_TRUE(buffer.untouchedFrom(fits ? 7 : 4)) << capacity;
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

TEST(SecureLstrcat, ATextLongerThanTheCapacityIsLeftAlone) {
  for (int capacity = 1; capacity <= 6; ++capacity) {
    PoisonedBuffer buffer(20, "abcdef");
    secure_lstrcat(buffer.data(), capacity, "gh");
    EXPECT_EQ(buffer.text(), "abcdef") << capacity;
    secure_lstrcat(buffer.data(), capacity, "");
    EXPECT_EQ(buffer.text(), "abcdef") << capacity;
    EXPECT_TRUE(buffer.untouchedFrom(7)) << capacity;
  }
}

TEST(SecureLstrcat, LooksForTheTerminatorWithinTheCapacityOnly) {
  GuardedPages pages;
  char *d = pages.runAtEnd("abcd");
  secure_lstrcat(d, 4, "x");
  EXPECT_EQ(std::string_view(d, 4), "abcd");
}

TEST(SecureLstr, ACapacityOf0OrBelowIsNeverWritten) {
  for (int capacity : kNoCapacities) {
    for (const char *source : {"", "abc"}) {
      PoisonedBuffer buffer(4);
      secure_lstrcpy(buffer.data(), capacity, source);
      secure_lstrcat(buffer.data(), capacity, source);
      EXPECT_TRUE(buffer.untouchedFrom(0));
      EXPECT_TRUE(buffer.guardsIntact());
    }
  }
}

}  // namespace
