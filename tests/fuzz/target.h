// SPDX-License-Identifier: MIT
// For tests/fuzz/: what the hunting programs share. Each of them is one function that libFuzzer
// calls again and again, with bytes of its making. These bytes say what to do: texts come from
// their front, each ended by a '\' with a letter after it, numbers from their end.
#ifndef KORVEL_TESTS_FUZZ_TARGET_H
#define KORVEL_TESTS_FUZZ_TARGET_H

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

// Called for each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

// Called once before the first: scratch folders made afterwards stand in memory where the machine
// has such a place.
extern "C" [[gnu::used]] inline int LLVMFuzzerInitialize(int *, char ***) {
  if (access("/dev/shm", W_OK | X_OK) == 0) setenv("TMPDIR", "/dev/shm", 0);
  return 0;
}

namespace korvel::test {

using Input = FuzzedDataProvider;

// A broken promise ends the program, as a bad access to memory does.
inline void require(bool holds, const char *file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "%s:%d: not as promised\n", file, line);
  std::abort();
}

// A number, mostly from the range, now and then any.
inline int number(Input &input, int low, int high) {
  constexpr int kOdd[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
  const int kind = input.ConsumeIntegralInRange(0, 15);
  if (kind == 0) return input.PickValueInArray(kOdd);
  if (kind == 1) return input.ConsumeIntegral<int>();
  return input.ConsumeIntegralInRange(low, high);
}

inline std::string bytes(Input &input, std::size_t most = 80) {
  return input.ConsumeRandomLengthString(most);
}

// Without a NUL.
inline std::string text(Input &input, std::size_t most = 80) { return bytes(input, most).c_str(); }

// Memory of exactly so many bytes: the sanitizer knows where it begins and ends.
class Exactly {
 public:
  explicit Exactly(int size, char filler = '\x5A')
      : size_(std::max(size, 0)), bytes_(new char[static_cast<std::size_t>(size_)]) {
    std::fill_n(bytes_.get(), size_, filler);
  }
  // The bytes as they are, without a terminator.
  static Exactly holding(std::string_view bytes) {
    Exactly memory(static_cast<int>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), memory.data());
    return memory;
  }
  static Exactly terminated(std::string_view text) {
    Exactly memory(static_cast<int>(text.size()) + 1, '\0');
    std::copy(text.begin(), text.end(), memory.data());
    return memory;
  }

  char *data() { return bytes_.get(); }
  int size() const { return size_; }
  std::string_view bytes() const { return {bytes_.get(), static_cast<std::size_t>(size_)}; }
  // Up to the first NUL, or all of it.
  std::string_view text() const { return bytes().substr(0, bytes().find('\0')); }

 private:
  int size_;
  std::unique_ptr<char[]> bytes_;
};

}  // namespace korvel::test

#endif
