// For dialogs/ only: the values in the tables, as shown text and by the rules of validity.
#ifndef KORVEL_DIALOGS_FIELD_VALUES_H
#define KORVEL_DIALOGS_FIELD_VALUES_H

#include <cstddef>
#include <string_view>

#include <korvel/dialogs.h>

namespace korvel::dialogs {

// A value as decimal text.
class DecimalText {
 public:
  static DecimalText ofInteger(int value);
  static DecimalText ofDate(int value);  // and of its parts
  static DecimalText ofNumber(double value, int decimals);

  std::string_view view() const { return text_; }

 private:
  static constexpr int kCapacity = 256;
  char text_[kCapacity] = "";
};

// Whether a text of this length may stand in text field i.
bool textLengthIsAcceptable(int i, std::size_t length);

// Hands an entered text to the field's validation function, which may store a value. False when it
// refuses, or when there is none.
bool acceptInteger(int i, std::string_view text);
bool acceptNumber(int i, std::string_view text);
bool acceptDate(int i, std::string_view text);

// Whether the value in the table is acceptable. For all but text fields the validation function
// reads its shown text back.
bool storedTextIsAcceptable(int i);
bool storedIntegerIsAcceptable(int i);
bool storedNumberIsAcceptable(int i);
bool storedDateIsAcceptable(int i);

}  // namespace korvel::dialogs

#endif
