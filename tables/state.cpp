// SPDX-License-Identifier: MIT
// The exported state of the tables: the directories, and the current line that lookup, search and
// editing share.
#include "tables/state.h"

#include <algorithm>
#include <cstring>

#include <korvel/tables.h>

#include "strings/copy.h"
#include "strings/string_list.h"
#include "tables/misuse.h"

constinit char szDirTables[256] = "";
constinit char ZRV_Libelle_NC_szDirTables[256] = "";
constinit char ZRV_Libelle_NC_szBuffer[1024] = "";
constinit int ZRV_Libelle_NC_il = 0;
constinit int ZRV_Libelle_NC_read = 0;

static_assert(sizeof ZRV_Libelle_NC_szBuffer == korvel::tables::kLineSize);

namespace korvel::tables {

void setDirectory(const char *dir) {
  if (dir != nullptr) strings::copyWhole(ZRV_Libelle_NC_szDirTables, dir);
}

void forgetLine() {
  ZRV_Libelle_NC_il = 0;
  ZRV_Libelle_NC_read = 0;
}

void setCurrentLine(int line) {
  ZRV_Libelle_NC_il = line;
  ZRV_Libelle_NC_read = 1;
}

void storeWhole(std::string_view kept) {
  const std::size_t length = std::min(kept.size(), kLineSize - 1);
  std::memmove(ZRV_Libelle_NC_szBuffer, kept.data(), length);
  std::memset(ZRV_Libelle_NC_szBuffer + length, 0, std::min<std::size_t>(2, kLineSize - length));
}

void storeSplit(std::string_view kept) {
  storeWhole(kept);
  strings::endList(ZRV_Libelle_NC_szBuffer);
  strings::cutItems(ZRV_Libelle_NC_szBuffer);
}

SplitFields bufferFields() {
  return SplitFields({ZRV_Libelle_NC_szBuffer, sizeof ZRV_Libelle_NC_szBuffer});
}

}  // namespace korvel::tables

using namespace korvel;
using namespace korvel::tables;

char *setDirTables(const char *dir) {
  lookForMisuse([=] { needsDirectory(Call("setDirTables", {dir}), dir); });
  setDirectory(dir);
  return ZRV_Libelle_NC_szDirTables;
}

char *getDirTables(void) { return ZRV_Libelle_NC_szDirTables; }

int ZRV_Libelle_NC_get_ligne(void) { return ZRV_Libelle_NC_il; }

void ZRV_Libelle_NC_set_ligne(int line) {
  lookForMisuse(
      [=] { files::needsNotNegative(Call("ZRV_Libelle_NC_set_ligne", {line}), "the line", line); });
  ZRV_Libelle_NC_il = line;
  ZRV_Libelle_NC_read = 0;
}
