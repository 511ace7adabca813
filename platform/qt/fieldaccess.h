// SPDX-License-Identifier: MIT
// For platform/qt/: edit texts and pop-ups as assistive software sees and uses them. A change made
// by it is a hit like any other.
#ifndef KORVEL_PLATFORM_QT_FIELDACCESS_H
#define KORVEL_PLATFORM_QT_FIELDACCESS_H

class QWidget;

namespace korvel::platform::qt {

// Registers the items' own interfaces with the toolkit, once.
void installFieldAccess();

// Whether a person could use the widget now. A modal window in front holds back keys and clicks,
// but not what assistive software does.
bool mayBeUsed(const QWidget &widget);

}  // namespace korvel::platform::qt

#endif
