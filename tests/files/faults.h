// For tests of what replaces files: steps that fail, processes that die or are somebody else, disks
// that are small.
#ifndef KORVEL_TESTS_FILES_FAULTS_H
#define KORVEL_TESTS_FILES_FAULTS_H

#include <functional>
#include <string>
#include <utility>

#include <grp.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "files/replace.h"

namespace korvel::test {

using files::ReplaceStep;

// Makes the n-th passage through a step fail with an error, or runs something else there.
class Fault {
 public:
  Fault(ReplaceStep step, int nth, int error) : Fault(step, nth, [error] { return error; }) {}
  Fault(ReplaceStep step, int nth, std::function<int()> act) {
    step_ = step;
    left_ = nth;
    act_ = std::move(act);
    alsoError_ = 0;
    files::replaceFault = &Fault::ask;
  }
  ~Fault() { files::replaceFault = nullptr; }
  Fault(const Fault &) = delete;
  Fault &operator=(const Fault &) = delete;

  // Lets a second step fail too, whenever it is passed while a fault is in force.
  static void also(ReplaceStep step, int error) {
    also_ = step;
    alsoError_ = error;
  }

 private:
  static int ask(ReplaceStep step) {
    if (step == step_) return --left_ == 0 ? act_() : 0;
    return step == also_ ? alsoError_ : 0;
  }

  static inline ReplaceStep step_;
  static inline int left_;
  static inline std::function<int()> act_;
  static inline ReplaceStep also_;
  static inline int alsoError_ = 0;
};

// Runs `body` in a child process; returns what it returns, or -1 when it did not end by itself.
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

// A mount that goes with the object; mounted() is false where this process may not mount.
class SmallDisk {
 public:
  SmallDisk(const std::string &path, const char *options) : path_(path) {
    mkdir(path.c_str(), 0777);
    mounted_ = mount("none", path.c_str(), "tmpfs", 0, options) == 0;
  }
  ~SmallDisk() {
    if (mounted_) umount2(path_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk &) = delete;
  SmallDisk &operator=(const SmallDisk &) = delete;
  bool mounted() const { return mounted_; }

 private:
  std::string path_;
  bool mounted_ = false;
};

}  // namespace korvel::test

#endif
