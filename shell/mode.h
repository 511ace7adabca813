// SPDX-License-Identifier: MIT
// For shell/ and files/: opening a file or folder to all.
#ifndef KORVEL_SHELL_MODE_H
#define KORVEL_SHELL_MODE_H

namespace korvel::shell {

// Gives what is at a POSIX path the mode 0777; a folder keeps its set-user and set-group bits.
// No text of the path means anything to a shell.
void openToAll(const char *path);

}  // namespace korvel::shell

#endif
