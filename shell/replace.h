// For shell/ only: what a copy may remove to make room.
#ifndef KORVEL_SHELL_REPLACE_H
#define KORVEL_SHELL_REPLACE_H

#include <string>

namespace korvel::shell {

// True if `target` (which exists, in `folder`) can be removed without touching `source` or
// anything that leads to it, and is no part of `source` either.
bool mayBeReplaced(const std::string &target, const std::string &folder, const std::string &source);

}  // namespace korvel::shell

#endif
