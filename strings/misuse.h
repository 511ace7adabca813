// SPDX-License-Identifier: MIT
// For strings/: what an application can do wrong with texts, found and told.
#ifndef KORVEL_STRINGS_MISUSE_H
#define KORVEL_STRINGS_MISUSE_H

#include "base/misuse.h"

namespace korvel::strings {

using base::Call;
using base::filled;
using base::lookForMisuse;
using base::orNull;
using base::shownRun;

// The text in a buffer; where it has no room, there is none.
inline base::Argument shownBuffer(const char *d, int size) {
  return size < 1 ? filled(d) : base::Argument(d);
}

// A text, and a character that equals one of its bytes.
void needsCharacter(const Call &call, int c);

// Runs of these lengths.
void needsLengths(const Call &call, std::initializer_list<int> lengths);

// What deleting asks for: characters that are there.
void needsDeletion(const Call &call, const char *s, int n);

// A buffer with room for so many bytes. `size`: its own.
void needsBytes(const Call &call, const void *buffer, int size, long long needed);

// The same for a run of n bytes, with room for `more` bytes besides.
void needsCopy(const Call &call, const void *buffer, int size, int n, int more);

// The same behind the text in the buffer.
void needsAppended(const Call &call, const char *d, int size, int n);
void needsInserted(const Call &call, const char *d, int size, const char *s);

// Room for the text in a buffer and two terminators.
void needsList(const Call &call, const char *buffer, int capacity);

// What the bounded copies ask for. They copy the whole text or nothing.
void needsWhole(const Call &call, const char *d, int size, const char *source);
void needsWholeBehind(const Call &call, const char *d, int size, const char *source);

// A text to convert, whose result, of this length, had no room.
void needsConversion(const Call &call, int size, std::size_t length);

// A growable buffer as szcopyex takes it.
void needsGrowable(const Call &call, char *const *buf, const int *capacity, int used, int n);

// An item of a list, which is cut.
void needsItem(const Call &call, const char *list, int index, std::size_t longest);

}  // namespace korvel::strings

#endif
