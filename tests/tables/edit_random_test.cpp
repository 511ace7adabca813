// SPDX-License-Identifier: MIT
// Long random sequences of lookups, searches, edits and upkeep, each call made on the library and
// on the model: results, buffers, exported state and all files on the disk must agree after every
// one.
#include <algorithm>
#include <climits>
#include <random>
#include <utility>

#include <dirent.h>
#include <fcntl.h>

#include "tests/support/sanitizer.h"
#include "tests/tables/edit_model.h"
#include "tests/tables/edits.h"

namespace korvel {
namespace {

using test::EditModel;
using test::PoisonedBuffer;

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  std::size_t below(std::size_t n) { return engine_() % n; }
  bool chance(unsigned percent) { return below(100) < percent; }
  template <typename Range>
  const auto &of(const Range &range) {
    return range[below(std::size(range))];
  }

 private:
  std::mt19937 engine_;
};

constexpr std::string_view kCodes[] = {"01", "02", "07", "0?", "AB", "", "?", "\xE9t", "ABCDEFGH"};
constexpr std::string_view kLabels[] = {"Consultation", "visite",   "Vis?te",   "", "A", "B", "?",
                                        "01/01/95",     "31/12/99", "\xFF\x80", "*"};
constexpr std::string_view kHeadings[] = {"Actes", "Version: 2", "#DEBUT",
                                          "#FIN",  "#DEB?T",     "#FI?"};
constexpr std::size_t kBorders[] = {253, 254, 255, 256, 1020, 1021, 1022, 1023, 1024, 1025, 1500};
constexpr std::string_view kEnds[] = {"\r\n", "\r", "\n", "\n\r", "\r\r", "\r\n\n"};

std::string randomLine(Random &random) {
  if (random.chance(15)) return std::string(random.of(kHeadings));
  std::string line(random.of(kCodes));
  for (auto n = random.below(5); n > 0; --n) {
    line += random.chance(80) ? ',' : '+';
    line += random.of(kLabels);
  }
  if (random.chance(2)) {
    const std::size_t length = random.of(kBorders);
    if (random.chance(50)) line.insert(0, std::string(length, 'A'));
    line.resize(length, random.chance(50) ? 'A' : ',');
  }
  return line;
}

std::string randomTable(Random &random) {
  const bool plain = random.chance(60);
  std::string bytes;
  if (random.chance(60)) bytes = "Actes\r\nVersion: 2\r\n#DEBUT\r\n";
  for (auto n = random.below(12); n > 0; --n) {
    bytes += randomLine(random);
    if (n > 1 || random.chance(70)) bytes += plain ? "\r\n" : random.of(kEnds);
  }
  if (random.chance(10)) bytes += '\n';
  if (!bytes.empty() && random.chance(15)) {
    constexpr char kStray[] = {'\0', '\n', '\r', '?', ','};
    bytes.insert(random.below(bytes.size()), 1, random.of(kStray));
  }
  return bytes;
}

class RandomEdits : private test::MemoryDisk, public test::Tables {
 protected:
  RandomEdits() {
    mkdir(volumes_.posix("others").c_str(), 0777);
    for (const std::string folder : kFolders) {
      model_.directories["Data:" + folder] = true;
      for (int i = 0; i < 3; ++i) put(folder, "t" + std::to_string(i) + ".tab", tableBytes());
    }
    model_.szDirTables = szDirTables;
  }

  static constexpr const char *kFolders[] = {"tables", "others"};

  std::string tableBytes() { return randomTable(random_); }

  void put(const std::string &folder, const std::string &name, const std::string &bytes) {
    take(folder, name);
    volumes_.file(folder + "/" + name, bytes);
    model_.files["Data:" + folder + ":" + name] = bytes;
  }
  void putFolder(const std::string &folder, const std::string &name) {
    take(folder, name);
    mkdir(volumes_.posix(folder + "/" + name).c_str(), 0777);
    model_.files["Data:" + folder + ":" + name] = EditModel::kFolder;
  }
  void take(const std::string &folder, const std::string &name) {
    std::remove(volumes_.posix(folder + "/" + name).c_str());
    model_.files.erase("Data:" + folder + ":" + name);
  }

