// SPDX-License-Identifier: MIT
// Writes the tables that the benchmarks search, and the same rows as a database.
#include "bench/tables/corpus.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <utility>

#include <sqlite3.h>

#include <korvel/desktop.h>
#include <korvel/tables.h>

namespace korvel::bench {
namespace {

namespace fs = std::filesystem;

std::string line(const Corpus &table, int i) {
  const std::string front = table.code(i) + "," + table.label(i);
  return table.isNarrow ? front : front + "," + Corpus::group(i) + ",01/01/95,31/12/99";
}

void writeTable(const Corpus &table) {
  const std::string unfinished = table.path + ".new";
  {
    std::ofstream out(unfinished, std::ios::binary);
    out << "Actes\r\nVersion: 1\r\n#DEBUT\r\n";
    for (int i = 0; i < table.lines; ++i) out << line(table, i) << "\r\n";
    out << "#FIN\r\n";
  }
  fs::rename(unfinished, table.path);
}

void execute(sqlite3 *database, const char *statement) {
  if (sqlite3_exec(database, statement, nullptr, nullptr, nullptr) != SQLITE_OK) {
    std::fprintf(stderr, "%s: %s\n", statement, sqlite3_errmsg(database));
    std::exit(1);
  }
}

void writeDatabase(const Corpus &table, const std::string &path, const char *last) {
  const std::string unfinished = path + ".new";
  fs::remove(unfinished);
  sqlite3 *database = nullptr;
  sqlite3_open(unfinished.c_str(), &database);
  execute(database, "create table t(code, label, class, start, finish); begin");
  sqlite3_stmt *insert = nullptr;
  sqlite3_prepare_v2(database, "insert into t values(?, ?, ?, '01/01/95', '31/12/99')", -1, &insert,
                     nullptr);
  for (int i = 0; i < table.lines; ++i) {
    sqlite3_bind_text(insert, 1, table.code(i).c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(insert, 2, table.label(i).c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(insert, 3, Corpus::group(i).c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  execute(database, last);
  sqlite3_close(database);
  fs::rename(unfinished, path);
}

Corpus made(int lines, bool isNarrow) {
  const fs::path folder = fs::path(BENCH_TABLES) / "Data" / "tables";
  fs::create_directories(folder);
  std::snprintf(szVolumes, sizeof szVolumes, "%s", BENCH_TABLES);
  std::snprintf(szDirTables, sizeof szDirTables, "Data:tables");
  std::string name = isNarrow ? "n" : "t";
  name += std::to_string(lines);
  const Corpus table = {lines,
                        isNarrow,
                        name,
                        folder / (name + ".tab"),
                        folder / (name + ".db"),
                        folder / (name + "-indexed.db")};
  if (!fs::exists(table.path)) writeTable(table);
  if (!fs::exists(table.database)) writeDatabase(table, table.database, "commit");
  if (!fs::exists(table.indexed)) {
    writeDatabase(table, table.indexed, "create index codes on t(code); commit");
  }
  return table;
}

}  // namespace

std::string Corpus::code(int line) const {
  char text[16];
  std::snprintf(text, sizeof text, "%0*d", static_cast<int>(std::to_string(lines).size()), line);
  return text;
}

std::string Corpus::label(int line) const { return "Acte de soins " + code(line); }

std::string Corpus::group(int line) {
  char text[16];
  std::snprintf(text, sizeof text, "B%d", line * 7 % 20);
  return text;
}

namespace {

const Corpus &corpusOf(int lines, bool isNarrow) {
  static std::map<std::pair<int, bool>, Corpus> all;
  const std::pair key(lines, isNarrow);
  const auto found = all.find(key);
  return found != all.end() ? found->second : all.emplace(key, made(lines, isNarrow)).first->second;
}

}  // namespace

const Corpus &corpus(int lines) { return corpusOf(lines, false); }
const Corpus &narrowCorpus(int lines) { return corpusOf(lines, true); }

}  // namespace korvel::bench
