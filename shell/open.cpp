// SPDX-License-Identifier: MIT
// Documents shown by the desktop's own opener, which may end only when the viewer does.
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>

#include <paths.h>

#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/misuse.h"
#include "shell/tool.h"

namespace korvel::shell {
namespace {

// An opener that still runs after this time has found a viewer.
constexpr std::chrono::seconds kPatience(1);

// `text` as one word of a command, whatever it holds.
std::string asWord(std::string_view text) {
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

// A command that runs another one detached, so that nobody has to wait for it, and prints its
// status. The command's own output is thrown away: the viewer that it starts outlives the pipe.
std::string onItsOwn(std::string_view command) {
  return "(" _PATH_BSHELL " -c " + asWord(command) + " >" _PATH_DEVNULL "; echo $?) &";
}

int openDocument(std::string_view path) {
  const std::string command = "xdg-open \"" + std::string(path) + "\"";
  Tool opener(onItsOwn(command).c_str(), Flow::FromTool);
  if (!opener.started()) return -1;
  if (!opener.writesWithin(kPatience)) return 0;
  char status[8] = "";
  opener.read(status, sizeof status - 1);
  const int withoutStatus = opener.finish();
  return status[0] == '\0' ? withoutStatus : std::atoi(status) << 8;
}

}  // namespace
}  // namespace korvel::shell

using namespace korvel::shell;
using korvel::base::guarded;

int BSDopen(const char *path) {
  lookForMisuse([=] { needsDocument(Call("BSDopen", {path}), path); });
  return path == nullptr ? -1 : guarded(-1, [&] { return openDocument(path); });
}
