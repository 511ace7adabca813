// SPDX-License-Identifier: MIT
// Copies and removals by "cp" and "rm", as the caller or as the super-user.
#include <string>
#include <string_view>

#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/command.h"
#include "shell/existence.h"
#include "shell/invoke.h"
#include "shell/misuse.h"
#include "shell/replace.h"

namespace korvel::shell {
namespace {

constexpr const char *kNotCopied =
    "nothing is copied: the source has no name of its own, would be destroyed, or the tool refuses";
constexpr const char *kNotRemoved = "it is still there: the tool refuses";

// The user as whom the tools of one operation run.
class Rights {
 public:
  static Rights callers() { return Rights(nullptr); }
  static Rights superUsers(const char *password) { return Rights(password); }

  int run(const std::string &command) const {
    if (password_ == nullptr) return runTool(command.c_str());
    // The password comes through the pipe, as there may be no terminal, and without a prompt.
    return feedTool(("sudo -S -p '' " + command).c_str(), password_);
  }

 private:
  explicit Rights(const char *password) : password_(password) {}
  const char *password_;
};

std::string copyCommand(std::string_view source, std::string_view destination) {
  return "cp -R " + quoted(source) + " " + quoted(destination);
}

std::string_view lastComponent(std::string_view path) { return path.substr(path.rfind('/') + 1); }

// Whether a path ends without a name of its own: what it names has another.
bool isNoName(std::string_view component) {
  return component.empty() || component == "." || component == "..";
}

std::string inFolder(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.ends_with('/')) path += '/';
  path += name;
  return path;
}

int removePath(const std::string &path, const Rights &rights) {
  if (path.empty() || !exists(path.c_str())) return -1;
  rights.run("rm -dr " + quoted(path));
  return exists(path.c_str()) ? -1 : 0;
}

int copyInto(const std::string &source, const std::string &folder, const Rights &rights) {
  const std::string_view name = lastComponent(source);
  if (isNoName(name) || !exists(source.c_str()) || !exists(folder.c_str())) return -1;
  const std::string target = inFolder(folder, name);
  if (exists(target.c_str())) {
    if (!mayBeReplaced(target, folder, source) || removePath(target, rights) != 0) return -1;
  }
  rights.run(copyCommand(source, folder));
  return exists(target.c_str()) ? 0 : -1;
}

}  // namespace
}  // namespace korvel::shell

using namespace korvel::shell;
using korvel::base::guarded;

int BSDSCopy(const char *source, const char *destination) {
  lookForMisuse([=] { needsPaths(Call("BSDSCopy", {source, destination}), source, destination); });
  if (source == nullptr || destination == nullptr) return -1;
  return guarded(-1, [&] { return runTool(copyCommand(source, destination).c_str()); });
}

int BSDCopy(const char *source, const char *folder) {
  const Call call("BSDCopy", {source, folder});
  if (call) needsBoth(call, source, folder);
  if (source == nullptr || folder == nullptr) return -1;
  const int result = guarded(-1, [&] { return copyInto(source, folder, Rights::callers()); });
  if (call) needsDone(call, result == 0, kNotCopied);
  return result;
}

int BSDCopy_psw(const char *source, const char *folder, const char *password) {
  const Call call("BSDCopy_psw", {source, folder, filled(password)});
  if (call) needsBoth(call, source, folder);
  if (source == nullptr || folder == nullptr || password == nullptr) return -1;
  const int result =
      guarded(-1, [&] { return copyInto(source, folder, Rights::superUsers(password)); });
  if (call) needsDone(call, result == 0, kNotCopied);
  return result;
}

int BSDRemove(const char *path) {
  const Call call("BSDRemove", {path});
  if (call) needsThere(call, path);
  if (path == nullptr) return -1;
  const int result = guarded(-1, [&] { return removePath(path, Rights::callers()); });
  if (call) needsDone(call, result == 0, kNotRemoved);
  return result;
}

int BSDRemove_psw(const char *path, const char *password) {
  const Call call("BSDRemove_psw", {path, filled(password)});
  if (call) needsThere(call, path);
  if (path == nullptr || password == nullptr) return -1;
  const int result = guarded(-1, [&] { return removePath(path, Rights::superUsers(password)); });
  if (call) needsDone(call, result == 0, kNotRemoved);
  return result;
}
