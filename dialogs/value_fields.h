// SPDX-License-Identifier: MIT
// For dialogs/: what integer, number and date fields share. Each holds a value, which a validation
// function of the application's choice reads from the text that was entered.
#ifndef KORVEL_DIALOGS_VALUE_FIELDS_H
#define KORVEL_DIALOGS_VALUE_FIELDS_H

#include <algorithm>
#include <string>
#include <string_view>

#include "codecs/integer.h"
#include "codecs/real.h"
#include "dialogs/field_type.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"

namespace korvel::dialogs {

// A value as decimal text.
class DecimalText {
 public:
  explicit DecimalText(int value) { codecs::writeInteger(value, text_, sizeof text_); }
  DecimalText(double value, int decimals) {
    codecs::writeReal(value, text_, sizeof text_, decimals);
  }

  std::string_view view() const { return text_; }

 private:
  char text_[256] = "";
};

// A text as a validator gets it: it is promised room for 255 characters. Up to that length nothing
// is allocated.
class Entry {
 public:
  explicit Entry(std::string_view text) {
    if (text.size() < sizeof small_) {
      *std::copy(text.begin(), text.end(), small_) = '\0';
    } else {
      large_ = text;
    }
  }

  char *text() { return large_.empty() ? small_ : large_.data(); }

 private:
  char small_[256];
  std::string large_;
};

// A validator that the library itself has put into a table: applications find it there under its
// exported name, by which it is never called, as an application may have a function of that name.
template <typename Validator>
struct OwnValidator {
  Validator exported;
  Validator rule;
};

template <typename Value, typename Validator>
struct ValueTables {
  const FieldType &type;
  Value *values;
  Validator **validators;  // the application may point it to a table of its own, or nowhere
  OwnValidator<Validator>
      *own;  // by field: the library's last choice; empty after a choice by _set_fvalid
};

template <typename Value, typename Validator>
bool define(const ValueTables<Value, Validator> &tables, int n, int firstItem,
            const OwnValidator<Validator> &validator) {
  if (!define(tables.type, n, firstItem)) return false;
  std::fill_n(tables.values, n, Value{});
  const bool hasTable = *tables.validators != nullptr;
  std::fill_n(tables.own, n, hasTable ? validator : OwnValidator<Validator>{});
  if (hasTable) std::fill_n(*tables.validators, n, validator.exported);
  return true;
}

template <typename Value, typename Validator>
void setValidator(const ValueTables<Value, Validator> &tables, int i, Validator validator) {
  if (!hasField(tables.type, i) || *tables.validators == nullptr) return;
  (*tables.validators)[i] = validator;
  tables.own[i] = {};
}

// Sets the value, and the validator that `mode` chooses; any other mode keeps the validator.
template <typename Value, typename Validator, int kModes>
void set(const ValueTables<Value, Validator> &tables, int i, Value value,
         const OwnValidator<Validator> (&validators)[kModes], int mode) {
  if (!hasField(tables.type, i)) return;
  tables.values[i] = value;
  tables.type.flags.init[i] = 1;
  if (mode < 0 || mode >= kModes || *tables.validators == nullptr) return;
  setValidator(tables, i, validators[mode].exported);
  tables.own[i] = validators[mode];
}

template <typename Value, typename Validator>
void retrieve(const ValueTables<Value, Validator> &tables, int i, Value *out) {
  if (hasField(tables.type, i) && out != nullptr) *out = tables.values[i];
}

// What validates a field: what stands in the table, unless the library has put it there.
template <typename Value, typename Validator>
Validator validatorOf(const ValueTables<Value, Validator> &tables, int i) {
  if (*tables.validators == nullptr) return nullptr;
  const Validator inTable = (*tables.validators)[i];
  return inTable != nullptr && inTable == tables.own[i].exported ? tables.own[i].rule : inTable;
}

// What the validator of a mode asks for.
struct Asked {
  platform::Expected expected;
  int bound;
};

// Tells what the field's validator asks for. Of one of the application's own no more is known than
// of the first mode.
template <typename Value, typename Validator, int kModes>
void tellExpected(Screen &screen, const ValueTables<Value, Validator> &tables, int i,
                  const OwnValidator<Validator> (&validators)[kModes],
                  const Asked (&asked)[kModes]) {
  int mode = *tables.validators != nullptr ? kModes - 1 : 0;
  while (mode > 0 && (*tables.validators)[i] != validators[mode].exported) --mode;
  screen.setExpected(itemOf(tables.type, i), asked[mode].expected, asked[mode].bound);
}

// Hands a text to the field's validator, which may change the text and store a value. False if it
// refuses, and if there is no validator. One that throws has not accepted.
template <typename Value, typename Validator>
bool accept(const ValueTables<Value, Validator> &tables, int i, std::string_view text) {
  const Validator validator = validatorOf(tables, i);
  if (validator == nullptr) return false;
  Entry entry(text);
  try {
    return validator(entry.text(), &tables.values[i]) == 0;
  } catch (...) {
    tables.type.flags.valid[i] = 0;
    throw;
  }
}

// An empty text of a mandatory field is not handed over, and not acceptable.
template <typename Value, typename Validator>
bool isAcceptable(const ValueTables<Value, Validator> &tables, int i, std::string_view text) {
  const bool isMissing = text.empty() && tables.type.flags.mandatory[i] != 0;
  return !isMissing && accept(tables, i, text);
}

// The same for what a person entered: an empty text of an optional field is acceptable as it is.
template <typename Value, typename Validator>
bool entryIsAcceptable(const ValueTables<Value, Validator> &tables, int i, std::string_view text) {
  return text.empty() ? tables.type.flags.mandatory[i] == 0 : accept(tables, i, text);
}

}  // namespace korvel::dialogs

#endif
