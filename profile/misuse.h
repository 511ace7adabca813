// SPDX-License-Identifier: MIT
// For profile/: what an application can do wrong with profiles, found and told.
#ifndef KORVEL_PROFILE_MISUSE_H
#define KORVEL_PROFILE_MISUSE_H

#include "files/misuse.h"

namespace korvel::profile {

using base::Call;
using base::filled;
using base::lookForMisuse;
using base::orNull;

// A section, a key and a path of a profile that may be missing, but not its folder.
void needsEntry(const Call &call, const char *section, const char *key, const char *path);

// The same, with a value to write.
void needsValue(const Call &call, const char *section, const char *key, const char *value,
                const char *path);

// A value that the buffer held whole.
void needsWhole(const Call &call, std::size_t length, int capacity);

// A number, and a default that can be one.
void needsDefault(const Call &call, int defaultValue);
void needsInteger(const Call &call, const char *text, bool isInteger);

}  // namespace korvel::profile

#endif
