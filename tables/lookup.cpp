// From a code to its label: the lookups, the further columns of the line found, and the choice
// among the lines of a code by their validity periods.
#include <algorithm>
#include <string_view>

#include <korvel/codecs.h>
#include <korvel/dates.h>
#include <korvel/strings.h>
#include <korvel/tables.h>

#include "tables/line.h"
#include "tables/pattern.h"
#include "tables/state.h"
#include "tables/walk.h"

namespace korvel::tables {
namespace {

std::string_view keyOf(const char *key, int length) {
  if (key == nullptr || length < 1) return {};
  return {key, static_cast<std::size_t>(length)};
}

class CodeTest final : public LineTest {
 public:
  CodeTest(std::string_view key, int skipped) : LineTest(skipped), key_(key) {
    const bool possible = !key.empty() && key.size() < kLineSize;
    if (possible) {
      pattern_ = lineWithCode(key);
    } else {
      skipped_ = kEveryLine;
    }
  }
  bool accepts(std::string_view text) const override {
    const std::string_view code = codeOf(text);
    return code.size() == key_.size() && szcompex(key_.data(), static_cast<int>(key_.size()),
                                                  code.data(), static_cast<int>(code.size())) == 1;
  }

 private:
  std::string_view key_;
};

class NumberTest final : public LineTest {
 public:
  explicit NumberTest(int line) : LineTest(line < 1 ? kEveryLine : line - 1) {}
  bool accepts(std::string_view /*text*/) const override { return true; }
};

// Of the idem functions only: no key means that column 0 is the code.
bool wantsCode(int keyLength, int column) { return keyLength == 0 && column == 0; }

SplitFields bufferFields() {
  return SplitFields({ZRV_Libelle_NC_szBuffer, sizeof ZRV_Libelle_NC_szBuffer});
}

int giveColumn(Column column, char *out, int outSize) {
  copyOut(column.field, out, outSize);
  return column.exists ? 1 : 0;
}

int lookUpFirst(std::string_view key, int column, const char *table, char *out, int outSize) {
  forgetLine();
  TableWalk walk;
  if (!walk.open(table)) return 0;
  const bool found = walk.find(CodeTest(key, 0));
  if (walk.line() > 0) storeSplit(walk.kept());
  // Kept: without a match the last line becomes the current one.
  setCurrentLine(walk.line());
  if (!found) return 0;
  if (column == 0) {
    copyOut(bufferFields().field(), out, outSize);
  } else {
    giveColumn(lookedUpColumn(bufferFields(), column), out, outSize);
  }
  return 1;
}

int lookUpNext(std::string_view key, int column, const char *table, char *out, int outSize) {
  TableWalk walk;
  if (!walk.open(table)) return 0;
  const bool found = walk.find(CodeTest(key, std::max(ZRV_Libelle_NC_il, 0)));
  if (walk.line() > 0) storeSplit(walk.kept());
  if (!found) return 0;
  giveColumn(lookedUpColumn(bufferFields(), column), out, outSize);
  setCurrentLine(walk.line());
  return 1;
}

int readCurrent(int keyLength, int column, const char *table, char *out, int outSize) {
  ZRV_Libelle_NC_read = 0;
  TableWalk walk;
  if (!walk.open(table)) return 0;
  const bool found = walk.find(NumberTest(ZRV_Libelle_NC_il));
  ZRV_Libelle_NC_read = 1;
  if (!found) {
    // Kept: the last line is left as it was read.
    if (walk.line() > 0) storeWhole(walk.kept());
    return 0;
  }
  storeSplit(walk.kept());
  if (wantsCode(keyLength, column)) {
    copyOut(bufferFields().field(), out, outSize);
  } else {
    giveColumn(lookedUpColumn(bufferFields(), column), out, outSize);
  }
  return 1;
}

int readBuffered(int keyLength, int column, char *out, int outSize) {
  if (!wantsCode(keyLength, column)) {
    return giveColumn(lookedUpColumn(bufferFields(), column), out, outSize);
  }
  copyOut(bufferFields().field(), out, outSize);
  return 1;
}

// A day of a validity period as YYYYMMDD; 0 where the current line names none.
int dayInColumn(const char *key, int keyLength, int column, const char *table) {
  constexpr int kStoredWidth = 8;
  char shown[kStoredWidth + 1] = "";
  char stored[kStoredWidth + 1] = "";
  ZRV_Libelle_NC_idem(key, keyLength, column, table, shown, sizeof shown);
  if (shown[0] == '\0') return 0;
  ZRV_Build_Date_short(shown, stored);
  int day = 0;
  NUMToLong(stored, kStoredWidth, &day);
  return day;
}

struct Period {
  int start;
  int end;

  bool isOpen() const { return start == 0 || end == 0; }
  bool holds(int day) const { return isOpen() || (start <= day && day <= end); }
};

}  // namespace
}  // namespace korvel::tables

using namespace korvel::tables;

int ZRV_Libelle_NC(const char *key, int keyLength, int column, const char *table, char *out,
                   int outSize) {
  return lookUpFirst(keyOf(key, keyLength), column, table, out, outSize);
}

int ZRV_Libelle_2(int code, int column, const char *table, char *out, int outSize) {
  constexpr int kWidth = 2;
  char key[kWidth];
  // A sign would fit before one digit, but is no part of a code.
  const bool hasKey = code >= 0 && LongToNUM(code, key, kWidth) == 0;
  return lookUpFirst(keyOf(key, hasKey ? kWidth : 0), column, table, out, outSize);
}

int ZRV_Libelle_NC_idem(const char *key, int keyLength, int column, const char *table, char *out,
                        int outSize) {
  if (ZRV_Libelle_NC_read == 0) {
    return ZRV_Libelle_NC_idem_0(key, keyLength, column, table, out, outSize);
  }
  return readBuffered(keyLength, column, out, outSize);
}

int ZRV_Libelle_NC_idem_0(const char * /*key*/, int keyLength, int column, const char *table,
                          char *out, int outSize) {
  return readCurrent(keyLength, column, table, out, outSize);
}

int ZRV_Libelle_NC_next(const char *key, int keyLength, int column, const char *table, char *out,
                        int outSize) {
  return lookUpNext(keyOf(key, keyLength), column, table, out, outSize);
}

int ZRV_Libelle_NC_dates(const char *key, int keyLength, int column, const char *table, char *out,
                         int outSize, int dateColumn, int date) {
  int found = ZRV_Libelle_NC(key, keyLength, column, table, out, outSize);
  const auto endColumn = static_cast<int>(static_cast<unsigned>(dateColumn) + 1U);
  while (found == 1) {
    const Period period = {dayInColumn(key, keyLength, dateColumn, table),
                           dayInColumn(key, keyLength, endColumn, table)};
    if (period.holds(date)) return 1;
    found = ZRV_Libelle_NC_next(key, keyLength, column, table, out, outSize);
  }
  return 0;
}

int ZRV_Libelle_NC_get_ligne(void) { return ZRV_Libelle_NC_il; }

void ZRV_Libelle_NC_set_ligne(int line) {
  ZRV_Libelle_NC_il = line;
  ZRV_Libelle_NC_read = 0;
}
