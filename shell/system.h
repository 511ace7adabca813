// For shell/ and its tests only: which system the library believes to be on.
#ifndef KORVEL_SHELL_SYSTEM_H
#define KORVEL_SHELL_SYSTEM_H

namespace korvel::shell {

// The version as packed decimal digits. A variable so that tests can stand on an older system.
extern int systemVersion;

// True from version 10.0 on; no tool is run before.
bool runsOnUnix();

}  // namespace korvel::shell

#endif
