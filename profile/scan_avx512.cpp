// Compiled for processors with AVX-512 on bytes.
#include <immintrin.h>

#include "profile/scan_loop.h"

namespace korvel::profile {
namespace {

// A bit per byte.
class Avx512Flags {
 public:
  explicit Avx512Flags(__mmask64 bits) : bits_(bits) {}

  friend Avx512Flags operator&(Avx512Flags a, Avx512Flags b) {
    return Avx512Flags(a.bits_ & b.bits_);
  }
  friend Avx512Flags operator|(Avx512Flags a, Avx512Flags b) {
    return Avx512Flags(a.bits_ | b.bits_);
  }
  friend Avx512Flags operator^(Avx512Flags a, Avx512Flags b) {
    return Avx512Flags(a.bits_ ^ b.bits_);
  }
  __mmask64 mask() const { return bits_; }

 private:
  __mmask64 bits_;
};

class Avx512Bytes {
 public:
  static constexpr std::ptrdiff_t kSize = 64;

  static Avx512Bytes load(const char *p) { return Avx512Bytes(_mm512_loadu_si512(p)); }
  static Avx512Bytes filled(char c) { return Avx512Bytes(_mm512_set1_epi8(c)); }

  friend Avx512Flags operator==(Avx512Bytes a, Avx512Bytes b) {
    return Avx512Flags(_mm512_cmpeq_epi8_mask(a.bytes_, b.bytes_));
  }

 private:
  explicit Avx512Bytes(__m512i bytes) : bytes_(bytes) {}

  __m512i bytes_;
};

}  // namespace

const char *scanAvx512(const char *at, const char *end, KeyEnd key) {
  return BlockScan<Avx512Bytes>(key).run(at, end);
}

}  // namespace korvel::profile
