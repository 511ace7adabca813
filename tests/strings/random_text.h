// SPDX-License-Identifier: MIT
// For tests/strings/: random texts that repeat from run to run.
#ifndef KORVEL_TESTS_STRINGS_RANDOM_TEXT_H
#define KORVEL_TESTS_STRINGS_RANDOM_TEXT_H

#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace korvel::test {

class RandomText {
 public:
  explicit RandomText(unsigned seed) : engine_(seed) {}

  // A number from `low` to `high`.
  int number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
  // A text of `length` characters of `alphabet`.
  std::string text(int length, std::string_view alphabet) {
    std::string result;
    for (int i = 0; i < length; ++i) {
      result +=
          alphabet[static_cast<std::size_t>(number(0, static_cast<int>(alphabet.size()) - 1))];
    }
    return result;
  }
  // A text of any bytes except NUL.
  std::string anyText(int length) {
    std::string result;
    for (int i = 0; i < length; ++i) result += static_cast<char>(number(1, 255));
    return result;
  }

 private:
  std::mt19937 engine_;
};

}  // namespace korvel::test

#endif
