// SPDX-License-Identifier: MIT
// The super-user's operations with the system's own sudo. The test's user, password and entry in
// sudoers exist only for its own processes, through private mounts, and leave nothing behind.
#include <fstream>
#include <string>

#include <crypt.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"

namespace korvel::test {
namespace {

constexpr uid_t kUser = 61234;
constexpr const char *kPassword = "s\xC3\xA9same, ouvre-toi $1";

// Exit statuses of a process that could not be prepared.
constexpr int kNoMounts = 2;
constexpr int kNoUser = 3;

void mountOrExit(const char *source, const std::string &target, const char *type,
                 unsigned long flags) {
  if (mount(source, target.c_str(), type, flags, nullptr) != 0) _exit(kNoMounts);
}

// Puts a copy of a file of /etc with one more line in its place.
void append(const std::string &folder, const std::string &name, const std::string &line) {
  const std::string original = "/etc/" + name, copy = folder + "/" + name;
  struct stat before;
  if (stat(original.c_str(), &before) != 0) _exit(kNoUser);
  std::ofstream(copy, std::ios::binary) << contentOf(original) << line << "\n";
  if (chmod(copy.c_str(), before.st_mode) != 0) _exit(kNoUser);
  if (chown(copy.c_str(), before.st_uid, before.st_gid) != 0) _exit(kNoUser);
  mountOrExit(copy.c_str(), original, nullptr, MS_BIND);
}

// Turns this process into one of a user who may do everything by sudo, without a terminal.
void becomeSudoer(const std::string &folder) {
  if (unshare(CLONE_NEWNS) != 0) _exit(kNoMounts);
  mountOrExit("none", "/", nullptr, MS_REC | MS_PRIVATE);
  for (const std::string &own : {folder, std::string("/run"), std::string("/var/lib/sudo")}) {
    mountOrExit("none", own, "tmpfs", 0);
  }
  const char *hash = crypt(kPassword, "$6$korvel$");
  if (hash == nullptr) _exit(kNoUser);
  const std::string number = std::to_string(kUser);
  append(folder, "passwd", "korvel-tester:x:" + number + ":" + number + "::/:/bin/sh");
  append(folder, "group", "korvel-tester:x:" + number + ":");
  append(folder, "shadow", "korvel-tester:" + std::string(hash) + ":19000:0:99999:7:::");
  append(folder, "sudoers", "korvel-tester ALL=(root) ALL");
  if (setsid() < 0 || setgroups(0, nullptr) != 0) _exit(kNoUser);
  if (setgid(kUser) != 0 || setuid(kUser) != 0) _exit(kNoUser);
}

bool mayMount() {
  return inChild(
             [] {
               if (unshare(CLONE_NEWNS) != 0) _exit(kNoMounts);
               mountOrExit("none", "/", nullptr, MS_REC | MS_PRIVATE);
             },
             [] { return std::string(); })
      .starts_with("uid 0;");
}

TEST(Sudo, OfTheSystemTakesThePassword) {
  if (geteuid() != 0 || !mayMount()) GTEST_SKIP() << "a user for the test needs root and mounts";
  ASSERT_EQ(system("command -v sudo >/dev/null"), 0) << "sudo is not installed";
  const Workspace workspace;
  const std::string etc = workspace.makeFolder("etc"), to = workspace.makeFolder("to");
  const std::string source = workspace.makeFile("root", "new");
  ASSERT_EQ(chmod(source.c_str(), 0600), 0);
  const std::string target = workspace.makeFile("to/root", "old");
  const auto copy = [&](const char *password) {
    return std::to_string(BSDCopy_psw(source.c_str(), to.c_str(), password)) + " ";
  };
  const auto remove = [&](const char *password) {
    return std::to_string(BSDRemove_psw(target.c_str(), password)) + " ";
  };
  const std::string answer =
      inChild([&etc] { becomeSudoer(etc); },
              [&] {
                std::string results = std::to_string(BSDCopy(source.c_str(), to.c_str())) + " ";
                results += copy("not the password");
                results += contentOf(target) + " ";
                results += copy(kPassword);
                results += isThere(target) ? "there " : "gone ";
                results += remove(kPassword);
                return results + (isThere(target) ? "there" : "gone");
              });
  EXPECT_EQ(answer, "uid " + std::to_string(kUser) + ";-1 -1 old 0 there 0 gone");
}

}  // namespace
}  // namespace korvel::test
