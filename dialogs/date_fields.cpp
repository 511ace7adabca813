// SPDX-License-Identifier: MIT
// Date fields, each of three items for day, month and year, and the validation of a date. A date is
// the number yyyymmdd.
#include <array>
#include <iterator>
#include <optional>
#include <string>

#include <korvel/codecs.h>

#include "codecs/integer.h"
#include "codecs/status.h"
#include "dates/calendar.h"
#include "dialogs/build.h"
#include "dialogs/callbacks.h"
#include "dialogs/misuse.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"
#include "dialogs/value_fields.h"

constinit int DDB = 0;
constinit int DDB_N = 0;
constinit int DDB_ID_DATE = 0;
constinit short DDB_x[20] = {};
constinit short DDB_y[20] = {};
constinit short DDB_cx[20] = {};
constinit short DDB_cy[20] = {};
constinit short DDB_rk[20] = {};
constinit int DDB_bInit[20] = {};
constinit int DDB_bMand[20] = {};
constinit int DDB_bOK[20] = {};
constinit int DDB_lDates[20] = {};
constinit ValidInt_t vd_tab[20] = {};
constinit ValidInt_t *vd = vd_tab;

namespace korvel::dialogs {

namespace {

constexpr int kParts = 3;

// The parts of a date, in the order of its items.
std::array<int, kParts> partsOf(int date) {
  return {date % 100, date / 100 % 100, date / 10000 % 10000};
}

// Wraps as 32-bit arithmetic does.
int dateOf(int day, int month, int year) {
  return static_cast<int>(day + 100LL * month + 10000LL * year);
}

int readDate(char *text, int *value) {
  constexpr int kNoCalendarDate = KorvelNoDayStatus;
  const int status = codecs::readIntegerFrom(0, text, codecs::kLimit32, value);
  return status == 0 && !dates::isCalendarDate(*value) ? kNoCalendarDate : status;
}

int readAny(char *text, int *value) { return codecs::readInteger(text, codecs::kLimit32, value); }

int readUnchecked(char *text, int *value) {
  return codecs::readIntegerFrom(0, text, codecs::kLimit32, value);
}

constinit OwnValidator<ValidInt_t> ownValidators[20] = {};
constexpr ValueTables<int, ValidInt_t> kTables{kDateFields, DDB_lDates, &vd, ownValidators};
constexpr OwnValidator<ValidInt_t> kAnyDate = {intcod_l, readAny};
constexpr OwnValidator<ValidInt_t> kValidators[] = {{intcod_l_sup0, readUnchecked},
                                                    {intcod_l_date, readDate}};  // by mode

// Where each part begins and ends, in pixels from the left.
struct Span {
  int from;
  int to;
};
constexpr Span kSpans[kParts] = {{0, 20}, {30, 50}, {60, 100}};

// The three items keep their distances where the date is held inside the dialog.
int add(Builder &builder, int i) {
  Rect date = fieldRect(kDateFields, i);
  date.right = date.left + kSpans[kParts - 1].to;
  date = heldInside(date, builder.size);
  int last = 0;
  for (const auto &[from, to] : kSpans) {
    const Rect part{date.left + from, date.top, date.left + to, date.bottom};
    last = builder.dialog.addItem(platform::ItemKind::EditText, part, "");
  }
  return last - (kParts - 1);
}

void show(Screen &screen, int i) {
  int item = itemOf(kDateFields, i);
  for (const int part : partsOf(DDB_lDates[i])) screen.setText(item++, DecimalText(part).view());
}

void clear(Screen &screen, int i) {
  const int first = itemOf(kDateFields, i);
  for (int item = first; item < first + kParts; ++item) screen.setText(item, "");
}

void select(Screen &screen, int i) {
  const int first = itemOf(kDateFields, i);
  for (int item = first; item < first + kParts; ++item) screen.select(item);
}

void fill(Screen &screen, int i) {
  screen.setDateParts(itemOf(kDateFields, i));
  if (DDB_bInit[i] != 0) {
    show(screen, i);
    select(screen, i);
  } else {
    clear(screen, i);
    if (DDB_bMand[i] != 0) DDB_bOK[i] = 0;
  }
}

// The value of a part as it was entered, or nothing for an error.
// Kept: an empty part of an optional date and a negative part are no errors.
std::optional<int> readPart(const Screen &screen, int item, bool isMandatory) {
  std::string text = screen.text(item);
  if (isMandatory && text.empty()) return std::nullopt;
  int value = 0;
  return codecs::readInteger(text.data(), codecs::kLimit32, &value) > 1 ? std::nullopt
                                                                        : std::optional(value);
}

bool acceptParts(const Screen &screen, int i) {
  const int item = itemOf(kDateFields, i);
  const bool isMandatory = DDB_bMand[i] != 0;
  const auto day = readPart(screen, item, isMandatory);
  const auto month = readPart(screen, item + 1, isMandatory);
  const auto year = readPart(screen, item + 2, isMandatory);
  if (!day || !month || !year) return false;
  // Kept: a date with a part below 1 is acceptable as it is, and not stored.
  if (*day < 1 || *month < 1 || *year < 1) return true;
  return accept(kTables, i, DecimalText(dateOf(*day, *month, *year)).view());
}

Hit hit(Screen &screen, int i) {
  DDB_bOK[i] = acceptParts(screen, i) ? 1 : 0;
  return Hit::Edited;
}

bool storedIsAcceptable(int i) {
  return isAcceptable(kTables, i, DecimalText(DDB_lDates[i]).view());
}

}  // namespace

constinit const FieldType kDateFields{
    .name = "date field",
    .definedBy = "DateDlgBox_param",
    .capacity = std::size(DDB_x),
    .itemsPerField = kParts,
    .use = {&DDB, &DDB_N, &DDB_ID_DATE},
    .place = {DDB_x, DDB_y, DDB_cx, DDB_cy, DDB_rk},
    .flags = {DDB_bInit, DDB_bMand, DDB_bOK},
    .add = add,
    .fill = fill,
    .hit = hit,
    .show = show,
    .clear = clear,
    .storedIsAcceptable = storedIsAcceptable,
};

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int DateDlgBox_param(int n, int idFirst) {
  lookForMisuse([=] { needsCount(Call("DateDlgBox_param", {n, idFirst}), kDateFields, n); });
  return define(kTables, n, idFirst, kAnyDate) ? 0 : kRefused;
}

int DateDlgBox_set(int i, int yyyymmdd, int mode) {
  lookForMisuse([=] {
    needsMode(Call("DateDlgBox_set", {i, yyyymmdd, mode}), kDateFields, i, mode,
              std::size(kValidators));
  });
  set(kTables, i, yyyymmdd, kValidators, mode);
  return 0;
}

int DateDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk) {
  lookForMisuse([=] {
    needsPlace(Call("DateDlgBox_set_geo", {i, x, y, cx, cy, rk}), kDateFields, i,
               {x, y, cx, cy, rk}, rk);
  });
  place(kDateFields, i, x, y, cx, cy, rk);
  return 0;
}

