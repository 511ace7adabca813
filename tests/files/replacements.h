// SPDX-License-Identifier: MIT
// For tests/files/: short forms of them, temporaries left by kills, and a folder that does not
// admit the exchange.
#ifndef KORVEL_TESTS_FILES_REPLACEMENTS_H
#define KORVEL_TESTS_FILES_REPLACEMENTS_H

#include <cerrno>
#include <functional>
#include <signal.h>
#include <span>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "files/replace.h"
#include "tests/files/faults.h"
#include "tests/files/scratch.h"

namespace korvel::files {

inline bool replaceFile(const char *path, std::span<const std::string_view> pieces,
                        IfMissing ifMissing = IfMissing::Fail) {
  Replacement replacement;
  return replacement.begin(path, ifMissing) && replacement.append(pieces) && replacement.commit();
}

inline bool replaceBy(const std::string &path, std::string_view text,
                      IfMissing ifMissing = IfMissing::Fail) {
  return replaceFile(path.c_str(), std::span(&text, 1), ifMissing);
}

// "u::rw-,u:12:rw-,g::r--,m::rw-,o::---" as the kernel keeps it.
inline constexpr unsigned char kAccessListOf12[] = {
    2,    0,    0,    0,  //
    1,    0,    6,    0,    0xFF, 0xFF, 0xFF, 0xFF, 2,    0,    6,    0,   12, 0,
    0,    0,    4,    0,    4,    0,    0xFF, 0xFF, 0xFF, 0xFF, 16,   0,   6,  0,
    0xFF, 0xFF, 0xFF, 0xFF, 32,   0,    0,    0,    0xFF, 0xFF, 0xFF, 0xFF};

// For abandonedAfter. The clock that stamps files may be a moment ahead of time().
inline constexpr int kAtOnce = -1;

// As long as it lives, new temporaries are named, or nameless where the file system has such files.
class Temporaries {
 public:
  explicit Temporaries(bool named) : fault_(ReplaceStep::Temporary, 1, named ? EOPNOTSUPP : 0) {}

 private:
  test::Fault fault_;
};

inline bool beginNamed(Replacement &replacement, const std::string &path,
                       IfMissing ifMissing = IfMissing::Fail) {
  const Temporaries named(true);
  return replacement.begin(path.c_str(), ifMissing);
}

// Leaves a temporary by killing its process while it has a name.
inline void leaveTemporary(const std::string &file, bool named) {
  EXPECT_EQ(test::inChild([&] {
              if (named) {
                Replacement replacement;
                if (beginNamed(replacement, file) && replacement.append("killed")) raise(SIGKILL);
              }
              test::Fault fault(ReplaceStep::Rename, 1, [] { return raise(SIGKILL); });
              return replaceBy(file, "killed") ? 0 : 1;
            }),
            -1);
}

// A file that can only be overwritten, as its folder does not admit the exchange.
class InPlace : public testing::Test {
 protected:
  // A folder that is not writable, with a file that is.
  void SetUp() override {
    file_ = scratch_.file("a", kOld);
    chmod(file_.c_str(), 0666);
    chmod(scratch_.path().c_str(), 0555);
  }
  static constexpr char kOld[] = "the old content";
  test::Scratch scratch_;
  std::string file_;
};

}  // namespace korvel::files

#endif
