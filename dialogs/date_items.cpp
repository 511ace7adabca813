// Date fields on the screen: three items, for day, month and year.
#include <string>

#include <korvel/codecs.h>

#include "dialogs/field_items.h"
#include "dialogs/field_values.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"

namespace korvel::dialogs {

namespace {

constexpr int kParts = 3;

// One part as it was entered.
struct Part {
  int value = 0;
  bool isError = false;
};

void writeParts(Screen &screen, int firstItem, int date) {
  const int parts[kParts] = {date % 100, date / 100 % 100, date / 10000 % 10000};
  for (int part = 0; part < kParts; ++part) {
    screen.setText(firstItem + part, DecimalText::ofDate(parts[part]).view());
  }
}

void emptyParts(Screen &screen, int firstItem) {
  for (int part = 0; part < kParts; ++part) screen.setText(firstItem + part, "");
}

void selectParts(Screen &screen, int firstItem) {
  for (int part = 0; part < kParts; ++part) screen.select(firstItem + part);
}

void fill(Screen &screen, int i) {
  const int firstItem = itemOf(kDates, i);
  screen.setDateParts(firstItem);
  if (DDB_bInit[i] == 0) {
    emptyParts(screen, firstItem);
    if (DDB_bMand[i] != 0) DDB_bOK[i] = 0;
    return;
  }
  writeParts(screen, firstItem, DDB_lDates[i]);
  selectParts(screen, firstItem);
  if (!storedDateIsAcceptable(i)) DDB_bOK[i] = 0;
}

// Kept: an empty or negative part (status 1) is no error by itself.
Part readPart(const Screen &screen, int item, bool mandatory) {
  std::string text = screen.text(item);
  Part part;
  if (mandatory && text.empty()) {
    part.isError = true;
  } else {
    part.isError = intcod_l_sup0(text.data(), &part.value) > 1;
  }
  return part;
}

// Wraps as 32-bit arithmetic does.
int dateOf(int day, int month, int year) {
  return static_cast<int>(day + 100LL * month + 10000LL * year);
}

bool acceptParts(const Screen &screen, int i) {
  const int firstItem = itemOf(kDates, i);
  const bool mandatory = DDB_bMand[i] != 0;
  const Part day = readPart(screen, firstItem, mandatory);
  const Part month = readPart(screen, firstItem + 1, mandatory);
  const Part year = readPart(screen, firstItem + 2, mandatory);
  if (day.isError || month.isError || year.isError) return false;
  // Kept: a date with a part below 1 is acceptable as it is, and not stored.
  if (day.value < 1 || month.value < 1 || year.value < 1) return true;
  return acceptDate(i, DecimalText::ofDate(dateOf(day.value, month.value, year.value)).view());
}

Hit handle(Screen &screen, int i) {
  DDB_bOK[i] = acceptParts(screen, i) ? 1 : 0;
  return Hit::Edited;
}

void show(Screen &screen, int i) {
  writeParts(screen, itemOf(kDates, i), DDB_lDates[i]);
  DDB_bOK[i] = storedDateIsAcceptable(i) ? 1 : 0;
}

void clear(Screen &screen, int i) {
  emptyParts(screen, itemOf(kDates, i));
  DDB_bOK[i] = DDB_bMand[i] != 0 ? 0 : 1;
}

}  // namespace

constexpr FieldType kDateType{&kDates, fill, handle, show, clear};

}  // namespace korvel::dialogs
