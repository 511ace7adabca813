// The scan on vectors of 32 bytes; this source alone is compiled with -mavx2.
#include <immintrin.h>

#include "profile/scan_loop.h"

namespace korvel::profile {
namespace {

class Avx2Bytes {
 public:
  static constexpr std::ptrdiff_t kSize = 32;

  static Avx2Bytes load(const char *p) {
    return Avx2Bytes(_mm256_loadu_si256(reinterpret_cast<const __m256i *>(p)));
  }
  static Avx2Bytes filled(char c) { return Avx2Bytes(_mm256_set1_epi8(c)); }

  friend Avx2Bytes operator^(Avx2Bytes a, Avx2Bytes b) {
    return Avx2Bytes(_mm256_xor_si256(a.bytes_, b.bytes_));
  }
  Avx2Bytes orDifference(Avx2Bytes a, Avx2Bytes b) const {
    return Avx2Bytes(_mm256_or_si256(bytes_, _mm256_xor_si256(a.bytes_, b.bytes_)));
  }
  Avx2Bytes least(Avx2Bytes other) const {
    return Avx2Bytes(_mm256_min_epu8(bytes_, other.bytes_));
  }
  Avx2Bytes leastWhereUnequal(Avx2Bytes other, Avx2Bytes a, Avx2Bytes b) const {
    const __m256i equal = _mm256_cmpeq_epi8(a.bytes_, b.bytes_);
    return least(Avx2Bytes(_mm256_or_si256(other.bytes_, equal)));
  }
  bool hasZero() const { return zeroes() != 0; }
  unsigned zeroes() const {
    return static_cast<unsigned>(
        _mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes_, _mm256_setzero_si256())));
  }

 private:
  explicit Avx2Bytes(__m256i bytes) : bytes_(bytes) {}

  __m256i bytes_;
};

}  // namespace

const char *scanAvx2(const char *at, const char *end, const KeyProbe &probe) {
  return BlockScan<Avx2Bytes>(probe).run(at, end);
}

}  // namespace korvel::profile
