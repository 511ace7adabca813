// SPDX-License-Identifier: MIT
// For tables/ and dialogs/: the directory of tables, and the current line, which lookup, search and
// editing share.
#ifndef KORVEL_TABLES_STATE_H
#define KORVEL_TABLES_STATE_H

#include <string_view>

#include "tables/line.h"

namespace korvel::tables {

// Has tables looked for in this directory first. A null pointer changes nothing.
void setDirectory(const char *dir);

// No current line: every lookup or search from the first line begins with this.
void forgetLine();

// Sets the line's number and marks the buffer as read.
void setCurrentLine(int line);

// Puts the kept characters of a line into the buffer and splits them. The buffer after the line and
// its two terminators is left alone.
void storeSplit(std::string_view kept);

// The same without splitting: one field with the separators in it.
void storeWhole(std::string_view kept);

// The fields of the buffer.
SplitFields bufferFields();

}  // namespace korvel::tables

#endif
