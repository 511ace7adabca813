// For the sources scan*.cpp only, each of which is compiled for another set of instructions: the
// loop that they share. Nothing that these sources use may be shared at link time, or a machine
// might be given instructions that it does not have: so all here is internal, and neither this loop
// nor the sources call an inline function of another header.
#ifndef KORVEL_PROFILE_SCAN_LOOP_H
#define KORVEL_PROFILE_SCAN_LOOP_H

#include "profile/scan.h"

namespace korvel::profile {
namespace {

// A Block holds kSize bytes: load(p) and filled(c) make one, a == b gives what is combined by
// & | ^ and turned by mask() into an integer with a bit per byte, the first byte's lowest.
template <typename Block>
class BlockScan {
 public:
  explicit BlockScan(KeyEnd key)
      : last_(Block::filled(key.last)), lastButOne_(Block::filled(key.lastButOne)) {}

  const char *run(const char *at, const char *end) const {
    for (; end - at >= 4 * kSize; at += 4 * kSize) {
      const auto flags =
          (flagsAt(at) | flagsAt(at + kSize)) | (flagsAt(at + 2 * kSize) | flagsAt(at + 3 * kSize));
      if (flags.mask() != 0) break;
    }
    for (; end - at >= kSize; at += kSize) {
      const auto mask = flagsAt(at).mask();
      if (mask != 0) return at + __builtin_ctzll(mask);
    }
    return at;
  }

 private:
  static constexpr std::ptrdiff_t kSize = Block::kSize;

  auto flagsAt(const char *at) const {
    const Block bytes = Block::load(at);
    const Block before = Block::load(at - 1);
    const auto odd = (bytes == Block::filled('\n')) ^ (before == Block::filled('\r'));
    const auto key =
        (bytes == Block::filled('=')) & (before == last_) & (Block::load(at - 2) == lastButOne_);
    return odd | (bytes == Block::filled('[')) | key;
  }

  Block last_;
  Block lastButOne_;
};

}  // namespace
}  // namespace korvel::profile

#endif
