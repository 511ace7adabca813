// SPDX-License-Identifier: MIT
// For tests/: a process that may start no other.
#ifndef KORVEL_TESTS_SUPPORT_NO_PROCESSES_H
#define KORVEL_TESTS_SUPPORT_NO_PROCESSES_H

#include <cstddef>
#include <vector>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace korvel::test {

// From now on the system ends this process when it starts another one or runs a program. Returns
// false where the system does not offer that.
inline bool forbidProcesses() {
  std::vector<unsigned> calls = {SYS_clone, SYS_clone3, SYS_execve, SYS_execveat};
#ifdef SYS_fork
  calls.insert(calls.end(), {SYS_fork, SYS_vfork});
#endif
  std::vector<sock_filter> filter = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const unsigned call : calls) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program = {static_cast<unsigned short>(filter.size()), filter.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace korvel::test

#endif
