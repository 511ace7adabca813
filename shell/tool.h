// SPDX-License-Identifier: MIT
// For shell/: one running shell command and the pipe to it.
#ifndef KORVEL_SHELL_TOOL_H
#define KORVEL_SHELL_TOOL_H

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

#include <sys/types.h>

#include <korvel/shell.h>

namespace korvel::shell {

// The direction of the pipe.
enum class Flow {
  FromTool,  // the tool's output is read
  ToTool,    // the tool's input is written
};

// What the tool inherits.
enum class Environment {
  Callers,
  // The caller's, with text as bytes: names in any character set pass through `ls` and `grep`
  // unchanged, in byte order.
  PlainBytes,
};

// A command run by the shell, as popen and pclose do it, with the pipe read and written directly.
class Tool {
 public:
  // input: what a tool whose output is read gets as its standard input; the caller closes it.
  // Without one the input is empty, and never the application's terminal.
  Tool(const char *command, Flow flow, Environment environment = Environment::Callers,
       int input = -1);
  ~Tool() { finish(); }
  Tool(const Tool &) = delete;
  Tool &operator=(const Tool &) = delete;

  bool started() const { return process_ > 0; }

  // What the tool writes next, 1 to n bytes; 0 at the end of its output.
  std::size_t readSome(char *to, std::size_t n) const;
  // Exactly n bytes, in however many pieces they come; less only at the end of the output.
  std::size_t read(char *to, std::size_t n) const;
  // The first `limit` bytes of the output, or all of it.
  std::string text(std::size_t limit = std::string::npos) const;
  // Waits until the tool has written or its output has ended, but no longer than `patience`. True
  // if there is something to read or the output has ended.
  bool writesWithin(std::chrono::milliseconds patience) const;
  // Writes `input`, as much of it as the tool reads before it ends. The application gets no
  // SIGPIPE.
  void write(std::string_view input) const;

  // Closes the pipe and waits for the tool. Returns its wait status; -1 if it was not started, was
  // finished before, or its status was collected by somebody else.
  int finish();

 private:
  int pipe_ = -1;
  pid_t process_ = -1;
};

// Hands the tool's output to perLine line by line until its end or a non-zero result.
void handLines(const Tool &tool, ToolLine_t perLine);
// The same with lines that no tool has written; each ends with a line feed.
void handLines(std::string_view lines, ToolLine_t perLine);

// Whether a command would run the system's own tool of this name, the first one in the PATH being
// in /bin or /usr/bin. Not in a process with raised privileges: a tool does not have them.
bool isSystemTool(std::string_view name);

}  // namespace korvel::shell

#endif
