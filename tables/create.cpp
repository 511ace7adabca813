// A table's beginning, its end and its back-up.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>
#include <korvel/tables.h>

#include "files/lock.h"
#include "files/paths.h"
#include "files/replace.h"
#include "files/transfer.h"
#include "tables/markers.h"
#include "tables/path.h"
#include "tables/reader.h"
#include "tables/temporary.h"

namespace korvel::tables {
namespace {

using files::IfMissing;
using files::PosixPath;
using files::Replacement;

constexpr std::string_view kEnd = "\r\n";

// The pieces of a table without data lines.
class EmptyTable {
 public:
  EmptyTable(const char *version, const char *title)
      : pieces_{title, kEnd, kVersionMark, version, kEnd, kBeginMark, kEnd, kEndMark, kEnd} {}

  std::span<const std::string_view> pieces() const { return pieces_; }

 private:
  std::string_view pieces_[9];
};

bool exists(const TablePath &path) { return File_Is_Existing(path.text) == 1; }

// The table appears with all its lines or not at all.
bool createWhole(const TablePath &path, const EmptyTable &table) {
  WritingHandle handle;
  if (!handle.take(path.text)) return false;
  const PosixPath posix(path.text);
  Replacement made;
  return made.begin(posix.text(), IfMissing::Create, {.inPlace = false}) &&
         made.append(table.pieces()) && made.commitAs(posix.text());
}

// Kept: what becomes of the writing does not count; on a full disk the table begins as far as it
// goes.
bool createInPlace(const TablePath &path, const EmptyTable &table) {
  constexpr mode_t kOpenToAll = 0777;
  WritingHandle handle;
  if (!handle.take(path.text)) return false;
  const int file = files::openCreating(PosixPath(path.text).text(), O_EXCL, kOpenToAll);
  if (file < 0) {
    handle.dropUnopened();
    return false;
  }
  for (const std::string_view piece : table.pieces()) {
    if (files::writeAll(file, piece.data(), piece.size()) != piece.size()) break;
  }
  close(file);
  return true;
}

int create(const TablePath &path, const EmptyTable &table) {
  if (!path) return 0;
  if (exists(path) || createWhole(path, table)) return 1;
  // Somebody else may make it meanwhile.
  return exists(path) || createInPlace(path, table) || exists(path) ? 1 : 0;
}

// The removal waits for whoever edits the table, who would otherwise bring it back.
int removeTable(const TablePath &path) {
  if (!path || !exists(path)) return 0;
  files::FileLock lock;
  static_cast<void>(lock.take(PosixPath(path.text).text()));
  // Kept: its own result does not count.
  std::remove(PosixPath(path.text).text());
  return 1;
}

// The path of the back-up; none for a path that is too short or the back-up's own.
TablePath backUpPath(const TablePath &table) {
  constexpr std::string_view kExtension = ".bak";
  TablePath path = table;
  const std::size_t length = std::strlen(path.text);
  if (length < kExtension.size()) return {};
  char *extension = path.text + length - kExtension.size();
  if (extension == kExtension) return {};
  std::copy(kExtension.begin(), kExtension.end(), extension);
  return path;
}

bool isLink(const char *path) {
  struct stat status;
  return lstat(path, &status) == 0 && S_ISLNK(status.st_mode);
}

// A back-up that is a symbolic link or may not be written gives way to a new one, where its folder
// admits that. A new one has what its table has: owner, group, mode.
bool beginBackUp(Replacement &made, const char *path, int table) {
  files::ReplaceRules rules = {.inPlace = false, .like = table};
  if (!isLink(path)) {
    if (made.begin(path, IfMissing::Create, rules)) return true;
    if (errno != EACCES) return false;
  }
  rules.anew = true;
  return made.begin(path, IfMissing::Create, rules);
}

bool copyTo(Replacement &backUp, TableReader &table) {
  for (auto block = table.next(); !block.empty(); block = table.next()) {
    if (!backUp.append(block)) return false;
  }
  return table.isWhole();
}

// The old back-up stays until the new one is whole.
void backUp(const TablePath &path, bool overwrite) {
  const TablePath target = backUpPath(path);
  if (!path || !target) return;
  const bool replaces = exists(target);
  if (replaces && !overwrite) return;
  TableReader table;
  WritingHandle handle;
  if (!table.open(path.text, Slots::File) || !handle.take(target.text)) return;
  const PosixPath posix(target.text);
  Replacement made;
  if (!beginBackUp(made, posix.text(), table.descriptor()) || !copyTo(made, table)) return;
  static_cast<void>(replaces ? made.commit() : made.commitAs(posix.text()));
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel::tables;

int ZRV_Table_create(const char *name, const char *version, const char *title) {
  if (version == nullptr || title == nullptr) return 0;
  return create(tablePath(name), EmptyTable(version, title));
}

int ZRV_Table_remove(const char *name) { return removeTable(tablePath(name)); }

int ZRV_Table_sauvegarde(const char *name, int overwrite) {
  backUp(tablePath(name), overwrite != 0);
  // Kept: success included.
  return 0;
}
