// SPDX-License-Identifier: MIT
// For platform/qt/: the text of an SVG before the toolkit reads it.
#ifndef KORVEL_PLATFORM_QT_SVGTEXT_H
#define KORVEL_PLATFORM_QT_SVGTEXT_H

#include <QByteArray>

namespace korvel::platform::qt {

// The same SVG without links to files: the toolkit would read pictures and style sheets from
// wherever they lead. Pictures embedded in the text stay, unless they are SVGs in turn. Empty for a
// text that is not well-formed.
QByteArray withoutLinks(const QByteArray &svg);

}  // namespace korvel::platform::qt

#endif
