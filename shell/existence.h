// For shell/ only: whether a path exists.
#ifndef KORVEL_SHELL_EXISTENCE_H
#define KORVEL_SHELL_EXISTENCE_H

namespace korvel::shell {

// True if `ls -a 'path'` prints anything. No process is started unless the text of the command
// decides what it does.
bool exists(const char *path);

// True for whatever stands under the path, a dangling link and a folder that may not be read too.
// No text of the path means anything to a shell.
bool hasEntry(const char *path);

}  // namespace korvel::shell

#endif
