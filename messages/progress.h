// SPDX-License-Identifier: MIT
// For messages/: the window of a long work.
#ifndef KORVEL_MESSAGES_PROGRESS_H
#define KORVEL_MESSAGES_PROGRESS_H

#include <string_view>

namespace korvel::messages {

// Milliseconds that never go back.
using Clock = long long (*)();

// The rule of KorvelProgress, by a clock that tests may set.
bool isCancelledIn(std::string_view title, int done, int total, Clock clock);

}  // namespace korvel::messages

#endif
