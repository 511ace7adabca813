// SPDX-License-Identifier: MIT
// The table of the commands, and the help that is made of it.
#include "tools/commands.h"

#include <algorithm>
#include <cstdio>

namespace korvel::tools {
namespace {

constexpr Option kCheckOptions[] = {
    {"dates", "N", "check periods, too: their first day is in column N, the last in the next"},
};
constexpr Option kFindOptions[] = {
    {"column", "N", "print column N alone (0 is the code)"},
    {"date", "YYYYMMDD", "only a line in force on that day"},
    {"dates", "N", "the column of the first day in force, DD/MM/YY; the last is in the next"},
    {"all", nullptr, "print every line found, not only the first"},
};
constexpr Option kSearchOptions[] = {
    {"column", "N", "look in column N (1 if not said; 0 is the code)"},
    {"ignore-case", nullptr, "take small letters and capitals for the same"},
    {"all", nullptr, "print every line found, not only the first"},
};
constexpr Option kSetOptions[] = {
    {"line", "N", "the line of that number, which has to have the code"},
};
constexpr Option kInsertOptions[] = {
    {"after", "CODE", "behind the first line of that code, not behind the last data line"},
};
constexpr Option kDeleteOptions[] = {
    {"line", "N", "the line of that number, which has to have the code"},
    {"all", nullptr, "all lines of the code"},
};
constexpr Option kRepairOptions[] = {
    {"title", "T", "the title (line 1)"},
    {"version", "V", "the version (line 2, behind \"Version: \")"},
};
constexpr Option kImportOptions[] = {
    {"title", "T", "the title (line 1)"},
    {"version", "V", "the version (line 2, behind \"Version: \")"},
    {"encoding", "NAME", "of the CSV file: utf-8 (if not said) or cp1252"},
    {"delimiter", "C", "what separates its fields: a comma if not said, \\t for a tab"},
    {"header", nullptr, "its first row is a heading and left out"},
    {"replace", "C", "put C for commas, pluses and characters that a table cannot hold"},
};
constexpr Option kExportOptions[] = {
    {"format", "NAME", "csv (if not said), sqlite (a database) or postgres (a file for psql)"},
    {"output", "FILE", "write there, not to standard output"},
    {"header", nullptr, "begin the CSV with a heading row"},
    {"delimiter", "C", "what separates the fields of the CSV, a comma if not said"},
};

constexpr Command kCommands[] = {
    {"check", "TABLE...", "name what is wrong with tables, a line for each finding", kCheckOptions,
     1, kAnyNumber, runCheck},
    {"show", "TABLE", "print all lines of a table", {}, 1, 1, runShow},
    {"list", "TABLE", "print the codes, one a line", {}, 1, 1, runList},
    {"find", "TABLE CODE", "print the line of a code (? in it is any character)", kFindOptions, 2,
     2, runFind},
    {"search", "TABLE LABEL", "print the line of a label (? in it is any character)",
     kSearchOptions, 2, 2, runSearch},
    {"set", "TABLE CODE COLUMN TEXT", "write a column of a code's line (0 is the code)",
     kSetOptions, 4, 4, runSet},
    {"insert", "TABLE CODE [TEXT...]", "add a line; columns that are not given get \"Néant\"",
     kInsertOptions, 2, kAnyNumber, runInsert},
    {"delete", "TABLE CODE", "remove a code's line", kDeleteOptions, 2, 2, runDelete},
    {"backup",
     "TABLE",
     "copy a table to its back-up, \".bak\" for its last four characters",
     {},
     1,
     1,
     runBackup},
    {"repair", "TABLE", "put a missing or wrong heading right", kRepairOptions, 1, 1, runRepair},
    {"diff", "OLD NEW", "print which codes were added, removed and changed", {}, 2, 2, runDiff},
    {"import", "CSV TABLE", "make a table of a CSV file", kImportOptions, 2, 2, runImport},
    {"export", "TABLE", "write the data lines for other programs", kExportOptions, 1, 1, runExport},
};

// A name and what it is for, the latter in a column of its own.
std::string row(const std::string &name, int width, const char *meaning) {
  char text[256];
  std::snprintf(text, sizeof text, "  %-*s %s\n", width, name.c_str(), meaning);
  return text;
}

std::string optionRow(const Option &option) {
  const std::string value = option.value == nullptr ? "" : std::string(" ") + option.value;
  return row(std::string("--") + option.name + value, 17, option.meaning);
}

std::string callOf(const Command &command) {
  return std::string(command.name) + ' ' + command.operands;
}

}  // namespace

std::span<const Command> commands() { return kCommands; }

const Command *commandOf(std::string_view name) {
  const auto *const found =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&](const Command &command) { return name == command.name; });
  return found == std::end(kCommands) ? nullptr : found;
}

std::string helpOf(const Command &command) {
  std::string text = "usage: korvel-tables " + callOf(command) +
                     (command.options.empty() ? "\n" : " [options]\n") + command.purpose + "\n";
  if (!command.options.empty()) text += '\n';
  for (const Option &option : command.options) text += optionRow(option);
  return text;
}

std::string help() {
  std::string text =
      "usage: korvel-tables COMMAND ...\n"
      "Keeps code tables: checks, searches, edits, compares and converts them.\n\n";
  for (const Command &command : kCommands) text += row(callOf(command), 26, command.purpose);
  return text +
         "\nkorvel-tables COMMAND --help tells the options of a command, korvel-tables --version"
         " the version.\n"
         "TABLE is a file. All that is printed is UTF-8. The exit code is 0 when done, found or\n"
         "clean, 1 when not found or not clean, 2 for wrong use and files that cannot be read or\n"
         "written. The manual is korvel-tables(1).\n";
}

}  // namespace korvel::tools
