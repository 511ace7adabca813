// The scan on vectors that every machine has, and the choice of the fastest one.
#include "profile/scan.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>

#include "profile/scan_loop.h"
#include "strings/machine.h"

namespace korvel::profile {
namespace {

// Vectors of sixteen bytes, as the compiler offers them for any machine.
class PortableBytes {
 public:
  static constexpr std::ptrdiff_t kSize = 16;

  static PortableBytes load(const char *p) {
    PortableBytes loaded;
    std::memcpy(&loaded.bytes_, p, sizeof loaded.bytes_);
    return loaded;
  }
  static PortableBytes filled(char c) {
    return PortableBytes(Bytes{} + static_cast<unsigned char>(c));
  }

  friend PortableBytes operator^(PortableBytes a, PortableBytes b) {
    return PortableBytes(a.bytes_ ^ b.bytes_);
  }
  PortableBytes orDifference(PortableBytes a, PortableBytes b) const {
    return PortableBytes(bytes_ | (a.bytes_ ^ b.bytes_));
  }
  PortableBytes least(PortableBytes other) const {
    return PortableBytes(bytes_ < other.bytes_ ? bytes_ : other.bytes_);
  }
  PortableBytes leastWhereUnequal(PortableBytes other, PortableBytes a, PortableBytes b) const {
    return PortableBytes(a.bytes_ == b.bytes_ ? bytes_ : least(other).bytes_);
  }
  bool hasZero() const {
    const auto equal = bytes_ == Bytes{};
    std::uint64_t halves[2];
    static_assert(sizeof halves == sizeof equal);
    std::memcpy(halves, &equal, sizeof halves);
    return (halves[0] | halves[1]) != 0;
  }
  std::uint64_t zeroes() const {
    std::uint64_t mask = 0;
    for (int i = 0; i < kSize && hasZero(); ++i) mask |= std::uint64_t{bytes_[i] == 0} << i;
    return mask;
  }

 private:
  typedef unsigned char Bytes __attribute__((vector_size(kSize)));

  PortableBytes() = default;
  explicit PortableBytes(Bytes bytes) : bytes_(bytes) {}

  Bytes bytes_;
};

Scan askProcessor() {
#ifdef __x86_64__
  if (strings::thisMachine().avx2) return scanAvx2;
#endif
  return scanPortable;
}

// Null until the processor was asked, which takes longer than a search.
constinit std::atomic<Scan> chosen = nullptr;

}  // namespace

KeyProbe::KeyProbe(std::string_view text)
    : key(text.data()),
      size(static_cast<std::ptrdiff_t>(text.size())),
      last(text.back()),
      lastButOne(text[text.size() - std::min<std::size_t>(text.size(), 2)]),
      lastButOneDistance(std::min<std::ptrdiff_t>(size, 2)) {}

const char *scanPortable(const char *at, const char *end, const KeyProbe &probe) {
  return BlockScan<PortableBytes>(probe).run(at, end);
}

Scan fastestScan() {
  Scan scan = chosen.load(std::memory_order_relaxed);
  if (scan == nullptr) {
    scan = askProcessor();
    chosen.store(scan, std::memory_order_relaxed);
  }
  return scan;
}

}  // namespace korvel::profile
