// SPDX-License-Identifier: MIT
// For tests/files/ and tests/tables/: steps that fail, and small disks.
#ifndef KORVEL_TESTS_FILES_FAULTS_H
#define KORVEL_TESTS_FILES_FAULTS_H

#include <functional>
#include <string>
#include <utility>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/replace.h"
#include "tests/files/processes.h"

namespace korvel::test {

using files::ReplaceStep;

// Makes the n-th passage through a step fail with an error, or runs a function there.
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

  // Makes a second step fail too, at each passage while a fault is in force.
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

// A mount as long as the object lives; mounted() is false if this process may not mount.
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