  // Something that happens between two calls.
  void disturb();
  void holdOrReleaseHandles();
  void closeLeftOpen();

  // The name of a table as the chosen directory wants it.
  std::string tableName() {
    constexpr const char *kOdd[] = {"t0.ta_", "t1.bak", "t2_", "abcd", "ab"};
    const std::string name = random_.chance(95) ? "t" + std::to_string(random_.below(4)) : "none";
    if (model_.ZRV_Libelle_NC_szDirTables.empty()) return name;
    return random_.chance(85) ? name + ".tab" : random_.of(kOdd);
  }
  std::string usualName() {
    const std::string name = "t" + std::to_string(random_.below(4));
    return model_.ZRV_Libelle_NC_szDirTables.empty() ? name : name + ".tab";
  }
  std::string text() {
    std::string text(random_.chance(70) ? random_.of(kLabels) : random_.of(kCodes));
    if (random_.chance(3)) text.resize(random_.of(kBorders), 'x');
    if (random_.chance(5)) text += random_.of(std::string_view(",+?\r\n"));
    return text;
  }
  int column() {
    constexpr int kOdd[] = {0, -1, INT_MIN, 7, INT_MAX};
    return random_.chance(88) ? static_cast<int>(random_.below(4)) : random_.of(kOdd);
  }
  int keyLength() { return random_.chance(50) ? 0 : 2; }

  using Results = std::pair<int, int>;
  template <typename Call>
  void withOut(Call call) {
    constexpr std::size_t kSizes[] = {0, 1, 2, 3, 5, 12, 13, 64, 1100};
    const std::size_t size = random_.of(kSizes);
    PoisonedBuffer out(size);
    PoisonedBuffer expected(size);
    const auto [result, expectedResult] = call(out, expected);
    EXPECT_EQ(result, expectedResult);
    EXPECT_TRUE(out.guardsIntact());
    EXPECT_EQ(out.text(), expected.text());
    successes_ += result;
  }
  void expectSame(Results results) {
    EXPECT_EQ(results.first, results.second);
    successes_ += results.first;
  }

  void lookUp();
  void search();
  void edit();
  void keepUp();
  void scan();
  void compare();
  void compareFolder(const std::string &folder);

  void run(int calls) {
    SCOPED_TRACE("KORVEL_SEED=" + std::to_string(seed_));
    for (calls_ = 0; calls_ < calls && !HasFailure(); ++calls_) {
      if (random_.chance(25)) disturb();
      constexpr std::size_t kBlocks[] = {1, 3, 7, 50, 1024, 262144, 262144, 262144};
      tables::TableReader::blockSize = random_.of(kBlocks);
      tables::keeping = random_.of(test::kKeepings);
      const std::size_t kind = random_.below(100);
      if (kind < 25) {
        lookUp();
      } else if (kind < 35) {
        search();
      } else if (kind < 80) {
        edit();
      } else {
        keepUp();
      }
      compare();
    }
    closeLeftOpen();
  }

