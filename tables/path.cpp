// SPDX-License-Identifier: MIT
// The rules by which a table's name becomes the path of its file.
#include "tables/path.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <korvel/tables.h>

namespace korvel::tables {
namespace {

template <std::size_t Size>
std::string_view textOf(const char (&buffer)[Size]) {
  return {buffer, strnlen(buffer, Size)};
}

TablePath joined(std::string_view directory, std::string_view name, std::string_view extension) {
  if (directory.ends_with(':')) directory.remove_suffix(1);
  TablePath path;
  if (directory.size() + 1 + name.size() + extension.size() >= sizeof path.text) return path;
  char *end = std::copy(directory.begin(), directory.end(), path.text);
  *end++ = ':';
  end = std::copy(name.begin(), name.end(), end);
  end = std::copy(extension.begin(), extension.end(), end);
  *end = '\0';
  return path;
}

TablePlace defaultPlace(std::string_view name) {
  const std::string_view directory = textOf(szDirTables);
  // With an empty directory the path would be in the folder of the volumes.
  if (directory.empty() || directory.size() == sizeof szDirTables) return {};
  return {joined(directory, name, ".tab"), szDirTables};
}

TablePath existing(const TablePlace &place) {
  const bool exists = place.path && (place.folder == nullptr || files::folderExists(place.folder));
  return exists ? place.path : TablePath();
}

}  // namespace

TablePlace tablePlace(const char *name) {
  if (name == nullptr) return {};
  const std::string_view chosen = textOf(ZRV_Libelle_NC_szDirTables);
  if (chosen.empty()) return defaultPlace(name);
  // Kept: no extension is added here, as the name is already the file's.
  return {joined(chosen, name, ""), nullptr};
}

TablePath tablePath(const char *name) { return existing(tablePlace(name)); }

TablePath defaultTablePath(const char *name) {
  return name == nullptr ? TablePath() : existing(defaultPlace(name));
}

}  // namespace korvel::tables
