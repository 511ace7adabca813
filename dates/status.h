// For dates/ only.
#ifndef KORVEL_DATES_STATUS_H
#define KORVEL_DATES_STATUS_H

namespace korvel::dates {

// What LongToNUM answers where nothing can be written.
inline constexpr int kNoOutput = 11;

}  // namespace korvel::dates

#endif
