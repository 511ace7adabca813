// SPDX-License-Identifier: MIT
// For shell/, files/, profile/, tables/, platform/, draw/, messages/ and dialogs/: the guard of the
// exported functions, and of the seam to the desktop.
#ifndef KORVEL_BASE_GUARD_H
#define KORVEL_BASE_GUARD_H

#include <new>
#include <stdexcept>
#include <type_traits>

namespace korvel::base {

// The result of `work`, or `failure` where it ran out of memory: the library's own code throws
// nothing else. Other exceptions, of the application's callbacks called inside `work`, pass
// through.
template <typename Work>
std::invoke_result_t<Work> guarded(std::invoke_result_t<Work> failure, Work work) {
  try {
    return work();
  } catch (const std::bad_alloc &) {
  } catch (const std::length_error &) {
  }
  return failure;
}

// Does `work`, or as much of it as memory allows.
template <typename Work>
void asFarAsMemoryAllows(Work work) {
  guarded(false, [&] {
    work();
    return true;
  });
}

}  // namespace korvel::base

#endif
