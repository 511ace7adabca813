// SPDX-License-Identifier: MIT
// For tests/tables/: a tables directory of their own, and the state as it was at the start.
#ifndef KORVEL_TESTS_TABLES_TABLES_H
#define KORVEL_TESTS_TABLES_TABLES_H

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/tables.h>

#include "strings/machine.h"
#include "tables/kept.h"
#include "tables/reader.h"
#include "tests/files/volumes.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {

// A seed for random calls, another one in each run. A failing test prints its seed; with that in
// KORVEL_SEED the same calls come again.
inline unsigned randomSeed() {
  const char *wanted = std::getenv("KORVEL_SEED");
  return wanted != nullptr ? static_cast<unsigned>(std::atoll(wanted)) : std::random_device{}();
}

// Tables that stay in memory as they do for an application, always, or never.
inline constexpr tables::Keeping kKeepings[] = {tables::Keeping::WhenAskedAgain,
                                                tables::Keeping::Always, tables::Keeping::Never};

// The lines, each ended by CR LF.
inline std::string lines(std::initializer_list<std::string_view> texts) {
  std::string all;
  for (const std::string_view text : texts) all.append(text).append("\r\n");
  return all;
}

// The fields of the line buffer, with '|' between them.
inline std::string fieldsOfBuffer() {
  std::string fields;
  const char *at = ZRV_Libelle_NC_szBuffer;
  const char *end = at + sizeof ZRV_Libelle_NC_szBuffer;
  while (at < end && *at != '\0') {
    const std::string_view field(at, strnlen(at, static_cast<std::size_t>(end - at)));
    if (!fields.empty()) fields += '|';
    fields += field;
    at += field.size() + 1;
  }
  return fields;
}

// The folder Data:tables is szDirTables, no other directory is chosen, no line is the current one.
class Tables : public testing::Test {
 protected:
  Tables() {
    KorvelForgetTables();
    mkdir(volumes_.posix("tables").c_str(), 0777);
    setText(szDirTables, "Data:tables");
    setText(ZRV_Libelle_NC_szDirTables, "");
    std::memset(ZRV_Libelle_NC_szBuffer, 0, sizeof ZRV_Libelle_NC_szBuffer);
    ZRV_Libelle_NC_il = 0;
    ZRV_Libelle_NC_read = 0;
  }

  template <std::size_t Size>
  static void setText(char (&to)[Size], const std::string &text) {
    std::snprintf(to, Size, "%s", text.c_str());
  }

  // Writes the table of a name.
  void table(const std::string &name, std::string_view bytes) const {
    volumes_.file("tables/" + name + ".tab", bytes);
  }
  std::string posixPath(const std::string &name) const {
    return volumes_.posix("tables/" + name + ".tab");
  }

  Volumes volumes_;

 private:
  Restored<char[256]> defaultDirectory_{szDirTables};
  Restored<char[256]> chosenDirectory_{ZRV_Libelle_NC_szDirTables};
  Restored<char[1024]> buffer_{ZRV_Libelle_NC_szBuffer};
  Restored<int> line_{ZRV_Libelle_NC_il};
  Restored<int> read_{ZRV_Libelle_NC_read};
  Restored<std::size_t> block_{tables::TableReader::blockSize};
  Restored<bool> avx2_{strings::avx2Allowed};
  Restored<tables::Keeping> keeping_{tables::keeping};
};

// What a call gave.
struct Answer {
  int result;
  std::string out;

  friend bool operator==(const Answer &, const Answer &) = default;
  friend std::ostream &operator<<(std::ostream &to, const Answer &answer) {
    return to << answer.result << " \"" << answer.out << '"';
  }
};

// What out holds before the call.
inline constexpr char kUntouched[] = "-";

// Makes call(out, outSize) with a buffer of that size and sees that nothing around it changes.
template <typename Call>
Answer answerOf(Call call, int size = 64) {
  PoisonedBuffer out(static_cast<std::size_t>(size));
  std::snprintf(out.data(), static_cast<std::size_t>(size), "%s", kUntouched);
  const int result = call(out.data(), out.capacity());
  EXPECT_TRUE(out.guardsIntact());
  return {result, std::string(out.text())};
}

inline Answer lookUp(std::string_view key, int column, const char *table, int size = 64) {
  return answerOf(
      [&](char *out, int outSize) {
        return ZRV_Libelle_NC(key.data(), static_cast<int>(key.size()), column, table, out,
                              outSize);
      },
      size);
}
inline Answer lookUpNext(std::string_view key, int column, const char *table) {
  return answerOf([&](char *out, int outSize) {
    return ZRV_Libelle_NC_next(key.data(), static_cast<int>(key.size()), column, table, out,
                               outSize);
  });
}
inline Answer idem(int keyLength, int column, const char *table) {
  return answerOf([&](char *out, int outSize) {
    return ZRV_Libelle_NC_idem("??", keyLength, column, table, out, outSize);
  });
}
inline Answer idem0(int keyLength, int column, const char *table) {
  return answerOf([&](char *out, int outSize) {
    return ZRV_Libelle_NC_idem_0("??", keyLength, column, table, out, outSize);
  });
}
inline Answer lookUpDate(std::string_view key, int column, const char *table, int dateColumn,
                         int date) {
  return answerOf([&](char *out, int outSize) {
    return ZRV_Libelle_NC_dates(key.data(), static_cast<int>(key.size()), column, table, out,
                                outSize, dateColumn, date);
  });
}

// One of the searches by label.
using LabelSearch = int(const char *label, int column, const char *table, char *out, int outSize);
inline Answer search(LabelSearch *function, const std::string &label, int column,
                     const char *table) {
  return answerOf(
      [&](char *out, int outSize) { return function(label.c_str(), column, table, out, outSize); });
}

// Criteria as the two lists that the searches take.
struct Criterion {
  const char *label;
  int column;
};
class CriteriaLists {
 public:
  explicit CriteriaLists(const std::vector<Criterion> &criteria) {
    for (const Criterion &one : criteria) {
      labels_.push_back(one.label);
      columns_.push_back(one.column);
    }
    labels_.push_back(nullptr);
    columns_.push_back(-1);
  }
  const char *const *labels() const { return labels_.data(); }
  const int *columns() const { return columns_.data(); }

 private:
  std::vector<const char *> labels_;
  std::vector<int> columns_;
};
using CriteriaSearch = int(const char *const *labels, const int *columns, const char *table,
                           char *out, int outSize);
inline Answer search(CriteriaSearch *function, const std::vector<Criterion> &criteria,
                     const char *table) {
  const CriteriaLists lists(criteria);
  return answerOf([&](char *out, int outSize) {
    return function(lists.labels(), lists.columns(), table, out, outSize);
  });
}

// The line state: number, read flag, fields.
struct State {
  int line;
  int read;
  std::string fields;

  friend bool operator==(const State &, const State &) = default;
  friend std::ostream &operator<<(std::ostream &to, const State &state) {
    return to << state.line << ' ' << state.read << " \"" << state.fields << '"';
  }
};
inline State state() { return {ZRV_Libelle_NC_il, ZRV_Libelle_NC_read, fieldsOfBuffer()}; }

}  // namespace korvel::test

#endif
