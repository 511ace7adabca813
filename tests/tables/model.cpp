// SPDX-License-Identifier: MIT
// The model of lookup and search: reads a table byte by byte into the line buffer and splits it
// there.
#include "tests/tables/model.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <korvel/codecs.h>
#include <korvel/dates.h>
#include <korvel/strings.h>

namespace korvel::test {
namespace {

void copyOut(std::string_view text, char *out, int outSize) {
  if (out == nullptr || outSize < 1) return;
  int n = 0;
  for (; n < outSize - 1 && n < static_cast<int>(text.size()); ++n) {
    out[n] = text[static_cast<std::size_t>(n)];
  }
  out[n] = '\0';
}

std::string withoutColon(std::string directory) {
  if (!directory.empty() && directory.back() == ':') directory.pop_back();
  return directory;
}

}  // namespace

int ModelHandles::take() {
  if (highest + 1 < kCount) {
    ++highest;
    used[static_cast<std::size_t>(highest)] = true;
    return highest;
  }
  for (int i = 0; i < kCount; ++i) {
    if (!used[static_cast<std::size_t>(i)]) {
      used[static_cast<std::size_t>(i)] = true;
      return i;
    }
  }
  if (leftOpen.empty()) return -1;
  return leftOpen.extract(leftOpen.begin()).value();
}

void ModelHandles::giveBack(int handle) {
  used[static_cast<std::size_t>(handle)] = false;
  if (handle == highest) highest = handle - 1;
}

bool modelMatches(std::string_view a, std::string_view b) {
  if (a.empty() || b.empty() || a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && a[i] != '?' && b[i] != '?') return false;
  }
  return true;
}

// Stated byte by byte: which bytes must be there, and which of them may differ.
bool modelMatchesWithStar(std::string_view a, std::string_view b) {
  if (a.empty() || b.empty()) return false;
  const bool starOfA = a.back() == '*' && b.size() + 1 >= a.size();
  const bool starOfB = !starOfA && b.back() == '*' && a.size() + 1 >= b.size();
  if (!starOfA && !starOfB && a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
    if (starOfA && i + 1 == a.size()) break;
    if (starOfB && i + 1 == b.size()) break;
    const bool isExcused = starOfA && i + 2 == a.size() && b[i] == '*';
    if (a[i] != b[i] && a[i] != '?' && b[i] != '?' && !isExcused) return false;
  }
  return true;
}

std::optional<std::size_t> modelReadLine(ModelBytes &bytes, char *buffer, std::size_t size) {
  std::size_t length = 0;
  char line[4096];
  for (;;) {
    const std::optional<char> c = bytes.get();
    if (!c && length == 0) return std::nullopt;
    if (!c || *c == '\r') break;
    if (*c == '\n') continue;
    if (length < size - 1) line[length++] = *c;
  }
  std::memcpy(buffer, line, length);
  buffer[length] = '\0';
  if (length + 1 < size) buffer[length + 1] = '\0';
  return length;
}

void modelSplit(char *buffer, std::size_t size) {
  const std::size_t length = strnlen(buffer, size);
  if (size - 1 <= length) {
    buffer[size - 2] = '\0';
    buffer[size - 1] = '\0';
  } else {
    buffer[length + 1] = '\0';
  }
  const std::size_t textLength = strnlen(buffer, size);
  for (std::size_t i = 0; i < textLength; ++i) {
    if (buffer[i] == ',' || buffer[i] == '+') buffer[i] = '\0';
  }
}

// Takes the memory slot as the loading does, and gives it back at its end.
class TableModel::Walk {
 public:
  explicit Walk(TableModel &model, const char *table) : model_(model), bytes_({}) {
    const std::optional<std::string> path = model.pathOf(table);
    if (!path) return;
    const int file = model.fileHandles.take();
    if (file < 0) return;
    const auto found = model.files.find(*path);
    if (found == model.files.end()) {
      // The counter stays raised.
      model.fileHandles.used[static_cast<std::size_t>(file)] = false;
      return;
    }
    memory_ = model.memoryHandles.take();
    if (memory_ >= 0) bytes_ = ModelBytes(found->second);
    model.fileHandles.giveBack(file);
  }
  ~Walk() {
    if (memory_ >= 0) model_.memoryHandles.giveBack(memory_);
  }
  Walk(const Walk &) = delete;
  Walk &operator=(const Walk &) = delete;

  bool loaded() const { return memory_ >= 0; }
  int lines() const { return lines_; }

  // Reads the next line into the model's buffer.
  bool next() {
    const auto length = modelReadLine(bytes_, model_.ZRV_Libelle_NC_szBuffer.data(),
                                      model_.ZRV_Libelle_NC_szBuffer.size());
    if (!length) return false;
    model_.bufferUsed_ = std::min(*length + 2, model_.ZRV_Libelle_NC_szBuffer.size());
    ++lines_;
    return true;
  }

 private:
  TableModel &model_;
  ModelBytes bytes_;
  int memory_ = -1;
  int lines_ = 0;
};

