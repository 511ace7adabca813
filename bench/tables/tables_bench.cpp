// SPDX-License-Identifier: MIT
// Lookups and searches in tables of a hundred lines to a million, beside what else would find the
// line, beside the mere reading of the file ("limit") and beside the mere opening of it ("open").
// The files are in the system's cache. Every table but the widest is kept in memory from the third
// call on; "read" is what the library does before that.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include <korvel/tables.h>

#include "bench/support/ratios.h"
#include "bench/tables/corpus.h"
#include "bench/tables/peers.h"

namespace {

using benchmark::State;
using korvel::bench::Corpus;
using korvel::bench::corpus;
using korvel::bench::goal;
using korvel::bench::narrowCorpus;
using korvel::bench::openAndClose;
using korvel::bench::outputOf;
using korvel::bench::Query;
using korvel::bench::readAndScan;
using korvel::bench::streamLookup;

// Registers one way to do a workload. It must give the answer that all of them give.
using Way = std::function<std::string()>;
auto *add(const std::string &workload, const std::string &who, const std::string &answer,
          const Way &way) {
  return benchmark::RegisterBenchmark((workload + "/" + who).c_str(), [=](State &state) {
    // The third call keeps what is to be kept.
    for (int i = 0; i < 3; ++i) {
      if (way() != answer) return state.SkipWithError("wrong answer");
    }
    for (auto _ : state) benchmark::DoNotOptimize(way());
  });
}

// The same for a way that runs a program, whose time only the clock shows.
void addProgram(const std::string &workload, const std::string &who, const std::string &answer,
                const Way &way) {
  add(workload, who, answer, way)->UseRealTime();
}

// Both goals of a workload: to the limit and to the best peer.
void goals(const std::string &workload, double limit, const std::string &peer, double best) {
  goal(workload, "limit", limit);
  goal(workload, peer, best);
}

void addLimit(const std::string &workload, const Corpus &table) {
  benchmark::RegisterBenchmark((workload + "/limit").c_str(), [&table](State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(readAndScan(table.path));
  });
}

// The same workload as if nothing were kept.
void addRead(const std::string &workload, const std::string &answer, const Way &way) {
  add(workload, "read", answer, [way] {
    KorvelForgetTables();
    return way();
  });
}

std::string grepped(const std::string &options, const std::string &pattern, const Corpus &table) {
  return outputOf("LC_ALL=C grep -m1 " + options + " '" + pattern + "' " + table.path);
}

// The field of a line of the table, by its number; "" of no line.
std::string field(const std::string &line, int number) {
  std::size_t begin = 0;
  for (; number > 0 && !line.empty(); --number) begin = line.find(',', begin) + 1;
  return line.substr(begin, line.find_first_of(",\r\n", begin) - begin);
}

// --- Lookup --------------------------------------------------------------------------------------

std::string lookup(const Corpus &table, const std::string &key) {
  char out[64] = "";
  ZRV_Libelle_NC(key.data(), static_cast<int>(key.size()), 1, table.name.c_str(), out, sizeof out);
  return out;
}

// A key for the "like" of SQLite.
std::string sqlPattern(std::string key) {
  for (char &c : key) c = c == '?' ? '_' : c;
  return key;
}

// A query on the table's database, which is opened once.
template <typename... Text>
Way scan(const Corpus &table, const char *statement, const Text &...parameters) {
  const auto query = std::make_shared<Query>(table.database, statement);
  return [=] { return (*query)(parameters...); };
}

// The key as the library has it, and as a pattern for grep.
struct Key {
  std::string text;
  std::string pattern;
};

// answer: "" for a miss.
void addLookup(const std::string &workload, const Corpus &table, const Key &key,
               const std::string &answer) {
  const Way way = [=, &table] { return lookup(table, key.text); };
  add(workload, "korvel", answer, way);
  addRead(workload, answer, way);
  add(workload, "open", answer,
      [=, &table] { return openAndClose(table.path) ? answer : std::string(); });
  addLimit(workload, table);
  add(workload, "ifstream", answer, [=, &table] { return streamLookup(table.path, key.text); });
  const bool exact = key.text == key.pattern;
  add(workload, "sqlite3", answer,
      scan(table,
           exact ? "select label from t where code = ? limit 1"
                 : "select label from t where code like ? limit 1",
           sqlPattern(key.text)));
  if (exact) {
    const auto query =
        std::make_shared<Query>(table.indexed, "select label from t where code = ? limit 1");
    add(workload, "sqlite3 index", answer, [=] { return (*query)(key.text); });
  }
  addProgram(workload, "grep", answer,
             [=, &table] { return field(grepped("", "^" + key.pattern + "[,+]", table), 1); });
}

// Two calls after a change of the table.
void addFirstTwo(const std::string &workload, const Corpus &table) {
  const std::string code = table.code(table.middle());
  const auto once = [=, &table] {
    KorvelForgetTables();
    return lookup(table, code);
  };
  const std::string label = table.label(table.middle());
  add(workload, "korvel", label, [=, &table] {
    once();
    return lookup(table, code);
  });
  add(workload, "read twice", label, [=] {
    once();
    return once();
  });
}

void addLookups(const Corpus &table, const std::string &name) {
  const std::string code = table.code(table.middle());
  const std::string label = table.label(table.middle());
  const std::string front = code.substr(0, code.size() - 1);
  const std::string absent(code.size(), '9');
  addLookup("lookup " + name + ", hit", table, {code, code}, label);
  addLookup("lookup " + name + ", '?' in the key", table, {front + "?", front + "."}, label);
  addLookup("lookup " + name + ", miss", table, {absent, absent}, "");
}

// --- Search --------------------------------------------------------------------------------------

using LabelSearch = int(const char *label, int column, const char *table, char *out, int outSize);

std::string search(LabelSearch *function, const Corpus &table, const std::string &label) {
  char out[64] = "";
  const int found = function(label.c_str(), 1, table.name.c_str(), out, sizeof out);
  return found == 1 ? out : "";
}

void addSearches(int lines, const std::string &name) {
  const Corpus &table = corpus(lines);
  const std::string code = table.code(table.middle());
  const std::string label = table.label(table.middle());

  const std::string exact = "search " + name;
  const Way way = [=, &table] { return search(ZRV_Code_NC, table, label); };
  add(exact, "korvel", code, way);
  addRead(exact, code, way);
  addLimit(exact, table);
  add(exact, "sqlite3", code, scan(table, "select code from t where label = ? limit 1", label));
  addProgram(exact, "grep -F", code,
             [=, &table] { return field(grepped("-F", "," + label + ",", table), 0); });

  std::string capitals = label;
  for (char &c : capitals) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  const std::string anyCase = "search " + name + ", any case";
  const Way anyCaseWay = [=, &table] { return search(ZRV_CodeNCS_NC, table, capitals); };
  add(anyCase, "korvel", code, anyCaseWay);
  addRead(anyCase, code, anyCaseWay);
  addLimit(anyCase, table);
  add(anyCase, "sqlite3", code,
      scan(table, "select code from t where label = ? collate nocase limit 1", capitals));
  addProgram(anyCase, "grep -i", code,
             [=, &table] { return field(grepped("-i -F", "," + capitals + ",", table), 0); });
}

// One of two labels, the second one by its beginning, and a value of another column. Both labels
// are in the middle; the value rules the first one out.
void addCriteria(int lines, const std::string &name) {
  const Corpus &table = corpus(lines);
  const int wanted = table.middle() + 10;
  const std::string other = table.label(table.middle());
  const std::string prefix = table.label(wanted).substr(0, table.label(wanted).size() - 1);
  const std::string value = Corpus::group(wanted);
  const std::string workload = "criteria " + name;
  add(workload, "korvel", table.code(wanted), [=, &table] {
    const std::string starred = prefix + "*";
    const char *labels[] = {other.c_str(), starred.c_str(), value.c_str(), nullptr};
    const int columns[] = {1, 1, 2, -1};
    char out[64] = "";
    const int found = ZRV_Code_NC_ex(labels, columns, table.name.c_str(), out, sizeof out);
    return std::string(found == 1 ? out : "");
  });
  addLimit(workload, table);
  add(workload, "sqlite3", table.code(wanted),
      scan(table,
           "select code from t where (label = ? or substr(label, 1, length(?2)) = ?2) and "
           "class = ?3 limit 1",
           other, prefix, value));
  addProgram(workload, "mawk", table.code(wanted), [=, &table] {
    const std::string program = "mawk -F, '($2 == \"" + other + "\" || index($2, \"" + prefix +
                                "\") == 1) && $3 == \"" + value + "\" { print; exit }' ";
    return field(outputOf(program + table.path), 0);
  });
}

const bool registered = [] {
  addLookups(corpus(100), "100 lines");
  addLookups(corpus(36000), "36,000 lines");
  addLookups(narrowCorpus(1000000), "1,000,000 lines");
  for (const char *name : {"100 lines", "36,000 lines", "1,000,000 lines"}) {
    for (const char *kind : {", hit", ", miss"}) {
      goal(std::string("lookup ") + name + kind, "open", 1.4);
      goal(std::string("lookup ") + name + kind, "sqlite3 index", 1.0);
    }
  }
  goals("lookup 36,000 lines, '?' in the key", 1.6, "ifstream", 0.2);
  goal("lookup 36,000 lines, '?' in the key", "read", 0.7);
  addFirstTwo("first two lookups, 36,000 lines", corpus(36000));
  goal("first two lookups, 36,000 lines", "read twice", 1.1);
  // Too large to be kept.
  addLookups(corpus(1000000), "1,000,000 wide lines");
  goals("lookup 1,000,000 wide lines, hit", 0.8, "grep", 0.5);
  goals("lookup 1,000,000 wide lines, '?' in the key", 0.8, "grep", 0.5);
  goals("lookup 1,000,000 wide lines, miss", 1.4, "grep", 1.4);
  addSearches(36000, "36,000 lines");
  addSearches(1000000, "1,000,000 lines");
  goals("search 36,000 lines", 2.0, "sqlite3", 0.25);
  goals("search 36,000 lines, any case", 3.0, "sqlite3", 0.3);
  goal("search 36,000 lines", "read", 0.7);
  goal("search 36,000 lines, any case", "read", 0.7);
  goals("search 1,000,000 lines", 1.0, "grep -F", 0.7);
  addCriteria(36000, "36,000 lines");
  goals("criteria 36,000 lines", 7.0, "sqlite3", 0.35);
  return true;
}();

}  // namespace

KORVEL_BENCH_MAIN()
