// For files/ and its tests only: how far descriptors go.
#ifndef KORVEL_FILES_HANDLES_H
#define KORVEL_FILES_HANDLES_H

namespace korvel::files {

// The highest descriptor that a slot's reference field holds. A variable for tests, which may not
// have so many.
extern int highestReference;

}  // namespace korvel::files

#endif
