// SPDX-License-Identifier: MIT
// From a code to its label: the lookups, the further columns of the line found, and the choice
// among the lines of a code by their validity periods.
#include <span>
#include <string_view>

#include <korvel/tables.h>

#include "base/views.h"
#include "codecs/num.h"
#include "dates/texts.h"
#include "strings/compare.h"
#include "strings/copy.h"
#include "tables/line.h"
#include "tables/misuse.h"
#include "tables/pattern.h"
#include "tables/state.h"
#include "tables/walk.h"

namespace korvel::tables {
namespace {

using Out = std::span<char>;

class CodeTest final : public LineTest {
 public:
  CodeTest(std::string_view key, int skipped)
      : LineTest(key, lineWithCode(key), skipped), key_(key) {
    if (canBeField(key) && key.find('?') == key.npos) code_ = key;
  }
  bool accepts(std::string_view text) const override {
    return strings::matches(key_, codeOf(text));
  }

 private:
  std::string_view key_;
};

class NumberTest final : public LineTest {
 public:
  explicit NumberTest(int line) : LineTest(line < 1 ? kEveryLine : line - 1) {}
  bool accepts(std::string_view /*text*/) const override { return true; }
};

// Gives a field of the buffer. Returns whether there is one.
bool giveField(FieldChoice choice, Out out) {
  const ChosenField chosen = chosenField(bufferFields(), choice);
  strings::copyTerminated(out, chosen.field);
  return chosen.exists;
}

bool lookUp(std::string_view key, FieldChoice choice, From from, const char *table, Out out) {
  const bool found = search(CodeTest(key, skippedLines(from)), from, table).found;
  if (found) giveField(choice, out);
  return found;
}

bool lookUpFirst(std::string_view key, int column, const char *table, Out out) {
  return lookUp(key, {column == 0, column}, From::FirstLine, table, out);
}

bool lookUpNext(std::string_view key, int column, const char *table, Out out) {
  return lookUp(key, {false, column}, From::BehindCurrent, table, out);
}

bool lookUpNumber(int code, int column, const char *table, Out out) {
  char key[2];
  // A sign would fit before one digit, but is no part of a code.
  const bool hasKey = code >= 0 && codecs::writeNum(code, key) == 0;
  return lookUpFirst({key, hasKey ? sizeof key : 0}, column, table, out);
}

bool readAgain(FieldChoice choice, const char *table, Out out) {
  ZRV_Libelle_NC_read = 0;
  TableWalk walk;
  if (!walk.open(table)) return false;
  const bool found = walk.find(NumberTest(ZRV_Libelle_NC_il));
  if (!found && !walk.isWhole()) return false;
  ZRV_Libelle_NC_read = 1;
  if (found) {
    storeSplit(walk.kept());
    giveField(choice, out);
  } else if (walk.line() > 0) {
    // Kept: the last line is left as it was read.
    storeWhole(walk.kept());
  }
  return found;
}

bool readCurrent(FieldChoice choice, const char *table, Out out) {
  return ZRV_Libelle_NC_read == 0 ? readAgain(choice, table, out) : giveField(choice, out);
}

// A day of a validity period as YYYYMMDD; 0 where the current line names none.
int dayInColumn(FieldChoice choice, const char *table) {
  constexpr int kStoredWidth = 8;
  char shown[kStoredWidth + 1] = "";
  char stored[kStoredWidth + 1] = "";
  readCurrent(choice, table, shown);
  if (shown[0] == '\0') return 0;
  dates::storeShortDate(shown, stored);
  int day = 0;
  codecs::readNum({stored, kStoredWidth}, &day);
  return day;
}

struct Period {
  int start;
  int end;

  // Always, where it is open to a side.
  bool holds(int day) const { return start == 0 || end == 0 || (start <= day && day <= end); }
};

bool lookUpDay(std::string_view key, int column, const char *table, Out out, int dateColumn,
               int day) {
  const auto keyLength = static_cast<int>(key.size());
  const auto endColumn = static_cast<int>(static_cast<unsigned>(dateColumn) + 1U);
  bool found = lookUpFirst(key, column, table, out);
  while (found) {
    const Period period = {dayInColumn(currentLineChoice(keyLength, dateColumn), table),
                           dayInColumn(currentLineChoice(keyLength, endColumn), table)};
    if (period.holds(day)) return true;
    found = lookUpNext(key, column, table, out);
  }
  return false;
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel::base;
using namespace korvel::tables;

int ZRV_Libelle_NC(const char *key, int keyLength, int column, const char *table, char *out,
                   int outSize) {
  const auto work = [=] {
    return lookUpFirst(bytesOf(key, keyLength), column, table, roomOf(out, outSize));
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldKeyLookup(
          Call("ZRV_Libelle_NC",
               {shownRun(key, keyLength), keyLength, column, table, filled(out), outSize}),
          bytesOf(key, keyLength), {column == 0, column}, table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Libelle_2(int code, int column, const char *table, char *out, int outSize) {
  const auto work = [=] { return lookUpNumber(code, column, table, roomOf(out, outSize)); };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldNumberLookup(Call("ZRV_Libelle_2", {code, column, table, filled(out), outSize}),
                              code, column, table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Libelle_NC_idem(const char *key, int keyLength, int column, const char *table, char *out,
                        int outSize) {
  const auto work = [=] {
    return readCurrent(currentLineChoice(keyLength, column), table, roomOf(out, outSize));
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldCurrentLookup(Call("ZRV_Libelle_NC_idem", {orNull(filled(key)), keyLength, column,
                                                            table, filled(out), outSize}),
                               currentLineChoice(keyLength, column), table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Libelle_NC_idem_0(const char *key, int keyLength, int column, const char *table, char *out,
                          int outSize) {
  const auto work = [=] {
    return readAgain(currentLineChoice(keyLength, column), table, roomOf(out, outSize));
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldCurrentLookup(Call("ZRV_Libelle_NC_idem_0", {orNull(filled(key)), keyLength,
                                                              column, table, filled(out), outSize}),
                               currentLineChoice(keyLength, column), table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Libelle_NC_next(const char *key, int keyLength, int column, const char *table, char *out,
                        int outSize) {
  const auto work = [=] {
    return lookUpNext(bytesOf(key, keyLength), column, table, roomOf(out, outSize));
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldKeyLookup(Call("ZRV_Libelle_NC_next", {shownRun(key, keyLength), keyLength, column,
                                                        table, filled(out), outSize}),
                           bytesOf(key, keyLength), {false, column}, table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Libelle_NC_dates(const char *key, int keyLength, int column, const char *table, char *out,
                         int outSize, int dateColumn, int date) {
  const auto work = [=] {
    return lookUpDay(bytesOf(key, keyLength), column, table, roomOf(out, outSize), dateColumn,
                     date);
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldDayLookup(
          Call("ZRV_Libelle_NC_dates", {shownRun(key, keyLength), keyLength, column, table,
                                        filled(out), outSize, dateColumn, date}),
          bytesOf(key, keyLength), column, table, out, outSize, dateColumn, date, work);
    });
  return work() ? 1 : 0;
}
