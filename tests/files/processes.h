// SPDX-License-Identifier: MIT
// For tests/: code that must run in a process of its own, as somebody else or to be killed.
#ifndef KORVEL_TESTS_FILES_PROCESSES_H
#define KORVEL_TESTS_FILES_PROCESSES_H

#include <functional>

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvel::test {

// Runs `body` in a child process; returns its result, or -1 if the child was killed.
inline int inChild(const std::function<int()> &body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline bool becomeNobody() {
  constexpr id_t kNobody = 65534;
  return setgroups(0, nullptr) == 0 && setgid(kNobody) == 0 && setuid(kNobody) == 0;
}

// Runs `body` as a user whom permissions hold back; returns 99 if this process cannot become one.
inline int inChildOfAUser(const std::function<int()> &body) {
  return inChild([&] { return geteuid() == 0 && !becomeNobody() ? 99 : body(); });
}

}  // namespace korvel::test

#endif
