// SPDX-License-Identifier: MIT
// For shell/: whether a path exists.
#ifndef KORVEL_SHELL_EXISTENCE_H
#define KORVEL_SHELL_EXISTENCE_H

namespace korvel::shell {

// Whether `ls -a 'path'` prints anything. Starts a process only where the path's text could change
// what the command does.
bool exists(const char *path);

// Whether there is an entry at the path, be it a dangling link or a folder that may not be read. No
// text of the path means anything to a shell.
bool hasEntry(const char *path);

}  // namespace korvel::shell

#endif
