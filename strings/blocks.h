// For strings/, tables/, profile/ and tests: sixteen bytes handled at once.
//
// Two types with the same operations: one on the vector instructions that every x86-64 has, one in
// plain C++ for every other machine. Loops are templates over the block type and never branch on
// the machine: the library uses `Block`, the tests run both.
#ifndef KORVEL_STRINGS_BLOCKS_H
#define KORVEL_STRINGS_BLOCKS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) && defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korvel::strings {

inline constexpr std::size_t kBlock = 16;

// The mask of a comparison that all bytes pass.
inline constexpr unsigned kWholeBlock = (1U << kBlock) - 1;

// Comparisons give 0xFF for a byte that passes and 0 for one that does not. `mask` gathers the high
// bits of the bytes, the first byte's in bit 0.
//
// `load` and `store` take a count of 1 to kBlock and touch no byte behind it. A block of fewer
// bytes is filled up with zeros or with bytes that it holds already; the place of a byte in it
// depends on the count alone. Such blocks can be compared with each other and stored again, but
// positions in them mean nothing.
class PlainBlock {
 public:
  static PlainBlock load(const char *p, std::size_t count) {
    PlainBlock block;
    std::memcpy(block.bytes_.data(), p, count);
    return block;
  }
  void store(char *p, std::size_t count) const { std::memcpy(p, bytes_.data(), count); }

  static PlainBlock filled(char c) {
    PlainBlock block;
    block.bytes_.fill(static_cast<std::uint8_t>(c));
    return block;
  }

  friend PlainBlock operator==(PlainBlock a, PlainBlock b) {
    return combined(a, b, [](unsigned x, unsigned y) { return x == y ? 0xFFU : 0U; });
  }
  // Signed bytes.
  friend PlainBlock operator>(PlainBlock a, PlainBlock b) {
    return combined(a, b, [](unsigned x, unsigned y) {
      return static_cast<std::int8_t>(x) > static_cast<std::int8_t>(y) ? 0xFFU : 0U;
    });
  }
  // Modulo 256.
  friend PlainBlock operator+(PlainBlock a, PlainBlock b) {
    return combined(a, b, [](unsigned x, unsigned y) { return x + y; });
  }
  friend PlainBlock operator&(PlainBlock a, PlainBlock b) {
    return combined(a, b, [](unsigned x, unsigned y) { return x & y; });
  }
  friend PlainBlock operator|(PlainBlock a, PlainBlock b) {
    return combined(a, b, [](unsigned x, unsigned y) { return x | y; });
  }
  friend PlainBlock operator^(PlainBlock a, PlainBlock b) {
    return combined(a, b, [](unsigned x, unsigned y) { return x ^ y; });
  }
  unsigned mask() const {
    unsigned bits = 0;
    for (std::size_t i = 0; i < kBlock; ++i) bits |= (bytes_[i] >> 7U) << i;
    return bits;
  }

 private:
  template <typename Combine>
  static PlainBlock combined(PlainBlock a, PlainBlock b, Combine combine) {
    PlainBlock result;
    for (std::size_t i = 0; i < kBlock; ++i) {
      result.bytes_[i] = static_cast<std::uint8_t>(combine(a.bytes_[i], b.bytes_[i]));
    }
    return result;
  }

  std::array<std::uint8_t, kBlock> bytes_{};
};

#if defined(__x86_64__) && defined(__SSE2__)
class Sse2Block {
 public:
  // Two words that overlap in the middle hold any count without a loop.
  static Sse2Block load(const char *p, std::size_t count) {
    if (count == kBlock) return Sse2Block(_mm_loadu_si128(reinterpret_cast<const __m128i *>(p)));
    if (count >= 8) return ends<std::uint64_t>(p, count);
    if (count >= 4) return ends<std::uint32_t>(p, count);
    if (count >= 2) return ends<std::uint16_t>(p, count);
    return ends<std::uint8_t>(p, count);
  }
  void store(char *p, std::size_t count) const {
    if (count == kBlock) return _mm_storeu_si128(reinterpret_cast<__m128i *>(p), bytes_);
    if (count >= 8) return storeEnds<std::uint64_t>(p, count);
    if (count >= 4) return storeEnds<std::uint32_t>(p, count);
    if (count >= 2) return storeEnds<std::uint16_t>(p, count);
    storeEnds<std::uint8_t>(p, count);
  }

  static Sse2Block filled(char c) { return Sse2Block(_mm_set1_epi8(c)); }

  friend Sse2Block operator==(Sse2Block a, Sse2Block b) {
    return Sse2Block(_mm_cmpeq_epi8(a.bytes_, b.bytes_));
  }
  friend Sse2Block operator>(Sse2Block a, Sse2Block b) {
    return Sse2Block(_mm_cmpgt_epi8(a.bytes_, b.bytes_));
  }
  friend Sse2Block operator+(Sse2Block a, Sse2Block b) {
    return Sse2Block(_mm_add_epi8(a.bytes_, b.bytes_));
  }
  friend Sse2Block operator&(Sse2Block a, Sse2Block b) {
    return Sse2Block(_mm_and_si128(a.bytes_, b.bytes_));
  }
  friend Sse2Block operator|(Sse2Block a, Sse2Block b) {
    return Sse2Block(_mm_or_si128(a.bytes_, b.bytes_));
  }
  friend Sse2Block operator^(Sse2Block a, Sse2Block b) {
    return Sse2Block(_mm_xor_si128(a.bytes_, b.bytes_));
  }
  unsigned mask() const { return static_cast<unsigned>(_mm_movemask_epi8(bytes_)); }

 private:
  explicit Sse2Block(__m128i bytes) : bytes_(bytes) {}

  template <typename Word>
  static Sse2Block ends(const char *p, std::size_t count) {
    Word first;
    Word last;
    std::memcpy(&first, p, sizeof first);
    std::memcpy(&last, p + count - sizeof last, sizeof last);
    return Sse2Block(
        _mm_set_epi64x(static_cast<std::int64_t>(last), static_cast<std::int64_t>(first)));
  }
  template <typename Word>
  void storeEnds(char *p, std::size_t count) const {
    const auto first = static_cast<Word>(_mm_cvtsi128_si64(bytes_));
    const auto last = static_cast<Word>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(bytes_, bytes_)));
    std::memcpy(p, &first, sizeof first);
    std::memcpy(p + count - sizeof last, &last, sizeof last);
  }

  __m128i bytes_;
};

using Block = Sse2Block;
#else
using Block = PlainBlock;
#endif

}  // namespace korvel::strings

#endif
