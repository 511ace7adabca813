// SPDX-License-Identifier: MIT
// The codes that the program ends with, and what ends a command early.
#ifndef KORVEL_TOOLS_FAILURE_H
#define KORVEL_TOOLS_FAILURE_H

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace korvel::tools {

inline constexpr int kDone = 0;    // or found, or clean, or equal
inline constexpr int kUnlike = 1;  // not found, or something was found that should not be
inline constexpr int kFailed = 2;  // used wrongly, or a file that cannot be read or written

// The text is the one line that standard error gets.
class Failure : public std::runtime_error {
 public:
  Failure(int exitCode, const std::string &text) : std::runtime_error(text), exitCode_(exitCode) {}
  int exitCode() const { return exitCode_; }

 private:
  int exitCode_;
};

// Of a file, for the reason that errno gives.
inline Failure fileFailure(const std::string &path, int error = errno) {
  return {kFailed, path + ": " + std::strerror(error)};
}

}  // namespace korvel::tools

#endif
