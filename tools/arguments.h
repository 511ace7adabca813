// SPDX-License-Identifier: MIT
// What a command is given: its operands in their order, and its options by name.
#ifndef KORVEL_TOOLS_ARGUMENTS_H
#define KORVEL_TOOLS_ARGUMENTS_H

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/failure.h"

namespace korvel::tools {

struct Command;

// For a command that is called in another way than it can be.
class WrongUse : public Failure {
 public:
  explicit WrongUse(const std::string &text) : Failure(kFailed, text) {}
};

class Arguments {
 public:
  // Sorts the words behind a command's name. Throws WrongUse for what the command does not know.
  Arguments(const Command &command, std::vector<std::string> words);

  const Command &command() const { return command_; }
  bool wantsHelp() const { return has("help"); }

  const std::vector<std::string> &operands() const { return operands_; }
  const std::string &operand(std::size_t i) const { return operands_[i]; }

  bool has(const char *option) const { return options_.contains(option); }
  // Of an option that is not given: the other text.
  std::string text(const char *option, std::string_view otherwise = {}) const;
  // Throws WrongUse where the option is not given.
  std::string needed(const char *option) const;
  // A number from `least` on.
  std::optional<int> number(const char *option, int least) const;

 private:
  void checkOperands() const;

  const Command &command_;
  std::vector<std::string> operands_;
  std::map<std::string, std::string, std::less<>> options_;
};

// A number in digits alone. what: how the message calls it.
int numberOf(const std::string &text, int least, const std::string &what);

// What the command line says, in the bytes of a table. Throws for a character that has none.
std::string tableText(const std::string &argument);

// The same for a field: throws also for what separates fields or ends a line.
std::string fieldText(const std::string &argument);

}  // namespace korvel::tools

#endif
