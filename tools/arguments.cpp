// SPDX-License-Identifier: MIT
// Sorts the command line by what the command knows, and turns its texts into a table's.
#include "tools/arguments.h"

#include <charconv>
#include <utility>

#include <getopt.h>

#include "tools/commands.h"
#include "tools/tablefile.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

std::vector<option> longOptionsOf(const Command &command) {
  std::vector<option> known;
  for (const Option &option : command.options) {
    known.push_back(
        {option.name, option.value == nullptr ? no_argument : required_argument, nullptr, 0});
  }
  known.push_back({"help", no_argument, nullptr, 0});
  known.push_back({nullptr, 0, nullptr, 0});
  return known;
}

// What getopt_long did not know; word: the one that it has just left.
std::string unknownOption(const char *word) {
  const std::string option = optopt == 0 ? word : std::string{'-', static_cast<char>(optopt)};
  return "unknown option " + option + " (a text that begins with - comes behind --)";
}

}  // namespace

Arguments::Arguments(const Command &command, std::vector<std::string> words) : command_(command) {
  std::vector<char *> pointers;
  std::string name = command.name;
  pointers.push_back(name.data());
  for (std::string &word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const std::vector<option> known = longOptionsOf(command);
  const auto count = static_cast<int>(words.size()) + 1;
  opterr = 0;
  for (int index = 0;;) {
    const int got = getopt_long(count, pointers.data(), ":", known.data(), &index);
    if (got == -1) break;
    if (got == ':') throw WrongUse(std::string(pointers[optind - 1]) + " needs a value");
    if (got == '?') throw WrongUse(unknownOption(pointers[optind - 1]));
    options_[known[static_cast<std::size_t>(index)].name] = optarg == nullptr ? "" : optarg;
  }
  operands_.assign(pointers.begin() + optind, pointers.end() - 1);
  if (!wantsHelp()) checkOperands();
}

void Arguments::checkOperands() const {
  const std::string wanted = std::string("takes ") + command_.operands;
  if (operands_.size() < command_.leastOperands) throw WrongUse(wanted);
  if (operands_.size() > command_.mostOperands) {
    throw WrongUse(wanted + ", not \"" + operands_[command_.mostOperands] + "\" as well");
  }
}

std::string Arguments::text(const char *option, std::string_view otherwise) const {
  const auto found = options_.find(option);
  return found == options_.end() ? std::string(otherwise) : found->second;
}

std::string Arguments::needed(const char *option) const {
  if (!has(option)) throw WrongUse(std::string("--") + option + " is missing");
  return text(option);
}

std::optional<int> Arguments::number(const char *option, int least) const {
  if (!has(option)) return std::nullopt;
  return numberOf(text(option), least, std::string("--") + option);
}

int numberOf(const std::string &text, int least, const std::string &what) {
  int number = 0;
  const char *end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || behind != end || number < least) {
    throw WrongUse(what + " has to be a number from " + std::to_string(least) + " on, not \"" +
                   text + '"');
  }
  return number;
}

std::string tableText(const std::string &argument) {
  try {
    return fromUtf8(argument, [&](std::string_view character) -> char {
      throw Failure(kFailed, '"' + argument + "\": \"" + std::string(character) +
                                 "\" is no character of CP1252, which tables are written in");
    });
  } catch (const NotUtf8 &) {
    throw Failure(kFailed, quoted(argument) + " is not UTF-8");
  }
}

std::string fieldText(const std::string &argument) {
  const std::size_t separator = argument.find_first_of(kSeparators);
  if (separator != std::string::npos) {
    throw Failure(kFailed, '"' + argument + "\": a \"" + argument[separator] +
                               "\" separates fields and cannot stand in one");
  }
  if (argument.find_first_of(kLineEnd) != std::string::npos) {
    throw Failure(kFailed, quoted(argument) + ": a line end cannot stand in a field");
  }
  return tableText(argument);
}

}  // namespace korvel::tools
