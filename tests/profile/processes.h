// For tests/profile/ only: what must happen in a process of its own.
#ifndef KORVEL_TESTS_PROFILE_PROCESSES_H
#define KORVEL_TESTS_PROFILE_PROCESSES_H

#include <functional>
#include <signal.h>

#include <grp.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvel::test {

// Runs `body` in a child process; returns what it returns, or -1 when it did not end by itself.
inline int inChild(const std::function<int()> &body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The same as a user whom permissions hold back. The exit code 99 is for a failure to become one.
inline int inChildOfAUser(const std::function<int()> &body) {
  constexpr id_t kNobody = 65534;
  return inChild([&] {
    const bool user = geteuid() != 0 ||
                      (setgroups(0, nullptr) == 0 && setgid(kNobody) == 0 && setuid(kNobody) == 0);
    return user ? body() : 99;
  });
}

// Runs `body` in a child process and kills it where it enters or leaves its `stops`-th system call,
// entering and leaving counted apart. Returns false when it had ended by itself before.
inline bool killedAtStop(int stops, const std::function<void()> &body) {
  const pid_t child = fork();
  if (child == 0) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    body();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  for (; stops > 0 && WIFSTOPPED(status); --stops) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    waitpid(child, &status, 0);
  }
  if (WIFEXITED(status)) return false;
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return WIFSIGNALED(status);
}

}  // namespace korvel::test

#endif
