// SPDX-License-Identifier: MIT
// Commands spawned with the pipe, the environment and the signals that they need.
#include "shell/tool.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <signal.h>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <paths.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/posix.h"
#include "base/sigpipe.h"
#include "shell/descriptor.h"
#include "shell/system.h"

namespace korvel::shell {
namespace {

// The size of a line with its terminator.
constexpr std::size_t kLineSize = 8192;
// Read from a tool at once.
constexpr std::size_t kBlockSize = 16384;

bool isVariable(std::string_view entry, std::string_view name) {
  return entry.size() > name.size() && entry.starts_with(name) && entry[name.size()] == '=';
}

// The caller's environment with the variables that make `ls` and `grep` treat names as bytes.
std::vector<char *> plainBytesEnvironment() {
  static char locale[] = "LC_ALL=C";
  static char quoting[] = "QUOTING_STYLE=literal";
  std::vector<char *> entries;
  for (char **entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    if (!isVariable(*entry, "LC_ALL") && !isVariable(*entry, "QUOTING_STYLE")) {
      entries.push_back(*entry);
    }
  }
  entries.insert(entries.end(), {locale, quoting, nullptr});
  return entries;
}

// Both ends of a pipe.
struct Pipe {
  Pipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    readEnd = Descriptor(ends[0]);
    writeEnd = Descriptor(ends[1]);
  }
  Descriptor readEnd, writeEnd;
};

// What the new process does with its standard streams.
class StreamActions {
 public:
  StreamActions() { ready_ = posix_spawn_file_actions_init(&actions_) == 0; }
  ~StreamActions() {
    if (ready_) posix_spawn_file_actions_destroy(&actions_);
  }
  StreamActions(const StreamActions &) = delete;
  StreamActions &operator=(const StreamActions &) = delete;

