// For dates/ only.
#ifndef DATES_STATUS_H
#define DATES_STATUS_H

namespace korvel::dates {

// What LongToNUM answers where nothing can be written.
inline constexpr int kNoOutput = 11;

}  // namespace korvel::dates

#endif
