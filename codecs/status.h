// SPDX-License-Identifier: MIT
// For codecs/, dates/ and dialogs/: the status codes of the conversions by what they mean inside.
// They are ints, as both branches of a conditional have to be.
#ifndef KORVEL_CODECS_STATUS_H
#define KORVEL_CODECS_STATUS_H

#include <korvel/codecs.h>

namespace korvel::codecs {

// Text to value.
inline constexpr int kRead = KorvelDoneStatus;
inline constexpr int kEmpty = KorvelEmptyStatus;
inline constexpr int kSignAlone = KorvelSignOnlyStatus;
inline constexpr int kNotDigit = KorvelNoDigitStatus;
inline constexpr int kFractionNotDigit = KorvelFractionStatus;
inline constexpr int kTooLarge = KorvelTooLargeStatus;
// Added to the code of the exponent.
inline constexpr int kExponentFailed = KorvelExponentSignOnlyStatus - KorvelSignOnlyStatus;

// Value to text.
inline constexpr int kWritten = KorvelDoneStatus;
inline constexpr int kBelowSafeSize = KorvelTightStatus;
inline constexpr int kDoesNotFit = KorvelCutStatus;

// Validators.
inline constexpr int kAccepted = KorvelDoneStatus;
inline constexpr int kBelowBound = KorvelRefusedStatus;

// Fixed-digit numbers.
inline constexpr int kWrongWidth = KorvelWidthStatus;
inline constexpr int kNegative = KorvelNegativeStatus;

}  // namespace korvel::codecs

#endif
