// Processes found by name: "ps -x -c | grep name", with whole names between the two.
#include <cstddef>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/descriptor.h"
#include "shell/processnames.h"
#include "shell/tool.h"

constinit int BSDtest = 0;

namespace korvel::shell {
namespace {

constexpr std::size_t kBlockSize = 16384;

std::string processList() {
  const Tool ps("ps -x -c", Flow::FromTool);
  std::string lines;
  char block[kBlockSize];
  while (const std::size_t got = ps.started() ? ps.readSome(block, sizeof block) : 0) {
    lines.append(block, got);
  }
  return withWholeNames(lines);
}

// A file without a name that holds `text` and is read from its beginning; none where it has no
// room.
Descriptor fileOf(std::string_view text) {
  Descriptor file(memfd_create("korvel", MFD_CLOEXEC));
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t put =
        pwrite(file.get(), text.data() + done, text.size() - done, static_cast<off_t>(done));
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

}  // namespace
}  // namespace korvel::shell

using korvel::base::orOnFailure;
using korvel::shell::forEachProcess;

int BSDkill(const char *name) {
  if (name == nullptr) return -1;
  return orOnFailure(-1, [&] { return forEachProcess(name, BSDprocessf); });
}

// Kept: the whole line goes to "kill", not only the process number it begins with.
int BSDprocessf(char *line) {
  if (line == nullptr) return 0;
  return orOnFailure(0, [&] {
    BSDInvokeTool((std::string("kill ") + line).c_str(), nullptr, 0);
    return 0;
  });
}

int BSDtestProcess(const char *name) {
  BSDtest = 0;
  if (name == nullptr) return 0;
  orOnFailure(-1, [&] { return forEachProcess(name, BSDprocesst); });
  return BSDtest;
}

int BSDprocesst(char *) {
  BSDtest = 1;
  return 0;
}
