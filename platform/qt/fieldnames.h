// For platform/qt/: the names by which the fields of a dialog are read out.
//
// A field is named by the static text that a person takes for its label: on its left, above it, or,
// for a later field of a row, on the left of that row.
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

// Names every field (edit text, pop-up or list) that has no name yet: after the label whose buddy
// it is, else after the label nearby. The parts of a date share the day's label, and each adds
// which part it is.
void nameFields(QWidget &window, const std::vector<QWidget *> &fields,
                const std::vector<DateFields> &dates);

}  // namespace korvel::platform::qt

#endif
