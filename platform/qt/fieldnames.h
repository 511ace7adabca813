// For platform/qt/ only: the names by which the fields of a dialog are read out.
//
// A field is named by the static text that a person takes for its label: on its left, above it, or,
// for a field that stands in a row behind another one, on the left of that row.
#ifndef KORVEL_PLATFORM_QT_FIELDNAMES_H
#define KORVEL_PLATFORM_QT_FIELDNAMES_H

#include <vector>

#include <QRect>
#include <QString>

class QWidget;

namespace korvel::platform::qt {

struct Label {
  QRect place;
  QString text;
};

// The label of `field` among the labels and fields of one window; null when it has none.
const Label *labelOf(const QRect &field, const std::vector<Label> &labels,
                     const std::vector<QRect> &fields);

struct DateFields {
  QWidget *day, *month, *year;
};

// Gives every field (edit text, pop-up or list) that has no name yet its label's, or the label
// made for it where the window has one; the parts of a date, which share the label of the day,
// also say which part they are.
void nameFields(QWidget &window, const std::vector<QWidget *> &fields,
                const std::vector<DateFields> &dates);

}  // namespace korvel::platform::qt

#endif
