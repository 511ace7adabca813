// SPDX-License-Identifier: MIT
// For tables/ and dialogs/: what an application can do wrong with tables, found and told.
#ifndef KORVEL_TABLES_MISUSE_H
#define KORVEL_TABLES_MISUSE_H

#include <optional>
#include <string_view>

#include "base/views.h"
#include "files/misuse.h"
#include "tables/path.h"
#include "tables/state.h"

namespace korvel::tables {

using base::Call;
using base::filled;
using base::given;
using base::lookForMisuse;
using base::orNull;
using base::outOfLine;
using base::shownRun;
using base::tellsMisuse;

// A directory of tables that is there, or "".
void needsDirectory(const Call &call, const char *directory);

// The name of a table that can be made, of one that is there, of one that can be read as well, then
// with the handles for a lookup or for an edit.
void needsName(const Call &call, const char *name);
void needsExisting(const Call &call, const char *name);
void needsReadable(const Call &call, const char *name);
void needsTable(const Call &call, const char *name);
void needsTableToEdit(const Call &call, const char *name);

// A key that matches something, and a column of a line.
void needsKey(const Call &call, std::string_view key);
void needsColumn(const Call &call, int column);
void needsNumber(const Call &call, int code);
void needsDay(const Call &call, int dateColumn, int date);

// A label that matches something; `longest`: in characters.
void needsLabel(const Call &call, std::string_view label, std::size_t longest = kLineSize);
void needsCriteria(const Call &call, const char *const *labels, const int *columns);

// A current line, and a column as the functions of that line take it.
void needsCurrentLine(const Call &call);
void needsCurrentColumn(const Call &call, FieldChoice choice);

// A text that fits into the line buffer, in place of a field that the line has.
void needsLineRoom(const Call &call, FieldChoice choice, const char *text);

// The name of a table in szDirTables, which functions that list look at alone.
void needsDefaultTable(const Call &call, const char *name);

// The name of a table whose heading changes, and the heading's texts; the name of one that may be,
// or is to be, as well.
void needsHeading(const Call &call, const char *version, const char *title);
void needsTableToRepair(const Call &call, const char *name, const char *version, const char *title);
void needsNames(const Call &call, const char *name, const char *newName, const char *version,
                const char *title);

// A table whose name is not its back-up's.
void needsTableToBackUp(const Call &call, const char *name);

// That a work was done, else why not: rights are looked at, and the disk's reason is in errno
// (files::ErrnoOfWork). Of an edit of the current line, of a table made, backed up, removed, given
// a heading and a name, or repaired.
void needsEdited(const Call &call, const char *name, bool isEdited);
void needsMade(const Call &call, const char *name, bool isMade);
void needsBackedUp(const Call &call, const TablePath &backUp, bool isBackedUp);
void needsGone(const Call &call, const char *name, bool isGone);
void needsModified(const Call &call, const char *name, const char *newName, bool isModified);
// isSound: nothing where the table could not be opened or replaced.
void needsSoundHeading(const Call &call, const char *name, std::optional<bool> isSound);

// That a table was read and has its marks; room for a list of its codes.
void needsMarks(const Call &call, std::optional<bool> hasMarks);
void needsListRoom(const Call &call, std::size_t length, int outSize);

// Does what a lookup or search does with a table, and tells if a field of the line found, or its
// code, does not fit into the buffer.
template <typename Work>
int toldLookup(const Call &call, const char *table, const char *out, int outSize,
               FieldChoice choice, Work work) {
  needsTable(call, table);
  needsRoom(call, out, outSize);
  const bool found = work();
  if (found && call) {
    needsFit(call, "the field", chosenField(bufferFields(), choice).field.size(),
             static_cast<std::size_t>(outSize - 1));
  }
  return found ? 1 : 0;
}

template <typename Work>
int toldKeyLookup(const Call &call, std::string_view key, FieldChoice choice, const char *table,
                  const char *out, int outSize, Work work) {
  needsKey(call, key);
  needsColumn(call, choice.column);
  return toldLookup(call, table, out, outSize, choice, work);
}

template <typename Work>
int toldNumberLookup(const Call &call, int code, int column, const char *table, const char *out,
                     int outSize, Work work) {
  needsNumber(call, code);
  needsColumn(call, column);
  return toldLookup(call, table, out, outSize, {column == 0, column}, work);
}

template <typename Work>
int toldCurrentLookup(const Call &call, FieldChoice choice, const char *table, const char *out,
                      int outSize, Work work) {
  needsCurrentColumn(call, choice);
  return toldLookup(call, table, out, outSize, choice, work);
}

template <typename Work>
int toldDayLookup(const Call &call, std::string_view key, int column, const char *table,
                  const char *out, int outSize, int dateColumn, int date, Work work) {
  needsDay(call, dateColumn, date);
  return toldKeyLookup(call, key, {column == 0, column}, table, out, outSize, work);
}

// A search gives the code.
template <typename Work>
int toldLabelSearch(const Call &call, const char *label, const char *table, const char *out,
                    int outSize, Work work) {
  needsLabel(call, base::textOf(label));
  return toldLookup(call, table, out, outSize, {true, 0}, work);
}

template <typename Work>
int toldAnyCaseSearch(const Call &call, const char *label, const char *table, const char *out,
                      int outSize, Work work) {
  constexpr std::size_t kLongest = 255;
  needsLabel(call, base::textOf(label), kLongest);
  return toldLookup(call, table, out, outSize, {true, 0}, work);
}

template <typename Work>
int toldCriteriaSearch(const Call &call, const char *const *labels, const int *columns,
                       const char *table, const char *out, int outSize, Work work) {
  needsCriteria(call, labels, columns);
  return toldLookup(call, table, out, outSize, {true, 0}, work);
}

// Does what an edit does, and tells if it does not succeed.
template <typename Work>
int toldEdit(const Call &call, const char *table, Work work) {
  needsCurrentLine(call);
  needsTableToEdit(call, table);
  const files::ErrnoOfWork errnoOfWork(call);
  const bool done = work();
  needsEdited(call, table, done);
  return done ? 1 : 0;
}

struct FieldText {
  FieldChoice choice;
  const char *text;
};
template <typename Work>
int toldReplacement(const Call &call, const FieldText &field, const char *table, Work work) {
  needsCurrentColumn(call, field.choice);
  needsCp1252(call, "the text", base::textOf(field.text));
  std::optional<bool> hadField;
  const int result = toldEdit(call, table, [&] { return (hadField = work()).has_value(); });
  call.misusedIf(hadField == false, {"the line has no column ", field.choice.column});
  return result;
}

template <typename Work>
int toldInsertion(const Call &call, int fields, const char *table, Work work) {
  constexpr int kMostFields = 170;
  files::needsNotNegative(call, "the number of fields", fields);
  call.misusedIf(fields > kMostFields,
                 {"a line has room for ", kMostFields, " such fields, and not for ", fields});
  return toldEdit(call, table, work);
}

}  // namespace korvel::tables

#endif
