// SPDX-License-Identifier: MIT
// For platform/qt/: the part of a Qt Designer form that reaches the toolkit's loader.
//
// The loader trusts a form: it sets every property, reads every file and makes every class that the
// form names, and crashes on some damaged ones. So only the elements, properties and classes listed
// in the filter pass, each of them bounded in number, depth and size.
#ifndef KORVEL_PLATFORM_QT_FORMFILTER_H
#define KORVEL_PLATFORM_QT_FORMFILTER_H

#include <optional>
#include <string>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace korvel::platform::qt {

// Dynamic properties with what the loader must not apply itself.
namespace handed {
inline constexpr char kItem[] = "item";        // the number of an item, not yet checked
inline constexpr char kEntries[] = "entries";  // QStringList: of a pop-up or list
inline constexpr char kChosen[] = "chosen";    // int: the entry of a pop-up, from 0, -1 for none
inline constexpr char kPicture[] = "picture";  // QString: a label's picture file, as in the form
}  // namespace handed

// Of a signal and to a slot that may be connected.
struct FormConnection {
  QString sender, receiver;
  QByteArray signal, slot;
  bool setsContent;  // and not only the look of the receiver
};

struct FilteredForm {
  QByteArray content;    // without the two below
  QStringList tabOrder;  // names of widgets
  std::vector<FormConnection> connections;
};

// Nothing when the file cannot be read or is not a form; `problem` then says why, in one line.
std::optional<FilteredForm> readForm(const std::string &path, std::string &problem);

}  // namespace korvel::platform::qt

#endif
