// SPDX-License-Identifier: MIT
// The commands: what each is called, what it takes, and the function that runs it. The help is made
// of the same rows, one per command.
#ifndef KORVEL_TOOLS_COMMANDS_H
#define KORVEL_TOOLS_COMMANDS_H

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace korvel::tools {

class Arguments;

struct Option {
  const char *name;
  const char *value;  // what its value is called; null for none
  const char *meaning;
};

inline constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

struct Command {
  const char *name;
  const char *operands;  // as the help shows them
  const char *purpose;
  std::span<const Option> options;
  std::size_t leastOperands;
  std::size_t mostOperands;
  int (*run)(const Arguments &arguments);  // returns the exit code
};

std::span<const Command> commands();
// Null for a name that no command has.
const Command *commandOf(std::string_view name);

std::string helpOf(const Command &command);
std::string help();

// One for each row, in the sources called like them.
int runCheck(const Arguments &arguments);
int runShow(const Arguments &arguments);
int runList(const Arguments &arguments);
int runFind(const Arguments &arguments);
int runSearch(const Arguments &arguments);
int runSet(const Arguments &arguments);
int runInsert(const Arguments &arguments);
int runDelete(const Arguments &arguments);
int runBackup(const Arguments &arguments);
int runRepair(const Arguments &arguments);
int runDiff(const Arguments &arguments);
int runImport(const Arguments &arguments);
int runExport(const Arguments &arguments);

}  // namespace korvel::tools

#endif
