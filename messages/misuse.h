// SPDX-License-Identifier: MIT
// For messages/ and dialogs/: what an application can do wrong with messages, found and told.
#ifndef KORVEL_MESSAGES_MISUSE_H
#define KORVEL_MESSAGES_MISUSE_H

#include <string_view>

#include "base/misuse.h"

namespace korvel::messages {

using base::Call;
using base::filled;
using base::lookForMisuse;
using base::orNull;

// The longest texts that MessageBox shows.
inline constexpr std::size_t kLongestCaption = 255;
inline constexpr std::size_t kLongestText = 4095;

// The texts of a box that breaks its lines itself.
void needsMessage(const Call &call, std::string_view text, std::string_view caption);

// The texts of one whose application has broken them, and its number of lines.
void needsLines(const Call &call, std::string_view text, std::string_view caption, int lines);

// A title of a work, which is cut.
void needsTitle(const Call &call, std::string_view title, std::size_t longest);

}  // namespace korvel::messages

#endif
