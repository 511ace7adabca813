// Blocks work byte by byte and touch exactly the bytes counted.
#include "strings/blocks.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"

namespace {

using korvel::strings::Block;
using korvel::strings::kBlock;
using korvel::test::GuardedPages;
using korvel::test::RandomText;

std::string bytesOf(Block block) {
  std::string bytes(kBlock, '\0');
  block.store(bytes.data(), kBlock);
  return bytes;
}

std::string byByte(const std::string &a, const std::string &b, int (*combine)(int, int)) {
  std::string result;
  for (std::size_t i = 0; i < kBlock; ++i) {
    result += static_cast<char>(
        combine(static_cast<unsigned char>(a[i]), static_cast<unsigned char>(b[i])));
  }
  return result;
}

TEST(Blocks, OperationsWorkByteByByte) {
  RandomText random(8);
  for (int i = 0; i < 2000; ++i) {
    const std::string a = random.anyText(kBlock);
    std::string b = random.anyText(kBlock);
    b[3] = a[3];
    const Block x = Block::load(a.data(), kBlock);
    const Block y = Block::load(b.data(), kBlock);
    EXPECT_EQ(bytesOf(x == y), byByte(a, b, [](int p, int q) { return p == q ? 255 : 0; }));
    EXPECT_EQ(bytesOf(x > y), byByte(a, b, [](int p, int q) {
                return static_cast<signed char>(p) > static_cast<signed char>(q) ? 255 : 0;
              }));
    EXPECT_EQ(bytesOf(x + y), byByte(a, b, [](int p, int q) { return (p + q) % 256; }));
    EXPECT_EQ(bytesOf(x & y), byByte(a, b, [](int p, int q) { return p & q; }));
    EXPECT_EQ(bytesOf(x | y), byByte(a, b, [](int p, int q) { return p | q; }));
    EXPECT_EQ(bytesOf(x ^ y), byByte(a, b, [](int p, int q) { return p ^ q; }));
    unsigned high = 0;
    for (std::size_t k = 0; k < kBlock; ++k) high |= (a[k] & 0x80) != 0 ? 1U << k : 0U;
    EXPECT_EQ(x.mask(), high);
    EXPECT_EQ(x.gatheredMask(), high);
  }
}

TEST(Blocks, FilledHoldsOneByteEverywhere) {
  for (int c = 0; c < 256; ++c) {
    EXPECT_EQ(bytesOf(Block::filled(static_cast<char>(c))),
              std::string(kBlock, static_cast<char>(c)));
  }
}

TEST(Blocks, LoadAndStoreTouchExactlyTheCount) {
  GuardedPages from;
  GuardedPages to;
  const std::string bytes = "0123456789abcdef";
  for (std::size_t count = 1; count <= kBlock; ++count) {
    const Block atEnd = Block::load(from.runAtEnd(bytes.substr(0, count)), count);
    char *place = to.runAtEnd(std::string(count, 'x'));
    atEnd.store(place, count);
    EXPECT_EQ(std::string(place, count), bytes.substr(0, count));
    place = to.runAtStart(std::string(20, 'x'));
    Block::load(from.runAtStart(bytes), count).store(place, count);
    EXPECT_EQ(std::string(place, 20), bytes.substr(0, count) + std::string(20 - count, 'x'));
  }
}

}  // namespace