int DateDlgBox_set_fvalid(int i, ValidInt_t function) {
  lookForMisuse([=] {
    needsFieldInUse(Call("DateDlgBox_set_fvalid", {i, given(function)}), kDateFields, i);
  });
  setValidator(kTables, i, function);
  return 0;
}

int DateDlgBox_retrieve(int i, int *out) {
  lookForMisuse([=] { needsField(Call("DateDlgBox_retrieve", {i, filled(out)}), kDateFields, i); });
  retrieve(kTables, i, out);
  return 0;
}

int DateDlgBox_mandatory(int i, int on) {
  lookForMisuse([=] { needsFieldInUse(Call("DateDlgBox_mandatory", {i, on}), kDateFields, i); });
  setMandatory(kDateFields, i, on);
  return 0;
}

int DateDlgBox_get_valid(int i) {
  lookForMisuse([=] { needsField(Call("DateDlgBox_get_valid", {i}), kDateFields, i); });
  return validFlag(kDateFields, i);
}

int DateDlgBox_global(int i) {
  lookForMisuse([=] { needsField(Call("DateDlgBox_global", {i}), kDateFields, i); });
  callGlobalFor(kDateFields, i);
  return 0;
}

int intcod_l_date(char *text, int *value) {
  lookForMisuse([=] { Call("intcod_l_date", {text, filled(value)}).needsAll(); });
  return text == nullptr || value == nullptr ? korvel::codecs::kEmpty : readDate(text, value);
}
