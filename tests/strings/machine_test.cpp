// SPDX-License-Identifier: MIT
// The machine's vector instructions, beside what the compiler's own question answers.
#include "strings/machine.h"

#include <gtest/gtest.h>

namespace korvel::strings {

namespace {

TEST(Machine, HasTheVectorsThatTheCompilerSeesToo) {
#ifdef __x86_64__
  EXPECT_EQ(usesAvx2(), __builtin_cpu_supports("avx2") != 0);
#else
  EXPECT_FALSE(usesAvx2());
#endif
}

TEST(Machine, UsesNoneThatAreForbidden) {
  avx2Allowed = false;
  const bool used = usesAvx2();
  avx2Allowed = true;
  EXPECT_FALSE(used);
}

}  // namespace

}  // namespace korvel::strings
