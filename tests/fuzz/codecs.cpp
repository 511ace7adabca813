// SPDX-License-Identifier: MIT
// Numbers and dates of any text and any value: codecs beside their literal models, and what must
// hold among the functions of the calendar.
#include <cmath>
#include <cstring>
#include <string>

#include <korvel/codecs.h>
#include <korvel/dates.h>
#include <korvel/dialogs.h>

#include "tests/codecs/literal_codecs.h"
#include "tests/fuzz/target.h"

namespace korvel::test {
namespace {

bool same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

void readIntegers(Input &input) {
  const std::string given = text(input);
  Exactly text = Exactly::terminated(given);
  int value = 77;
  const bool isLong = input.ConsumeBool();
  const int status = isLong ? intcod_l(text.data(), &value) : intcod_i(text.data(), &value);
  const Reading<int> expected = literalReadInteger(given, isLong ? 2147483647.0 : 32767.0);
  require(status == expected.status && text.text() == expected.text);
  require(value == (status == 0 ? expected.value : 77));
}

void readReals(Input &input) {
  const std::string given = text(input, 700);
  Exactly text = Exactly::terminated(given);
  double value = 77;
  const int status = realcod_d(text.data(), &value);
  const Reading<double> expected = literalReadReal(given);
  require(status == expected.status && text.text() == expected.text);
  require(same(value, status == 0 ? expected.value : 77));
  float rounded = 77;
  Exactly again = Exactly::terminated(given);
  require(realcod_f(again.data(), &rounded) == status);
  if (status == 0) require(rounded == static_cast<float>(value) || std::isinf(rounded));
}

void validate(Input &input) {
  const std::string given = text(input);
  const auto accepts = [&](auto validator, auto value) {
    Exactly text = Exactly::terminated(given);
    const int status = validator(text.data(), &value);
    require(status >= 0 && status <= 8);
    return std::pair(status == 0, value);
  };
  const auto notNegative = accepts(intcod_l_sup0, 0);
  require(!notNegative.first || notNegative.second >= 0);
  const auto positive = accepts(intcod_i_ssup0, 0);
  require(!positive.first || positive.second > 0);
  require(!accepts(intcod_i_sup0, 0).first || notNegative.first);
  const auto real = accepts(realcod_d_ssup0, 0.0);
  require(!real.first || real.second > 0);
  require(!real.first || accepts(realcod_d_sup0, 0.0).first);
  const auto date = accepts(intcod_l_date, 0);
  require(!date.first || Validate_Date(date.second) == 1);
}

void writeIntegers(Input &input) {
  const int value = number(input, -40000, 40000);
  Exactly out(input.ConsumeIntegralInRange(0, 16));
  const bool isLong = input.ConsumeBool();
  const int status =
      isLong ? intdco_l(value, out.data(), out.size()) : intdco_i(value, out.data(), out.size());
  const Writing expected = literalWriteInteger(value, out.size(), isLong ? 11 : 6);
  require(status == expected.status);
  if (out.size() > 0) require(out.text() == expected.text);
  if (status != 0 || !isLong) return;
  int back = ~value;
  require(value == INT_MIN || (intcod_l(out.data(), &back) == 0 && back == value));
}

double anyReal(Input &input) {
  switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0: {
      const auto pattern = input.ConsumeIntegral<std::uint64_t>();
      double value;
      std::memcpy(&value, &pattern, sizeof value);
      return value;
    }
    case 1:
      return input.ConsumeIntegralInRange(-1000000, 1000000) / 1000.0;
    case 2:
      return std::ldexp(input.ConsumeIntegralInRange(-1000, 1000),
                        input.ConsumeIntegralInRange(-1080, 1020));
    default:
      return number(input, -100, 100);
  }
}

void writeReals(Input &input) {
  const double value = anyReal(input);
  Exactly out(input.ConsumeIntegralInRange(0, 700));
  const int decimals = input.ConsumeIntegralInRange(-3, 400);
  const bool isFixed = input.ConsumeBool();
  const int status = isFixed ? realdco_d(value, out.data(), out.size(), decimals)
                             : realdco_sd(value, out.data(), out.size(), decimals);
  const Writing expected = isFixed ? literalWriteFixed(value, out.size(), decimals)
                                   : literalWriteSignificant(value, out.size(), decimals);
  require(status == expected.status);
  if (out.size() > 0) require(out.text() == expected.text);
}

void split(Input &input) {
  const double value = anyReal(input);
  double integral = 0;
  double fraction = 0;
  utrealds(&value, &integral, &fraction);
  require(same(integral, literalIntegral(value)));
  const auto single = static_cast<float>(std::fabs(value) < 1e38 ? value : 0.0);
  float singleIntegral = 0;
  float singleFraction = 0;
  utrealfs(&single, &singleIntegral, &singleFraction);
  require(singleIntegral + singleFraction == single);
}

void fixedDigits(Input &input) {
  const int value = number(input, -500, 99999);
  const int width = input.ConsumeIntegralInRange(-1, 14);
  Exactly num(width);
  const int status = LongToNUM(value, num.data(), width);
  int back = 0;
  if (status == 0 && value >= 0 && width <= 11) {
    require(NUMToLong(num.data(), width, &back) == 0 && back == value);
  }
  require(DoubleToNUMD(value, num.data(), width, 1) == 1);

  const std::string given = bytes(input, 40);
  Exactly run = Exactly::holding(given);
  int low = 7;
  int high = 7;
  double real = 7;
  const auto holds = [](int code, auto result) { require(code == 0 ? result >= 0 : result == 0); };
  holds(NUMToLong(run.data(), run.size(), &low), low);
  holds(NUMToInt(run.data(), run.size(), &low), low);
  holds(NUMP100ToLong(run.data(), run.size(), &low), low);
  NUMPInterToLong(run.data(), run.size(), &low, &high);
  require(low >= 0 && high >= 0);
  holds(NUMDToDouble(run.data(), run.size(), &real), real);

  Exactly list = Exactly::terminated(given.c_str());
  const int items = Teste_NUM_liste(list.data());
  require(items >= 0 && items <= list.size());
  require(Get_NUM_liste(list.data(), number(input, 0, 5)) >= 0);
  require(Get_NUM_liste(list.data(), -1) == 0);
}

// What is stored comes back as it was shown.
void dateTexts(Input &input) {
  a_org = number(input, 1900, 2000);
  const std::string shown = text(input, 24);
  const std::string clock = text(input, 10);
  Exactly date = Exactly::terminated(shown);
  Exactly time = Exactly::terminated(clock);
  Exactly stored(15);
  Exactly again(20);
  ZRV_Build_Date(date.data(), stored.data());
  ZRV_Inv_Date(stored.data(), again.data());
  if (shown.size() == 10) {
    require(again.text().size() == 10);
    for (const std::size_t digit : {0, 1, 3, 4, 6, 7, 8, 9}) {
      require(again.text()[digit] == shown[digit]);
    }
  }
  Exactly nine(9);
  Exactly thirteen(13);
  ZRV_Build_Date_short(date.data(), nine.data());
  ZRV_Build_Date_long(date.data(), time.data(), thirteen.data());
  ZRV_Build_Date_slong(date.data(), time.data(), stored.data());
  ZRV_Inv_Date_Time(stored.data(), again.data());
  ZRV_Build_Date_SV(date.data(), thirteen.data());
  require(std::memchr(thirteen.data(), '\0', 13) != nullptr);
  ZRV_Inv_Date_2(date.data(), nine.data());
  require(ZRV_Reduc_Date(date.data(), nine.data()) == static_cast<int>(shown.size()));
  require(std::memchr(nine.data(), '\0', 9) != nullptr);
  a_org = 1950;
}

void calendar(Input &input) {
  const int date = number(input, 18000101, 21001231);
  const auto days = static_cast<unsigned>(number(input, 0, 4000));
  const int later = Get_Date_Incr(date, days);
  const int earlier = Get_Date_Diff(date, days);
  Min_depuis_org(date, number(input, 0, 2359), number(input, 1900, 2100));
  Min_depuis_org(later, number(input, 0, 2359), number(input, 1900, 2100));
  const int year = number(input, 1800, 2100);
  const int month = number(input, 0, 13);
  require(utdatedm(year, 2) == 28 + utdately(year));
  const int day = utdatedw(year, month, number(input, 0, 31));
  require(day >= KorvelSunday && day <= KorvelSaturday);
  for (const char *name : {utdatemy(month), utdatedn(day), utdatemm(month), utdatedd(month)}) {
    require(std::strlen(name) >= 3);
  }
  const int longYear = date / 10000;
  if (Validate_Date(date) == 0 || longYear > 2100 || longYear < 1800 || days > 40000) return;
  require(earlier <= date && date <= later);
  const auto weekday = [](int of) { return utdatedw(of / 10000, of / 100 % 100, of % 100); };
  require(weekday(later) == (weekday(date) + static_cast<int>(days % 7)) % 7);
  require(Validate_Date(later) == 1 || later > 21001231);
}

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace korvel::test;
  Input input(data, size);
  constexpr void (*kParts[])(Input &) = {readIntegers,  readReals,  validate,
                                         writeIntegers, writeReals, split,
                                         fixedDigits,   dateTexts,  calendar};
  for (int parts = 0; parts < 3; ++parts) input.PickValueInArray(kParts)(input);
  return 0;
}
