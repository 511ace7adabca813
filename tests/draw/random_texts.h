// SPDX-License-Identifier: MIT
// For tests/draw/: random rich texts that repeat from run to run.
#ifndef KORVEL_TESTS_DRAW_RANDOM_TEXTS_H
#define KORVEL_TESTS_DRAW_RANDOM_TEXTS_H

#include <random>
#include <string>

namespace korvel::test {

class RandomTexts {
 public:
  explicit RandomTexts(unsigned seed) : engine_(seed) {}

  // A number from `low` to `high`.
  int number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }

  // Runs and escapes of all kinds, often cut off inside an escape; or any bytes; or a run of about
  // the greatest length drawn.
  std::string text() {
    const int kind = number(0, 99);
    if (kind == 0) return longRun();
    std::string result;
    for (int pieces = number(0, 8); pieces > 0; --pieces) result += piece(kind < 20);
    if (number(0, 2) == 0) result.resize(static_cast<std::size_t>(number(0, size(result))));
    return result;
  }

 private:
  static int size(const std::string &text) { return static_cast<int>(text.size()); }
  char anyByte() { return static_cast<char>(number(0, 255)); }

  std::string piece(bool isNoise) {
    if (isNoise) return bytes(number(0, 6));
    if (number(0, 2) == 0) return bytes(number(1, 9));
    static constexpr unsigned char kCodes[] = {128, 129, 130, 131, 133, 134, 138, 148, 149, 161,
                                               168, 200, 201, 202, 203, 211, 212, 213, 214, 255};
    const int choice = number(0, 24);
    const char code = choice < 20 ? static_cast<char>(kCodes[choice]) : anyByte();
    std::string escape{'\xFF', code};
    for (int n = number(0, 4); n > 0; --n) escape += argument();
    return escape;
  }
  // Mostly small numbers, and every byte now and then.
  char argument() { return number(0, 3) == 0 ? anyByte() : static_cast<char>(number(30, 60)); }
  std::string bytes(int length) {
    std::string result;
    while (length-- > 0) result += anyByte();
    return result;
  }
  std::string longRun() {
    return std::string(static_cast<std::size_t>(number(250, 260)), 'i') + piece(false);
  }

  std::mt19937 engine_;
};

// "text 17: ff 80 28", for a failure's message.
inline std::string described(int n, const std::string &text) {
  constexpr const char *kDigits = "0123456789abcdef";
  std::string result = "text " + std::to_string(n) + ':';
  for (const char each : text) {
    const auto byte = static_cast<unsigned char>(each);
    result += {' ', kDigits[byte / 16], kDigits[byte % 16]};
  }
  return result;
}

}  // namespace korvel::test

#endif
