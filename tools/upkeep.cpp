// SPDX-License-Identifier: MIT
// The commands backup and repair.
#include <string>
#include <string_view>

#include <korvel/tables.h>

#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/edit.h"
#include "tools/failure.h"
#include "tools/heading.h"
#include "tools/place.h"
#include "tools/progress.h"
#include "tools/tablefile.h"

namespace korvel::tools {
namespace {

constexpr std::string_view kBackUpEnd = ".bak";

// The library puts the extension in the place of the last four characters, whatever they are.
std::string backUpOf(const std::string &path) {
  const std::size_t name = path.rfind('/') + 1;
  if (path.size() < name + kBackUpEnd.size() + 1 || path.ends_with(kBackUpEnd)) {
    throw Failure(kFailed, path + ": a table of this name has no back-up");
  }
  return path.substr(0, path.size() - kBackUpEnd.size()) + std::string(kBackUpEnd);
}

bool isFileOf(const std::string &content, const std::string &path) {
  try {
    return contentOf(path) == content;
  } catch (const Failure &) {
    return false;
  }
}

// Whether both lines are as they should be.
bool isAsWanted(const TableFile &table, const Heading &heading) {
  return table.begin() == 3 && table.line(1).text == heading.title &&
         table.line(2).text == heading.versionLine();
}

void modify(const std::string &path, const Heading &heading) {
  const std::string place = placeOf(path);
  const std::string name = nameForEdit(place);
  if (ZRV_Table_modify(name.c_str(), name.c_str(), heading.version.c_str(),
                       heading.title.c_str()) != 1) {
    failToWrite(place);
  }
}

// Of the two lines in front of "#DEBUT" both are missing.
void restoreBoth(const std::string &path, const Heading &heading) {
  const std::string place = placeOf(path);
  const std::string name = nameForEdit(place);
  ZRV_Table_repair(name.c_str(), heading.version.c_str(), heading.title.c_str());
  // The answer is 1, too, where nothing could be written.
  if (!isAsWanted(TableFile(path), heading)) failToWrite(place);
}

// One of them is missing.
void restoreOne(const TableFile &table, const Heading &heading) {
  TableEdit edit(table.path());
  if (table.line(1).text.starts_with(kVersionMark)) {
    edit.insertBefore(1, table, heading.title);
  } else {
    edit.insertBefore(2, table, heading.versionLine());
  }
  modify(table.path(), heading);
}

[[noreturn]] void refuseToRepair(const TableFile &table, const std::string &why) {
  throw Failure(kUnlike, table.path() + ": cannot be repaired: " + why);
}

// What stands in front of "#DEBUT" is overwritten. Throws for what can only be data lines there.
void requireHeading(const TableFile &table) {
  if (table.line(table.begin() - 1).text.starts_with(kVersionMark)) return;
  if (table.line(1).text.starts_with(kVersionMark))
    refuseToRepair(table, "line 2 stands behind the version, as if it were a data line");
  for (int number = 1; number < table.begin(); ++number) {
    const std::string_view text = table.line(number).text;
    if (codeOf(text).size() == text.size()) continue;
    refuseToRepair(
        table, "line " + std::to_string(number) + " has several fields, as if it were a data line");
  }
}

}  // namespace

// The library does not say whether there is a back-up now.
int runBackup(const Arguments &arguments) {
  const std::string &path = arguments.operand(0);
  const FolderLock lock(path);
  const std::string before = contentOf(path);
  const std::string place = placeOf(path);
  const std::string backUp = backUpOf(place);
  {
    Progress progress(1);
    progress.beforeCall(1);
    ZRV_Table_sauvegarde(libraryName(place).c_str(), 1);
  }
  if (!isFileOf(before, backUp)) failToWrite(backUp);
  return kDone;
}

int runRepair(const Arguments &arguments) {
  const Heading heading = headingOf(arguments);
  const FolderLock lock(arguments.operand(0));
  const TableFile table(arguments.operand(0));
  if (isAsWanted(table, heading)) return kDone;
  if (table.begin() == 0) refuseToRepair(table, "it has no line \"#DEBUT\"");
  if (table.begin() > 3) {
    refuseToRepair(
        table, "\"#DEBUT\" stands in line " + std::to_string(table.begin()) + ", not in line 3");
  }
  table.requireEditable(table.begin());
  Progress progress(1);
  progress.beforeCall(1);
  if (table.begin() == 1) {
    restoreBoth(table.path(), heading);
    return kDone;
  }
  requireHeading(table);
  if (table.begin() == 2) {
    restoreOne(table, heading);
  } else {
    modify(table.path(), heading);
  }
  return kDone;
}

}  // namespace korvel::tools
