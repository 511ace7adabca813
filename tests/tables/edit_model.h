// SPDX-License-Identifier: MIT
// For tests/fuzz/ and tests/tables/: what editing and upkeep do, on the files of the model, byte by
// byte. An edit reads the old file and writes the temporary one, line after line.
#ifndef KORVEL_TESTS_TABLES_EDIT_MODEL_H
#define KORVEL_TESTS_TABLES_EDIT_MODEL_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/tables/model.h"

namespace korvel::test {

class EditModel : public TableModel {
 public:
  int ZRV_Libelle_NC_idem_replace(int keyLength, int column, const char *table, const char *text);
  int ZRV_Libelle_NC_idem_insert(const char *table, int fields);
  int ZRV_Libelle_NC_idem_delete(const char *table);
  int ZRV_Libelle_NC_set(int keyLength, int column, const char *text);
  int ZRV_Libelle_NC_idem_flush(const char *table);

  int ZRV_Table_create(const char *name, const char *version, const char *title);
  int ZRV_Table_remove(const char *name);
  int ZRV_Table_sauvegarde(const char *name, int overwrite);
  int ZRV_Table_modify(const char *name, const char *newName, const char *version,
                       const char *title);
  int ZRV_Table_liste(const char *name, char *out, int outSize);
  int ZRV_Table_scan(const char *name, int *first, int *last,
                     const std::function<void(const char *)> &perLine);
  int ZRV_Table_repair(const char *name, const char *version, const char *title);

  // What `files` holds for a folder inside a tables directory.
  static constexpr const char *kFolder = "(folder)";

 private:
  // A table being rewritten.
  struct Rewriting {
    std::string path;
    std::string temporary;
    int source;
    int target;
    std::string old;
    std::string written;
  };

  bool isFile(const std::string &path) const;
  bool directoryExists(const std::string &path) const;
  std::optional<Rewriting> beginRewriting(const char *table);
  void endRewriting(Rewriting &rewriting, const std::string &newPath);
  void dropRewriting(Rewriting &rewriting);
  // Rewrites a table. changed: what takes the place of a line, its end included.
  bool rewrite(const char *table,
               const std::function<std::string(int line, const std::string &kept)> &changed);
  std::string boundBuffer() const;
  void store(const std::string &text, bool splitting);
  int openFile(const std::string &path);
};

}  // namespace korvel::test

#endif
