#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/tool.h"

using korvel::base::orOnFailure;
using korvel::shell::Flow;
using korvel::shell::Tool;

int BSDInvokeTool(const char *command, char *out, int outSize) {
  const bool wantsOutput = out != nullptr && outSize != 0;
  if (command == nullptr || (wantsOutput && outSize < 0)) return -1;
  return orOnFailure(-1, [&] {
    Tool tool(command, Flow::FromTool);
    if (wantsOutput && tool.started()) {
      out[tool.read(out, static_cast<std::size_t>(outSize) - 1)] = '\0';
    }
    return tool.finish();
  });
}

int BSDInvokeToolWr(const char *command, const char *input) {
  if (command == nullptr || input == nullptr) return -1;
  return orOnFailure(-1, [&] {
    Tool tool(command, Flow::ToTool);
    if (tool.started()) tool.write(input);
    return tool.finish();
  });
}

int BSDInvokeToolPr(const char *command, ToolLine_t perLine) {
  if (command == nullptr || perLine == nullptr) return -1;
  return orOnFailure(-1, [&] {
    Tool tool(command, Flow::FromTool);
    if (tool.started()) handLines(tool, perLine);
    return tool.finish();
  });
}
