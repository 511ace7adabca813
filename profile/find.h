// SPDX-License-Identifier: MIT
// For profile/: finds sections and keys in the text of a profile.
#ifndef KORVEL_PROFILE_FIND_H
#define KORVEL_PROFILE_FIND_H

#include <optional>
#include <string_view>

#include "profile/lines.h"

namespace korvel::profile {

// The first line from `from` (the beginning of a line) on that begins with '[', the name and ']';
// anything may follow. limit: how many characters of a line count.
std::optional<Line> findSection(Stretch text, const char *from, std::string_view name,
                                std::size_t limit);

// The first line from `from` (the beginning of a line) on that begins with '[', or null.
const char *findHeader(Stretch text, const char *from);

// Where a search for a key ends.
struct KeySearch {
  enum End {
    Found,    // at the first line that begins with the key and '='
    Bracket,  // at a line that holds a '[': the section ends before it
    EndOfText,
  };
  End end;
  Line line;  // unless EndOfText
};

// Looks for a key in the section whose lines begin at `from`.
KeySearch findKey(Stretch text, const char *from, std::string_view key, std::size_t limit);

// The value of a key in the first section of this name that holds the key: the characters after the
// '=' of its line.
std::optional<Characters> findValue(std::string_view text, std::string_view section,
                                    std::string_view key);

}  // namespace korvel::profile

#endif
