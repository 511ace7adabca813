// SPDX-License-Identifier: MIT
// For shell/: names of processes, longer than the kernel keeps them.
#ifndef KORVEL_SHELL_PROCESSNAMES_H
#define KORVEL_SHELL_PROCESSNAMES_H

#include <string>
#include <string_view>

namespace korvel::shell {

// The lines of `ps -x -c` with every name that was cut to 15 bytes made whole.
std::string withWholeNames(std::string_view listing);

}  // namespace korvel::shell

#endif
