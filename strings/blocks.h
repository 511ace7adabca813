// For strings/, tables/ and profile/: sixteen bytes handled at once, in the vectors that the
// compiler makes of the machine's instructions.
#ifndef KORVEL_STRINGS_BLOCKS_H
#define KORVEL_STRINGS_BLOCKS_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace korvel::strings {

inline constexpr std::size_t kBlock = 16;

// The mask of a comparison that all bytes pass.
inline constexpr unsigned kWholeBlock = (1U << kBlock) - 1;

// Comparisons give 0xFF for a byte that passes and 0 for one that does not. `mask` gathers the high
// bits of the bytes, the first byte's in bit 0.
//
// `load` and `store` take a count of 1 to kBlock and touch no byte after it. A block of fewer bytes
// is filled up with zeros or with bytes that it holds already; the place of a byte in it depends on
// the count alone. Such blocks can be compared with each other and stored again, but positions in
// them mean nothing.
class Block {
 public:
  // Two words that overlap in the middle hold any count without a loop.
  static Block load(const char *p, std::size_t count) {
    if (count == kBlock) {
      Block block;
      std::memcpy(&block.bytes_, p, kBlock);
      return block;
    }
    if (count >= 8) return ends<std::uint64_t>(p, count);
    if (count >= 4) return ends<std::uint32_t>(p, count);
    if (count >= 2) return ends<std::uint16_t>(p, count);
    return ends<std::uint8_t>(p, count);
  }
  void store(char *p, std::size_t count) const {
    if (count == kBlock) {
      std::memcpy(p, &bytes_, kBlock);
    } else if (count >= 8) {
      storeEnds<std::uint64_t>(p, count);
    } else if (count >= 4) {
      storeEnds<std::uint32_t>(p, count);
    } else if (count >= 2) {
      storeEnds<std::uint16_t>(p, count);
    } else {
      storeEnds<std::uint8_t>(p, count);
    }
  }

  static Block filled(char c) { return Block(Bytes{} + static_cast<unsigned char>(c)); }

  friend Block operator==(Block a, Block b) { return Block(Bytes(a.bytes_ == b.bytes_)); }
  // Signed bytes.
  friend Block operator>(Block a, Block b) {
    return Block(Bytes(SignedBytes(a.bytes_) > SignedBytes(b.bytes_)));
  }
  // Modulo 256.
  friend Block operator+(Block a, Block b) { return Block(a.bytes_ + b.bytes_); }
  friend Block operator&(Block a, Block b) { return Block(a.bytes_ & b.bytes_); }
  friend Block operator|(Block a, Block b) { return Block(a.bytes_ | b.bytes_); }
  friend Block operator^(Block a, Block b) { return Block(a.bytes_ ^ b.bytes_); }

  unsigned mask() const {
#ifdef __SSE2__
    return static_cast<unsigned>(_mm_movemask_epi8(__m128i(bytes_)));
#else
    return gatheredMask();
#endif
  }
  // The same on any machine.
  unsigned gatheredMask() const {
    unsigned bits = 0;
    for (unsigned i = 0; i < kBlock; ++i) bits |= (bytes_[i] >> 7U) << i;
    return bits;
  }

 private:
  using Bytes __attribute__((vector_size(kBlock))) = unsigned char;
  using SignedBytes __attribute__((vector_size(kBlock))) = signed char;
  using Words __attribute__((vector_size(kBlock))) = std::uint64_t;

  Block() = default;
  explicit Block(Bytes bytes) : bytes_(bytes) {}

  template <typename Word>
  static Block ends(const char *p, std::size_t count) {
    Word first;
    Word last;
    std::memcpy(&first, p, sizeof first);
    std::memcpy(&last, p + count - sizeof last, sizeof last);
    return Block(Bytes(Words{first, last}));
  }
  template <typename Word>
  void storeEnds(char *p, std::size_t count) const {
    const Words words = Words(bytes_);
    const auto first = static_cast<Word>(words[0]);
    const auto last = static_cast<Word>(words[1]);
    std::memcpy(p, &first, sizeof first);
    std::memcpy(p + count - sizeof last, &last, sizeof last);
  }

  Bytes bytes_{};
};

// Calls step(place, count) for the n bytes at s, kBlock bytes at a time and the rest at the end.
template <typename Step>
void overBlocks(char *s, std::size_t n, Step step) {
  const std::size_t rest = n % kBlock;
  for (char *end = s + (n - rest); s != end; s += kBlock) step(s, kBlock);
  if (rest != 0) step(s, rest);
}

}  // namespace korvel::strings

#endif
