// For platform/qt/ only: edit texts and pop-ups as screen readers and their like see and use them.
// A change that comes from there is a hit like any other.
#ifndef KORVEL_PLATFORM_QT_FIELDACCESS_H
#define KORVEL_PLATFORM_QT_FIELDACCESS_H

class QWidget;

namespace korvel::platform::qt {

// Makes the items' own interfaces known to the toolkit; once is enough.
void installFieldAccess();

// Whether a person could use the widget now: what comes by another way than keys and clicks is
// not held back by a window in front.
bool mayBeUsed(const QWidget &widget);

}  // namespace korvel::platform::qt

#endif
