// SPDX-License-Identifier: MIT
// For tests/codecs/: texts and runs in memory of exactly their size.
#ifndef KORVEL_TESTS_CODECS_EXACT_TEXT_H
#define KORVEL_TESTS_CODECS_EXACT_TEXT_H

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::test {

// A writable text whose memory ends with the terminator: the sanitizers see a read after it.
class ExactText {
 public:
  explicit ExactText(std::string_view text) : bytes_(text.begin(), text.end()) {
    bytes_.push_back('\0');
    bytes_.shrink_to_fit();
  }
  char *data() { return bytes_.data(); }
  std::string text() const { return bytes_.data(); }

 private:
  std::vector<char> bytes_;
};

// A run of characters without a terminator; an empty one has an address, too.
class ExactRun {
 public:
  explicit ExactRun(std::string_view run)
      : bytes_(new char[run.size()]), width_(static_cast<int>(run.size())) {
    std::copy(run.begin(), run.end(), bytes_.get());
  }
  const char *data() const { return bytes_.get(); }
  int width() const { return width_; }

 private:
  std::unique_ptr<char[]> bytes_;
  int width_;
};

}  // namespace korvel::test

#endif
