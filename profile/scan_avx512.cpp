// Compiled for processors with AVX-512 on bytes.
#include <immintrin.h>

#include "profile/scan_loop.h"

namespace korvel::profile {
namespace {

class Avx512Bytes {
 public:
  static constexpr std::ptrdiff_t kSize = 64;

  static Avx512Bytes load(const char *p) { return Avx512Bytes(_mm512_loadu_si512(p)); }
  static Avx512Bytes filled(char c) { return Avx512Bytes(_mm512_set1_epi8(c)); }

  friend Avx512Bytes operator^(Avx512Bytes a, Avx512Bytes b) {
    return Avx512Bytes(_mm512_xor_si512(a.bytes_, b.bytes_));
  }
  Avx512Bytes orDifference(Avx512Bytes a, Avx512Bytes b) const {
    constexpr int kFirstOrDifferenceOfOthers = 0xF6;
    return Avx512Bytes(
        _mm512_ternarylogic_epi64(bytes_, a.bytes_, b.bytes_, kFirstOrDifferenceOfOthers));
  }
  Avx512Bytes least(Avx512Bytes other) const {
    return Avx512Bytes(_mm512_min_epu8(bytes_, other.bytes_));
  }
  Avx512Bytes leastWhereUnequal(Avx512Bytes other, Avx512Bytes a, Avx512Bytes b) const {
    const __mmask64 unequal = _mm512_cmpneq_epi8_mask(a.bytes_, b.bytes_);
    return Avx512Bytes(_mm512_mask_min_epu8(bytes_, unequal, bytes_, other.bytes_));
  }
  bool hasZero() const { return zeroes() != 0; }
  __mmask64 zeroes() const { return _mm512_testn_epi8_mask(bytes_, bytes_); }

 private:
  explicit Avx512Bytes(__m512i bytes) : bytes_(bytes) {}

  __m512i bytes_;
};

}  // namespace

const char *scanAvx512(const char *at, const char *end, const KeyProbe &probe) {
  return BlockScan<Avx512Bytes>(probe).run(at, end);
}

}  // namespace korvel::profile
