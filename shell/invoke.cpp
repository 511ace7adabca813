// SPDX-License-Identifier: MIT
// Commands run to their end, for the interface and for the other tools.
#include "shell/invoke.h"

#include "base/guard.h"
#include "shell/misuse.h"
#include "shell/tool.h"

namespace korvel::shell {

int runTool(const char *command, std::span<char> output) {
  Tool tool(command, Flow::FromTool);
  if (tool.started() && !output.empty()) {
    output[tool.read(output.data(), output.size() - 1)] = '\0';
  }
  return tool.finish();
}

int feedTool(const char *command, std::string_view input) {
  Tool tool(command, Flow::ToTool);
  if (tool.started()) tool.write(input);
  return tool.finish();
}

int forEachLine(const char *command, ToolLine_t perLine) {
  Tool tool(command, Flow::FromTool);
  if (tool.started()) handLines(tool, perLine);
  return tool.finish();
}

}  // namespace korvel::shell

using namespace korvel::shell;
using korvel::base::guarded;

int BSDInvokeTool(const char *command, char *out, int outSize) {
  lookForMisuse([=] {
    needsOutput(Call("BSDInvokeTool", {command, orNull(filled(out)), outSize}), out, outSize);
  });
  if (command == nullptr || (out != nullptr && outSize < 0)) return -1;
  const std::span<char> output(out, out == nullptr ? 0 : static_cast<std::size_t>(outSize));
  return guarded(-1, [&] { return runTool(command, output); });
}

int BSDInvokeToolWr(const char *command, const char *input) {
  lookForMisuse([=] { Call("BSDInvokeToolWr", {command, input}).needsAll(); });
  if (command == nullptr || input == nullptr) return -1;
  return guarded(-1, [&] { return feedTool(command, input); });
}

int BSDInvokeToolPr(const char *command, ToolLine_t perLine) {
  lookForMisuse([=] { Call("BSDInvokeToolPr", {command, given(perLine)}).needsAll(); });
  if (command == nullptr || perLine == nullptr) return -1;
  return guarded(-1, [&] { return forEachLine(command, perLine); });
}
