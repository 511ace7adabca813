// SPDX-License-Identifier: MIT
// For platform/qt/: keeps the toolkit's remarks on a file off standard error.
#ifndef KORVEL_PLATFORM_QT_QUIET_H
#define KORVEL_PLATFORM_QT_QUIET_H

namespace korvel::platform::qt {

// While one lives, nobody hears what the toolkit says in this thread, save what ends the process.
// Other threads are heard as before.
class Quiet {
 public:
  Quiet();
  ~Quiet();
  Quiet(const Quiet &) = delete;
  Quiet &operator=(const Quiet &) = delete;
};

}  // namespace korvel::platform::qt

#endif
