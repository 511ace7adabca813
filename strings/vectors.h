// SPDX-License-Identifier: MIT
// For strings/, tables/ and profile/: the bytes of one vector register, in the vectors that the
// compiler makes of the machine's instructions.
#ifndef KORVEL_STRINGS_VECTORS_H
#define KORVEL_STRINGS_VECTORS_H

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace korvel::strings {

// Comparisons give 0xFF for a byte that passes and 0 for one that does not.
//
// What a source compiled for AVX2 makes of these functions must run in no other one. The size keeps
// them apart, and they call no inline function of another header.
template <std::size_t size>
class VectorOf {
 public:
  static constexpr std::size_t kSize = size;
  // The mask of a comparison that all bytes pass.
  static constexpr std::uint32_t kFullMask = ~std::uint32_t{0} >> (32 - kSize);

  VectorOf() = default;  // zeros
  static VectorOf broadcast(char c) { return VectorOf(Bytes{} + static_cast<unsigned char>(c)); }

  static VectorOf load(const char *p) {
    VectorOf loaded;
    __builtin_memcpy(&loaded.bytes_, p, kSize);
#ifdef __SSE2__
    // Into a register: the compiler would repeat it as an operand in memory, which is slow across
    // cache lines.
    __asm__("" : "+x"(loaded.bytes_));
#endif
    return loaded;
  }
  void store(char *p) const { __builtin_memcpy(p, &bytes_, kSize); }

  // Of 1 to kSize bytes at p, touching none after them. A vector of fewer bytes is filled up with
  // zeros or with bytes that it holds already; the place of a byte in it depends on the count
  // alone. Such vectors can be compared with each other and stored again, but positions in them
  // mean nothing. Two words that overlap in the middle hold any count without a loop.
  static VectorOf load(const char *p, std::size_t count) requires(kSize == 16) {
    if (count == kSize) return load(p);
    if (count >= 8) return ends<std::uint64_t>(p, count);
    if (count >= 4) return ends<std::uint32_t>(p, count);
    if (count >= 2) return ends<std::uint16_t>(p, count);
    return ends<std::uint8_t>(p, count);
  }
  void store(char *p, std::size_t count) const requires(kSize == 16) {
    if (count == kSize) return store(p);
    if (count >= 8) return storeEnds<std::uint64_t>(p, count);
    if (count >= 4) return storeEnds<std::uint32_t>(p, count);
    if (count >= 2) return storeEnds<std::uint16_t>(p, count);
    storeEnds<std::uint8_t>(p, count);
  }

  friend VectorOf operator==(VectorOf a, VectorOf b) {
    return VectorOf(Bytes(a.bytes_ == b.bytes_));
  }
  friend VectorOf operator==(VectorOf a, char c) { return a == broadcast(c); }
  // Signed bytes.
  friend VectorOf operator>(VectorOf a, VectorOf b) {
    return VectorOf(Bytes(SignedBytes(a.bytes_) > SignedBytes(b.bytes_)));
  }
  // Modulo 256.
  friend VectorOf operator+(VectorOf a, VectorOf b) { return VectorOf(a.bytes_ + b.bytes_); }
  friend VectorOf operator-(VectorOf a, VectorOf b) { return VectorOf(a.bytes_ - b.bytes_); }
  friend VectorOf operator&(VectorOf a, VectorOf b) { return VectorOf(a.bytes_ & b.bytes_); }
  friend VectorOf operator|(VectorOf a, VectorOf b) { return VectorOf(a.bytes_ | b.bytes_); }
  VectorOf &operator|=(VectorOf other) { return *this = *this | other; }
  friend VectorOf operator^(VectorOf a, VectorOf b) { return VectorOf(a.bytes_ ^ b.bytes_); }
  friend VectorOf operator~(VectorOf a) { return VectorOf(~a.bytes_); }

  // The high bits of the bytes, the first byte's in bit 0.
  std::uint32_t moveMask() const {
#ifdef __AVX2__
    if constexpr (kSize == 32)
      return static_cast<std::uint32_t>(_mm256_movemask_epi8(__m256i(bytes_)));
#endif
#ifdef __SSE2__
    if constexpr (kSize == 16)
      return static_cast<std::uint32_t>(_mm_movemask_epi8(__m128i(bytes_)));
#else
    return gatheredMask();
#endif
  }
  // The same on any machine: each product has the high bit of byte i in bit 56 + i, and no two of
  // its bits meet.
  std::uint32_t gatheredMask() const {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    constexpr std::uint64_t kGathering = 0x0002040810204081U;
    std::uint32_t bits = 0;
    std::uint64_t words[kSize / sizeof(std::uint64_t)];
    __builtin_memcpy(words, &bytes_, kSize);
    for (unsigned i = 0; i < kSize / sizeof(std::uint64_t); ++i) {
      if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) words[i] = __builtin_bswap64(words[i]);
      bits |= static_cast<std::uint32_t>((words[i] & kHighBits) * kGathering >> 56U) << 8 * i;
    }
    return bits;
  }

  // Of the bytes, unsigned: of the two of each pair, then of the four pairs of each word.
  std::uint32_t sum() const {
    constexpr std::uint64_t kEvenBytes = 0x00FF00FF00FF00FFU;
    std::uint64_t sum = 0;
    std::uint64_t words[kSize / sizeof(std::uint64_t)];
    __builtin_memcpy(words, &bytes_, kSize);
    for (const std::uint64_t word : words) {
      const std::uint64_t pairs = (word & kEvenBytes) + (word >> 8U & kEvenBytes);
      sum += pairs * 0x0001000100010001U >> 48U;
    }
    return static_cast<std::uint32_t>(sum);
  }

 private:
  typedef unsigned char Bytes __attribute__((vector_size(size)));
  typedef signed char SignedBytes __attribute__((vector_size(size)));
  using WordPair __attribute__((vector_size(16))) = std::uint64_t;

  explicit VectorOf(Bytes bytes) : bytes_(bytes) {}

  template <typename Word>
  static VectorOf ends(const char *p, std::size_t count) {
    Word first;
    Word last;
    __builtin_memcpy(&first, p, sizeof first);
    __builtin_memcpy(&last, p + count - sizeof last, sizeof last);
    return VectorOf(Bytes(WordPair{first, last}));
  }
  template <typename Word>
  void storeEnds(char *p, std::size_t count) const {
    const auto words = WordPair(bytes_);
    const auto first = static_cast<Word>(words[0]);
    const auto last = static_cast<Word>(words[1]);
    __builtin_memcpy(p, &first, sizeof first);
    __builtin_memcpy(p + count - sizeof last, &last, sizeof last);
  }

  Bytes bytes_{};
};

// Of every machine.
using Vector = VectorOf<16>;
inline constexpr std::size_t kVectorSize = Vector::kSize;

// The widest that the source is compiled for.
#ifdef __AVX2__
using WidestVector = VectorOf<32>;
#else
using WidestVector = VectorOf<16>;
#endif

// Calls step(place, count) for the n bytes at s, a vector at a time and the rest at the end.
template <typename Step>
void overVectors(char *s, std::size_t n, Step step) {
  const std::size_t rest = n % kVectorSize;
  for (char *end = s + (n - rest); s != end; s += kVectorSize) step(s, kVectorSize);
  if (rest != 0) step(s, rest);
}

}  // namespace korvel::strings

#endif
