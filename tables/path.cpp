#include "tables/path.h"

#include <cstring>
#include <string_view>

#include <korvel/files.h>
#include <korvel/tables.h>

namespace korvel::tables {
namespace {

template <std::size_t Size>
std::string_view textOf(const char (&buffer)[Size]) {
  return {buffer, strnlen(buffer, Size)};
}

std::string_view withoutLastColon(std::string_view directory) {
  if (directory.ends_with(':')) directory.remove_suffix(1);
  return directory;
}

class PathWriter {
 public:
  void append(std::string_view part) {
    fits_ = fits_ && part.size() < kPathSize - length_;
    if (!fits_) return;
    std::memcpy(path_.text + length_, part.data(), part.size());
    length_ += part.size();
  }
  TablePath path() {
    path_.text[fits_ ? length_ : 0] = '\0';
    return path_;
  }

 private:
  TablePath path_;
  std::size_t length_ = 0;
  bool fits_ = true;
};

TablePath joined(std::string_view directory, std::string_view name, std::string_view extension) {
  PathWriter writer;
  writer.append(withoutLastColon(directory));
  writer.append(":");
  writer.append(name);
  writer.append(extension);
  return writer.path();
}

TablePath pathInDefault(std::string_view name) {
  const std::string_view directory = textOf(szDirTables);
  // The folder of the volumes would stand in for an empty one.
  if (directory.empty() || directory.size() == sizeof szDirTables) return {};
  return joined(directory, name, ".tab");
}

bool folderExists(const TablePlace &place) {
  return place.folder == nullptr || Dir_Is_Existing(place.folder) == 1;
}

}  // namespace

TablePlace tablePlace(const char *name) {
  if (name == nullptr) return {};
  const std::string_view chosen = textOf(ZRV_Libelle_NC_szDirTables);
  if (chosen.empty()) return {pathInDefault(name), szDirTables};
  // Kept: no extension is added here; the name is that of the file.
  return {joined(chosen, name, ""), nullptr};
}

TablePath tablePath(const char *name) {
  const TablePlace place = tablePlace(name);
  return place.path && folderExists(place) ? place.path : TablePath();
}

TablePath defaultTablePath(const char *name) {
  if (name == nullptr) return {};
  const TablePlace place = {pathInDefault(name), szDirTables};
  return place.path && folderExists(place) ? place.path : TablePath();
}

}  // namespace korvel::tables
