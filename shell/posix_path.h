// For shell/ and files/ only: colon paths by the rule of BSDMAC2UNIX.
#ifndef KORVEL_SHELL_VOLUMES_H
#define KORVEL_SHELL_VOLUMES_H

#include <span>
#include <string_view>

namespace korvel::shell {

// Writes the POSIX form of a colon path as BSDMAC2UNIX does, but no text of the path means anything
// to a shell: a volume may have an apostrophe in its name.
// Returns the length; where the form does not fit, 0 and the empty text.
int toPosix(std::string_view macPath, std::span<char> out);

}  // namespace korvel::shell

#endif
