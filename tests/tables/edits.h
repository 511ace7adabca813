// SPDX-License-Identifier: MIT
// For tests/tables/: what a call left on the disk and in the handle table.
#ifndef KORVEL_TESTS_TABLES_EDITS_H
#define KORVEL_TESTS_TABLES_EDITS_H

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/files/faults.h"
#include "tests/tables/tables.h"

namespace korvel::test {

// The files of a folder with their contents; a folder in it has "(folder)".
inline std::map<std::string, std::string> filesIn(const std::string &folder) {
  std::map<std::string, std::string> files;
  for (const std::string &name : entries(folder)) {
    const std::string path = folder + "/" + name;
    files[name] = std::filesystem::is_directory(path) ? "(folder)" : content(path);
  }
  return files;
}

using Files = std::map<std::string, std::string>;

// The example table: the line 07,Visite,01/01/95 is its line 6.
inline std::string actes() {
  return lines({"Actes", "Version: 2", "#DEBUT", "01,Consultation,01/01/95,31/12/99", "02+Garde",
                "07,Visite,01/01/95", "#FIN"});
}

class Edits : private MemoryDisk, public Tables {
 protected:
  Edits() { table("actes", actes()); }

  std::string folder() const { return volumes_.posix("tables"); }
  std::string tableText(const std::string &name = "actes") const {
    return content(posixPath(name));
  }
  Files files() const { return filesIn(folder()); }

  // Handles in use.
  static std::vector<int> openHandles() {
    std::vector<int> open;
    for (int handle = 0; handle < 5; ++handle) {
      if (DATA_FILE_TAB[handle].mode != -1) open.push_back(handle);
    }
    return open;
  }
  static void closeHandles() {
    for (int handle = 4; handle >= 0; --handle) File_Close(handle);
    DATA_FILE_ID = -1;
  }
};

// Runs something at each passage through a step, which then goes on.
class EachTime {
 public:
  EachTime(ReplaceStep step, std::function<void(int nth)> act) {
    step_ = step;
    passages_ = 0;
    act_ = std::move(act);
    files::replaceFault = [](ReplaceStep passed) {
      if (passed == step_) act_(++passages_);
      return 0;
    };
  }
  ~EachTime() { files::replaceFault = nullptr; }
  EachTime(const EachTime &) = delete;
  EachTime &operator=(const EachTime &) = delete;

  int passages() const { return passages_; }

 private:
  static inline ReplaceStep step_;
  static inline int passages_;
  static inline std::function<void(int)> act_;
};

inline int replaceColumn(int column, const char *text, const char *table = "actes") {
  return ZRV_Libelle_NC_idem_replace("??", 2, column, table, text);
}
inline int replaceCode(const char *text, const char *table = "actes") {
  return ZRV_Libelle_NC_idem_replace("??", 0, 0, table, text);
}
inline int insertLine(int fields, const char *table = "actes") {
  return ZRV_Libelle_NC_idem_insert("??", 2, table, fields);
}
inline int deleteLine(const char *table = "actes") {
  return ZRV_Libelle_NC_idem_delete("??", 2, table);
}
inline int setColumn(int column, const char *text) {
  return ZRV_Libelle_NC_set("??", 2, column, "actes", text);
}
inline int setCode(const char *text) { return ZRV_Libelle_NC_set("??", 0, 0, "actes", text); }
inline int flushLine(const char *table = "actes") {
  return ZRV_Libelle_NC_idem_flush("??", 2, table);
}

}  // namespace korvel::test

#endif
