// SPDX-License-Identifier: MIT
// Profiles where all openings, or all looks at a path, are refused in one way: only a profile that
// the system calls missing is missing.
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/profile.h>

#include "tests/faults/requests.h"
#include "tests/files/volumes.h"

namespace korvel::faults {
namespace {

constexpr char kOld[] = "[Main]\r\nkey1=old\r\n";

int write(bool wholeSection) {
  return wholeSection ? WritePrivateProfileSection("Main", "a=1\r\nb=2", "Data:p.ini")
                      : WritePrivateProfileString("Main", "key1", "new", "Data:p.ini");
}

// With the error at each of these calls, writing gives 0 at once and leaves the profile.
void expectRefusals(const std::vector<const char *> &calls, const std::vector<int> &errors) {
  const test::Volumes volumes;
  volumes.file("p.ini", kOld);
  for (const int error : errors) {
    for (const bool wholeSection : {false, true}) {
      const auto begin = std::chrono::steady_clock::now();
      {
        const Instead first(calls.front(), error);
        const Instead last(calls.back(), error);
        EXPECT_EQ(write(wholeSection), 0) << strerror(error);
      }
      EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1))
          << "not worth waiting for: " << strerror(error);
      EXPECT_EQ(test::content(volumes.posix("p.ini")), kOld) << strerror(error);
      EXPECT_EQ(test::entries(volumes.folder()), std::vector<std::string>{"p.ini"});
    }
  }
}

TEST(Profiles, ErrorsAtOpeningGiveZeroAndLeaveTheProfile) {
  expectRefusals({"open"}, {EACCES, EIO, EMFILE, ENFILE, ENOMEM, ELOOP, ENOTDIR, EPERM, EROFS,
                            ENAMETOOLONG, ESTALE, ETXTBSY, EINVAL, EBUSY});
}

TEST(Profiles, ErrorsAtALookGiveZeroAndLeaveTheProfile) {
  expectRefusals({"stat", "lstat"}, {EIO, ENOMEM, ESTALE, EACCES, EINVAL});
}

// As if others made and removed it all the time.
TEST(Profiles, OneThatIsAlwaysThereWhenItIsToAppearGivesZeroInTheEnd) {
  const test::Volumes volumes;
  for (const bool wholeSection : {false, true}) {
    int tries = 0;
    const Instead made("linkat", [&](const Request &) { return ++tries, EEXIST; });
    EXPECT_EQ(write(wholeSection), 0);
    EXPECT_GT(tries, 10);
    EXPECT_EQ(test::entries(volumes.folder()), std::vector<std::string>{});
  }
}

}  // namespace
}  // namespace korvel::faults
