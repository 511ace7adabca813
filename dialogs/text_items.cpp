// Text fields on the screen: edit text, pop-up or list, by the kind of their item.
#include <algorithm>
#include <string>

#include "dialogs/callbacks.h"
#include "dialogs/field_items.h"
#include "dialogs/field_values.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"
#include "dialogs/stored_text.h"

namespace korvel::dialogs {

using platform::ItemKind;

namespace {

constexpr std::string_view kChoiceSeparators = "+,";
constexpr std::string_view kRowSeparators = "$";

// The pieces between separators; always at least one.
std::vector<std::string_view> split(std::string_view list, std::string_view separators) {
  std::vector<std::string_view> pieces;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = list.find_first_of(separators, begin);
    pieces.push_back(list.substr(begin, end - begin));
    if (end == std::string_view::npos) return pieces;
    begin = end + 1;
  }
}

std::vector<std::string_view> choicesOf(int i) {
  return split(storedText(kChoices, i), kChoiceSeparators);
}

// Unlike a pop-up, which has one empty choice then, a list without a text has no rows.
std::vector<std::string_view> rowsOf(int i) {
  const std::string_view rows = storedText(kChoices, i);
  return rows.empty() ? std::vector<std::string_view>() : split(rows, kRowSeparators);
}

void writeEdit(Screen &screen, int item, int i) {
  const std::string_view text = storedText(kFieldTexts, i);
  if (TDB_bPassw[i] != 0) {
    screen.setMask(item, text.size());
  } else {
    screen.setText(item, text);
  }
}

void fillEdit(Screen &screen, int item, int i) {
  writeEdit(screen, item, i);
  screen.select(item);
}

void fillPopUp(Screen &screen, int item, int i) {
  screen.addChoices(item, choicesOf(i), storedText(kFieldTexts, i));
}

void fillList(Screen &screen, int item, int i) { screen.addRows(item, rowsOf(i)); }

void fill(Screen &screen, int i) {
  const int item = itemOf(kTexts, i);
  if (TDB_bPassw[i] != 0) screen.keepSecret(item);
  if (TDB_bInit[i] == 0) {
    // Kept: a field never set keeps its flag, even when it is mandatory.
    screen.setText(item, "");
    return;
  }
  const ItemKind kind = screen.kind(item);
  if (kind == ItemKind::EditText) fillEdit(screen, item, i);
  if (kind == ItemKind::PopUp && TDBC[i] == 1) fillPopUp(screen, item, i);
  if (kind == ItemKind::ListBox && TDBL[i] == 1) fillList(screen, item, i);
  if (!storedTextIsAcceptable(i)) TDB_bOK[i] = 0;
}

std::string readItem(const Screen &screen, int item) {
  switch (screen.kind(item)) {
    case ItemKind::EditText:
      return screen.text(item);
    case ItemKind::PopUp:
      return screen.choice(item);
    case ItemKind::ListBox:
      return screen.clickedRow(item);
    default:
      return {};
  }
}

// The text behind stars, each of which stands for the character that was at its position.
// Kept: positions count from the start wherever the text was changed. A star behind the end of the
// previous text stands for that end, and ends the text.
std::string unmasked(std::string_view shown, std::string_view previous) {
  std::string text;
  for (const char c : shown) {
    if (c == '*' && text.size() >= previous.size()) break;
    text += c == '*' ? previous[text.size()] : c;
  }
  return text;
}

void store(int i, std::string_view text) {
  const bool isWhole = storeText(kFieldTexts, i, text);
  TDB_bOK[i] = isWhole && textLengthIsAcceptable(i, text.size()) ? 1 : 0;
}

Hit handle(Screen &screen, int i) {
  const int item = itemOf(kTexts, i);
  std::string text = readItem(screen, item);
  const bool accepts = screen.wasDoubleClicked(item);
  if (accepts && callFinal(screen.window()) == 0) return Hit::Refused;
  if (TDB_bPassw[i] != 0) {
    text = unmasked(text, storedText(kFieldTexts, i));
    screen.setMask(item, text.size());
  }
  store(i, text);
  return accepts ? Hit::Accepted : Hit::Edited;
}

void show(Screen &screen, int i) {
  const int item = itemOf(kTexts, i);
  const ItemKind kind = screen.kind(item);
  if (kind == ItemKind::EditText) writeEdit(screen, item, i);
  if (kind == ItemKind::PopUp) screen.choose(item, storedText(kFieldTexts, i));
  TDB_bOK[i] = storedTextIsAcceptable(i) ? 1 : 0;
}

void clear(Screen &screen, int i) {
  const int item = itemOf(kTexts, i);
  screen.setText(item, "");
  screen.chooseNumber(item, 0);
  TDB_bOK[i] = TDB_bMand[i] != 0 ? 0 : 1;
}

// The number, from 1, of the last choice equal to the text; 0 for none.
// Kept: counted in the list string, whatever entries the pop-up shows.
int numberInList(int i, std::string_view text) {
  const auto choices = choicesOf(i);
  const auto found = std::find(choices.rbegin(), choices.rend(), text);
  return static_cast<int>(choices.rend() - found);
}

}  // namespace

void changeText(Screen &screen, int i, std::string_view given) {
  const std::string text(given);  // which may stand in the very slice that is written
  const bool isWhole = storeText(kFieldTexts, i, text);
  const int item = itemOf(kTexts, i);
  const ItemKind kind = screen.kind(item);
  if (kind == ItemKind::EditText) writeEdit(screen, item, i);
  if (kind == ItemKind::PopUp && TDBC[i] == 1) {
    const int number = numberInList(i, text);
    if (number > 0) screen.chooseNumber(item, number);
  }
  // Kept: the flag is only ever cleared here.
  if (!isWhole || !textLengthIsAcceptable(i, text.size())) TDB_bOK[i] = 0;
}

void rebuildChoices(Screen &screen, int i) {
  const int item = itemOf(kTexts, i);
  if (TDBC[i] == 1) {
    screen.setChoices(item, choicesOf(i));
  } else if (TDBL[i] == 1) {
    screen.setRows(item, rowsOf(i));
  }
}

constexpr FieldType kTextType{&kTexts, fill, handle, show, clear};

}  // namespace korvel::dialogs