  const unsigned seed_ = test::randomSeed();
  Random random_{seed_};
  EditModel model_;
  std::string what_;
  int calls_ = 0;
  int successes_ = 0;
  std::vector<int> held_;
};

void RandomEdits::disturb() {
  const std::string folder = random_.of(kFolders);
  const std::string number = std::to_string(random_.below(3));
  switch (random_.below(14)) {
    case 0:
    case 1:
    case 2:
    case 3:
      return put(folder, "t" + number + ".tab", tableBytes());
    case 4:
      return put(folder, "t" + number + ".ta_", tableBytes() + tableBytes());
    case 5:
      return random_.chance(50) ? putFolder(folder, "t" + number + ".ta_")
                                : take(folder, "t" + number + ".ta_");
    case 6:
      return take(folder, "t3.tab");
    case 7: {
      constexpr const char *kDefaults[] = {"Data:tables", "Data:tables:", "Data:others",
                                           "Data:others:", "Data:no"};
      model_.szDirTables = random_.chance(50) ? random_.of(kDefaults) : "Data:tables";
      return setText(szDirTables, model_.szDirTables);
    }
    case 8: {
      constexpr const char *kChosen[] = {"", "", "", "Data:tables:", "Data:others", "Data:others:"};
      model_.ZRV_Libelle_NC_szDirTables = random_.of(kChosen);
      setDirTables(model_.ZRV_Libelle_NC_szDirTables.c_str());
      return;
    }
    case 9:
      return take(folder, "t" + number + ".bak");
    case 10:
      return holdOrReleaseHandles();
    default:
      return closeLeftOpen();
  }
}

void RandomEdits::holdOrReleaseHandles() {
  if (random_.chance(50)) {
    put("tables", "held", "held");
    const int handle = File_Open("Data:tables:held", 1, 0);
    EXPECT_EQ(handle, model_.fileHandles.take());
    if (handle >= 0) held_.push_back(handle);
    return;
  }
  for (const int handle : held_) {
    EXPECT_EQ(File_Close(handle), 0);
    model_.fileHandles.giveBack(handle);
  }
  held_.clear();
}

void RandomEdits::closeLeftOpen() {
  for (const int handle : model_.fileHandles.leftOpen) {
    EXPECT_EQ(File_Close(handle), 0);
    model_.fileHandles.giveBack(handle);
  }
  model_.fileHandles.leftOpen.clear();
}

void RandomEdits::lookUp() {
  const std::string name = usualName();
  const char *table = name.c_str();
  const std::string key(random_.of(kCodes));
  const auto length = static_cast<int>(key.size());
  const int wanted = column();
  const int idemLength = keyLength();
  what_ = "look up " + name + " " + key;
  switch (random_.below(5)) {
    case 0:
      return withOut([&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return Results(
            ZRV_Libelle_NC(key.data(), length, wanted, table, out.data(), out.capacity()),
            model_.ZRV_Libelle_NC(key, wanted, table, expected.data(), expected.capacity()));
      });
    case 1:
      return withOut([&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return Results(
            ZRV_Libelle_NC_idem("?", idemLength, wanted, table, out.data(), out.capacity()),
            model_.ZRV_Libelle_NC_idem(idemLength, wanted, table, expected.data(),
                                       expected.capacity()));
      });
    case 2:
      return withOut([&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return Results(
            ZRV_Libelle_NC_next(key.data(), length, wanted, table, out.data(), out.capacity()),
            model_.ZRV_Libelle_NC_next(key, wanted, table, expected.data(), expected.capacity()));
      });
    default: {
      constexpr int kOdd[] = {0, -1, INT_MIN, INT_MAX};
      const int line = random_.chance(95) ? static_cast<int>(random_.below(8)) : random_.of(kOdd);
      ZRV_Libelle_NC_set_ligne(line);
      model_.ZRV_Libelle_NC_set_ligne(line);
    }
  }
}

void RandomEdits::search() {
  const std::string name = usualName();
  const char *table = name.c_str();
  const std::string label(random_.of(kLabels));
  const int wanted = column();
  what_ = "search " + name + " " + label;
  switch (random_.below(3)) {
    case 0:
      return withOut([&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return Results(
            ZRV_Code_NC(label.c_str(), wanted, table, out.data(), out.capacity()),
            model_.ZRV_Code_NC(label.c_str(), wanted, table, expected.data(), expected.capacity()));
      });
    case 1:
      return withOut([&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return Results(ZRV_CodeNCS_NC(label.c_str(), wanted, table, out.data(), out.capacity()),
                       model_.ZRV_CodeNCS_NC(label.c_str(), wanted, table, expected.data(),
                                             expected.capacity()));
      });
    default: {
      const char *labels[] = {label.c_str(), nullptr};
      const int columns[] = {static_cast<int>(random_.below(3)), -1};
      return withOut([&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return Results(ZRV_Code_NC_ex_next(labels, columns, table, out.data(), out.capacity()),
                       model_.ZRV_Code_NC_ex_next(labels, columns, table, expected.data(),
                                                  expected.capacity()));
      });
    }
  }
}

void RandomEdits::edit() {
  const std::string name = tableName();
  const char *table = name.c_str();
  const std::string value = text();
  const int wanted = column();
  const int length = keyLength();
  what_ = name + " \"" + value + "\" " + std::to_string(wanted) + "/" + std::to_string(length);
  switch (random_.below(9)) {
    case 0:
    case 1:
      what_ = "replace " + what_;
      return expectSame({ZRV_Libelle_NC_idem_replace("?", length, wanted, table, value.c_str()),
                         model_.ZRV_Libelle_NC_idem_replace(length, wanted, table, value.c_str())});
    case 2: {
      constexpr int kOdd[] = {-1, 170, 171, INT_MAX};
      const int fields = random_.chance(95) ? static_cast<int>(random_.below(4)) : random_.of(kOdd);
      what_ = "insert " + std::to_string(fields) + " " + what_;
      return expectSame({ZRV_Libelle_NC_idem_insert("?", length, table, fields),
                         model_.ZRV_Libelle_NC_idem_insert(table, fields)});
    }
    case 3:
      what_ = "delete " + what_;
      return expectSame({ZRV_Libelle_NC_idem_delete("?", length, table),
                         model_.ZRV_Libelle_NC_idem_delete(table)});
    case 4:
    case 5:
    case 6:
      what_ = "set " + what_;
      return expectSame({ZRV_Libelle_NC_set("?", length, wanted, table, value.c_str()),
                         model_.ZRV_Libelle_NC_set(length, wanted, value.c_str())});
    default:
      what_ = "flush " + what_;
      return expectSame(
          {ZRV_Libelle_NC_idem_flush("?", length, table), model_.ZRV_Libelle_NC_idem_flush(table)});
  }
}

void RandomEdits::keepUp() {
  const std::string name = tableName();
  const char *table = name.c_str();
  const std::string other = random_.chance(30) ? name : tableName();
  const std::string title(random_.of(kHeadings));
  const std::string version(random_.of(kLabels));
  what_ = name + " " + other + " " + title;
  switch (random_.below(8)) {
    case 0:
      what_ = "create " + what_;
      return expectSame({ZRV_Table_create(table, version.c_str(), title.c_str()),
                         model_.ZRV_Table_create(table, version.c_str(), title.c_str())});
    case 1:
      what_ = "remove " + what_;
      return expectSame({ZRV_Table_remove(table), model_.ZRV_Table_remove(table)});
    case 2: {
      const int overwrite = random_.chance(50);
      what_ = "back up " + what_;
      return expectSame(
          {ZRV_Table_sauvegarde(table, overwrite), model_.ZRV_Table_sauvegarde(table, overwrite)});
    }
    case 3:
    case 4:
      what_ = "modify " + what_;
      return expectSame(
          {ZRV_Table_modify(table, other.c_str(), version.c_str(), title.c_str()),
           model_.ZRV_Table_modify(table, other.c_str(), version.c_str(), title.c_str())});
    case 5:
      what_ = "list " + what_;
      return withOut([&](PoisonedBuffer &out, PoisonedBuffer &expected) {
        return Results(ZRV_Table_liste(table, out.data(), out.capacity()),
                       model_.ZRV_Table_liste(table, expected.data(), expected.capacity()));
      });
    case 6:
      what_ = "scan " + what_;
      return scan();
    default:
      what_ = "repair " + what_;
      return expectSame({ZRV_Table_repair(table, version.c_str(), title.c_str()),
                         model_.ZRV_Table_repair(table, version.c_str(), title.c_str())});
  }
}

// The fields of a callback's line, each with its terminator.
void appendFields(std::string &to, const char *fields) {
  for (; *fields != '\0'; fields += std::strlen(fields) + 1) to.append(fields).append("|");
  to += "\n";
}

void RandomEdits::scan() {
  const std::string name = tableName();
  static std::string handed;
  std::string expected;
  handed.clear();
  int first = random_.chance(70) ? 0 : 9;
  int last = -7;
  int expectedFirst = first;
  int expectedLast = last;
  expectSame({ZRV_Table_scan(name.c_str(), &first, &last,
                             [](char *fields) { appendFields(handed, fields); }),
              model_.ZRV_Table_scan(name.c_str(), &expectedFirst, &expectedLast,
                                    [&](const char *fields) { appendFields(expected, fields); })});
  EXPECT_EQ(first, expectedFirst);
  EXPECT_EQ(last, expectedLast);
  EXPECT_EQ(handed, expected);
}

void RandomEdits::compare() {
  EXPECT_EQ(ZRV_Libelle_NC_il, model_.ZRV_Libelle_NC_il);
  EXPECT_EQ(ZRV_Libelle_NC_read, model_.ZRV_Libelle_NC_read);
  EXPECT_EQ(std::string_view(ZRV_Libelle_NC_szBuffer, model_.bufferUsed()),
            std::string_view(model_.ZRV_Libelle_NC_szBuffer.data(), model_.bufferUsed()));
  EXPECT_EQ(DATA_FILE_ID, model_.fileHandles.highest);
  EXPECT_EQ(DATA_MFIL_ID, model_.memoryHandles.highest);
  for (std::size_t handle = 0; handle < 5; ++handle)
    EXPECT_EQ(DATA_FILE_TAB[handle].mode != -1, model_.fileHandles.used[handle]) << handle;
  for (const char *folder : kFolders) compareFolder(folder);
  if (HasFailure()) ADD_FAILURE() << "call " << calls_ << ": " << what_;
}

// Of a folder, quickly: this is done after every call.
void RandomEdits::compareFolder(const std::string &folder) {
  const std::string path = volumes_.posix(folder);
  const std::string prefix = "Data:" + folder + ":";
  std::size_t found = 0;
  DIR *entries = opendir(path.c_str());
  ASSERT_NE(entries, nullptr);
  while (const dirent *entry = readdir(entries)) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    ++found;
    const auto expected = model_.files.find(prefix + name);
    if (expected == model_.files.end()) {
      ADD_FAILURE() << "there is a file " << name;
      continue;
    }
    std::string bytes(expected->second.size() + 1, '\0');
    const int file = open((path + "/" + name).c_str(), O_RDONLY);
    const ssize_t got = read(file, bytes.data(), bytes.size());
    close(file);
    bytes.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
    if (got < 0) bytes = EditModel::kFolder;
    EXPECT_EQ(bytes, expected->second) << name;
  }
  closedir(entries);
  const auto inModel =
      std::count_if(model_.files.begin(), model_.files.end(),
                    [&](const auto &file) { return file.first.starts_with(prefix); });
  EXPECT_EQ(found, static_cast<std::size_t>(inModel));
}

TEST_F(RandomEdits, AgreeWithTheModel) {
  constexpr int kCalls = test::rounds(8000);
  run(kCalls);
  EXPECT_EQ(calls_, kCalls);
  // Neither side of the comparison is always the failing one.
  EXPECT_GT(successes_, kCalls / 5);
  EXPECT_LT(successes_, kCalls * 4 / 5);
}

}  // namespace
}  // namespace korvel
