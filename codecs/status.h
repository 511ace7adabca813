// For codecs/, dates/ and dialogs/: the status codes of the conversions, as in the public header.
#ifndef KORVEL_CODECS_STATUS_H
#define KORVEL_CODECS_STATUS_H

namespace korvel::codecs {

// Text to value.
inline constexpr int kRead = 0;
inline constexpr int kEmpty = 1;
inline constexpr int kSignAlone = 2;
inline constexpr int kNotDigit = 3;
inline constexpr int kFractionNotDigit = 4;  // reals
inline constexpr int kTooLarge = 4;          // integers
inline constexpr int kExponentFailed = 4;    // reals: added to the code of the exponent

// Value to text.
inline constexpr int kWritten = 0;
inline constexpr int kBelowSafeSize = 1;
inline constexpr int kDoesNotFit = 2;

// Validators.
inline constexpr int kAccepted = 0;
inline constexpr int kBelowBound = 1;

// Fixed-digit numbers.
inline constexpr int kWrongWidth = 11;
inline constexpr int kNegative = 12;

}  // namespace korvel::codecs

#endif
