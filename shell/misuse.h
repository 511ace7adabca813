// SPDX-License-Identifier: MIT
// For shell/: what an application can do wrong with tools and their paths, found and told.
#ifndef KORVEL_SHELL_MISUSE_H
#define KORVEL_SHELL_MISUSE_H

#include "base/misuse.h"

namespace korvel::shell {

using base::Call;
using base::filled;
using base::given;
using base::lookForMisuse;
using base::orNull;

// A buffer for the output of a tool, which may be null.
void needsOutput(const Call &call, const void *out, int outSize);

// Paths of the system that no shell or tool reads in another way.
void needsPath(const Call &call, const char *path);
void needsPaths(const Call &call, const char *path, const char *other);

// The same, of what is there.
void needsThere(const Call &call, const char *path);
void needsBoth(const Call &call, const char *path, const char *other);

// A document's path, which stands between double quotes.
void needsDocument(const Call &call, const char *path);

// A colon path, and the path of the system that it becomes: `length` is its own.
void needsMacPath(const Call &call, const char *path);
void needsShortPath(const Call &call, int length);

// That it was done; why not, in the words of `what`.
void needsDone(const Call &call, bool isDone, const char *what);

// The one bundle that there is.
void needsBundle(const Call &call, bool isLoaded);

// A folder to list, slots for the files, and enough of them.
void needsListing(const Call &call, const void *out, const char *folder, int max);
void needsSlots(const Call &call, int max, int found);

}  // namespace korvel::shell

#endif
