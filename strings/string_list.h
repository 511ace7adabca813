// SPDX-License-Identifier: MIT
// For strings/, tables/, files/ and dialogs/: lists of strings. Items follow each other, each ended
// by a NUL; a second NUL follows the last.
//
// Nothing after the first NUL of an empty list or after the second NUL of another is read: a list
// may fill its buffer to the last byte.
#ifndef KORVEL_STRINGS_STRING_LIST_H
#define KORVEL_STRINGS_STRING_LIST_H

#include <span>

namespace korvel::strings {

// Writes a second NUL after the text's terminator. Where there is no room for it, the last two
// bytes of the buffer become NUL, which cuts the text.
void endList(std::span<char> buffer);

// The item after `item`, or `item` itself when that is the last.
const char *nextItem(const char *item);

// Makes a list of a separated list whose second NUL is there already, by replacing every '+' and
// ','.
void cutItems(char *s);

// Makes one text of a list by replacing every NUL between two items.
void bindItems(char *list, char separator);

// Removes the item from its list by moving what is after it onto it.
void deleteItem(char *item);

}  // namespace korvel::strings

#endif
