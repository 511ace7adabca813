// SPDX-License-Identifier: MIT
// For draw/: what an application can do wrong with ports, texts and pictures, found and told.
#ifndef KORVEL_DRAW_MISUSE_H
#define KORVEL_DRAW_MISUSE_H

#include <korvel/types.h>

#include "base/misuse.h"

namespace korvel::draw {

using base::Call;
using base::filled;
using base::lookForMisuse;
using base::orNull;
using base::shownRun;

// A port that is there.
void needsPort(const Call &call, CGrafPtr port);

// The same, and a text of len bytes; of at most 255 where it is a run.
void needsText(const Call &call, CGrafPtr port, const char *text, int len);
void needsRun(const Call &call, CGrafPtr port, const char *text, int len);

// The same, and colours; a size in points.
void needsColour(const Call &call, CGrafPtr port, int colour);
void needsStyle(const Call &call, CGrafPtr port, int fore, int back, int size);

// A font's name, which is cut, and a style for it.
void needsFont(const Call &call, CGrafPtr port, const char *name, int fore, int back, int size);

// A text in a box.
void needsPrinted(const Call &call, CGrafPtr port, const char *text, int fore, int back, int size);

// The current port.
void needsCurrentPort(const Call &call);

// A line and a rectangle of which something is seen.
void needsPen(const Call &call, CGrafPtr port, int width);
void needsLine(const Call &call, CGrafPtr port, int colour, int width);
void needsRectangle(const Call &call, CGrafPtr port, int cx, int cy, int colour);

// The size of an image; that a port could be had.
void needsImageSize(const Call &call, int width, int height);
void needsMade(const Call &call, CGrafPtr port);

// A port that the application gives back, one to make current, and a file to save one in.
void needsOwnPort(const Call &call, CGrafPtr port, bool isOwn);
void needsPortOrNull(const Call &call, CGrafPtr port);
void needsFile(const Call &call, CGrafPtr port, const char *path);

// That the port was saved; that it has the pixel; that the picture is there.
void needsSaved(const Call &call, bool isSaved);
void needsPixel(const Call &call, int x, int y, bool isThere);
void needsPictureName(const Call &call, const char *name);
void needsPictureOn(const Call &call, const char *name, CGrafPtr port);
void needsPicture(const Call &call, const char *name, bool isThere);

}  // namespace korvel::draw

#endif
