// For platform/qt/ only: the text of an SVG before the toolkit reads it.
#ifndef KORVEL_PLATFORM_QT_SVGTEXT_H
#define KORVEL_PLATFORM_QT_SVGTEXT_H

#include <QByteArray>

namespace korvel::platform::qt {

// The same SVG without what would bring in another file: the toolkit reads pictures and style
// sheets from wherever a link leads. Pictures that stand in the text itself stay, those that are an
// SVG in turn do not. Empty for a text that is not well-formed.
QByteArray withoutLinks(const QByteArray &svg);

}  // namespace korvel::platform::qt

#endif
