// SPDX-License-Identifier: MIT
// For tests/desktop/: whether programs have come to rest, however slow the machine is.
#ifndef KORVEL_TESTS_DESKTOP_STILLNESS_H
#define KORVEL_TESTS_DESKTOP_STILLNESS_H

#include <vector>

#include <sys/types.h>

namespace korvel::test {

// Whether the process waits for somebody to let it go on.
bool isStopped(pid_t process);

// Waits until none of the processes has anything to do: all of their threads wait for something,
// and none of them has run for longer than the toolkit puts off its painting. What one sends to
// another has been handled by then. A process that has ended, or is stopped, is at rest. One more,
// or 0, may wake up at every picture, as long as it does nothing with it.
void waitUntilAtRest(const std::vector<pid_t> &processes, pid_t ticking);

}  // namespace korvel::test

#endif
