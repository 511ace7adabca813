// SPDX-License-Identifier: MIT
// For platform/qt/: text of the screen set as Qt's strings, and back.
#ifndef KORVEL_PLATFORM_QT_TEXT_H
#define KORVEL_PLATFORM_QT_TEXT_H

#include <optional>
#include <string>
#include <string_view>

#include <QString>

namespace korvel::platform::qt {

QString toQt(std::string_view screenText);
std::string fromQt(const QString &text);

// For widgets that take "&" as the mark of a shortcut: the text with every "&" shown as itself.
QString withoutShortcuts(QString title);

// The same text with its first character as the shortcut.
QString withShortcut(const QString &shownTitle);

// What an edit text accepts when a person enters `entered` in whatever way: composed characters,
// with line breaks and tabs as blanks; a final line break and all other control characters are left
// out. Nothing when a character has no byte.
std::optional<QString> admitted(const QString &entered);

}  // namespace korvel::platform::qt

#endif
