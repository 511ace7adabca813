// SPDX-License-Identifier: MIT
// For bench/tables/ only: what else finds a line of a table, and what it costs to read one at all.
#ifndef KORVEL_BENCH_TABLES_PEERS_H
#define KORVEL_BENCH_TABLES_PEERS_H

#include <string>

#include <sqlite3.h>

namespace korvel::bench {

// Reads the file in large blocks and looks for a byte that it does not hold: no reader of the whole
// file can do less.
bool readAndScan(const std::string &path);

// Opens the file, asks for its status and closes it: nobody who wants to know whether it has
// changed can do less.
bool openAndClose(const std::string &path);

// Reads lines by the standard library and compares their first field with the key. Returns the
// second field of the line found.
std::string streamLookup(const std::string &path, const std::string &key);

// What a command prints, to its end.
std::string outputOf(const std::string &command);

// A statement over the table "t" of a database that stays open. Its parameters are texts.
class Query {
 public:
  Query(const std::string &database, const char *statement);
  ~Query();
  Query(const Query &) = delete;
  Query &operator=(const Query &) = delete;

  // The first column of the first row; "" for none.
  template <typename... Text>
  std::string operator()(const Text &...parameters) {
    int place = 0;
    (bind(++place, parameters), ...);
    return firstValue();
  }

 private:
  void bind(int place, const std::string &text);
  std::string firstValue();

  sqlite3 *database_ = nullptr;
  sqlite3_stmt *statement_ = nullptr;
};

}  // namespace korvel::bench

#endif
