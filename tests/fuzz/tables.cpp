// SPDX-License-Identifier: MIT
// Tables of any bytes: lookups, searches, edits and upkeep in any order, each call made on the
// library and on the model. Results, buffers, exported state and all files must agree.
#include <cstring>
#include <map>
#include <string>
#include <utility>

#include <dirent.h>
#include <fcntl.h>

#include <korvel/tables.h>

#include "strings/machine.h"
#include "tables/kept.h"
#include "tables/reader.h"
#include "tests/files/volumes.h"
#include "tests/fuzz/target.h"
#include "tests/tables/edit_model.h"

namespace korvel::test {
namespace {

constexpr const char *kFolder = "tables";

class Tables {
 public:
  explicit Tables(Input &input) : input_(input) {
    mkdir(volumes_.posix(kFolder).c_str(), 0777);
    std::strcpy(szDirTables, "Data:tables");
    *ZRV_Libelle_NC_szDirTables = '\0';
    std::memset(ZRV_Libelle_NC_szBuffer, 0, sizeof ZRV_Libelle_NC_szBuffer);
    ZRV_Libelle_NC_il = 0;
    ZRV_Libelle_NC_read = 0;
    model_.szDirTables = szDirTables;
    model_.directories["Data:tables"] = true;
    put("t0.tab", bytes(input_, 6000));
    put("t1.tab", bytes(input_, 2000));
    if (input_.ConsumeIntegralInRange(0, 7) == 0) put("t0.ta_", bytes(input_, 200));
    constexpr std::size_t kBlocks[] = {262144, 262144, 1024, 50, 7, 1};
    tables::TableReader::blockSize = input_.PickValueInArray(kBlocks);
    KorvelForgetTables();
    constexpr tables::Keeping kKeepings[] = {tables::Keeping::WhenAskedAgain,
                                             tables::Keeping::Always, tables::Keeping::Never};
    const auto way = input_.ConsumeIntegralInRange<std::size_t>(0, 5);
    strings::avx2Allowed = way % 2 == 0;
    tables::keeping = kKeepings[way / 2];
  }

  void call() {
    switch (input_.ConsumeIntegralInRange(0, 9)) {
      case 0:
      case 1:
        lookUp();
        break;
      case 2:
      case 3:
        search();
        break;
      case 4:
      case 5:
      case 6:
        edit();
        break;
      case 7:
        closeLeftOpen();
        break;
      default:
        keepUp();
    }
    compare();
  }

 private:
  void put(const std::string &name, const std::string &content) {
    if (content == EditModel::kFolder) return;
    volumes_.file(std::string(kFolder) + "/" + name, content);
    model_.files["Data:tables:" + name] = content;
  }

  std::string name() {
    constexpr const char *kNames[] = {"t0", "t0", "t0", "t1", "t2", ""};
    return input_.PickValueInArray(kNames);
  }
  int column() { return number(input_, 0, 5); }

  using Results = std::pair<int, int>;
  template <typename Call>
  void withOut(Call call) {
    const int size = input_.ConsumeIntegralInRange(0, 1100);
    Exactly out(size);
    Exactly expected(size);
    const auto [result, modelled] = call(out, expected);
    require(result == modelled);
    require(out.text() == expected.text());
  }
  static void same(Results results) { require(results.first == results.second); }

