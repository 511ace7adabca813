// SPDX-License-Identifier: MIT
// Vectors work byte by byte and touch exactly the bytes counted.
#include "strings/vectors.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"

namespace {

using korvel::strings::kVectorSize;
using korvel::strings::Vector;
using korvel::test::GuardedPages;
using korvel::test::RandomText;

std::string bytesOf(Vector vector) {
  std::string bytes(kVectorSize, '\0');
  vector.store(bytes.data());
  return bytes;
}

std::string byByte(const std::string &a, const std::string &b, int (*combine)(int, int)) {
  std::string result;
  for (std::size_t i = 0; i < kVectorSize; ++i) {
    result += static_cast<char>(
        combine(static_cast<unsigned char>(a[i]), static_cast<unsigned char>(b[i])));
  }
  return result;
}

TEST(Vectors, OperationsWorkByteByByte) {
  RandomText random(8);
  for (int i = 0; i < 2000; ++i) {
    const std::string a = random.anyText(kVectorSize);
    std::string b = random.anyText(kVectorSize);
    b[3] = a[3];
    const Vector x = Vector::load(a.data());
    const Vector y = Vector::load(b.data());
    EXPECT_EQ(bytesOf(x == y), byByte(a, b, [](int p, int q) { return p == q ? 255 : 0; }));
    EXPECT_EQ(bytesOf(x > y), byByte(a, b, [](int p, int q) {
                return static_cast<signed char>(p) > static_cast<signed char>(q) ? 255 : 0;
              }));
    EXPECT_EQ(bytesOf(x + y), byByte(a, b, [](int p, int q) { return (p + q) % 256; }));
    EXPECT_EQ(bytesOf(x - y), byByte(a, b, [](int p, int q) { return (p - q) & 0xFF; }));
    EXPECT_EQ(bytesOf(x == b[3]), bytesOf(x == Vector::broadcast(b[3])));
    EXPECT_EQ(bytesOf(~x), byByte(a, b, [](int p, int) { return 255 - p; }));
    EXPECT_EQ(bytesOf(x & y), byByte(a, b, [](int p, int q) { return p & q; }));
    EXPECT_EQ(bytesOf(x | y), byByte(a, b, [](int p, int q) { return p | q; }));
    EXPECT_EQ(bytesOf(x ^ y), byByte(a, b, [](int p, int q) { return p ^ q; }));
    unsigned high = 0;
    for (std::size_t k = 0; k < kVectorSize; ++k) high |= (a[k] & 0x80) != 0 ? 1U << k : 0U;
    EXPECT_EQ(x.moveMask(), high);
    EXPECT_EQ(x.gatheredMask(), high);
    unsigned sum = 0;
    for (const char c : a) sum += static_cast<unsigned char>(c);
    EXPECT_EQ(x.sum(), sum);
  }
}

TEST(Vectors, BroadcastHoldsOneByteEverywhere) {
  for (int c = 0; c < 256; ++c) {
    EXPECT_EQ(bytesOf(Vector::broadcast(static_cast<char>(c))),
              std::string(kVectorSize, static_cast<char>(c)));
  }
}

TEST(Vectors, TheLargestSumIsCounted) {
  EXPECT_EQ(Vector::broadcast('\xFF').sum(), 255 * kVectorSize);
}

TEST(Vectors, LoadAndStoreTouchExactlyTheCount) {
  GuardedPages from;
  GuardedPages to;
  const std::string bytes = "0123456789abcdef";
  for (std::size_t count = 1; count <= kVectorSize; ++count) {
    const Vector atEnd = Vector::load(from.runAtEnd(bytes.substr(0, count)), count);
    char *place = to.runAtEnd(std::string(count, 'x'));
    atEnd.store(place, count);
    EXPECT_EQ(std::string(place, count), bytes.substr(0, count));
    place = to.runAtStart(std::string(20, 'x'));
    Vector::load(from.runAtStart(bytes), count).store(place, count);
    EXPECT_EQ(std::string(place, 20), bytes.substr(0, count) + std::string(20 - count, 'x'));
  }
}

}  // namespace
