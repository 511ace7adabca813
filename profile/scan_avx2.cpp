// Compiled for processors with AVX2.
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

  friend Avx2Bytes operator==(Avx2Bytes a, Avx2Bytes b) {
    return Avx2Bytes(_mm256_cmpeq_epi8(a.bytes_, b.bytes_));
  }
  friend Avx2Bytes operator&(Avx2Bytes a, Avx2Bytes b) {
    return Avx2Bytes(_mm256_and_si256(a.bytes_, b.bytes_));
  }
  friend Avx2Bytes operator|(Avx2Bytes a, Avx2Bytes b) {
    return Avx2Bytes(_mm256_or_si256(a.bytes_, b.bytes_));
  }
  friend Avx2Bytes operator^(Avx2Bytes a, Avx2Bytes b) {
    return Avx2Bytes(_mm256_xor_si256(a.bytes_, b.bytes_));
  }
  unsigned mask() const { return static_cast<unsigned>(_mm256_movemask_epi8(bytes_)); }

 private:
  explicit Avx2Bytes(__m256i bytes) : bytes_(bytes) {}

  __m256i bytes_;
};

}  // namespace

const char *scanAvx2(const char *at, const char *end, KeyEnd key) {
  return BlockScan<Avx2Bytes>(key).run(at, end);
}

}  // namespace korvel::profile