  void lookUp() {
    const std::string table = name();
    const std::string given = bytes(input_, 12);
    Exactly key = Exactly::holding(given);
    const int wanted = column();
    const int keyLength = input_.ConsumeBool() ? 0 : 2;
    switch (input_.ConsumeIntegralInRange(0, 6)) {
      case 0:
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(
              ZRV_Libelle_NC(key.data(), key.size(), wanted, table.c_str(), out.data(), out.size()),
              model_.ZRV_Libelle_NC(given, wanted, table.c_str(), expected.data(),
                                    expected.size()));
        });
      case 1:
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(
              ZRV_Libelle_NC_idem("?", keyLength, wanted, table.c_str(), out.data(), out.size()),
              model_.ZRV_Libelle_NC_idem(keyLength, wanted, table.c_str(), expected.data(),
                                         expected.size()));
        });
      case 2:
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(
              ZRV_Libelle_NC_idem_0("?", keyLength, wanted, table.c_str(), out.data(), out.size()),
              model_.ZRV_Libelle_NC_idem_0(keyLength, wanted, table.c_str(), expected.data(),
                                           expected.size()));
        });
      case 3:
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(ZRV_Libelle_NC_next(key.data(), key.size(), wanted, table.c_str(),
                                             out.data(), out.size()),
                         model_.ZRV_Libelle_NC_next(given, wanted, table.c_str(), expected.data(),
                                                    expected.size()));
        });
      case 4: {
        const int code = number(input_, 0, 99);
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(
              ZRV_Libelle_2(code, wanted, table.c_str(), out.data(), out.size()),
              model_.ZRV_Libelle_2(code, wanted, table.c_str(), expected.data(), expected.size()));
        });
      }
      case 5: {
        const int from = input_.ConsumeIntegralInRange(1, 4);
        const int date = number(input_, 19900101, 20101231);
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(ZRV_Libelle_NC_dates(key.data(), key.size(), wanted, table.c_str(),
                                              out.data(), out.size(), from, date),
                         model_.ZRV_Libelle_NC_dates(given, wanted, table.c_str(), expected.data(),
                                                     expected.size(), from, date));
        });
      }
      default: {
        const int line = number(input_, 0, 12);
        ZRV_Libelle_NC_set_ligne(line);
        model_.ZRV_Libelle_NC_set_ligne(line);
      }
    }
  }

  void search() {
    const std::string table = name();
    const std::string first = text(input_, 300);
    const std::string second = text(input_, 20);
    Exactly label = Exactly::terminated(first);
    const int wanted = column();
    switch (input_.ConsumeIntegralInRange(0, 4)) {
      case 0:
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(ZRV_Code_NC(label.data(), wanted, table.c_str(), out.data(), out.size()),
                         model_.ZRV_Code_NC(first.c_str(), wanted, table.c_str(), expected.data(),
                                            expected.size()));
        });
      case 1:
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(
              ZRV_CodeNCS_NC(label.data(), wanted, table.c_str(), out.data(), out.size()),
              model_.ZRV_CodeNCS_NC(first.c_str(), wanted, table.c_str(), expected.data(),
                                    expected.size()));
        });
      case 2:
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(
              ZRV_Code_NC_next(label.data(), wanted, table.c_str(), out.data(), out.size()),
              model_.ZRV_Code_NC_next(first.c_str(), wanted, table.c_str(), expected.data(),
                                      expected.size()));
        });
      default: {
        const char *labels[] = {label.data(), second.c_str(), nullptr};
        const int columns[] = {input_.ConsumeIntegralInRange(-1, 4),
                               input_.ConsumeIntegralInRange(-1, 4), -1};
        const bool goesOn = input_.ConsumeBool();
        return withOut([&](Exactly &out, Exactly &expected) {
          if (goesOn) {
            return Results(
                ZRV_Code_NC_ex_next(labels, columns, table.c_str(), out.data(), out.size()),
                model_.ZRV_Code_NC_ex_next(labels, columns, table.c_str(), expected.data(),
                                           expected.size()));
          }
          return Results(ZRV_Code_NC_ex(labels, columns, table.c_str(), out.data(), out.size()),
                         model_.ZRV_Code_NC_ex(labels, columns, table.c_str(), expected.data(),
                                               expected.size()));
        });
      }
    }
  }

  void edit() {
    const std::string table = name();
    const std::string given = text(input_, 1100);
    Exactly value = Exactly::terminated(given);
    const int wanted = column();
    const int length = input_.ConsumeBool() ? 0 : 2;
    switch (input_.ConsumeIntegralInRange(0, 4)) {
      case 0:
        return same(
            {ZRV_Libelle_NC_idem_replace("?", length, wanted, table.c_str(), value.data()),
             model_.ZRV_Libelle_NC_idem_replace(length, wanted, table.c_str(), given.c_str())});
      case 1: {
        const int fields = number(input_, 0, 200);
        return same({ZRV_Libelle_NC_idem_insert("?", length, table.c_str(), fields),
                     model_.ZRV_Libelle_NC_idem_insert(table.c_str(), fields)});
      }
      case 2:
        return same({ZRV_Libelle_NC_idem_delete("?", length, table.c_str()),
                     model_.ZRV_Libelle_NC_idem_delete(table.c_str())});
      case 3:
        return same({ZRV_Libelle_NC_set("?", length, wanted, table.c_str(), value.data()),
                     model_.ZRV_Libelle_NC_set(length, wanted, given.c_str())});
      default:
        return same({ZRV_Libelle_NC_idem_flush("?", length, table.c_str()),
                     model_.ZRV_Libelle_NC_idem_flush(table.c_str())});
    }
  }

  void keepUp() {
    const std::string table = name();
    const std::string other = name();
    const std::string version = text(input_, 300);
    const std::string title = text(input_, 300);
    switch (input_.ConsumeIntegralInRange(0, 6)) {
      case 0:
        return same({ZRV_Table_create(table.c_str(), version.c_str(), title.c_str()),
                     model_.ZRV_Table_create(table.c_str(), version.c_str(), title.c_str())});
      case 1:
        return same({ZRV_Table_remove(table.c_str()), model_.ZRV_Table_remove(table.c_str())});
      case 2: {
        const int overwrite = input_.ConsumeBool();
        return same({ZRV_Table_sauvegarde(table.c_str(), overwrite),
                     model_.ZRV_Table_sauvegarde(table.c_str(), overwrite)});
      }
      case 3:
        return same({ZRV_Table_modify(table.c_str(), other.c_str(), version.c_str(), title.c_str()),
                     model_.ZRV_Table_modify(table.c_str(), other.c_str(), version.c_str(),
                                             title.c_str())});
      case 4:
        return withOut([&](Exactly &out, Exactly &expected) {
          return Results(ZRV_Table_liste(table.c_str(), out.data(), out.size()),
                         model_.ZRV_Table_liste(table.c_str(), expected.data(), expected.size()));
        });
      case 5:
        return scan(table);
      default:
        return same({ZRV_Table_repair(table.c_str(), version.c_str(), title.c_str()),
                     model_.ZRV_Table_repair(table.c_str(), version.c_str(), title.c_str())});
    }
  }

  // The fields of a line, each with its end, and the line's.
  static void append(std::string &to, const char *fields) {
    for (; *fields != '\0'; fields += std::strlen(fields) + 1) to.append(fields).append("\1");
    to += '\2';
  }

  void scan(const std::string &table) {
    static std::string handed;
    handed.clear();
    std::string expected;
    int first = input_.ConsumeBool() ? 0 : 9;
    int last = -7;
    int modelFirst = first;
    int modelLast = last;
    same(
        {ZRV_Table_scan(table.c_str(), &first, &last, [](char *fields) { append(handed, fields); }),
         model_.ZRV_Table_scan(table.c_str(), &modelFirst, &modelLast,
                               [&](const char *fields) { append(expected, fields); })});
    require(first == modelFirst && last == modelLast && handed == expected);
  }

  void closeLeftOpen() {
    for (const int handle : model_.fileHandles.leftOpen) {
      require(File_Close(handle) == 0);
      model_.fileHandles.giveBack(handle);
    }
    model_.fileHandles.leftOpen.clear();
  }

  void compare() {
    require(ZRV_Libelle_NC_il == model_.ZRV_Libelle_NC_il);
    require(ZRV_Libelle_NC_read == model_.ZRV_Libelle_NC_read);
    require(std::memcmp(ZRV_Libelle_NC_szBuffer, model_.ZRV_Libelle_NC_szBuffer.data(),
                        model_.bufferUsed()) == 0);
    require(DATA_FILE_ID == model_.fileHandles.highest);
    require(DATA_MFIL_ID == model_.memoryHandles.highest);
    for (std::size_t handle = 0; handle < 5; ++handle) {
      require((DATA_FILE_TAB[handle].mode != -1) == model_.fileHandles.used[handle]);
    }
    std::size_t found = 0;
    for (const std::string &each : entries(volumes_.posix(kFolder))) {
      const auto expected = model_.files.find("Data:tables:" + each);
      require(expected != model_.files.end());
      require(content(volumes_.posix(std::string(kFolder) + "/" + each)) == expected->second);
      ++found;
    }
    require(found == model_.files.size());
  }

  Input &input_;
  Volumes volumes_;
  EditModel model_;
};

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  korvel::test::Input input(data, size);
  korvel::test::Tables tables(input);
  for (int calls = 0; calls < 12 && input.remaining_bytes() > 0; ++calls) tables.call();
  return 0;
}
