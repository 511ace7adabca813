#include "tables/state.h"

#include <algorithm>
#include <cstring>

#include <korvel/strings.h>
#include <korvel/tables.h>

#include "tables/line.h"

constinit char szDirTables[256] = "";
constinit char ZRV_Libelle_NC_szDirTables[256] = "";
constinit char ZRV_Libelle_NC_szBuffer[1024] = "";
constinit int ZRV_Libelle_NC_il = 0;
constinit int ZRV_Libelle_NC_read = 0;

static_assert(sizeof ZRV_Libelle_NC_szBuffer == korvel::tables::kLineSize);

namespace korvel::tables {

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
  ChCh_Put_00(ZRV_Libelle_NC_szBuffer, kLineSize);
  ChCh_Cut(ZRV_Libelle_NC_szBuffer);
}

void copyOut(std::string_view field, char *out, int size) {
  if (out == nullptr || size < 1) return;
  const std::size_t length = std::min(field.size(), static_cast<std::size_t>(size) - 1);
  if (length > 0) std::memmove(out, field.data(), length);
  out[length] = '\0';
}

}  // namespace korvel::tables

char *setDirTables(const char *dir) {
  const std::size_t capacity = sizeof ZRV_Libelle_NC_szDirTables;
  const std::size_t length = dir == nullptr ? capacity : strnlen(dir, capacity);
  if (length < capacity) std::memmove(ZRV_Libelle_NC_szDirTables, dir, length + 1);
  return ZRV_Libelle_NC_szDirTables;
}

char *getDirTables(void) { return ZRV_Libelle_NC_szDirTables; }
