// SPDX-License-Identifier: MIT
// For tests/shell/: folders, tools, users and globals of one test, all restored at its end.
#ifndef KORVEL_TESTS_SHELL_WORKSPACE_H
#define KORVEL_TESTS_SHELL_WORKSPACE_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <korvel/desktop.h>
#include <korvel/shell.h>

#include "shell/system.h"

namespace korvel::test {

// A new folder, open to all readers, removed with all it holds.
class Workspace {
 public:
  Workspace();
  ~Workspace();
  Workspace(const Workspace &) = delete;
  Workspace &operator=(const Workspace &) = delete;

  const std::string &path() const { return path_; }
  std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }
  std::string makeFile(std::string_view name, std::string_view content = "x") const;
  std::string makeFolder(std::string_view name) const;
  std::string makeLink(std::string_view name, std::string_view target) const;
  std::string makeSocket(std::string_view name) const;
  // Everything in it, one line per entry: path, kind, mode, link target or content.
  std::string snapshot() const;

 private:
  std::string path_;
};

std::string contentOf(const std::string &path);
bool isThere(const std::string &path);  // dangling links too

// Another current folder.
class InFolder {
 public:
  explicit InFolder(const std::string &folder);
  ~InFolder();
  InFolder(const InFolder &) = delete;
  InFolder &operator=(const InFolder &) = delete;

 private:
  char before_[4096];
};

// An environment variable; a null value unsets it.
class Variable {
 public:
  Variable(const char *name, const char *value);
  ~Variable();
  Variable(const Variable &) = delete;
  Variable &operator=(const Variable &) = delete;

 private:
  std::string name_;
  std::optional<std::string> before_;
};

// A folder of tools in front of the PATH. A fake tool records its arguments, each in square
// brackets, and then runs `script`, in which $log is the folder of the records.
class FakeTools {
 public:
  FakeTools();
  void add(std::string_view name, std::string_view script = "") const;
  // A tool that records its standard input as well.
  void addReader(std::string_view name, std::string_view script = "") const;
  // One line per call: "name[argument]...".
  std::string calls() const { return written("calls"); }
  // What the scripts wrote to "$log/<name>".
  std::string written(std::string_view name) const { return contentOf(workspace_.path(name)); }
  // The standard input of the last call of a tool.
  std::string inputOf(std::string_view name) const { return written(std::string(name) + ".input"); }

 private:
  Workspace workspace_;
  Variable path_;
};

// The standard input of this process.
class StandardInput {
 public:
  explicit StandardInput(std::string_view text);
  ~StandardInput();
  StandardInput(const StandardInput &) = delete;
  StandardInput &operator=(const StandardInput &) = delete;

  // The part not read yet.
  std::string rest() const;

 private:
  int before_;
};

// Sets szVolumes for a while.
class Volumes {
 public:
  explicit Volumes(std::string_view folder);
  ~Volumes();
  Volumes(const Volumes &) = delete;
  Volumes &operator=(const Volumes &) = delete;

 private:
  std::string before_;
};

// Pretends another version of the system.
class SystemVersion {
 public:
  explicit SystemVersion(int version) : before_(shell::systemVersion) {
    shell::systemVersion = version;
  }
  ~SystemVersion() { shell::systemVersion = before_; }
  SystemVersion(const SystemVersion &) = delete;
  SystemVersion &operator=(const SystemVersion &) = delete;

 private:
  int before_;
};

// Restores the globals that listings and process tests write.
class ResultGlobals {
 public:
  ~ResultGlobals() {
    BSDtest = test_;
    BSDcr = cr_;
    BSDnNbFic = count_;
    BSDDir_ProcessFiles_fPtr = visit_;
  }

 private:
  int test_ = BSDtest;
  int cr_ = BSDcr;
  int count_ = BSDnNbFic;
  FileVisit_t visit_ = BSDDir_ProcessFiles_fPtr;
};

// The result of `work` run by a user without root rights, in a process of its own. It begins with
// "uid <n>;", which proves that the user was not root.
std::string asPlainUser(const std::function<std::string()> &work);

// The same after `prepare`, which ends the process if it fails.
std::string inChild(const std::function<void()> &prepare, const std::function<std::string()> &work);

// The output of a command run by popen, at most `limit` bytes, and its close status.
struct Printed {
  std::string text;
  int status;
};
Printed popenOf(const std::string &command, std::size_t limit = std::string::npos);

}  // namespace korvel::test

#endif
