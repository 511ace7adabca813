// SPDX-License-Identifier: MIT
// For tests/profile/: random files, names and values that meet every rule of the format often.
#ifndef KORVEL_TESTS_PROFILE_RANDOM_PROFILES_H
#define KORVEL_TESTS_PROFILE_RANDOM_PROFILES_H

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace korvel::test {

class RandomProfiles {
 public:
  explicit RandomProfiles(unsigned seed) : random_(seed) {}

  std::size_t below(std::size_t n) { return random_() % n; }
  bool oneIn(std::size_t n) { return below(n) == 0; }

  std::string section() {
    constexpr std::string_view kNames[] = {"A", "B", "A]", "", "Bb", "\xE9t\xE9", "a"};
    return std::string(kNames[below(oneIn(4) ? std::size(kNames) : 2)]);
  }
  std::string key() {
    constexpr std::string_view kNames[] = {"x",  "y",    "key12", "x=y",  "", "x ",
                                           "[x", "\xE9", "y\rx",  "x\ny", "k"};
    if (oneIn(60)) return std::string(1017 + below(10), 'k');
    return std::string(kNames[below(oneIn(4) ? std::size(kNames) : 3)]);
  }
  std::string value() {
    if (oneIn(40)) return std::string(1010 + below(20), 'v');
    return noise(below(8), "1=[] \xE9v");
  }
  std::string file() {
    std::string text;
    const std::size_t style = below(6);
    for (std::size_t lines = below(style == 0 ? 60 : 14); lines > 0; --lines) text += line(style);
    // The last line end is often incomplete.
    if (oneIn(3)) text.resize(text.size() - std::min(text.size(), below(3)));
    if (style == 5 || oneIn(8)) mutate(text);
    return text;
  }

 private:
  std::string noise(std::size_t length, std::string_view bytes) {
    std::string s(length, '\0');
    for (char &c : s) c = bytes[below(bytes.size())];
    return s;
  }
  std::string lineEnd(std::size_t style) {
    constexpr std::string_view kEnds[] = {"\r\n", "\r", "\n", "\n\r", "\r\n\n", "\r\r\n"};
    return std::string(kEnds[style < 3 && !oneIn(30) ? 0 : below(std::size(kEnds))]);
  }
  std::string line(std::size_t style) {
    if (style == 4) return noise(below(12), std::string_view("[]=Axy\r\n\0 \xE9", 11));
    const std::string end = lineEnd(style);
    if (oneIn(6)) return end;
    if (oneIn(5)) return "[" + section() + "]" + (oneIn(5) ? noise(below(4), "[]= x") : "") + end;
    if (oneIn(80)) return longLine() + end;
    return key() + (oneIn(10) ? "" : "=") + value() + end;
  }
  // A line about as long as one of the two limits, with a byte that matters near the cut.
  std::string longLine() {
    const std::size_t length = (oneIn(3) ? 16383 : 1023) - 6 + below(12);
    std::string s = oneIn(2) ? "x=" : "k";
    s.resize(length, 'l');
    if (oneIn(2)) s[length - 1 - below(4)] = '[';
    if (oneIn(3)) s[length - 1 - below(4)] = '=';
    if (oneIn(3)) s.insert(below(s.size()), "\n");
    return s + noise(below(5), "[]=l");
  }
  void mutate(std::string &text) {
    constexpr std::string_view kBytes("\r\n[]=x\0", 7);
    for (std::size_t n = below(4); n > 0 && !text.empty(); --n)
      text[below(text.size())] = kBytes[below(kBytes.size())];
  }

  std::mt19937 random_;
};

}  // namespace korvel::test

#endif
