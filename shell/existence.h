// For shell/ only: whether a path exists.
#ifndef SHELL_EXISTENCE_H
#define SHELL_EXISTENCE_H

namespace korvel::shell {

// True if `ls -a 'path'` prints anything. No process is started unless the text of the command
// decides what it does.
bool exists(const char *path);

}  // namespace korvel::shell

#endif
