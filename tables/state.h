// For tables/ only: the current line, which lookup, search and editing share.
#ifndef KORVEL_TABLES_STATE_H
#define KORVEL_TABLES_STATE_H

#include <string_view>

namespace korvel::tables {

// No current line: how a function begins that starts from the first line.
void forgetLine();

// The line's number, and that the buffer is trusted.
void setCurrentLine(int line);

// Puts the kept characters of a line into the buffer and splits them. What stood in the buffer
// behind the line and its two terminators stays.
void storeSplit(std::string_view kept);

// The same without splitting: one field, its separators in it.
void storeWhole(std::string_view kept);

// Copies a field to a caller's buffer, cut to size - 1 characters. The field may stand in the
// buffer itself.
void copyOut(std::string_view field, char *out, int size);

}  // namespace korvel::tables

#endif
