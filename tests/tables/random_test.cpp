// SPDX-License-Identifier: MIT
// Long random sequences of calls, each made on the library and on the model: results, buffers and
// exported state must agree after every one.
#include <random>
#include <span>

#include "tests/support/sanitizer.h"
#include "tests/tables/model.h"
#include "tests/tables/tables.h"

namespace korvel {
namespace {

using test::PoisonedBuffer;
using test::TableModel;

using Random = std::mt19937;

template <typename Range>
const auto &oneOf(Random &random, const Range &range) {
  return range[random() % std::size(range)];
}

bool chance(Random &random, unsigned percent) { return random() % 100 < percent; }

// --- Random tables -------------------------------------------------------------------------------

constexpr std::string_view kCodes[] = {"01", "02", "03", "07", "0?",    "?1",         "AB", "A",
                                       "",   "?",  "??", "a",  "\xE9t", "ABCDEFGHIJ", "A*", "*"};
constexpr std::string_view kLabels[] = {"Consultation",
                                        "consultation",
                                        "Consult*",
                                        "CONSULTATION",
                                        "Visite",
                                        "Vis?te",
                                        "visit\xE9",
                                        "visit\x8E",
                                        "VISITE",
                                        "",
                                        "*",
                                        "C*",
                                        "A",
                                        "B",
                                        "X",
                                        "?",
                                        "01/01/95",
                                        "31/12/99",
                                        "01/01/00",
                                        "31/12/49",
                                        "1/1",
                                        "xx/yy/zz",
                                        "\xFF\x80",
                                        "N\xE9"
                                        "ant"};
constexpr std::string_view kHeadings[] = {"Titre", "Version: 2", "#DEBUT", "#FIN"};
constexpr std::size_t kBorders[] = {253,  254,  255,  256,  257,  1020,
                                    1021, 1022, 1023, 1024, 1025, 1500};

std::string randomLine(Random &random) {
  if (chance(random, 8)) return std::string(oneOf(random, kHeadings));
  std::string line(oneOf(random, kCodes));
  for (auto n = random() % 5; n > 0; --n) {
    line += chance(random, 80) ? ',' : '+';
    line += oneOf(random, kLabels);
  }
  if (chance(random, 2)) {
    // A line of a length at one of the limits.
    const std::size_t length = oneOf(random, kBorders);
    if (chance(random, 50)) line.insert(0, std::string(length, 'A'));
    line.resize(length, chance(random, 50) ? 'A' : ',');
  }
  return line;
}

// How a table ends its lines.
enum class Style { CrLf, Cr, Lf, Mixed };

std::string_view lineEnd(Random &random, Style style) {
  constexpr std::string_view kEnds[] = {"\r\n", "\r", "\n", "\n\r", "\r\r", "\r\n\n"};
  switch (style) {
    case Style::CrLf:
      return "\r\n";
    case Style::Cr:
      return "\r";
    case Style::Lf:
      return "\n";
    default:
      return oneOf(random, kEnds);
  }
}

std::string randomTable(Random &random, unsigned mostLines) {
  constexpr Style kStyles[] = {Style::CrLf, Style::CrLf,  Style::CrLf,
                               Style::Cr,   Style::Mixed, Style::Lf};
  const Style style = oneOf(random, kStyles);
  std::string bytes;
  for (auto n = random() % (mostLines + 1); n > 0; --n) {
    bytes += randomLine(random);
    if (n > 1 || chance(random, 70)) bytes += lineEnd(random, style);
  }
  if (chance(random, 10)) bytes += '\n';
  if (!bytes.empty() && chance(random, 25)) {
    constexpr char kStray[] = {'\0', '\n', '\r', '?', ','};
    for (auto n = 1 + random() % 3; n > 0; --n) {
      bytes.insert(random() % bytes.size(), 1, oneOf(random, kStray));
    }
  }
  return bytes;
}

// --- Calls ---------------------------------------------------------------------------------------

std::string randomKey(Random &random) {
  std::string key(oneOf(random, chance(random, 92) ? std::span<const std::string_view>(kCodes)
                                                   : std::span(kHeadings)));
  if (chance(random, 3)) key.resize(oneOf(random, kBorders), 'A');
  if (!key.empty() && chance(random, 15)) key[random() % key.size()] = '?';
  if (chance(random, 2)) key += oneOf(random, std::string_view(",\n\r\0", 4));
  return key;
}

std::string randomLabel(Random &random) {
  std::string label(oneOf(
      random, chance(random, 85) ? std::span<const std::string_view>(kLabels) : std::span(kCodes)));
  if (chance(random, 3)) label.resize(oneOf(random, kBorders), 'A');
  if (!label.empty() && chance(random, 15)) label[random() % label.size()] = '?';
  if (chance(random, 5)) label += oneOf(random, std::string_view("*,A\n"));
  return label;
}

int randomColumn(Random &random) {
  constexpr int kOdd[] = {0, -1, INT_MIN, 7, 1000, INT_MAX};
  return chance(random, 88) ? 1 + static_cast<int>(random() % 4) : oneOf(random, kOdd);
}

int randomLineNumber(Random &random, unsigned mostLines) {
  constexpr int kOdd[] = {0, -1, INT_MIN, INT_MAX, 100};
  return chance(random, 90) ? static_cast<int>(random() % (mostLines * 2 / 3))
                            : oneOf(random, kOdd);
}

constexpr const char *kNames[] = {"t0", "t1", "t2", "t3", "t4", "t5", "t6", "missing"};
constexpr int kTables = 7;

class RandomCalls : public test::Tables {
 protected:
  explicit RandomCalls(unsigned mostLines = 39) : mostLines_(mostLines) {
    mkdir(volumes_.posix("others").c_str(), 0777);
    for (const char *directory : {"Data:tables", "Data:others"}) {
      model_.directories[directory] = true;
      for (int i = 0; i < kTables; ++i) rewrite(directory, i);
    }
    model_.szDirTables = szDirTables;
  }

