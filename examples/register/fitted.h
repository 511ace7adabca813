// SPDX-License-Identifier: MIT
// Plain texts that keep to a width, in the window and in the PDF.
#ifndef REGISTER_FITTED_H
#define REGISTER_FITTED_H

#include <QString>

#include <korvel/types.h>

namespace registry {

// On one line, cut at its end where it is wider. Returns its width.
int drawFitted(CGrafPtr port, int x, int y, int width, const QString &text);

// All of it, on as many lines as it needs. Returns their height.
int drawWrapped(CGrafPtr port, int x, int y, int width, const QString &text);

}  // namespace registry

#endif
