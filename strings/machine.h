// For strings/, tables/ and profile/: which vector instructions this machine has besides the ones
// of every x86-64.
#ifndef KORVEL_STRINGS_MACHINE_H
#define KORVEL_STRINGS_MACHINE_H

namespace korvel::strings {

// Each is true when the processor has the instructions and the system saves their registers; all
// are false on processors that are no x86-64.
struct Machine {
  bool avx2 = false;
};

// Asks the processor at the first call only: in a virtual machine the answer takes longer than a
// short text.
const Machine &thisMachine();

}  // namespace korvel::strings

#endif
