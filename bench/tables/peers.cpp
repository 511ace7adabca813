// SPDX-License-Identifier: MIT
// The other ways to find or replace a line, against which the library is measured.
#include "bench/tables/peers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvel::bench {

bool readAndScan(const std::string &path) {
  constexpr std::size_t kBlock = 256 * 1024;
  constexpr char kAbsent = '\x01';
  // As the kernel copies best; some bytes further some processors take six times as long.
  alignas(4096) static char block[kBlock];
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  bool found = false;
  ssize_t got = 0;
  do {
    got = read(file, block, kBlock);
    found |= got > 0 && std::memchr(block, kAbsent, static_cast<std::size_t>(got)) != nullptr;
  } while (got == static_cast<ssize_t>(kBlock));
  close(file);
  return found;
}

bool openAndClose(const std::string &path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status;
  const bool isThere = fstat(file, &status) == 0;
  close(file);
  return isThere;
}

namespace {

bool matches(const std::string &key, const std::string &line) {
  return std::equal(key.begin(), key.end(), line.begin(),
                    [](char wanted, char c) { return wanted == c || wanted == '?'; });
}

}  // namespace

std::string streamLookup(const std::string &path, const std::string &key) {
  std::ifstream in(path, std::ios::binary);
  std::string line;
  while (std::getline(in, line)) {
    const std::size_t end = line.find(',');
    if (end != key.size() || !matches(key, line)) continue;
    return line.substr(end + 1, line.find_first_of(",\r", end + 1) - end - 1);
  }
  return {};
}

std::string outputOf(const std::string &command) {
  std::string output;
  std::FILE *pipe = popen(command.c_str(), "r");
  char piece[4096];
  while (const std::size_t got = std::fread(piece, 1, sizeof piece, pipe))
    output.append(piece, got);
  pclose(pipe);
  return output;
}

Query::Query(const std::string &database, const char *statement) {
  if (sqlite3_open_v2(database.c_str(), &database_, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK ||
      sqlite3_prepare_v2(database_, statement, -1, &statement_, nullptr) != SQLITE_OK) {
    std::fprintf(stderr, "%s: %s\n", statement, sqlite3_errmsg(database_));
    std::exit(1);
  }
}

Query::~Query() {
  sqlite3_finalize(statement_);
  sqlite3_close(database_);
}

void Query::bind(int place, const std::string &text) {
  sqlite3_bind_text(statement_, place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

std::string Query::firstValue() {
  std::string value;
  if (sqlite3_step(statement_) == SQLITE_ROW) {
    value = reinterpret_cast<const char *>(sqlite3_column_text(statement_, 0));
  }
  sqlite3_reset(statement_);
  return value;
}

}  // namespace korvel::bench
