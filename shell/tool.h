// For shell/ only: one running shell command and the pipe to it.
#ifndef KORVEL_SHELL_TOOL_H
#define KORVEL_SHELL_TOOL_H

#include <chrono>
#include <cstddef>
#include <string_view>

#include <sys/types.h>

#include <korvel/shell.h>

namespace korvel::shell {

// Where the standard stream at the library's end of the pipe belongs.
enum class Flow {
  FromTool,  // its output is read
  ToTool,    // its input is written
};

// What the tool inherits.
enum class Environment {
  Callers,
  // The caller's, but text is bytes: names in any character set pass through `ls` and `grep`
  // unchanged, and in byte order.
  PlainBytes,
};

// A command run by the shell, as popen and pclose do it, with the pipe read and written directly.
class Tool {
 public:
  // input: a descriptor that stays the caller's, for a tool whose output is read. A tool that gets
  // none reads an empty one, and never the application's terminal.
  Tool(const char *command, Flow flow, Environment environment = Environment::Callers,
       int input = -1);
  ~Tool() { finish(); }
  Tool(const Tool &) = delete;
  Tool &operator=(const Tool &) = delete;

  bool started() const { return process_ > 0; }

  // What the tool writes next, 1 to n bytes; 0 at the end of its output.
  std::size_t readSome(char *to, std::size_t n) const;
  // Exactly n bytes, however many pieces they come in; less only at the end of the output.
  std::size_t read(char *to, std::size_t n) const;
  // Waits until the tool has written or its output has ended, no longer than `patience`. True if
  // there is something to read, the end of the output included.
  bool writesWithin(std::chrono::milliseconds patience) const;
  // Writes all of `input`, or as much as the tool lives to read. SIGPIPE does not reach the
  // application.
  void write(std::string_view input) const;

  // Closes the pipe and waits for the tool. Returns its wait status; -1 if it was not started, was
  // finished before, or somebody else has collected its status.
  int finish();

 private:
  int pipe_ = -1;
  pid_t process_ = -1;
};

// Hands the tool's output to perLine line by line until its end or a non-zero result.
void handLines(const Tool &tool, ToolLine_t perLine);

}  // namespace korvel::shell

#endif
