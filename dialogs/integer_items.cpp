// Integer fields on the screen.
#include <string>

#include "dialogs/field_items.h"
#include "dialogs/field_values.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"

namespace korvel::dialogs {

namespace {

void writeMask(Screen &screen, int item, int i, std::size_t length) {
  screen.setMask(item, length);
  IDB_lPassw[i] = static_cast<short>(length);
}

void write(Screen &screen, int item, int i) {
  const DecimalText text = DecimalText::ofInteger(IDB_iInts[i]);
  if (IDB_bPassw[i] != 0) {
    writeMask(screen, item, i, text.view().size());
  } else {
    screen.setText(item, text.view());
  }
}

void empty(Screen &screen, int item, int i) {
  screen.setText(item, "");
  if (IDB_bPassw[i] != 0) IDB_lPassw[i] = 0;
}

void fill(Screen &screen, int i) {
  const int item = itemOf(kInts, i);
  if (IDB_bPassw[i] != 0) screen.keepSecret(item);
  if (IDB_bInit[i] == 0) {
    if (IDB_bMand[i] == 0) return;
    empty(screen, item, i);
    IDB_bOK[i] = 0;
    return;
  }
  write(screen, item, i);
  screen.select(item);
  if (!storedIntegerIsAcceptable(i)) IDB_bOK[i] = 0;
}

// The text behind stars, each of which stands for a digit of the value, counted from the end.
// Kept: a text that did not grow is taken to have lost its last character.
std::string unmasked(std::string_view shown, std::string_view value, bool hasGrown) {
  std::string text(shown);
  int digit = static_cast<int>(value.size()) - (hasGrown ? 1 : 2);
  for (auto c = text.rbegin(); c != text.rend(); ++c) {
    if (*c != '*') continue;
    *c = digit < 0 ? '0' : value[static_cast<std::size_t>(digit)];
    --digit;
  }
  return text;
}

std::string readMasked(Screen &screen, int item, int i, std::string_view shown) {
  const DecimalText value = DecimalText::ofInteger(IDB_iInts[i]);
  const bool hasGrown = static_cast<long long>(shown.size()) > IDB_lPassw[i];
  std::string text = unmasked(shown, value.view(), hasGrown);
  writeMask(screen, item, i, shown.size());
  return text;
}

Hit handle(Screen &screen, int i) {
  const int item = itemOf(kInts, i);
  std::string text = screen.text(item);
  if (IDB_bPassw[i] != 0) text = readMasked(screen, item, i, text);
  if (text.empty()) {
    IDB_bOK[i] = IDB_bMand[i] != 0 ? 0 : 1;
  } else {
    IDB_bOK[i] = acceptInteger(i, text) ? 1 : 0;
  }
  return Hit::Edited;
}

void show(Screen &screen, int i) {
  write(screen, itemOf(kInts, i), i);
  IDB_bOK[i] = storedIntegerIsAcceptable(i) ? 1 : 0;
}

void clear(Screen &screen, int i) {
  empty(screen, itemOf(kInts, i), i);
  IDB_bOK[i] = IDB_bMand[i] != 0 ? 0 : 1;
}

}  // namespace

constexpr FieldType kIntType{&kInts, fill, handle, show, clear};

}  // namespace korvel::dialogs
