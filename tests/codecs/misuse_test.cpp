// SPDX-License-Identifier: MIT
// What is told of buffers and widths that numbers do not fit into.
#include "codecs/misuse.h"

#include <korvel/codecs.h>

#include "tests/support/told.h"

namespace korvel::test {
namespace {

TEST(CodecsMisuse, NoTextOrNoValue) {
  char text[] = "12";
  char *const none = nullptr;
  int value = 0;
  double real = 0;
  float single = 0;
  EXPECT_FAILS(intcod_i(none, &value), 1, "intcod_i(null, ...): argument 1 is null");
  EXPECT_FAILS(intcod_l(text, nullptr), 1, "intcod_l(\"12\", null): argument 2 is null");
  EXPECT_FAILS(intcod_i_sup0(none, &value), 1, "intcod_i_sup0(null, ...): argument 1 is null");
  EXPECT_FAILS(intcod_i_ssup0(none, &value), 1, "intcod_i_ssup0(null, ...): argument 1 is null");
  EXPECT_FAILS(intcod_l_sup0(none, &value), 1, "intcod_l_sup0(null, ...): argument 1 is null");
  EXPECT_FAILS(realcod_d(none, &real), 1, "realcod_d(null, ...): argument 1 is null");
  EXPECT_FAILS(realcod_f(none, &single), 1, "realcod_f(null, ...): argument 1 is null");
  EXPECT_FAILS(realcod_d_sup0(none, &real), 1, "realcod_d_sup0(null, ...): argument 1 is null");
  EXPECT_FAILS(realcod_d_ssup0(none, &real), 1, "realcod_d_ssup0(null, ...): argument 1 is null");
  EXPECT_TOLD(utrealds(nullptr, &real, &real), "utrealds(null, ..., ...): argument 1 is null");
  EXPECT_TOLD(utrealfs(&single, nullptr, &single), "utrealfs(..., null, ...): argument 2 is null");
  EXPECT_FAILS(Teste_NUM_liste(nullptr), 0, "Teste_NUM_liste(null): argument 1 is null");
}

TEST(CodecsMisuse, ABufferThatIsTooSmall) {
  char buffer[32];
  EXPECT_FAILS(intdco_i(-5, buffer, 2), 2,
               "intdco_i(-5, ..., 2): a buffer of 2 bytes is too small: 3 are needed");
  EXPECT_TOLD(intdco_i(-5, buffer, 3), "");
  EXPECT_FAILS(intdco_i(-5, nullptr, 3), 2, "intdco_i(-5, null, 3): there is no buffer to fill");
  EXPECT_FAILS(intdco_l(12345, buffer, 5), 2,
               "intdco_l(12345, ..., 5): a buffer of 5 bytes is too small: 6 are needed");
  EXPECT_FAILS(realdco_d(12.5, buffer, 4, 2), 2,
               "realdco_d(12.5, ..., 4, 2): a buffer of 4 bytes is too small: 6 are needed");
  EXPECT_TOLD(realdco_d(12.5, buffer, 6, 2), "");
  EXPECT_TOLD(realdco_d(12.5, buffer, 32, 1000),
              "realdco_d(12.5, ..., 32, 1000): a buffer of 32 bytes is too small: 1004 are needed");
  EXPECT_TOLD(realdco_d(12.5, buffer, 32, 5000),
              "realdco_d(12.5, ..., 32, 5000): a buffer of 32 bytes is too small: 5004 are needed");
  EXPECT_TOLD(realdco_d(12.5, buffer, 32, 2147483647),
              "realdco_d(12.5, ..., 32, 2147483647): a buffer of 32 bytes is too small: 2147483647 "
              "are needed");
  EXPECT_FAILS(realdco_d(12.5, buffer, 6, -1), 1,
               "realdco_d(12.5, ..., 6, -1): there are no -1 decimals: 0 is the least");
  EXPECT_FAILS(realdco_sd(1234.5, buffer, 7, 3), 0,
               "realdco_sd(1234.5, ..., 7, 3): a buffer of 7 bytes is too small: 8 are needed");
  EXPECT_TOLD(realdco_sd(1234.5, buffer, 8, 3), "");
  EXPECT_FAILS(realdco_sd(1234.5, buffer, 8, -1), 0,
               "realdco_sd(1234.5, ..., 8, -1): there are no -1 digits behind the first: 0 is the "
               "least");
  EXPECT_FAILS(realdco_sd(1234.5, nullptr, 8, 1), 2,
               "realdco_sd(1234.5, null, 8, 1): there is no buffer to fill");
}

TEST(CodecsMisuse, AWidthThatNoNumberHas) {
  char destination[8];
  int low = 0, high = 0;
  double real = 0;
  EXPECT_FAILS(LongToNUM(123, destination, 2), 11,
               "LongToNUM(123, ..., 2): a width of 2 is too small: 3 are needed");
  EXPECT_TOLD(LongToNUM(123, destination, 3), "");
  EXPECT_FAILS(IntToNUM(-1, destination, 1), 11,
               "IntToNUM(-1, ..., 1): a width of 1 is too small: 2 are needed");
  EXPECT_FAILS(IntToNUM(-1, nullptr, 2), 11, "IntToNUM(-1, null, 2): there is no destination");
  EXPECT_FAILS(
      NUMToLong("000000000012", 12, &low), 11,
      "NUMToLong(\"000000000012\", 12, ...): no number has a width of 12: 0 to 11 are read");
  EXPECT_TOLD(NUMToLong("00000000012", 11, &low), "");
  EXPECT_FAILS(NUMToInt("12", -1, &low), 11,
               "NUMToInt(..., -1, ...): no number has a width of -1: 0 to 11 are read");
  EXPECT_FAILS(NUMToInt("12", 2, nullptr), 11, "NUMToInt(\"12\", 2, null): argument 3 is null");
  EXPECT_FAILS(
      NUMP100ToLong("25%", -1, &low), 11,
      "NUMP100ToLong(..., -1, ...): no number has a width of -1: 0 to 2147483647 are read");
  EXPECT_FAILS(NUMPInterToLong("10-20", 5, &low, nullptr), 11,
               "NUMPInterToLong(\"10-20\", 5, ..., null): argument 4 is null");
  EXPECT_TOLD(NUMPInterToLong("10-20", 5, &low, &high), "");
  EXPECT_TOLD(NUMPInterToLong("10", 2, &low, &high), "");
  EXPECT_FAILS(NUMDToDouble("1", 1, nullptr), 11,
               "NUMDToDouble(\"1\", 1, null): argument 3 is null");
  EXPECT_FAILS(DoubleToNUMD(real, destination, 4, 1), 1,
               "DoubleToNUMD(0, ..., 4, 1): this writes nothing: realdco_d writes reals");
  EXPECT_FAILS(Get_NUM_liste("1+2", -1), 0,
               "Get_NUM_liste(\"1+2\", -1): there is no item -1: 0 is the first");
}

TEST(CodecsMisuse, TextsThatAreNoNumbersAreNone) {
  char text[] = "abc";
  int value = 0;
  double real = 0;
  EXPECT_TOLD(intcod_i(text, &value), "");
  EXPECT_TOLD(realcod_d(text, &real), "");
  EXPECT_TOLD(NUMToLong("-42", 3, &value), "");
  EXPECT_TOLD(Teste_NUM_liste("1+x"), "");
}

}  // namespace
}  // namespace korvel::test
