// SPDX-License-Identifier: MIT
// For profile/scan*.cpp: their loop, written once and compiled for each instruction set.
//
// Each of those sources has a copy of its own and calls no inline function from elsewhere but a
// vector's: of those the linker keeps one copy, maybe with instructions that the machine lacks.
#ifndef KORVEL_PROFILE_SCAN_LOOP_H
#define KORVEL_PROFILE_SCAN_LOOP_H

#include <cstdint>

#include "profile/scan.h"
#include "strings/vectors.h"

namespace korvel::profile {
namespace {

using Vector = strings::WidestVector;

// The key is found by the '=' and the two bytes before it; of a key of one byte, by that twice.
class KeyScan {
 public:
  explicit KeyScan(Stretch key)
      : key_(key.begin),
        size_(key.end - key.begin),
        back_(size_ < 2 ? size_ : 2),
        last_(Vector::broadcast(key.end[-1])),
        lastButOne_(Vector::broadcast(key.end[-back_])) {}

  const char *run(Stretch text) const {
    const char *at = text.begin;
    const char *const end = text.end;
    if (end - at < kSize) return at;
    if (const char *stop = stopWithin(at, at + kSize)) return stop;
    // From here on all vectors are aligned, which loads them faster.
    for (at = nextAligned(at); end - at >= kStride; at += kStride) {
      Vector flags = flagsAt(at);
      for (std::ptrdiff_t i = kSize; i < kStride; i += kSize) flags |= flagsAt(at + i);
      if (flags.moveMask() == 0) continue;
      if (const char *stop = stopWithin(at, at + kStride)) return stop;
    }
    const char *rest = end - (end - at) % kSize;
    const char *stop = stopWithin(at, rest);
    return stop == nullptr ? rest : stop;
  }

 private:
  static constexpr std::ptrdiff_t kSize = Vector::kSize;
  static constexpr std::ptrdiff_t kStride = 4 * kSize;

  static const char *nextAligned(const char *at) {
    const auto address = reinterpret_cast<std::uintptr_t>(at);
    return at + (kSize - static_cast<std::ptrdiff_t>(address % kSize));
  }

  // The first byte of interest in whole vectors, or null.
  const char *stopWithin(const char *at, const char *end) const {
    for (; at != end; at += kSize) {
      for (auto left = flagsAt(at).moveMask(); left != 0; left &= left - 1) {
        const char *byte = at + __builtin_ctz(left);
        if (*byte != '=' || isBehindKey(byte)) return byte;
      }
    }
    return nullptr;
  }

  bool isBehindKey(const char *at) const {
    const char *begin = at - size_;
    const bool beginsLine = begin[-1] == '\n' || begin[-1] == '\r';
    return beginsLine && __builtin_memcmp(begin, key_, static_cast<std::size_t>(size_)) == 0;
  }

  // Set for every byte that may be of interest.
  Vector flagsAt(const char *at) const {
    const Vector bytes = Vector::load(at);
    const Vector before = Vector::load(at - 1);
    const Vector key =
        (bytes == '=') & (before == last_) & (Vector::load(at - back_) == lastButOne_);
    return key | (bytes == '[') | ((bytes == '\n') & ~(before == '\r'));
  }

  const char *key_;
  std::ptrdiff_t size_;
  std::ptrdiff_t back_;  // from the '=' to the byte before the last one of the key
  Vector last_;
  Vector lastButOne_;
};

}  // namespace
}  // namespace korvel::profile

#endif
