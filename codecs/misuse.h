// SPDX-License-Identifier: MIT
// For codecs/: what an application can do wrong with numbers and their texts, found and told.
#ifndef KORVEL_CODECS_MISUSE_H
#define KORVEL_CODECS_MISUSE_H

#include "base/misuse.h"

namespace korvel::codecs {

using base::Call;
using base::filled;
using base::lookForMisuse;
using base::shownRun;

// Room for an integer, and for a real with these decimals.
void needsIntegerRoom(const Call &call, const void *buffer, int capacity, int value);
void needsRealRoom(const Call &call, const void *buffer, int capacity, double value, int decimals);

// The same for one that needs so many bytes.
void needsSignificantRoom(const Call &call, const void *buffer, int capacity, int digits,
                          int needed);

// The width of a NUM that holds an integer, and of one that is read.
void needsWidth(const Call &call, const void *destination, int width, int value);
void needsReadableWidth(const Call &call, int width, int widest);

// DoubleToNUMD never writes.
void needsAnotherWriter(const Call &call);

// An index of 0 or above.
void needsIndex(const Call &call, int index);

}  // namespace korvel::codecs

#endif
