#include <string>

#include <korvel/shell.h>
#include "shell/guard.h"

constinit int BSDtest = 0;

namespace {

int forEachProcess(const char *name, ToolLine_t perLine) {
  return korvel::shell::orOnFailure(-1, [&] {
    return BSDInvokeToolPr((std::string("ps -x -c | grep ") + name).c_str(), perLine);
  });
}

}  // namespace

int BSDkill(const char *name) { return name == nullptr ? -1 : forEachProcess(name, BSDprocessf); }

// Kept: the whole line goes to "kill", not only the process number it begins with.
int BSDprocessf(char *line) {
  if (line == nullptr) return 0;
  return korvel::shell::orOnFailure(0, [&] {
    BSDInvokeTool((std::string("kill ") + line).c_str(), nullptr, 0);
    return 0;
  });
}

int BSDtestProcess(const char *name) {
  BSDtest = 0;
  if (name != nullptr) forEachProcess(name, BSDprocesst);
  return BSDtest;
}

int BSDprocesst(char *) {
  BSDtest = 1;
  return 0;
}
