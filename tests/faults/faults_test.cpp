// SPDX-License-Identifier: MIT
// Every function of the interface, while everything that it asks for is refused in turn.
#include <cstdio>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "tests/faults/operations.h"

namespace korvel::faults {
namespace {

// Returns the number of failures.
int survive(std::span<const Operation> operations) {
  const std::string searched = std::getenv("PATH");
  int faults = 0;
  for (const Operation &operation : operations) faults += surviveEveryFault(operation);
  EXPECT_EQ(std::getenv("PATH"), searched);
  std::printf("%d failures survived\n", faults);
  return faults;
}

TEST(Faults, OfTexts) { EXPECT_GE(survive(stringOperations()), 5); }
TEST(Faults, OfNumbers) { EXPECT_EQ(survive(codecOperations()), 0); }
TEST(Faults, OfDates) { EXPECT_EQ(survive(dateOperations()), 0); }
TEST(Faults, OfFiles) { EXPECT_GE(survive(fileOperations()), 330); }
TEST(Faults, OfTools) { EXPECT_GE(survive(shellOperations()), 550); }
TEST(Faults, OfProfiles) { EXPECT_GE(survive(profileOperations()), 2200); }
TEST(Faults, OfTables) { EXPECT_GE(survive(tableOperations()), 5600); }
TEST(Faults, OfDrawing) { EXPECT_GE(survive(drawOperations()), 95); }
TEST(Faults, OfDialogs) { EXPECT_GE(survive(dialogOperations()), 130); }

}  // namespace
}  // namespace korvel::faults
