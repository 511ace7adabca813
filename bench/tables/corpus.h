// SPDX-License-Identifier: MIT
// For bench/tables/ only: the tables that the programs work on.
#ifndef KORVEL_BENCH_TABLES_CORPUS_H
#define KORVEL_BENCH_TABLES_CORPUS_H

#include <string>

namespace korvel::bench {

// A table of `lines` data lines, some 42 bytes each, codes in order and as wide as the last one:
//   01234,Acte de soins 01234,B3,01/01/95,31/12/99
// Column 1 occurs once, column 2 goes through twenty values. A narrow table has the code and column
// 1 alone: a million of its lines are small enough to be kept.
struct Corpus {
  int lines;
  bool isNarrow;
  std::string name;      // of the table, in the volume's folder "tables"
  std::string path;      // POSIX path of the table
  std::string database;  // the same rows for SQLite, without an index
  std::string indexed;   // and with one of the codes

  std::string code(int line) const;
  std::string label(int line) const;
  static std::string group(int line);

  int middle() const { return lines / 2; }
};

// The table, made where it is not there yet; szVolumes and szDirTables lead to it.
const Corpus &corpus(int lines);
const Corpus &narrowCorpus(int lines);

}  // namespace korvel::bench

#endif