  bool use(int descriptor, int stream) {
    return ready_ && posix_spawn_file_actions_adddup2(&actions_, descriptor, stream) == 0;
  }
  const posix_spawn_file_actions_t *get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
  bool ready_ = false;
};

// SIGPIPE ends a tool once nobody reads its output any more, even where the application ignores or
// blocks that signal: a tool that never ends by itself would go on for ever.
class SigpipeByDefault {
 public:
  SigpipeByDefault() {
    ready_ = posix_spawnattr_init(&attributes_) == 0;
    if (!ready_) return;
    sigset_t defaults, blocked;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    sigdelset(&blocked, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes_, &defaults);
    posix_spawnattr_setsigmask(&attributes_, &blocked);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~SigpipeByDefault() {
    if (ready_) posix_spawnattr_destroy(&attributes_);
  }
  SigpipeByDefault(const SigpipeByDefault &) = delete;
  SigpipeByDefault &operator=(const SigpipeByDefault &) = delete;

  const posix_spawnattr_t *get() const { return ready_ ? &attributes_ : nullptr; }

 private:
  posix_spawnattr_t attributes_;
  bool ready_ = false;
};

// The process of `sh -c command`, or -1.
pid_t spawnShell(const char *command, const StreamActions &streams, Environment environment) {
  char shell[] = "sh";
  char option[] = "-c";
  char *const arguments[] = {shell, option, const_cast<char *>(command), nullptr};
  std::vector<char *> plainBytes;
  if (environment == Environment::PlainBytes) plainBytes = plainBytesEnvironment();
  char *const *variables = plainBytes.empty() ? environ : plainBytes.data();
  const SigpipeByDefault signals;
  pid_t process = -1;
  const int error =
      posix_spawn(&process, _PATH_BSHELL, streams.get(), signals.get(), arguments, variables);
  return error == 0 ? process : -1;
}

// Whether a folder of the PATH, where the empty one is the current one, has such a tool.
bool holdsTool(std::string_view folder, std::string_view name) {
  std::string path(folder.empty() ? "." : folder);
  path.append(1, '/').append(name);
  return faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

// The current line of a tool's output.
class LineBuffer {
 public:
  // Characters that no longer fit are dropped.
  void append(std::string_view piece) {
    const std::size_t fitting = std::min(piece.size(), kLineSize - 1 - length_);
    std::memcpy(text_ + length_, piece.data(), fitting);
    length_ += fitting;
  }
  bool empty() const { return length_ == 0; }
  // Hands the line over and starts the next one.
  int hand(ToolLine_t perLine) {
    text_[length_] = '\0';
    length_ = 0;
    return perLine(text_);
  }

 private:
  char text_[kLineSize];
  std::size_t length_ = 0;
};

// Hands over every line that ends in `block` and keeps the rest in `line`. Returns false once
// perLine asks to stop.
bool handBlock(std::string_view block, LineBuffer &line, ToolLine_t perLine) {
  for (;;) {
    const std::size_t end = block.find('\n');
    line.append(block.substr(0, end));
    if (end == std::string_view::npos) return true;
    if (line.hand(perLine) != 0) return false;
    block.remove_prefix(end + 1);
  }
}

}  // namespace

Tool::Tool(const char *command, Flow flow, Environment environment, int input) {
  if (!runsOnUnix()) return;
  // Opened before the pipe: if the application has no standard input, this takes its number instead
  // of an end of the pipe.
  const Descriptor nothing(base::retried([] { return open(_PATH_DEVNULL, O_RDONLY | O_CLOEXEC); }));
  Pipe pipe;
  StreamActions streams;
  const bool ready = flow == Flow::ToTool
                         ? streams.use(pipe.readEnd.get(), STDIN_FILENO)
                         : streams.use(input >= 0 ? input : nothing.get(), STDIN_FILENO) &&
                               streams.use(pipe.writeEnd.get(), STDOUT_FILENO);
  if (ready) process_ = spawnShell(command, streams, environment);
  if (started()) pipe_ = (flow == Flow::FromTool ? pipe.readEnd : pipe.writeEnd).release();
}

bool Tool::writesWithin(std::chrono::milliseconds patience) const {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + patience;
  pollfd output = {pipe_, POLLIN, 0};
  const auto untilTheEnd = [&] {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    return poll(&output, 1, std::max(0, static_cast<int>(left.count())));
  };
  return base::retried(untilTheEnd) > 0;
}

std::size_t Tool::readSome(char *to, std::size_t n) const {
  const ssize_t got = base::retried([&] { return ::read(pipe_, to, n); });
  return got > 0 ? static_cast<std::size_t>(got) : 0;
}

std::size_t Tool::read(char *to, std::size_t n) const {
  std::size_t done = 0;
  while (done < n) {
    const std::size_t got = readSome(to + done, n - done);
    if (got == 0) break;
    done += got;
  }
  return done;
}

std::string Tool::text(std::size_t limit) const {
  std::string text;
  char block[kBlockSize];
  while (const std::size_t got = readSome(block, std::min(sizeof block, limit - text.size()))) {
    text.append(block, got);
  }
  return text;
}

void Tool::write(std::string_view input) const {
  base::SigpipeHeldBack held;
  while (!input.empty()) {
    const ssize_t put = base::retried([&] { return ::write(pipe_, input.data(), input.size()); });
    if (put == -1 && errno == EPIPE) held.raised();
    if (put <= 0) return;
    input.remove_prefix(static_cast<std::size_t>(put));
  }
}

int Tool::finish() {
  if (pipe_ >= 0) close(pipe_);
  pipe_ = -1;
  if (!started()) return -1;
  const pid_t process = std::exchange(process_, -1);
  int status = -1;
  const pid_t ended = base::retried([&] { return waitpid(process, &status, 0); });
  return ended == process ? status : -1;
}

void handLines(const Tool &tool, ToolLine_t perLine) {
  LineBuffer line;
  char block[kBlockSize];
  while (const std::size_t got = tool.readSome(block, sizeof block)) {
    if (!handBlock({block, got}, line, perLine)) return;
  }
  if (!line.empty()) line.hand(perLine);
}

void handLines(std::string_view lines, ToolLine_t perLine) {
  LineBuffer line;
  handBlock(lines, line, perLine);
}

bool isSystemTool(std::string_view name) {
  const char *const path = secure_getenv("PATH");
  if (path == nullptr) return false;
  for (std::string_view rest = path;;) {
    const std::string_view folder = rest.substr(0, rest.find(':'));
    if (holdsTool(folder, name)) return folder == "/bin" || folder == "/usr/bin";
    if (folder.size() == rest.size()) return false;
    rest.remove_prefix(folder.size() + 1);
  }
}

}  // namespace korvel::shell
