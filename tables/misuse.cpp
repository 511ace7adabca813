// SPDX-License-Identifier: MIT
// Misuse of tables: names that lead to no table, keys and labels that match no line, columns that
// no line has.
#include "tables/misuse.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/tables.h>

#include "base/views.h"
#include "dates/calendar.h"
#include "files/paths.h"
#include "tables/path.h"
#include "tables/rewrite.h"
#include "tables/temporary.h"

namespace korvel::tables {

using base::ErrnoKept;
using base::Quoted;

namespace {

// The directory in which tables are looked for; "" for none.
std::string_view directoryInUse() {
  const auto textIn = [](const char(&buffer)[256]) {
    return std::string_view(buffer, strnlen(buffer, sizeof buffer));
  };
  const std::string_view chosen = textIn(ZRV_Libelle_NC_szDirTables);
  return chosen.empty() ? textIn(szDirTables) : chosen;
}

bool isAllowed(const TablePath &path, int access) {
  const ErrnoKept kept;
  const files::PosixPath posix(path.text);
  return faccessat(AT_FDCWD, posix.text(), access, AT_EACCESS) == 0;
}

bool mayBeRead(const TablePath &path) { return isAllowed(path, R_OK); }

// A table that a file handle can hold.
void needsOpenable(const Call &call, const TablePath &path) {
  if (!call) return;
  const ErrnoKept kept;
  struct stat table;
  const bool isKnown = stat(files::PosixPath(path.text).text(), &table) == 0;
  call.misusedIf(isKnown && (S_ISFIFO(table.st_mode) || table.st_size > INT_MAX),
                 {"table ", Quoted(path.text), " cannot be opened: it has more than ", INT_MAX,
                  " bytes, or is a pipe"});
}

bool isThere(const TablePath &path) {
  const ErrnoKept kept;
  return files::fileExists(path.text);
}

// What an entry of a folder is, as S_IFREG and so on; 0 where there is none. A link is not
// followed.
mode_t kindAt(const char *path) {
  const ErrnoKept kept;
  struct stat entry;
  return lstat(path, &entry) == 0 ? entry.st_mode & S_IFMT : 0;
}

bool isFolder(const TablePath &path) {
  const ErrnoKept kept;
  return kindAt(files::PosixPath(path.text).text()) == S_IFDIR;
}

// Whether a table that was to have another name has the old one still.
bool hasKeptName(const TablePath &path, const TablePath &newPath) {
  const ErrnoKept kept;
  const files::PosixPath before(path.text);
  const files::PosixPath after(newPath.text);
  return kindAt(before.text()) != 0 && !isOneEntry(before.text(), after.text());
}

constexpr char kNothingChanged[] = "nothing is changed: ";

// A folder in which this user may make files, and exchange the entry at a POSIX path. `shown`: the
// path as lines have it.
void needsExchange(const Call &call, const char *path, std::string_view shown) {
  if (!call) return;
  const ErrnoKept kept;
  const Quoted folder(shown.substr(0, shown.rfind(shown.starts_with('/') ? '/' : ':')));
  const bool mayWrite = mayWriteFolderOf(path);
  call.misusedIf(!mayWrite && (errno == ENOENT || errno == ENOTDIR),
                 {kNothingChanged, "there is no folder ", folder});
  call.misusedIf(!mayWrite, {kNothingChanged, "folder ", folder, " may not be written"});
  call.misusedIf(call && kindAt(path) != 0 && !mayRemove(path),
                 {kNothingChanged, Quoted(shown), " is another user's, and folder ", folder,
                  " lets only owners exchange files"});
}

void needsExchange(const Call &call, const TablePath &path) {
  const ErrnoKept kept;
  needsExchange(call, files::PosixPath(path.text).text(), path.text);
}

// The same of a table's file: where the table is a link, its file is in another place.
void needsExchangeOfFile(const Call &call, const TablePath &path) {
  const ErrnoKept kept;
  const files::PosixPath posix(path.text);
  char file[PATH_MAX];
  const bool isLink = kindAt(posix.text()) == S_IFLNK && realpath(posix.text(), file) != nullptr;
  needsExchange(call, isLink ? file : posix.text(), isLink ? file : path.text);
}

// Reasons that no work has while all goes well; what is only looked for sets errno, too.
void needsSystem(const Call &call) {
  constexpr int kOfTheSystem[] = {ENOSPC, EDQUOT, EFBIG, EROFS, EIO, EMFILE, ENFILE, ENOMEM};
  const bool isRefused =
      std::find(std::begin(kOfTheSystem), std::end(kOfTheSystem), errno) != std::end(kOfTheSystem);
  call.misusedIf(isRefused, {kNothingChanged, "the system refuses: ", files::refusal(errno)});
  call.misusedIf(errno == ETIMEDOUT, {kNothingChanged, "another program holds the table"});
}

// What stands under the name of an edit's temporary file is one that the edit can use up.
void needsTemporary(const Call &call, const TablePath &path) {
  const ErrnoKept kept;
  LeftOver leftOver;
  call.misusedIf(!leftOver.openFor(files::PosixPath(path.text).text()),
                 {kNothingChanged, Quoted(temporaryPath(path).text),
                  " is in the way, where the temporary file would be"});
}

// That a table's content can change.
void needsRewriting(const Call &call, const TablePath &path) {
  needsExchangeOfFile(call, path);
  const bool isStillThere = isThere(path);
  call.misusedIf(isStillThere && !isAllowed(path, W_OK),
                 {kNothingChanged, "table ", Quoted(path.text), " may not be written"});
  needsSystem(call);
  if (isStillThere) needsTemporary(call, path);
}

}  // namespace

void needsDirectory(const Call &call, const char *directory) {
  call.needsAll();
  const std::string_view text = base::textOf(directory);
  call.misusedIf(text.size() >= sizeof szDirTables,
                 {"a directory of ", text.size(), " characters is not taken: at most ",
                  sizeof szDirTables - 1, " are possible"});
  if (!text.empty() && call) files::needsFolder(call, directory);
}

void needsName(const Call &call, const char *name) {
  call.needsAll();
  needsColonPath(call, base::textOf(name));
  const std::string_view directory = directoryInUse();
  call.misusedIf(directory.empty(),
                 {"there is no directory of tables: call setDirTables, or set szDirTables"});
  if (!call) return;
  call.misusedIf(!tablePlace(name).path,
                 {"the path of table ", Quoted(name), " would have more than 255 characters"});
  if (!call) return;
  needsDirectory(call, std::string_view(ZRV_Libelle_NC_szDirTables).empty()
                           ? szDirTables
                           : ZRV_Libelle_NC_szDirTables);
}

void needsExisting(const Call &call, const char *name) {
  needsName(call, name);
  if (!call) return;
  const ErrnoKept kept;
  const TablePath path = tablePlace(name).path;
  call.misusedIf(!isThere(path), {"there is no table ", Quoted(path.text)});
}

void needsReadable(const Call &call, const char *name) {
  needsExisting(call, name);
  if (!call) return;
  const ErrnoKept kept;
  const TablePath path = tablePlace(name).path;
  call.misusedIf(!mayBeRead(path), {"table ", Quoted(path.text), " may not be read"});
}

void needsTable(const Call &call, const char *name) {
  needsReadable(call, name);
  if (call) needsOpenable(call, tablePlace(name).path);
  files::needsFileSlots(call, 1);
  files::needsMemorySlots(call, 1);
}

void needsTableToEdit(const Call &call, const char *name) {
  needsReadable(call, name);
  files::needsFileSlots(call, 2);
}

void needsKey(const Call &call, std::string_view key) {
  call.needsAll();
  call.misusedIf(key.data() == nullptr, {"a key has a length of 0 or more"});
  call.misusedIf(key.find('\0') != key.npos,
                 {"the key has a NUL after ", key.find('\0'), " of its ", key.size(),
                  " characters, and matches no line"});
  needsCp1252(call, "the key", key);
}

void needsColumn(const Call &call, int column) {
  call.misusedIf(column < 0,
                 {"no line has column ", column, ": 0 is the code, columns are from 1 on"});
}

void needsNumber(const Call &call, int code) {
  call.misusedIf(code < 0 || code > 99, {"no line has the code ", code, ": it has two digits"});
}

void needsDay(const Call &call, int dateColumn, int date) {
  call.misusedIf(dateColumn < 1, {"no line has its first day in column ", dateColumn});
  call.misusedIf(!dates::isCalendarDate(date), {date, " is no day: a day is YYYYMMDD"});
}

void needsLabel(const Call &call, std::string_view label, std::size_t longest) {
  call.needsAll();
  call.misusedIf(label.size() > longest,
                 {"a label of ", label.size(), " characters matches no line"});
  needsCp1252(call, "the label", label);
}

void needsCriteria(const Call &call, const char *const *labels, const int *columns) {
  call.needsAll();
  for (; call && *columns >= 0 && *labels != nullptr; ++labels, ++columns)
    needsCp1252(call, "a label", *labels);
}

void needsCurrentLine(const Call &call) {
  call.misusedIf(ZRV_Libelle_NC_il < 1, {"there is no current line: look one up before"});
}

void needsCurrentColumn(const Call &call, FieldChoice choice) {
  needsCurrentLine(call);
  call.misusedIf(!choice.isCode && choice.column < 1,
                 {"no line has column ", choice.column,
                  ": keyLength 0 with column 0 is the code, columns are from 1 on"});
}

void needsLineRoom(const Call &call, FieldChoice choice, const char *text) {
  constexpr std::size_t kLongestLine = kLineSize - 2;
  call.needsAll();
  const ChosenField replaced = chosenField(bufferFields(), choice);
  call.misusedIf(!replaced.exists, {"the line in the buffer has no column ", choice.column});
  if (!call) return;
  std::size_t length = std::strlen(text) - replaced.field.size();
  SplitFields fields = bufferFields();
  do {
    length += fields.field().size() + 1;
  } while (fields.next());
  needsFit(call, "the line", length - 1, kLongestLine);
  needsCp1252(call, "the text", text);
}

void needsDefaultTable(const Call &call, const char *name) {
  call.needsAll();
  const std::string_view directory(szDirTables, strnlen(szDirTables, sizeof szDirTables));
  call.misusedIf(directory.empty(), {"there is no directory of tables: szDirTables is empty"});
  if (call) needsDirectory(call, szDirTables);
  if (!call) return;
  const ErrnoKept kept;
  const TablePath path = defaultTablePath(name);
  call.misusedIf(!path || !files::fileExists(path.text),
                 {"there is no table ", Quoted(name), " in ", Quoted(directory),
                  ": \".tab\" is added to the name"});
  if (!call) return;
  call.misusedIf(!mayBeRead(path), {"table ", Quoted(path.text), " may not be read"});
  needsOpenable(call, path);
  files::needsFileSlots(call, 1);
}

void needsHeading(const Call &call, const char *version, const char *title) {
  needsCp1252(call, "the version", base::textOf(version));
  needsCp1252(call, "the title", base::textOf(title));
}

void needsTableToRepair(const Call &call, const char *name, const char *version,
                        const char *title) {
  needsTableToEdit(call, name);
  needsHeading(call, version, title);
}

void needsNames(const Call &call, const char *name, const char *newName, const char *version,
                const char *title) {
  needsTableToRepair(call, name, version, title);
  needsName(call, newName);
}

void needsTableToBackUp(const Call &call, const char *name) {
  needsTableToEdit(call, name);
  call.misusedIf(call && std::string_view(tablePlace(name).path.text).ends_with(".bak"),
                 {"a table whose path ends with \".bak\" has no back-up"});
}

void needsEdited(const Call &call, const char *name, bool isEdited) {
  if (isEdited || !call) return;
  needsOpenable(call, tablePlace(name).path);
  needsRewriting(call, tablePlace(name).path);
  call.misused({kNothingChanged, "the table has no line ", ZRV_Libelle_NC_il});
}

void needsMade(const Call &call, const char *name, bool isMade) {
  if (isMade || !call) return;
  needsExchange(call, tablePlace(name).path);
  needsSystem(call);
  files::needsFileSlots(call, 1);
  call.misused({kNothingChanged, "a file cannot be there"});
}

void needsBackedUp(const Call &call, const TablePath &backUp, bool isBackedUp) {
  if (isBackedUp || !call) return;
  if (backUp) needsExchange(call, backUp);
  needsSystem(call);
  call.misused({kNothingChanged, "a back-up cannot be where it would be"});
}

void needsGone(const Call &call, const char *name, bool isGone) {
  if (isGone || !call) return;
  needsExchange(call, tablePlace(name).path);
  call.misused({kNothingChanged, "the system refuses: ", files::refusal(errno)});
}

void needsModified(const Call &call, const char *name, const char *newName, bool isModified) {
  if (isModified || !call) return;
  const TablePath path = tablePlace(name).path;
  const TablePath newPath = tablePlace(newName).path;
  const bool isRenamed = std::strcmp(path.text, newPath.text) != 0;
  if (isRenamed) {
    call.misusedIf(isFolder(newPath), {Quoted(newPath.text), " is a folder"});
    needsExchange(call, newPath);
    needsExchange(call, path);
  }
  needsRewriting(call, path);
  call.misusedIf(isRenamed && hasKeptName(path, newPath),
                 {kNothingChanged, "it cannot have the name ", Quoted(newPath.text)});
  call.misused({"the table has no line for title or version, and has its new name all the same"});
}

void needsSoundHeading(const Call &call, const char *name, std::optional<bool> isSound) {
  if (isSound.value_or(false) || !call) return;
  needsRewriting(call, tablePlace(name).path);
  call.misusedIf(isSound.has_value(), {"line 1 is the title, and line 3 is not \"#DEBUT\""});
}

void needsMarks(const Call &call, std::optional<bool> hasMarks) {
  call.misusedIf(!hasMarks.has_value(), {"the table cannot be read to its end"});
  call.misusedIf(hasMarks == false, {"the table has no line \"#DEBUT\""});
}

void needsListRoom(const Call &call, std::size_t length, int outSize) {
  call.misusedIf(length >= static_cast<std::size_t>(outSize),
                 {"the codes need ", length + 1, " bytes, and not all are listed in ", outSize});
}

}  // namespace korvel::tables
