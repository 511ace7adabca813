#include "profile/scan.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "profile/scan_loop.h"
#include "strings/blocks.h"

#ifdef __x86_64__
#include <cpuid.h>
#endif

namespace korvel::profile {
namespace {

struct PlainBytes : strings::Block {
  static constexpr std::ptrdiff_t kSize = strings::kBlock;
  static PlainBytes load(const char *p) { return {strings::Block::load(p, strings::kBlock)}; }
  static PlainBytes filled(char c) { return {strings::Block::filled(c)}; }
};

#ifdef __x86_64__
// Which registers the system keeps for a process: bits of what xgetbv tells.
constexpr unsigned kAvxState = 0x06;
constexpr unsigned kAvx512State = 0xE6;

unsigned keptState() {
  unsigned low = 0;
  unsigned high = 0;
  __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

Scan chosenByProcessor() {
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & bit_OSXSAVE) == 0) return scanPlain;
  const unsigned kept = keptState();
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return scanPlain;
  if ((b & bit_AVX512BW) != 0 && (kept & kAvx512State) == kAvx512State) return scanAvx512;
  if ((b & bit_AVX2) != 0 && (kept & kAvxState) == kAvxState) return scanAvx2;
  return scanPlain;
}
#else
Scan chosenByProcessor() { return scanPlain; }
#endif

// Asking the processor costs more than a search; null until it was asked.
constinit std::atomic<Scan> chosen = nullptr;

}  // namespace

KeyProbe::KeyProbe(std::string_view key) : key_(key), end_{'\r', '\n'} {
  for (const char c : key.substr(key.size() - std::min<std::size_t>(key.size(), 2)))
    end_ = {end_.last, c};
}

bool KeyProbe::endsAt(const char *at) const {
  const char *begin = at - key_.size();
  return *at == '=' && begin[-1] == '\n' && std::memcmp(begin, key_.data(), key_.size()) == 0;
}

const char *scanPlain(const char *at, const char *end, KeyEnd key) {
  return BlockScan<PlainBytes>(key).run(at, end);
}

Scan widestScan() {
  Scan scan = chosen.load(std::memory_order_relaxed);
  if (scan == nullptr) {
    scan = chosenByProcessor();
    chosen.store(scan, std::memory_order_relaxed);
  }
  return scan;
}

}  // namespace korvel::profile
