// SPDX-License-Identifier: MIT
// Lines and characters, and the stretches of plain lines that need no look at each character.
#include "profile/lines.h"

#include <algorithm>
#include <cstring>

#include "profile/scan.h"

namespace korvel::profile {
namespace {

const char *find(const char *begin, const char *end, char c) {
  const auto size = static_cast<std::size_t>(end - begin);
  return static_cast<const char *>(std::memchr(begin, static_cast<unsigned char>(c), size));
}

// The beginning of the line that holds `at`. `from`, in front of it, is the beginning of a line;
// `at` is not the line feed of a "\r\n".
const char *beginningOfLine(const char *from, const char *at) {
  const auto size = static_cast<std::size_t>(at - from);
  const auto *carriageReturn = static_cast<const char *>(memrchr(from, '\r', size));
  if (carriageReturn == nullptr) return from;
  return carriageReturn + (carriageReturn[1] == '\n' ? 2 : 1);
}

}  // namespace

Line lineAt(const char *begin, const char *textEnd) {
  const char *end = find(begin, textEnd, '\r');
  if (end == nullptr) return {begin, textEnd, textEnd};
  const char *next = end + 1;
  if (next != textEnd && *next == '\n') ++next;
  return {begin, end, next};
}

void Characters::passLineFeeds() {
  while (at_ != end_ && *at_ == '\n') ++at_;
}

bool Characters::take(std::string_view expected) {
  if (expected.size() > left_) return false;
  for (const char c : expected) {
    passLineFeeds();
    if (at_ == end_ || *at_ != c) return false;
    ++at_;
  }
  left_ -= expected.size();
  return true;
}

std::string_view Characters::takeRun() {
  passLineFeeds();
  const std::size_t most = std::min(left_, static_cast<std::size_t>(end_ - at_));
  const char *begin = at_;
  const char *feed = find(begin, begin + most, '\n');
  at_ = feed == nullptr ? begin + most : feed;
  const auto size = static_cast<std::size_t>(at_ - begin);
  left_ -= size;
  return {begin, size};
}

bool Characters::takeToBracket() {
  for (std::string_view run = takeRun(); !run.empty(); run = takeRun()) {
    if (find(run.data(), run.data() + run.size(), '[') != nullptr) return true;
  }
  return false;
}

std::size_t Characters::copyTo(char *destination, std::size_t capacity) {
  left_ = std::min(left_, capacity);
  std::size_t copied = 0;
  for (std::string_view run = takeRun(); !run.empty(); run = takeRun()) {
    std::memcpy(destination + copied, run.data(), run.size());
    copied += run.size();
  }
  return copied;
}

const char *passPlainLines(Stretch text, const char *from, std::string_view key) {
  if (key.empty()) return from;
  const Stretch wanted = stretchOf(key);
  if (Stretch{text.begin, from}.size() < scanReach(wanted)) return from;
  const char *at = scan({from, text.end}, wanted);
  // The scan may have stopped within a "\r\n".
  if (at == text.end || (*at == '\n' && at[-1] == '\r')) --at;
  return at < from ? from : beginningOfLine(from, at);
}

}  // namespace korvel::profile
