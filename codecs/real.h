// SPDX-License-Identifier: MIT
// For codecs/ and dialogs/: the codec of reals behind the exported functions.
#ifndef KORVEL_CODECS_REAL_H
#define KORVEL_CODECS_REAL_H

namespace korvel::codecs {

// A null pointer counts as an empty text to the readers and as no room to the writer.

// Trims the text in place and reads it. Returns the code of realcod_d.
int readReal(char *text, double *value);

// As readReal, and 1 for a value below 0 (readNotNegative) or not above 0 (readPositive). Such a
// value is stored, too.
int readNotNegative(char *text, double *value);
int readPositive(char *text, double *value);

// Writes the value. Returns the code of realdco_d.
int writeReal(double value, char *buffer, int capacity, int decimals);

}  // namespace korvel::codecs

#endif
