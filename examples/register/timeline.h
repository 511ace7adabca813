// SPDX-License-Identifier: MIT
// A person's vaccinations along the years, drawn with the library: in the window and in the PDF.
#ifndef REGISTER_TIMELINE_H
#define REGISTER_TIMELINE_H

#include <korvel/types.h>

#include "person.h"

namespace registry {

// In pixels, with the line of years above and the key below.
int timelineHeight(const Person &person);

void drawTimeline(CGrafPtr port, const Person &person, int x, int y, int width);

// A text of plain drawing, cut at its end where it is wider than the place for it. Returns its
// width.
int drawFitted(CGrafPtr port, int x, int y, int width, const QString &text);

}  // namespace registry

#endif
