// For profile/: skips bytes that do not matter to the search for a key.
#ifndef KORVEL_PROFILE_SCAN_H
#define KORVEL_PROFILE_SCAN_H

#include <cstddef>
#include <string_view>

namespace korvel::profile {

// What is searched: a key at the beginning of a line and followed by '='. The key is not empty and
// holds no '\r', '\n' or '['. It is found by the '=' and the bytes before it.
struct KeyProbe {
  explicit KeyProbe(std::string_view key);

  // How many bytes before the '=' are read.
  std::size_t reach() const { return static_cast<std::size_t>(size) + 2; }

  const char *key;
  std::ptrdiff_t size;
  // The two bytes before the '='; both are the only byte of a key of one.
  char last;
  char lastButOne;
  std::ptrdiff_t lastButOneDistance;
};

// Returns the first byte in [at, end) that is a '[', a line feed not after a carriage return, or
// the '=' of the key at a line's start; without one, the start of the last partial vector.
const char *scan(const char *at, const char *end, const KeyProbe &probe);

// The same, compiled for every machine and for AVX2.
const char *scanBaseline(const char *at, const char *end, const KeyProbe &probe);
const char *scanAvx2(const char *at, const char *end, const KeyProbe &probe);

}  // namespace korvel::profile

#endif
