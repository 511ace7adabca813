// SPDX-License-Identifier: MIT
// A null pointer is never followed: every function does nothing and gives its failing result.
#include <gtest/gtest.h>

#include <korvel/strings.h>

namespace {

TEST(NullPointers, TextsInPlace) {
  EXPECT_EQ(chelibl_f(nullptr), 0);
  EXPECT_EQ(chelibl_d(nullptr), 0);
  EXPECT_EQ(chelicar_f(nullptr, 'x'), 0);
  EXPECT_EQ(chelicar_d(nullptr, 'x'), 0);
  chdelch(nullptr, 1, 0);
  w2mstr(nullptr);
  m2wstr(nullptr);
  EXPECT_EQ(strupr(nullptr), nullptr);
}

TEST(NullPointers, Searches) {
  EXPECT_EQ(chcher(nullptr, "x"), -1);
  EXPECT_EQ(chcher("x", nullptr), -1);
  EXPECT_EQ(chcher(nullptr, nullptr), -1);
  EXPECT_EQ(chcher_c('x', nullptr), -1);
}

TEST(NullPointers, Insertions) {
  char d[8] = "ab";
  EXPECT_EQ(chinsch(nullptr, 8, "x", 0), 0);
  EXPECT_EQ(chinsch(d, 8, nullptr, 0), 0);
  EXPECT_EQ(chinsch_c(nullptr, 8, 'x', 0), 0);
  EXPECT_STREQ(d, "ab");
}

TEST(NullPointers, Runs) {
  char d[8] = "ab";
  EXPECT_EQ(szcnum(nullptr, 3), 1);
  for (auto copy : {szcopy, szcopy_overlap, szcopy_0t, szconcat_0t}) {
    EXPECT_EQ(copy(nullptr, 8, "x", 1), 0);
    EXPECT_EQ(copy(d, 8, nullptr, 1), 0);
    EXPECT_STREQ(d, "ab");
  }
  for (auto compare : {szcomp, szcompex, szcompex2, szincl}) {
    EXPECT_EQ(compare(nullptr, 1, "x", 1), 0);
    EXPECT_EQ(compare("x", 1, nullptr, 1), 0);
    EXPECT_EQ(compare(nullptr, 1, nullptr, 1), 0);
  }
}

TEST(NullPointers, GrowingBuffer) {
  char *buf = nullptr;
  int capacity = 0;
  EXPECT_EQ(szcopyex(nullptr, &capacity, 0, "x", 1), 0);
  EXPECT_EQ(szcopyex(&buf, nullptr, 0, "x", 1), 0);
  EXPECT_EQ(szcopyex(&buf, &capacity, 0, nullptr, 1), 0);
  EXPECT_EQ(buf, nullptr);
  EXPECT_EQ(capacity, 0);
}

TEST(NullPointers, BoundedCopies) {
  char d[8] = "ab";
  secure_lstrcpy(nullptr, 8, "x");
  secure_lstrcpy(d, 8, nullptr);
  secure_lstrcat(nullptr, 8, "x");
  secure_lstrcat(d, 8, nullptr);
  EXPECT_STREQ(d, "ab");
}

}  // namespace
