// Both types of blocks give the same results, byte by byte, and touch exactly the bytes counted.
#include "strings/blocks.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"

namespace {

using korvel::strings::Block;
using korvel::strings::kBlock;
using korvel::strings::PlainBlock;
using korvel::test::GuardedPages;
using korvel::test::RandomText;

template <typename AnyBlock>
class Blocks : public testing::Test {
 protected:
  static std::string bytesOf(AnyBlock block) {
    std::string bytes(kBlock, '\0');
    block.store(bytes.data(), kBlock);
    return bytes;
  }
  static std::string byByte(const std::string &a, const std::string &b, int (*combine)(int, int)) {
    std::string result;
    for (std::size_t i = 0; i < kBlock; ++i) {
      result += static_cast<char>(
          combine(static_cast<unsigned char>(a[i]), static_cast<unsigned char>(b[i])));
    }
    return result;
  }
};
using BlockTypes = testing::Types<PlainBlock, Block>;
TYPED_TEST_SUITE(Blocks, BlockTypes);

TYPED_TEST(Blocks, OperationsWorkByteByByte) {
  RandomText random(8);
  for (int i = 0; i < 2000; ++i) {
    const std::string a = random.anyText(kBlock);
    std::string b = random.anyText(kBlock);
    b[3] = a[3];
    const TypeParam x = TypeParam::load(a.data(), kBlock);
    const TypeParam y = TypeParam::load(b.data(), kBlock);
    EXPECT_EQ(this->bytesOf(x == y),
              this->byByte(a, b, [](int p, int q) { return p == q ? 255 : 0; }));
    EXPECT_EQ(this->bytesOf(x > y), this->byByte(a, b, [](int p, int q) {
      return static_cast<signed char>(p) > static_cast<signed char>(q) ? 255 : 0;
    }));
    EXPECT_EQ(this->bytesOf(x + y), this->byByte(a, b, [](int p, int q) { return (p + q) % 256; }));
    EXPECT_EQ(this->bytesOf(x & y), this->byByte(a, b, [](int p, int q) { return p & q; }));
    EXPECT_EQ(this->bytesOf(x | y), this->byByte(a, b, [](int p, int q) { return p | q; }));
    EXPECT_EQ(this->bytesOf(x ^ y), this->byByte(a, b, [](int p, int q) { return p ^ q; }));
    unsigned high = 0;
    for (std::size_t k = 0; k < kBlock; ++k) high |= (a[k] & 0x80) != 0 ? 1U << k : 0U;
    EXPECT_EQ(x.mask(), high);
  }
}

TYPED_TEST(Blocks, FilledHoldsOneByteEverywhere) {
  for (int c = 0; c < 256; ++c) {
    EXPECT_EQ(this->bytesOf(TypeParam::filled(static_cast<char>(c))),
              std::string(kBlock, static_cast<char>(c)));
  }
}

TYPED_TEST(Blocks, LoadAndStoreTouchExactlyTheCount) {
  GuardedPages from;
  GuardedPages to;
  const std::string bytes = "0123456789abcdef";
  for (std::size_t count = 1; count <= kBlock; ++count) {
    const TypeParam atEnd = TypeParam::load(from.runAtEnd(bytes.substr(0, count)), count);
    char *place = to.runAtEnd(std::string(count, 'x'));
    atEnd.store(place, count);
    EXPECT_EQ(std::string(place, count), bytes.substr(0, count));
    place = to.runAtStart(std::string(20, 'x'));
    TypeParam::load(from.runAtStart(bytes), count).store(place, count);
    EXPECT_EQ(std::string(place, 20), bytes.substr(0, count) + std::string(20 - count, 'x'));
  }
}

}  // namespace