  void rewrite(const std::string &directory, int i) {
    const std::string bytes = randomTable(random_, mostLines_);
    const std::string name = std::string(kNames[i]) + ".tab";
    // A new file: emptying an old one makes some file systems write it out at once.
    std::remove(volumes_.posix(directory.substr(5) + "/" + name).c_str());
    volumes_.file(directory.substr(5) + "/" + name, bytes);
    model_.files[directory + ":" + name] = bytes;
  }

  // Something the application does between two calls.
  void disturb() {
    constexpr const char *kDefaults[] = {"Data:tables", "Data:tables:", "Data:others",
                                         "Data:others", "Data:others:", "Data:no"};
    constexpr const char *kChosen[] = {"", "", "", "Data:tables:", "Data:others", "Data:no:"};
    switch (random_() % 12) {
      case 0:
        rewrite("Data:tables", static_cast<int>(random_() % kTables));
        break;
      case 1:
        rewrite("Data:others", static_cast<int>(random_() % kTables));
        break;
      case 2:
        model_.szDirTables = oneOf(random_, kDefaults);
        setText(szDirTables, model_.szDirTables);
        break;
      case 3:
        model_.ZRV_Libelle_NC_szDirTables = oneOf(random_, kChosen);
        setDirTables(model_.ZRV_Libelle_NC_szDirTables.c_str());
        break;
      case 4:
      case 5:
      case 6:
        holdSlots();
        break;
      default:
        releaseSlots();
    }
  }

  // Takes one more handle of each kind, as long as there are some.
  void holdSlots() {
    const int file = File_Open("Data:tables:t0.tab", 1, 0);
    EXPECT_EQ(file, model_.fileHandles.take());
    if (file >= 0) heldFiles_.push_back(file);
    const int memory = MFil_Open("", 0, 0);
    EXPECT_EQ(memory, model_.memoryHandles.take());
    if (memory >= 0) heldMemory_.push_back(memory);
  }
  void releaseSlots() {
    for (const int handle : heldFiles_) {
      File_Close(handle);
      model_.fileHandles.giveBack(handle);
    }
    for (const int handle : heldMemory_) {
      MFil_Close(handle);
      model_.memoryHandles.giveBack(handle);
    }
    heldFiles_.clear();
    heldMemory_.clear();
  }

  // The bytes of a buffer after the text: the same on both sides, or what was there before. A
  // search writes the code of each line on its way in the model, of the last one in the library.
  enum class Behind { Same, Untouched };

  // Makes one call on both sides, each with a buffer of its own.
  template <typename Call>
  void compareOut(const std::string &what, Call call, Behind behind = Behind::Same) {
    constexpr std::size_t kSizes[] = {0, 1, 2, 5, 12, 13, 64, 1100};
    const std::size_t size = oneOf(random_, kSizes);
    PoisonedBuffer out(size);
    PoisonedBuffer expected(size);
    const auto [result, expectedResult] = call(out, expected);
    ++calls_;
    successes_ += expectedResult;
    EXPECT_EQ(result, expectedResult) << what;
    EXPECT_TRUE(out.guardsIntact()) << what;
    EXPECT_EQ(out.text(), expected.text()) << what;
    if (behind == Behind::Same) {
      EXPECT_EQ(std::string_view(out.data(), size), std::string_view(expected.data(), size))
          << what;
    } else {
      EXPECT_TRUE(out.untouchedFrom(std::min(out.text().size() + 1, size))) << what;
    }
    compareState(what);
  }

