// SPDX-License-Identifier: MIT
// For base/ and shell/: writing where perhaps nobody reads.
#ifndef KORVEL_BASE_SIGPIPE_H
#define KORVEL_BASE_SIGPIPE_H

#include <signal.h>

#include "base/posix.h"

namespace korvel::base {

// While it lives, a write of this thread raises no SIGPIPE. It touches neither the application's
// handling of the signal, nor other threads, nor tools that already run.
class SigpipeHeldBack {
 public:
  SigpipeHeldBack() {
    sigemptyset(&sigpipe_);
    sigaddset(&sigpipe_, SIGPIPE);
    sigset_t pending;
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &sigpipe_, &before_);
  }
  ~SigpipeHeldBack() {
    if (raised_ && !wasPending_) take();
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  SigpipeHeldBack(const SigpipeHeldBack &) = delete;
  SigpipeHeldBack &operator=(const SigpipeHeldBack &) = delete;

  void raised() { raised_ = true; }

 private:
  void take() {
    const timespec atOnce = {0, 0};
    retried([&] { return sigtimedwait(&sigpipe_, nullptr, &atOnce); });
  }

  sigset_t sigpipe_;
  sigset_t before_;
  bool wasPending_ = false;
  bool raised_ = false;
};

}  // namespace korvel::base

#endif
