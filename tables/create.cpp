// SPDX-License-Identifier: MIT
// A table's beginning, its end and its back-up: whole files made, removed and copied, where an edit
// rewrites lines.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/tables.h>

#include "base/posix.h"
#include "files/lock.h"
#include "files/paths.h"
#include "files/replace.h"
#include "files/transfer.h"
#include "tables/line.h"
#include "tables/misuse.h"
#include "tables/path.h"
#include "tables/reader.h"
#include "tables/temporary.h"

namespace korvel::tables {
namespace {

using files::IfMissing;
using files::PosixPath;
using files::Replacement;

using Pieces = std::span<const std::string_view>;

bool exists(const TablePath &path) { return files::fileExists(path.text); }

// The table appears with all its lines or not at all.
bool createWhole(const TablePath &path, Pieces content) {
  WritingHandle handle;
  if (!handle.take(path.text)) return false;
  const PosixPath posix(path.text);
  Replacement made;
  return made.begin(posix.text(), IfMissing::Create, {.inPlace = false}) && made.append(content) &&
         made.commitAs(posix.text());
}

// Kept: the result of the writing does not count, so a full disk leaves the beginning of a table.
bool createInPlace(const TablePath &path, Pieces content) {
  constexpr mode_t kOpenToAll = 0777;
  WritingHandle handle;
  if (!handle.take(path.text)) return false;
  const PosixPath posix(path.text);
  const int file = files::openCreating(posix.text(), O_EXCL, kOpenToAll);
  if (file < 0) {
    handle.dropUnopened();
    return false;
  }
  for (const std::string_view piece : content) {
    if (files::writeAll(file, piece.data(), piece.size()) != piece.size()) break;
  }
  base::retried([file] { return fsync(file); });
  files::syncFolderOf(posix.text(), file);
  close(file);
  return true;
}

bool create(const TablePath &path, std::string_view version, std::string_view title) {
  if (!path) return false;
  const std::string_view content[] = {title,       kWrittenEnd, kVersionMark,
                                      version,     kWrittenEnd, kBeginMark,
                                      kWrittenEnd, kEndMark,    kWrittenEnd};
  if (exists(path) || createWhole(path, content)) return true;
  // Another process may make it meanwhile.
  return exists(path) || createInPlace(path, content) || exists(path);
}

enum class Removal { Missing, Refused, Done };

// The removal waits for an edit of the table, which would otherwise bring it back.
Removal removeTable(const TablePath &path) {
  if (!path || !exists(path)) return Removal::Missing;
  const PosixPath posix(path.text);
  files::FileLock lock;
  static_cast<void>(lock.take(posix.text()));
  // Another process may be first.
  if (std::remove(posix.text()) != 0) return errno == ENOENT ? Removal::Done : Removal::Refused;
  // Without the lock, a folder that may not be read is not synced.
  files::syncFolderOf(posix.text(), lock.descriptor());
  return Removal::Done;
}

// The path of the back-up; none for a path that is too short or ends like a back-up's.
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

bool isLink(const char *posix) {
  struct stat status;
  return lstat(posix, &status) == 0 && S_ISLNK(status.st_mode);
}

// A back-up that is a symbolic link or may not be written gives way to a new one, where its folder
// admits that. A new one gets owner, group and mode of its table.
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

// The old back-up stays until the new one is whole. Returns false where one is wanted and cannot be
// written.
bool backUp(const TablePath &path, bool overwrite) {
  const TablePath target = backUpPath(path);
  if (!path || !target) return false;
  const bool replaces = exists(target);
  if (replaces && !overwrite) return true;
  TableReader table;
  WritingHandle handle;
  if (!table.open(path.text, Slots::File) || !handle.take(target.text)) return false;
  const PosixPath posix(target.text);
  Replacement made;
  if (!beginBackUp(made, posix.text(), table.descriptor()) || !copyTo(made, table)) return false;
  return replaces ? made.commit() : made.commitAs(posix.text());
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel;
using namespace korvel::tables;

int ZRV_Table_create(const char *name, const char *version, const char *title) {
  const Call call("ZRV_Table_create", {name, version, title});
  if (call) needsName(call, name);
  if (call) needsHeading(call, version, title);
  if (version == nullptr || title == nullptr) return 0;
  const files::ErrnoOfWork errnoOfWork(call);
  const bool isMade = create(tablePath(name), version, title);
  if (call) needsMade(call, name, isMade);
  return isMade ? 1 : 0;
}

int ZRV_Table_remove(const char *name) {
  const Call call("ZRV_Table_remove", {name});
  if (call) needsExisting(call, name);
  const files::ErrnoOfWork errnoOfWork(call);
  const Removal removal = removeTable(tablePath(name));
  if (call) needsGone(call, name, removal != Removal::Refused);
  // Kept: the removal's own result does not count.
  return removal != Removal::Missing ? 1 : 0;
}

int ZRV_Table_sauvegarde(const char *name, int overwrite) {
  const Call call("ZRV_Table_sauvegarde", {name, overwrite});
  if (call) needsTableToBackUp(call, name);
  const files::ErrnoOfWork errnoOfWork(call);
  const bool isBackedUp = backUp(tablePath(name), overwrite != 0);
  if (call) needsBackedUp(call, backUpPath(tablePlace(name).path), isBackedUp);
  // Kept: the result of a back-up is 0, success included.
  return 0;
}
