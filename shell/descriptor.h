// SPDX-License-Identifier: MIT
// For shell/: a descriptor that is closed with its owner.
#ifndef KORVEL_SHELL_DESCRIPTOR_H
#define KORVEL_SHELL_DESCRIPTOR_H

#include <utility>

#include <unistd.h>

namespace korvel::shell {

// -1 holds none: what the calls that open give on failure.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor &&other) noexcept : number_(other.release()) {}
  Descriptor &operator=(Descriptor &&other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  int get() const { return number_; }
  int release() noexcept { return std::exchange(number_, -1); }

 private:
  int number_;
};

}  // namespace korvel::shell

#endif
