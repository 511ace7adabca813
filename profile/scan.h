// For profile/ and its tests only: passing over bytes that mean nothing to the search for a key.
#ifndef KORVEL_PROFILE_SCAN_H
#define KORVEL_PROFILE_SCAN_H

#include <cstddef>
#include <string_view>

namespace korvel::profile {

// Set where a line feed follows no carriage return, or where none follows one.
inline bool isOddLineEnd(const char *at) { return (at[0] == '\n') != (at[-1] == '\r'); }

// The two bytes that stand before the '=' of a key at the beginning of a line; those of the line
// end in front of it where the key is too short.
struct KeyEnd {
  char lastButOne;
  char last;
};

// Tells where a key and '=' begin a line, by the '=': the bytes before it are looked at as well.
class KeyProbe {
 public:
  explicit KeyProbe(std::string_view key);

  // How many bytes before a byte are looked at.
  std::size_t reach() const { return key_.size() + 2; }

  KeyEnd end() const { return end_; }

  // True when `at` is the '=' behind the key, a line end being in front of both.
  bool endsAt(const char *at) const;

 private:
  std::string_view key_;
  KeyEnd end_;
};

// Gives the first byte from `at` on, before `end`, that is an odd line end, a '[', or a '=' behind
// the end of the key. Where less than a block of bytes is left the answer is where those begin. The
// two bytes before `at` are read too.
using Scan = const char *(*)(const char *at, const char *end, KeyEnd key);

// For every machine, and for those with wider vectors.
const char *scanPlain(const char *at, const char *end, KeyEnd key);
#ifdef __x86_64__
const char *scanAvx2(const char *at, const char *end, KeyEnd key);
const char *scanAvx512(const char *at, const char *end, KeyEnd key);
#endif

// The widest one that this machine runs.
Scan widestScan();

}  // namespace korvel::profile

#endif