  void compareState(const std::string &what) {
    EXPECT_EQ(ZRV_Libelle_NC_il, model_.ZRV_Libelle_NC_il) << what;
    EXPECT_EQ(ZRV_Libelle_NC_read, model_.ZRV_Libelle_NC_read) << what;
    EXPECT_EQ(std::string_view(ZRV_Libelle_NC_szBuffer, model_.bufferUsed()),
              std::string_view(model_.ZRV_Libelle_NC_szBuffer.data(), model_.bufferUsed()))
        << what;
    EXPECT_EQ(DATA_FILE_ID, model_.fileHandles.highest) << what;
    EXPECT_EQ(DATA_MFIL_ID, model_.memoryHandles.highest) << what;
  }

  void lookUpSomething();
  void searchSomething();
  void searchCriteria(const char *name);

  void run(int calls) {
    SCOPED_TRACE("KORVEL_SEED=" + std::to_string(seed_));
    for (int i = 0; i < calls && !HasFailure(); ++i) {
      if (chance(random_, 10)) disturb();
      chooseWayToRead();
      if (chance(random_, 55)) {
        lookUpSomething();
      } else {
        searchSomething();
      }
    }
    releaseSlots();
  }

  // Block seams anywhere, each of the kernels, and tables in memory or not.
  void chooseWayToRead() {
    constexpr std::size_t kBlocks[] = {1, 2, 7, 50, 333, 4096, 262144, 262144};
    tables::TableReader::blockSize = oneOf(random_, kBlocks);
    strings::avx2Allowed = chance(random_, 50);
    tables::keeping = oneOf(random_, keepings_);
  }

