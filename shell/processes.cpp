// SPDX-License-Identifier: MIT
// Processes found by name: "ps -x -c | grep name", with whole names between the two.
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

#include <korvel/shell.h>

#include "base/guard.h"
#include "base/posix.h"
#include "shell/descriptor.h"
#include "shell/invoke.h"
#include "shell/misuse.h"
#include "shell/processnames.h"
#include "shell/tool.h"

constinit int BSDtest = 0;

namespace korvel::shell {
namespace {

using base::guarded;

std::string processList() { return withWholeNames(Tool("ps -x -c", Flow::FromTool).text()); }

// A nameless file that holds `text`, with its offset at the beginning; none where there is no room.
Descriptor fileOf(std::string_view text) {
  Descriptor file(memfd_create("korvel", MFD_CLOEXEC));
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t put = base::retried([&] {
      return pwrite(file.get(), text.data() + done, text.size() - done, static_cast<off_t>(done));
    });
    if (put <= 0) return Descriptor();
    done += static_cast<std::size_t>(put);
  }
  return file;
}

int forEachProcess(const char *name, ToolLine_t perLine) {
  const Descriptor list = fileOf(processList());
  if (list.get() < 0) return -1;
  Tool grep(("grep " + std::string(name)).c_str(), Flow::FromTool, Environment::Callers,
            list.get());
  if (grep.started()) handLines(grep, perLine);
  return grep.finish();
}

// Leaves the process alone where there is no memory for the command.
// Kept: the whole line goes to "kill", not only the process number it begins with.
int killProcess(char *line) {
  return guarded(0, [&] {
    runTool((std::string("kill ") + line).c_str());
    return 0;
  });
}

int noteProcess(char *) {
  BSDtest = 1;
  return 0;
}

int testProcess(const char *name) {
  BSDtest = 0;
  if (name != nullptr) forEachProcess(name, noteProcess);
  return BSDtest;
}

}  // namespace
}  // namespace korvel::shell

using namespace korvel::shell;
using korvel::base::guarded;

int BSDkill(const char *name) {
  lookForMisuse([=] { Call("BSDkill", {name}).needsAll(); });
  return name == nullptr ? -1 : guarded(-1, [&] { return forEachProcess(name, killProcess); });
}

int BSDprocessf(char *line) {
  lookForMisuse([=] { Call("BSDprocessf", {line}).needsAll(); });
  return line == nullptr ? 0 : killProcess(line);
}

int BSDtestProcess(const char *name) {
  lookForMisuse([=] { Call("BSDtestProcess", {name}).needsAll(); });
  return guarded(0, [&] { return testProcess(name); });
}

int BSDprocesst(char *line) { return noteProcess(line); }
