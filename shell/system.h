// SPDX-License-Identifier: MIT
// For shell/: which system the library believes to be on.
#ifndef KORVEL_SHELL_SYSTEM_H
#define KORVEL_SHELL_SYSTEM_H

namespace korvel::shell {

// The version as packed decimal digits. A variable for tests, which pretend an older system.
extern int systemVersion;

// Whether the version is 10.0 or later; no tool runs on an earlier one.
bool runsOnUnix();

}  // namespace korvel::shell

#endif
