// SPDX-License-Identifier: MIT
// For platform/qt/: the names by which the fields of a dialog are read out.
//
// A field is named by the application, or by the static text that a person takes for its label: on
// its left, above it, or, for a later field of a row, on the left of that row. Without one it has
// the heading of its column, or the title of the group box around it.
#ifndef KORVEL_PLATFORM_QT_FIELDNAMES_H
#define KORVEL_PLATFORM_QT_FIELDNAMES_H

#include <unordered_map>
#include <vector>

#include <QString>

class QWidget;

namespace korvel::platform::qt {

struct DateFields {
  QWidget *day, *month, *year;
};

// By the application.
using FieldNames = std::unordered_map<const QWidget *, QString>;

// Names every field (edit text, pop-up or list): as it is given, else as its form names it, else
// after the label whose buddy it is, else after what is nearest. The parts of a date share the
// day's name, and each adds which part it is.
void nameFields(QWidget &window, const std::vector<QWidget *> &fields,
                const std::vector<DateFields> &dates, const FieldNames &given);

// Of the whole date, from the name of one of its parts.
QString nameWithoutPart(const QString &name);

}  // namespace korvel::platform::qt

#endif
