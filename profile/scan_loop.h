// For profile/scan*.cpp: their loop. These sources are compiled for different processors, so
// nothing that they use may be shared at link time, or a processor might meet instructions that it
// does not have. So all here is internal, and neither this loop nor those sources call an inline
// function of another header.
#ifndef KORVEL_PROFILE_SCAN_LOOP_H
#define KORVEL_PROFILE_SCAN_LOOP_H

#include <cstdint>

#include "profile/scan.h"

namespace korvel::profile {
namespace {

// A Block is kSize bytes on which these work byte by byte:
//   load(p), filled(c)
//   a ^ b                           zero where both are equal
//   a.orDifference(b, c)            a | (b ^ c)
//   a.least(b)                      the smaller one, unsigned
//   a.leastWhereUnequal(b, c, d)    least(b) where c and d are unequal, else a
//   a.hasZero(), a.zeroes()         a bit per byte, the first byte's lowest
template <typename Block>
class BlockScan {
 public:
  explicit BlockScan(const KeyProbe &probe)
      : probe_(probe),
        last_(Block::filled(probe.last)),
        lastButOne_(Block::filled(probe.lastButOne)) {}

  const char *run(const char *at, const char *end) const {
    if (end - at < Block::kSize) return at;
    if (const char *stop = stopWithin(at, at + Block::kSize)) return stop;
    // From here on all blocks are aligned, which loads them faster.
    for (at = nextBlock(at); end - at >= kStride; at += kStride) {
      Block flags = flagsAt(at);
      for (std::ptrdiff_t i = Block::kSize; i < kStride; i += Block::kSize)
        flags = flags.least(flagsAt(at + i));
      if (!flags.hasZero()) continue;
      if (const char *stop = stopWithin(at, at + kStride)) return stop;
    }
    const char *rest = end - (end - at) % Block::kSize;
    const char *stop = stopWithin(at, rest);
    return stop == nullptr ? rest : stop;
  }

 private:
  static constexpr std::ptrdiff_t kStride = 4 * Block::kSize;

  static const char *nextBlock(const char *at) {
    const auto address = reinterpret_cast<std::uintptr_t>(at);
    return at + (Block::kSize - static_cast<std::ptrdiff_t>(address % Block::kSize));
  }

  // The first byte of interest in whole blocks, or null.
  const char *stopWithin(const char *at, const char *end) const {
    for (; at != end; at += Block::kSize) {
      for (unsigned long long left = flagsAt(at).zeroes(); left != 0; left &= left - 1) {
        const char *byte = at + __builtin_ctzll(left);
        if (*byte != '=' || isBehindKey(byte)) return byte;
      }
    }
    return nullptr;
  }

  bool isBehindKey(const char *at) const {
    const char *begin = at - probe_.size;
    const bool beginsLine = begin[-1] == '\n' || begin[-1] == '\r';
    return beginsLine &&
           __builtin_memcmp(begin, probe_.key, static_cast<std::size_t>(probe_.size)) == 0;
  }

  // Zero for every byte that may be of interest.
  Block flagsAt(const char *at) const {
    const Block bytes = Block::load(at);
    const Block before = Block::load(at - 1);
    const Block key = (bytes ^ Block::filled('='))
                          .orDifference(before, last_)
                          .orDifference(Block::load(at - probe_.lastButOneDistance), lastButOne_);
    return key.least(bytes ^ Block::filled('['))
        .leastWhereUnequal(bytes ^ Block::filled('\n'), before, Block::filled('\r'));
  }

  KeyProbe probe_;
  Block last_;
  Block lastButOne_;
};

}  // namespace
}  // namespace korvel::profile

#endif
