// For tests/fuzz/: the scripted desktop takes what a script did not expect for a failed test. Here
// it is what a person does by chance.
#ifndef KORVEL_TESTS_FUZZ_FAILURES_ASIDE_H
#define KORVEL_TESTS_FUZZ_FAILURES_ASIDE_H

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