std::optional<std::string> TableModel::pathOf(const char *table) const {
  if (table == nullptr) return std::nullopt;
  std::string path;
  if (ZRV_Libelle_NC_szDirTables.empty()) {
    const auto directory = directories.find(withoutColon(szDirTables));
    if (directory == directories.end() || !directory->second) return std::nullopt;
    path = withoutColon(szDirTables) + ":" + table + ".tab";
  } else {
    path = withoutColon(ZRV_Libelle_NC_szDirTables) + ":" + table;
  }
  if (path.size() > 255) return std::nullopt;
  return path;
}

void TableModel::split() {
  modelSplit(ZRV_Libelle_NC_szBuffer.data(), ZRV_Libelle_NC_szBuffer.size());
}

std::string_view TableModel::itemText(std::size_t item) const {
  const char *text = ZRV_Libelle_NC_szBuffer.data() + item;
  return {text, strnlen(text, ZRV_Libelle_NC_szBuffer.size() - item)};
}

// The item for a column: `column` - 1 steps from the first, staying on the last; then one more,
// if there is one.
std::size_t TableModel::itemAt(std::size_t item, int column, bool &exists) const {
  const auto next = [this](std::size_t at) {
    const std::size_t end = at + itemText(at).size();
    const bool last = end == at || end + 1 >= ZRV_Libelle_NC_szBuffer.size() ||
                      ZRV_Libelle_NC_szBuffer[end + 1] == '\0';
    return last ? at : end + 1;
  };
  // More steps than there are bytes change nothing.
  const int steps = column <= 0 ? 1024 : std::min(column - 1, 1024);
  for (int i = 0; i < steps; ++i) item = next(item);
  exists = next(item) != item;
  return next(item);
}

void TableModel::giveCode(char *out, int outSize) const { copyOut(itemText(0), out, outSize); }

bool TableModel::giveColumn(int column, char *out, int outSize) const {
  bool exists = false;
  const std::size_t item = itemAt(0, column, exists);
  copyOut(exists ? itemText(item) : std::string_view(), out, outSize);
  return exists;
}

int TableModel::ZRV_Libelle_NC(std::string_view key, int column, const char *table, char *out,
                               int outSize) {
  ZRV_Libelle_NC_il = 0;
  ZRV_Libelle_NC_read = 0;
  Walk walk(*this, table);
  if (!walk.loaded()) return 0;
  bool found = false;
  while (!found && walk.next()) {
    split();
    found = modelMatches(key, itemText(0));
  }
  ZRV_Libelle_NC_il = walk.lines();
  ZRV_Libelle_NC_read = 1;
  if (!found) return 0;
  if (column == 0) {
    giveCode(out, outSize);
  } else {
    giveColumn(column, out, outSize);
  }
  return 1;
}

int TableModel::ZRV_Libelle_2(int code, int column, const char *table, char *out, int outSize) {
  const std::string digits = std::to_string(code);
  const bool hasKey = code >= 0 && digits.size() <= 2;
  const std::string key = digits.size() < 2 ? "0" + digits : digits;
  return ZRV_Libelle_NC(hasKey ? std::string_view(key) : std::string_view(), column, table, out,
                        outSize);
}

int TableModel::ZRV_Libelle_NC_idem(int keyLength, int column, const char *table, char *out,
                                    int outSize) {
  if (ZRV_Libelle_NC_read == 0) {
    return ZRV_Libelle_NC_idem_0(keyLength, column, table, out, outSize);
  }
  if (keyLength == 0 && column == 0) {
    giveCode(out, outSize);
    return 1;
  }
  return giveColumn(column, out, outSize) ? 1 : 0;
}

int TableModel::ZRV_Libelle_NC_idem_0(int keyLength, int column, const char *table, char *out,
                                      int outSize) {
  ZRV_Libelle_NC_read = 0;
  Walk walk(*this, table);
  if (!walk.loaded()) return 0;
  bool found = false;
  while (!found && walk.next()) found = walk.lines() == ZRV_Libelle_NC_il;
  ZRV_Libelle_NC_read = 1;
  if (!found) return 0;
  split();
  if (keyLength == 0 && column == 0) {
    giveCode(out, outSize);
  } else {
    giveColumn(column, out, outSize);
  }
  return 1;
}

int TableModel::ZRV_Libelle_NC_next(std::string_view key, int column, const char *table, char *out,
                                    int outSize) {
  Walk walk(*this, table);
  if (!walk.loaded()) return 0;
  while (walk.next()) {
    split();
    if (walk.lines() <= ZRV_Libelle_NC_il || !modelMatches(key, itemText(0))) continue;
    giveColumn(column, out, outSize);
    ZRV_Libelle_NC_il = walk.lines();
    ZRV_Libelle_NC_read = 1;
    return 1;
  }
  return 0;
}

