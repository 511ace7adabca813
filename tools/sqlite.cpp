// SPDX-License-Identifier: MIT
// An export as an SQLite database of one table, with an index on its code.
#include <memory>

#include <sqlite3.h>

#include "tools/export.h"
#include "tools/failure.h"
#include "tools/newfile.h"
#include "tools/progress.h"

namespace korvel::tools {
namespace {

class Database {
 public:
  // place: how messages call it.
  Database(const std::string &path, std::string place) : place_(std::move(place)) {
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open(path.c_str(), &opened);
    connection_.reset(opened);
    check(result);
  }

  void run(const std::string &sql) {
    check(sqlite3_exec(connection_.get(), sql.c_str(), nullptr, nullptr, nullptr));
  }

  // sql: one statement, with a parameter for each column of a row.
  void prepare(const std::string &sql) {
    sqlite3_stmt *prepared = nullptr;
    check(sqlite3_prepare_v2(connection_.get(), sql.c_str(), -1, &prepared, nullptr));
    statement_.reset(prepared);
  }

  // Runs it with a row. Columns that the row does not have are NULL.
  void insert(const std::vector<std::string> &row) {
    sqlite3_clear_bindings(statement_.get());
    for (std::size_t i = 0; i < row.size(); ++i) {
      check(sqlite3_bind_text(statement_.get(), static_cast<int>(i) + 1, row[i].data(),
                              static_cast<int>(row[i].size()), SQLITE_STATIC));
    }
    sqlite3_step(statement_.get());
    check(sqlite3_reset(statement_.get()));
  }

 private:
  void check(int result) const {
    if (result == SQLITE_OK) return;
    throw Failure(kFailed, place_ + ": " + sqlite3_errmsg(connection_.get()));
  }

  struct Close {
    void operator()(sqlite3 *connection) const { sqlite3_close(connection); }
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
  };

  const std::string place_;
  std::unique_ptr<sqlite3, Close> connection_;
  std::unique_ptr<sqlite3_stmt, Close> statement_;
};

std::string parameters(std::size_t count) {
  std::string list = "?";
  for (std::size_t i = 1; i < count; ++i) list += ", ?";
  return list;
}

void fill(Database &database, const ExportedTable &table) {
  Progress progress(table.rows());
  // Until it is whole nobody reads it, and a half of it is thrown away: no journal is needed.
  database.run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN;");
  database.run("CREATE TABLE " + identifier(table.name()) + " (" + columnList(table, " TEXT") +
               ");");
  database.prepare("INSERT INTO " + identifier(table.name()) + " VALUES (" +
                   parameters(table.columns().size()) + ");");
  for (std::size_t i = 0; i < table.rows(); ++i) {
    database.insert(table.row(i));
    progress.at(i + 1);
  }
  database.run(indexStatement(table) + " COMMIT;");
}

}  // namespace

void writeSqlite(const ExportedTable &table, const std::string &place) {
  NewFile file(place, usualMode());
  {
    Database database(file.path(), place);
    fill(database, table);
  }
  file.commit();
}

}  // namespace korvel::tools
