// SPDX-License-Identifier: MIT
// For shell/: what a copy may remove to make room.
#ifndef KORVEL_SHELL_REPLACE_H
#define KORVEL_SHELL_REPLACE_H

#include <string>

namespace korvel::shell {

// Whether `target` (which exists, in `folder`) can be removed without touching `source` or anything
// that leads to it. Not if it is part of `source`.
bool mayBeReplaced(const std::string &target, const std::string &folder, const std::string &source);

}  // namespace korvel::shell

#endif
