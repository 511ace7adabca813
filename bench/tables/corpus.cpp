// Writes the tables that the benchmarks search, and the same rows as a database.
#include "bench/tables/corpus.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include <sqlite3.h>

#include <korvel/desktop.h>
#include <korvel/tables.h>

namespace korvel::bench {
namespace {

namespace fs = std::filesystem;

std::string line(const Corpus &table, int i) {
  return table.code(i) + "," + table.label(i) + "," + Corpus::group(i) + ",01/01/95,31/12/99";
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

void writeDatabase(const Corpus &table) {
  const std::string unfinished = table.database + ".new";
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
  execute(database, "commit");
  sqlite3_close(database);
  fs::rename(unfinished, table.database);
}

Corpus made(int lines) {
  const fs::path folder = fs::path(BENCH_TABLES) / "Data" / "tables";
  fs::create_directories(folder);
  std::snprintf(szVolumes, sizeof szVolumes, "%s", BENCH_TABLES);
  std::snprintf(szDirTables, sizeof szDirTables, "Data:tables");
  std::string name = "t";
  name += std::to_string(lines);
  const Corpus table = {lines, name, folder / (name + ".tab"), folder / (name + ".db")};
  if (!fs::exists(table.path)) writeTable(table);
  if (!fs::exists(table.database)) writeDatabase(table);
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

const Corpus &corpus(int lines) {
  static std::map<int, Corpus> all;
  const auto found = all.find(lines);
  return found != all.end() ? found->second : all.emplace(lines, made(lines)).first->second;
}

}  // namespace korvel::bench
