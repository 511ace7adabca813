// For strings/, tables/ and profile/ and their tests only: the vectors wider than those of every
// x86-64 that this machine computes with.
#ifndef KORVEL_STRINGS_MACHINE_H
#define KORVEL_STRINGS_MACHINE_H

namespace korvel::strings {

// Each is true when the processor has the instructions and the system keeps their registers. None
// is on other processors.
struct Machine {
  bool avx2 = false;
  bool avx512bw = false;
  // Together with avx512bw only. Processors without it slow down for a while when they meet the
  // widest vectors.
  bool avx512vbmi2 = false;
};

// Asked at the first call only: a virtual machine takes longer to answer than a short text to
// handle.
const Machine &thisMachine();

}  // namespace korvel::strings

#endif
