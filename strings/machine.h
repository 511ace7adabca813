// SPDX-License-Identifier: MIT
// For strings/, tables/ and profile/: which of their loops to run, those compiled for every machine
// or those compiled for AVX2.
#ifndef KORVEL_STRINGS_MACHINE_H
#define KORVEL_STRINGS_MACHINE_H

namespace korvel::strings {

// For tests: when false, the loops for every machine run.
extern bool avx2Allowed;

// Whether the processor has AVX2, and the system saves its registers. False on processors that are
// no x86-64: there, the loops are compiled alike.
bool usesAvx2();

}  // namespace korvel::strings

#endif
