// SPDX-License-Identifier: MIT
// korvel-tables: keeps code tables from the command line. Finds the command, runs it, and makes an
// exit code and one line of whatever goes wrong.
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/failure.h"
#include "tools/output.h"

namespace {

using namespace korvel::tools;

int failWith(const char *text) {
  complain(text);
  return kFailed;
}

int runCommand(const Command &command, std::vector<std::string> words) {
  try {
    const Arguments arguments(command, std::move(words));
    if (arguments.wantsHelp()) {
      print(helpOf(command));
      return kDone;
    }
    return command.run(arguments);
  } catch (const WrongUse &wrong) {
    throw Failure(kFailed, std::string(command.name) + ": " + wrong.what() +
                               " (see korvel-tables " + command.name + " --help)");
  }
}

int run(const std::vector<std::string> &words) {
  if (words.empty()) throw Failure(kFailed, "which command? (see korvel-tables --help)");
  if (words[0] == "--help") {
    print(help());
    return kDone;
  }
  if (words[0] == "--version") {
    print("korvel-tables " KORVEL_TOOLS_VERSION "\n");
    return kDone;
  }
  const Command *const command = commandOf(words[0]);
  if (command == nullptr) {
    throw Failure(kFailed, "no command \"" + words[0] + "\" (see korvel-tables --help)");
  }
  return runCommand(*command, {words.begin() + 1, words.end()});
}

}  // namespace

int main(int argc, char **argv) {
  try {
    const int exitCode = run({argv + (argc > 0 ? 1 : 0), argv + argc});
    finishOutput();
    return exitCode;
  } catch (const Failure &failure) {
    complain(failure.what());
    return failure.exitCode();
  } catch (const std::bad_alloc &) {
    return failWith("not enough memory");
  } catch (const std::exception &other) {
    return failWith(other.what());
  }
}
