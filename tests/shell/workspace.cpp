// SPDX-License-Identifier: MIT
// Folders, tools, users and globals of one test.
#include "tests/shell/workspace.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <grp.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvel::test {
namespace {

namespace fs = std::filesystem;

std::string pathBehind(const std::string &folder) {
  const char *path = std::getenv("PATH");
  return path == nullptr ? folder : folder + ":" + path;
}

std::string described(const fs::path &path) {
  const fs::file_status status = fs::symlink_status(path);
  std::ostringstream line;
  line << path.string() << " kind " << static_cast<int>(status.type()) << " mode " << std::oct
       << static_cast<int>(status.permissions());
  if (fs::is_symlink(status)) line << " -> " << fs::read_symlink(path).string();
  if (fs::is_regular_file(status)) line << " = " << contentOf(path.string());
  line << '\n';
  return line.str();
}

void becomePlainUser() {
  constexpr uid_t kNobody = 65534;
  if (geteuid() != 0) return;
  if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(1);
}

}  // namespace

Workspace::Workspace() {
  char pattern[] = "/tmp/korvel-shell-XXXXXX";
  if (mkdtemp(pattern) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = pattern;
  chmod(pattern, 0755);
}

Workspace::~Workspace() {
  std::error_code ignored;
  for (fs::recursive_directory_iterator entry(path_, fs::directory_options::skip_permission_denied,
                                              ignored);
       entry != fs::recursive_directory_iterator(); entry.increment(ignored)) {
    if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
      chmod(entry->path().c_str(), 0700);
    }
  }
  fs::remove_all(path_, ignored);
}

std::string Workspace::makeFile(std::string_view name, std::string_view content) const {
  const std::string file = path(name);
  std::ofstream(file, std::ios::binary) << content;
  if (!fs::is_regular_file(file)) throw std::runtime_error("cannot make " + file);
  return file;
}

std::string Workspace::makeFolder(std::string_view name) const {
  fs::create_directories(path(name));
  return path(name);
}

std::string Workspace::makeLink(std::string_view name, std::string_view target) const {
  fs::create_symlink(target, path(name));
  return path(name);
}

std::string Workspace::makeSocket(std::string_view name) const {
  const int endpoint = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  path(name).copy(address.sun_path, sizeof address.sun_path - 1);
  const int result = bind(endpoint, reinterpret_cast<sockaddr *>(&address), sizeof address);
  close(endpoint);
  if (result != 0) throw std::runtime_error("cannot make " + path(name));
  return path(name);
}

std::string Workspace::snapshot() const {
  std::vector<std::string> lines;
  for (const auto &entry : fs::recursive_directory_iterator(path_)) {
    lines.push_back(described(entry.path()));
  }
  std::sort(lines.begin(), lines.end());
  std::string text;
  for (const std::string &line : lines) text += line;
  return text;
}

std::string contentOf(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool isThere(const std::string &path) {
  struct stat entry;
  return lstat(path.c_str(), &entry) == 0;
}

InFolder::InFolder(const std::string &folder) {
  if (getcwd(before_, sizeof before_) == nullptr || chdir(folder.c_str()) != 0) _exit(1);
}

InFolder::~InFolder() {
  if (chdir(before_) != 0) _exit(1);
}

Variable::Variable(const char *name, const char *value) : name_(name) {
  if (const char *before = std::getenv(name)) before_ = before;
  value == nullptr ? unsetenv(name) : setenv(name, value, 1);
}

Variable::~Variable() {
  before_ ? setenv(name_.c_str(), before_->c_str(), 1) : unsetenv(name_.c_str());
}

FakeTools::FakeTools() : path_("PATH", pathBehind(workspace_.path()).c_str()) {}

void FakeTools::add(std::string_view name, std::string_view script) const {
  std::string text = "#!/bin/sh\n";
  text += "log='" + workspace_.path() + "'\n";
  text += "call='" + std::string(name) + "'; for a in \"$@\"; do call=\"$call[$a]\"; done\n";
  text += "printf '%s\\n' \"$call\" >> \"$log/calls\"\n";
  text += std::string(script) + "\n";
  chmod(workspace_.makeFile(name, text).c_str(), 0755);
}

void FakeTools::addReader(std::string_view name, std::string_view script) const {
  add(name, "/bin/cat > \"$log/" + std::string(name) + ".input\"\n" + std::string(script));
}

StandardInput::StandardInput(std::string_view text) : before_(dup(STDIN_FILENO)) {
  int ends[2];
  if (pipe(ends) != 0 || write(ends[1], text.data(), text.size()) < 0) {
    throw std::runtime_error("no standard input");
  }
  dup2(ends[0], STDIN_FILENO);
  close(ends[0]);
  close(ends[1]);
}

StandardInput::~StandardInput() {
  before_ < 0 ? close(STDIN_FILENO) : dup2(before_, STDIN_FILENO);
  if (before_ >= 0) close(before_);
}

std::string StandardInput::rest() const {
  std::string text;
  char c;
  while (read(STDIN_FILENO, &c, 1) == 1) text += c;
  return text;
}

Volumes::Volumes(std::string_view folder) : before_(szVolumes, sizeof szVolumes) {
  std::memset(szVolumes, 0, sizeof szVolumes);
  folder.substr(0, sizeof szVolumes).copy(szVolumes, sizeof szVolumes);
}

Volumes::~Volumes() { before_.copy(szVolumes, sizeof szVolumes); }

std::string asPlainUser(const std::function<std::string()> &work) {
  return inChild(becomePlainUser, work);
}

std::string inChild(const std::function<void()> &prepare,
                    const std::function<std::string()> &work) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    prepare();
    const std::string answer = "uid " + std::to_string(geteuid()) + ";" + work();
    const ssize_t written = write(ends[1], answer.data(), answer.size());
    _exit(written == static_cast<ssize_t>(answer.size()) ? 0 : 1);
  }
  close(ends[1]);
  std::string answer;
  char block[4096];
  for (ssize_t got; (got = read(ends[0], block, sizeof block)) > 0;) {
    answer.append(block, static_cast<std::size_t>(got));
  }
  close(ends[0]);
  int status = -1;
  waitpid(child, &status, 0);
  return status == 0 ? answer : "the process failed";
}

Printed popenOf(const std::string &command, std::size_t limit) {
  FILE *pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {"", -1};
  std::string text;
  for (int c; text.size() < limit && (c = std::fgetc(pipe)) != EOF;) {
    text += static_cast<char>(c);
  }
  return {text, pclose(pipe)};
}

}  // namespace korvel::test
