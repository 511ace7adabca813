// SPDX-License-Identifier: MIT
// For tests/faults/ and tests/fuzz/: the scripted desktop takes what a script did not expect for a
// failed test. There it is what a failure leads to, or what a person does by chance.
#ifndef KORVEL_TESTS_SUPPORT_FAILURES_ASIDE_H
#define KORVEL_TESTS_SUPPORT_FAILURES_ASIDE_H

#include <gtest/gtest-spi.h>

namespace korvel::test {

// No failure of a test counts for its life.
class FailuresAside {
 private:
  testing::TestPartResultArray failures_;
  testing::ScopedFakeTestPartResultReporter taken_{
      testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures_};
};

}  // namespace korvel::test

#endif