  unsigned mostLines_;  // of a table
  std::span<const tables::Keeping> keepings_ = test::kKeepings;
  const unsigned seed_ = test::randomSeed();
  Random random_{seed_};
  TableModel model_;
  int calls_ = 0;
  int successes_ = 0;
  std::vector<int> heldFiles_;
  std::vector<int> heldMemory_;
};

void RandomCalls::lookUpSomething() {
  const std::string name =
      oneOf(random_, kNames) + std::string(model_.ZRV_Libelle_NC_szDirTables.empty() ? "" : ".tab");
  const char *table = name.c_str();
  const std::string key = randomKey(random_);
  const auto length = static_cast<int>(key.size());
  const int column = randomColumn(random_);
  const int keyLength = chance(random_, 50) ? 0 : length;
  const std::string what = name + " " + key + " " + std::to_string(column);
  switch (random_() % 7) {
    case 0:
      return compareOut("first " + what, [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return std::pair(
            ZRV_Libelle_NC(key.data(), length, column, table, out.data(), out.capacity()),
            model_.ZRV_Libelle_NC(key, column, table, expected.data(), expected.capacity()));
      });
    case 1: {
      const int code = static_cast<int>(random_() % 120) - 10;
      return compareOut("number " + what, [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return std::pair(
            ZRV_Libelle_2(code, column, table, out.data(), out.capacity()),
            model_.ZRV_Libelle_2(code, column, table, expected.data(), expected.capacity()));
      });
    }
    case 2:
      return compareOut("idem " + what, [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return std::pair(
            ZRV_Libelle_NC_idem(key.data(), keyLength, column, table, out.data(), out.capacity()),
            model_.ZRV_Libelle_NC_idem(keyLength, column, table, expected.data(),
                                       expected.capacity()));
      });
    case 3:
      return compareOut("idem_0 " + what, [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return std::pair(
            ZRV_Libelle_NC_idem_0(key.data(), keyLength, column, table, out.data(), out.capacity()),
            model_.ZRV_Libelle_NC_idem_0(keyLength, column, table, expected.data(),
                                         expected.capacity()));
      });
    case 4:
      return compareOut("next " + what, [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return std::pair(
            ZRV_Libelle_NC_next(key.data(), length, column, table, out.data(), out.capacity()),
            model_.ZRV_Libelle_NC_next(key, column, table, expected.data(), expected.capacity()));
      });
    case 5: {
      constexpr int kDates[] = {19940101, 19950101, 19991231, 20000101, 20030101, 20491231, 0};
      const int date = oneOf(random_, kDates);
      const int dateColumn = chance(random_, 90) ? 1 + static_cast<int>(random_() % 3) : -1;
      return compareOut("dates " + what, [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return std::pair(ZRV_Libelle_NC_dates(key.data(), length, column, table, out.data(),
                                              out.capacity(), dateColumn, date),
                         model_.ZRV_Libelle_NC_dates(key, column, table, expected.data(),
                                                     expected.capacity(), dateColumn, date));
      });
    }
    default: {
      const int line = randomLineNumber(random_, mostLines_);
      ZRV_Libelle_NC_set_ligne(line);
      model_.ZRV_Libelle_NC_set_ligne(line);
      EXPECT_EQ(ZRV_Libelle_NC_get_ligne(), line);
      return compareState("set " + what);
    }
  }
}

void RandomCalls::searchSomething() {
  const std::string name =
      oneOf(random_, kNames) + std::string(model_.ZRV_Libelle_NC_szDirTables.empty() ? "" : ".tab");
  const char *table = name.c_str();
  const std::string label = randomLabel(random_);
  const int column = randomColumn(random_);
  const std::string what = name + " " + label + " " + std::to_string(column);
  switch (random_() % 5) {
    case 0:
      return compareOut(
          "search " + what,
          [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
            return std::pair(ZRV_Code_NC(label.c_str(), column, table, out.data(), out.capacity()),
                             model_.ZRV_Code_NC(label.c_str(), column, table, expected.data(),
                                                expected.capacity()));
          },
          Behind::Untouched);
    case 1:
      return compareOut(
          "any case " + what,
          [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
            return std::pair(
                ZRV_CodeNCS_NC(label.c_str(), column, table, out.data(), out.capacity()),
                model_.ZRV_CodeNCS_NC(label.c_str(), column, table, expected.data(),
                                      expected.capacity()));
          },
          Behind::Untouched);
    case 2:
      return compareOut(
          "search next " + what,
          [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
            return std::pair(
                ZRV_Code_NC_next(label.c_str(), column, table, out.data(), out.capacity()),
                model_.ZRV_Code_NC_next(label.c_str(), column, table, expected.data(),
                                        expected.capacity()));
          },
          Behind::Untouched);
    default:
      return searchCriteria(table);
  }
}

void RandomCalls::searchCriteria(const char *table) {
  std::vector<std::string> labels;
  std::vector<int> columns;
  for (auto n = random_() % 5; n > 0; --n) {
    labels.push_back(randomLabel(random_));
    const bool sameColumn = !columns.empty() && chance(random_, 60);
    columns.push_back(sameColumn ? columns.back() : static_cast<int>(random_() % 4));
  }
  std::string what = std::string("criteria ") + table;
  std::vector<test::Criterion> criteria;
  for (std::size_t i = 0; i < labels.size(); ++i) {
    criteria.push_back({labels[i].c_str(), columns[i]});
    what += " " + labels[i] + "/" + std::to_string(columns[i]);
  }
  const test::CriteriaLists lists(criteria);
  const bool next = chance(random_, 50);
  compareOut(
      what,
      [&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        if (next) {
          return std::pair(ZRV_Code_NC_ex_next(lists.labels(), lists.columns(), table, out.data(),
                                               out.capacity()),
                           model_.ZRV_Code_NC_ex_next(lists.labels(), lists.columns(), table,
                                                      expected.data(), expected.capacity()));
        }
        return std::pair(
            ZRV_Code_NC_ex(lists.labels(), lists.columns(), table, out.data(), out.capacity()),
            model_.ZRV_Code_NC_ex(lists.labels(), lists.columns(), table, expected.data(),
                                  expected.capacity()));
      },
      Behind::Untouched);
}

TEST_F(RandomCalls, AgreeWithTheModel) {
  constexpr int kCalls = test::rounds(24000);
  run(kCalls);
  // Neither side of the comparison is always the failing one.
  EXPECT_GT(calls_, kCalls * 3 / 4);
  EXPECT_GT(successes_, calls_ / 5);
  EXPECT_LT(successes_, calls_ * 4 / 5);
}

TEST_F(RandomCalls, AgreeWithTheModelByTheIndexAlone) {
  constexpr tables::Keeping kAlways[] = {tables::Keeping::Always};
  keepings_ = kAlways;
  run(test::rounds(6000));
}

TEST_F(RandomCalls, AgreeWithTheModelWithoutTheIndex) {
  constexpr tables::Keeping kNever[] = {tables::Keeping::Never};
  keepings_ = kNever;
  run(test::rounds(6000));
}

// Tables of many pages, which the searches pass in long stretches.
class RandomCallsOnLargeTables : public RandomCalls {
 protected:
  RandomCallsOnLargeTables() : RandomCalls(3000) {}
};

TEST_F(RandomCallsOnLargeTables, AgreeWithTheModel) {
  constexpr int kCalls = test::rounds(1500);
  run(kCalls);
  EXPECT_GT(calls_, kCalls * 2 / 3);
  EXPECT_GT(successes_, calls_ / 20);
}

}  // namespace
}  // namespace korvel
