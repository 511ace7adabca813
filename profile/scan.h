// For profile/ and its tests only: passing over bytes that mean nothing to the search for a key.
#ifndef KORVEL_PROFILE_SCAN_H
#define KORVEL_PROFILE_SCAN_H

#include <cstddef>
#include <string_view>

namespace korvel::profile {

// What is looked for in a profile: a key, not empty and of no '\r', '\n', '[', at the beginning of
// a line and followed by '='. It is found by the '='; the bytes before that are looked at, too.
struct KeyProbe {
  explicit KeyProbe(std::string_view key);

  // How many bytes before a byte are looked at.
  std::size_t reach() const { return static_cast<std::size_t>(size) + 2; }

  const char *key;
  std::ptrdiff_t size;
  // The two bytes before the '='; twice the only one of a key that has no more.
  char last;
  char lastButOne;
  std::ptrdiff_t lastButOneDistance;
};

// Gives the first byte from `at` on, before `end`, that is a '[', a line feed behind no carriage
// return, or the '=' behind the key with a line end or a line feed in front of both. Where less
// than a block of bytes is left the answer is where those begin.
using Scan = const char *(*)(const char *at, const char *end, const KeyProbe &probe);

// For every machine, and for those with wider vectors.
const char *scanPortable(const char *at, const char *end, const KeyProbe &probe);
#ifdef __x86_64__
const char *scanAvx2(const char *at, const char *end, const KeyProbe &probe);
const char *scanAvx512(const char *at, const char *end, const KeyProbe &probe);
#endif

// The widest one that this machine runs.
Scan widestScan();

}  // namespace korvel::profile

#endif
