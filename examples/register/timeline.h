// SPDX-License-Identifier: MIT
// A person's vaccinations along the years, drawn with the library: in the window and in the PDF.
#ifndef REGISTER_TIMELINE_H
#define REGISTER_TIMELINE_H

#include <korvel/types.h>

#include "person.h"

namespace registry {

// With the line of years above and the key below. Returns its height.
int drawTimeline(CGrafPtr port, const Person &person, int x, int y, int width);

}  // namespace registry

#endif