int TableModel::dayOf(int keyLength, int column, const char *table) {
  char shown[9] = "";
  ZRV_Libelle_NC_idem(keyLength, column, table, shown, sizeof shown);
  if (shown[0] == '\0') return 0;
  int parts[3] = {};
  char behind = '\0';
  const bool isDate =
      std::strspn(shown, "0123456789/") == 8 && shown[2] == '/' && shown[5] == '/' &&
      std::sscanf(shown, "%2d/%2d/%2d%c", &parts[0], &parts[1], &parts[2], &behind) == 3;
  if (isDate) {
    return (parts[2] < 50 ? 2000 + parts[2] : 1900 + parts[2]) * 10000 + parts[1] * 100 + parts[0];
  }
  // What else is in a column is a number by the conversions, which have models of their own.
  char stored[9] = "";
  ZRV_Build_Date_short(shown, stored);
  int day = 0;
  NUMToLong(stored, 8, &day);
  return day;
}

int TableModel::ZRV_Libelle_NC_dates(std::string_view key, int column, const char *table, char *out,
                                     int outSize, int dateColumn, int date) {
  const auto keyLength = static_cast<int>(key.size());
  if (ZRV_Libelle_NC(key, column, table, out, outSize) == 0) return 0;
  int start = dayOf(keyLength, dateColumn, table);
  int end = dayOf(keyLength, dateColumn + 1, table);
  if (start == 0 || end == 0) return 1;
  if (start <= date && end >= date) return 1;
  for (;;) {
    if (ZRV_Libelle_NC_next(key, column, table, out, outSize) == 0) return 0;
    start = dayOf(keyLength, dateColumn, table);
    end = dayOf(keyLength, dateColumn + 1, table);
    if (start == 0 || end == 0) return 1;
    if (date < start) continue;
    if (date <= end) return 1;
  }
}

void TableModel::ZRV_Libelle_NC_set_ligne(int line) {
  ZRV_Libelle_NC_il = line;
  ZRV_Libelle_NC_read = 0;
}

template <typename Match>
int TableModel::search(bool fromFirst, const char *table, char *out, int outSize, Match match) {
  if (fromFirst) {
    ZRV_Libelle_NC_il = 0;
    ZRV_Libelle_NC_read = 0;
  }
  Walk walk(*this, table);
  if (!walk.loaded()) return 0;
  while (walk.next()) {
    split();
    giveCode(out, outSize);
    if (!fromFirst && walk.lines() <= ZRV_Libelle_NC_il) continue;
    if (!match()) continue;
    ZRV_Libelle_NC_il = walk.lines();
    ZRV_Libelle_NC_read = 1;
    return 1;
  }
  if (fromFirst) {
    ZRV_Libelle_NC_il = walk.lines();
    ZRV_Libelle_NC_read = 1;
  }
  return 0;
}

int TableModel::ZRV_Code_NC(const char *label, int column, const char *table, char *out,
                            int outSize) {
  return search(true, table, out, outSize, [&] {
    bool exists = false;
    return modelMatches(label, itemText(itemAt(0, column, exists)));
  });
}

int TableModel::ZRV_Code_NC_next(const char *label, int column, const char *table, char *out,
                                 int outSize) {
  return search(false, table, out, outSize, [&] {
    bool exists = false;
    return modelMatches(label, itemText(itemAt(0, column, exists)));
  });
}

int TableModel::ZRV_CodeNCS_NC(const char *label, int column, const char *table, char *out,
                               int outSize) {
  char wanted[256] = "";
  if (std::strlen(label) < sizeof wanted) std::strcpy(wanted, label);
  strupr(wanted);
  return search(true, table, out, outSize, [&] {
    bool exists = false;
    const std::size_t item = itemAt(0, column, exists);
    strupr(ZRV_Libelle_NC_szBuffer.data() + item);
    return modelMatches(wanted, itemText(item));
  });
}

namespace {

// Criterion by criterion, in the order of the lists.
template <typename FieldOf>
bool meetsAll(const char *const *labels, const int *columns, FieldOf fieldOf) {
  std::size_t i = 0;
  while (columns[i] >= 0 && labels[i] != nullptr) {
    const int column = columns[i];
    bool met = false;
    for (; columns[i] == column && labels[i] != nullptr; ++i) {
      if (modelMatchesWithStar(labels[i], fieldOf(column))) met = true;
    }
    if (!met) return false;
  }
  return true;
}

}  // namespace

int TableModel::ZRV_Code_NC_ex(const char *const *labels, const int *columns, const char *table,
                               char *out, int outSize) {
  return search(true, table, out, outSize, [&] {
    return meetsAll(labels, columns, [&](int column) {
      bool exists = false;
      return itemText(column == 0 ? 0 : itemAt(0, column, exists));
    });
  });
}

int TableModel::ZRV_Code_NC_ex_next(const char *const *labels, const int *columns,
                                    const char *table, char *out, int outSize) {
  return search(false, table, out, outSize, [&] {
    return meetsAll(labels, columns, [&](int column) {
      bool exists = false;
      return itemText(column == 0 ? 0 : itemAt(0, column, exists));
    });
  });
}

}  // namespace korvel::test
