// The values in the tables, as shown text and by the rules of validity.
#include "dialogs/field_values.h"

#include <algorithm>
#include <vector>

#include <korvel/codecs.h>

#include "dialogs/stored_text.h"

namespace korvel::dialogs {

namespace {

// What a validation function may count on having at its text.
constexpr std::size_t kEntryRoom = 256;

// What a function that throws was asked has not been accepted.
template <typename Function, typename Value>
bool answer(Function function, char *text, Value *slot, int &valid) {
  try {
    return function(text, slot) == 0;
  } catch (...) {
    valid = 0;
    throw;
  }
}

template <typename Function, typename Value>
bool accept(const Function *functions, int i, std::string_view text, Value *slot, int *valid) {
  if (functions == nullptr || functions[i] == nullptr) return false;
  char small[kEntryRoom];
  std::vector<char> large;
  char *entry = small;
  if (text.size() >= kEntryRoom) {
    large.resize(text.size() + 1);
    entry = large.data();
  }
  *std::copy(text.begin(), text.end(), entry) = '\0';
  return answer(functions[i], entry, slot, valid[i]);
}

bool isMissing(int mandatory, std::string_view text) { return mandatory != 0 && text.empty(); }

}  // namespace

DecimalText DecimalText::ofInteger(int value) {
  DecimalText text;
  intdco_i(value, text.text_, kCapacity);
  return text;
}

DecimalText DecimalText::ofDate(int value) {
  DecimalText text;
  intdco_l(value, text.text_, kCapacity);
  return text;
}

DecimalText DecimalText::ofNumber(double value, int decimals) {
  DecimalText text;
  realdco_d(value, text.text_, kCapacity, decimals);
  return text;
}

bool textLengthIsAcceptable(int i, std::size_t length) {
  if (TDB_bMand[i] != 0 && length == 0) return false;
  return static_cast<long long>(length) <= TDB_iCarac[i];
}

bool acceptInteger(int i, std::string_view text) {
  return accept(vi, i, text, &IDB_iInts[i], IDB_bOK);
}
bool acceptNumber(int i, std::string_view text) {
  return accept(vf, i, text, &NDB_dNums[i], NDB_bOK);
}
bool acceptDate(int i, std::string_view text) {
  return accept(vd, i, text, &DDB_lDates[i], DDB_bOK);
}

bool storedTextIsAcceptable(int i) {
  return textLengthIsAcceptable(i, storedText(kFieldTexts, i).size());
}

bool storedIntegerIsAcceptable(int i) {
  const DecimalText text = DecimalText::ofInteger(IDB_iInts[i]);
  return !isMissing(IDB_bMand[i], text.view()) && acceptInteger(i, text.view());
}

bool storedNumberIsAcceptable(int i) {
  const DecimalText text = DecimalText::ofNumber(NDB_dNums[i], NDB_iChiff[i]);
  return !isMissing(NDB_bMand[i], text.view()) && acceptNumber(i, text.view());
}

bool storedDateIsAcceptable(int i) {
  const DecimalText text = DecimalText::ofDate(DDB_lDates[i]);
  return !isMissing(DDB_bMand[i], text.view()) && acceptDate(i, text.view());
}

}  // namespace korvel::dialogs
