// The machine's vector instructions, beside what the compiler's own question answers.
#include "strings/machine.h"

#include <gtest/gtest.h>

namespace korvel::strings {

namespace {

#ifdef __x86_64__
TEST(Machine, HasTheVectorsThatTheCompilerSeesToo) {
  const Machine &machine = thisMachine();
  EXPECT_EQ(machine.avx2, __builtin_cpu_supports("avx2") != 0);
}
#else
TEST(Machine, HasNoVectorsOfAnotherProcessor) {
  const Machine &machine = thisMachine();
  EXPECT_FALSE(machine.avx2);
}
#endif

// The processor is asked once: a later call returns the stored answer, even one that was changed.
TEST(Machine, AnswersAlikeEachTime) {
  auto &stored = const_cast<Machine &>(thisMachine());
  const Machine asked = stored;
  stored = {!asked.avx2};
  const Machine again = thisMachine();
  stored = asked;
  EXPECT_NE(again.avx2, asked.avx2);
}

}  // namespace

}  // namespace korvel::strings
