// For shell/ only: no exception leaves an exported function.
#ifndef SHELL_GUARD_H
#define SHELL_GUARD_H

#include <new>
#include <stdexcept>

namespace korvel::shell {

// The result of `work`, or `failure` where it ran out of memory. Callbacks of the application are
// called inside `work`: what they throw is theirs and passes through.
template <typename Work>
int orOnFailure(int failure, Work work) {
  try {
    return work();
  } catch (const std::bad_alloc &) {
    return failure;
  } catch (const std::length_error &) {
    return failure;
  }
}

}  // namespace korvel::shell

#endif
