#include "strings/machine.h"

#include <gtest/gtest.h>

namespace korvel::strings {
namespace {

#ifdef __x86_64__
TEST(Machine, HasTheVectorsThatTheCompilerSeesToo) {
  const Machine &machine = thisMachine();
  EXPECT_EQ(machine.avx2, __builtin_cpu_supports("avx2") != 0);
  EXPECT_EQ(machine.avx512bw, __builtin_cpu_supports("avx512bw") != 0);
  EXPECT_EQ(machine.avx512vbmi2, __builtin_cpu_supports("avx512vbmi2") != 0);
}
#else
TEST(Machine, HasNoneOfAnotherProcessor) {
  const Machine &machine = thisMachine();
  EXPECT_FALSE(machine.avx2 || machine.avx512bw || machine.avx512vbmi2);
}
#endif

TEST(Machine, AnswersAlikeEachTime) {
  const Machine first = thisMachine();
  const Machine again = thisMachine();
  EXPECT_EQ(first.avx2, again.avx2);
  EXPECT_EQ(first.avx512bw, again.avx512bw);
  EXPECT_EQ(first.avx512vbmi2, again.avx512vbmi2);
}

}  // namespace
}  // namespace korvel::strings
