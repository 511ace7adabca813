// Finds lines to copy by steps of 64 bytes, and the last few one by one.
#include "tables/unchanged.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "strings/vectors.h"
#include "tables/line.h"

namespace korvel::tables {
namespace {

using strings::Vector;

constexpr std::size_t kStep = 64;
constexpr std::size_t kLineEndSize = 2;
constexpr std::size_t kMostBytes = kLineSize - 1 + kLineEndSize;  // of a line

// The places of the line ends' two bytes among kStep bytes, the first byte in bit 0.
struct LineEndPlaces {
  std::uint64_t crs = 0;
  std::uint64_t lfs = 0;
};

LineEndPlaces lineEndPlaces(const char *p) {
  LineEndPlaces places;
  for (std::size_t i = 0; i < kStep; i += Vector::kSize) {
    const Vector bytes = Vector::load(p + i);
    places.crs |= std::uint64_t{(bytes == kLineEnd).moveMask()} << i;
    places.lfs |= std::uint64_t{(bytes == kIgnored).moveMask()} << i;
  }
  return places;
}

// Stops at the first step with a line that must change, or with the line `most`.
UnchangedLines linesBySteps(std::string_view bytes, int most) {
  UnchangedLines lines = {0, 0};
  std::uint64_t afterCr = 0;
  for (std::size_t at = 0; at + kStep <= bytes.size(); at += kStep) {
    const LineEndPlaces places = lineEndPlaces(bytes.data() + at);
    if (places.lfs != (places.crs << 1U | afterCr)) break;
    afterCr = places.crs >> (kStep - 1);
    if (places.lfs == 0) continue;
    const auto met = std::popcount(places.lfs);
    const std::size_t firstEnd = at + static_cast<std::size_t>(std::countr_zero(places.lfs)) + 1;
    if (met >= most - lines.count || firstEnd - lines.bytes > kMostBytes) break;
    lines.count += met;
    lines.bytes = at + kStep - static_cast<std::size_t>(std::countl_zero(places.lfs));
  }
  return lines;
}

// The size of the first line, its end included; 0 if it is to be changed or is not whole.
std::size_t firstLine(std::string_view bytes) {
  const std::size_t length = bytes.substr(0, kMostBytes).find(kLineEnd);
  if (length == std::string_view::npos || length + 1 >= bytes.size()) return 0;
  const bool plain = length < kLineSize && bytes[length + 1] == kIgnored &&
                     std::memchr(bytes.data(), kIgnored, length) == nullptr;
  return plain ? length + kLineEndSize : 0;
}

}  // namespace

UnchangedLines unchangedLines(std::string_view bytes, int most) {
  UnchangedLines lines = linesBySteps(bytes, most);
  while (lines.count < most) {
    const std::size_t size = firstLine(bytes.substr(lines.bytes));
    if (size == 0) break;
    lines.bytes += size;
    ++lines.count;
  }
  return lines;
}

}  // namespace korvel::tables
