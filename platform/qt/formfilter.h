// For platform/qt/ only: what of a Qt Designer form reaches the toolkit's loader.
//
// The loader trusts a form: it reads files, makes windows, sets every property and connects every
// slot that the form names, and crashes on some that are damaged. So a form is written anew from
// the pieces that are known to do no such thing, each of them bounded in number, depth and size.
#ifndef KORVEL_PLATFORM_QT_FORMFILTER_H
#define KORVEL_PLATFORM_QT_FORMFILTER_H

#include <optional>
#include <string>

#include <QByteArray>
#include <QStringList>

namespace korvel::platform::qt {

// Dynamic properties in which the loader hands over what it is not to apply itself.
namespace handed {
inline constexpr char kItem[] = "item";        // int: the number of an item
inline constexpr char kEntries[] = "entries";  // QStringList: of a pop-up or list
inline constexpr char kChosen[] = "chosen";    // int: the entry of a pop-up, from 0, -1 for none
inline constexpr char kPicture[] = "picture";  // QString: a label's picture file, as in the form
}  // namespace handed

struct FilteredForm {
  QByteArray content;
  QStringList told;  // names of labels whose text comes from a connection
};

// Nothing when the file cannot be read or is no form; `problem` then says why, in one line.
//
// Widgets are of the classes that the loader may make (a class that the form declares is the class
// that it extends, any other a plain QWidget), with the properties that a dialog needs. Connections
// lead to slots that enable, show or set what is no item; the window and items 1 and 2 get none.
std::optional<FilteredForm> readForm(const std::string &path, std::string &problem);

}  // namespace korvel::platform::qt

#endif
