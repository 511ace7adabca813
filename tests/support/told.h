// SPDX-License-Identifier: MIT
// What the library tells on standard error of a call that misuses it.
#ifndef KORVEL_TESTS_SUPPORT_TOLD_H
#define KORVEL_TESTS_SUPPORT_TOLD_H

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "base/misuse.h"

namespace korvel::test {

// Those of the lines that begin as the library's do: tools have lines of their own.
inline std::string linesOfTheLibrary(const std::string &lines) {
  std::string found;
  std::istringstream in(lines);
  for (std::string line; std::getline(in, line);)
    if (line.starts_with("korvel: ")) found += line + '\n';
  return found;
}

// What the library tells of `work` while misuse is told, or not. Of a single line, what is behind
// "korvel: ".
template <typename Work>
std::string told(Work work, base::Telling telling = base::Telling::Yes) {
  constexpr std::string_view kBegin = "korvel: ";
  const base::Telling before = base::telling.exchange(telling);
  testing::internal::CaptureStderr();
  work();
  const std::string lines = linesOfTheLibrary(testing::internal::GetCapturedStderr());
  base::telling = before;
  const bool isOne = !lines.empty() && lines.find('\n') == lines.size() - 1;
  if (!isOne) return lines;
  return lines.substr(kBegin.size(), lines.size() - kBegin.size() - 1);
}

}  // namespace korvel::test

// One call, and the one line that is told of it; and of a call that fails, what it returns then.
// tests/interface/misuse.py reads these rows.
#define EXPECT_TOLD(call, line) \
  EXPECT_EQ(korvel::test::told([&] { static_cast<void>(call); }), line)
#define EXPECT_FAILS(call, value, line) \
  EXPECT_EQ(korvel::test::told([&] { EXPECT_EQ(call, value); }), line)

#endif
