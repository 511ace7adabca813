// For messages/ only: a message text in lines.
#ifndef KORVEL_MESSAGES_WRAPPING_H
#define KORVEL_MESSAGES_WRAPPING_H

#include <string>

namespace korvel::messages {

// Ends each line of `text` with a carriage return, in place, the length unchanged: at the line ends
// that it has, and at the first space beyond the widest column of each line that is too long.
// Returns the height to make for it, in lines: as many as it then has, at least 2.
int wrapLines(std::string &text);

}  // namespace korvel::messages

#endif
