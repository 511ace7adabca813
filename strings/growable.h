// SPDX-License-Identifier: MIT
// For strings/: the growing byte buffer behind szcopyex.
#ifndef KORVEL_STRINGS_GROWABLE_H
#define KORVEL_STRINGS_GROWABLE_H

#include <cstddef>

namespace korvel::strings {

// Returns a block that std::free releases, or null.
using Allocate = void *(*)(std::size_t size);

// szcopyex with the allocator as an argument, so that a test can run out of memory.
int appendGrowing(char **buf, int *capacity, int used, const char *source, int n,
                  Allocate allocate);

}  // namespace korvel::strings

#endif
