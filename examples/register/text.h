// SPDX-License-Identifier: MIT
// The border to the library: there texts are CP1252 and days are numbers, here they are Qt's.
#ifndef REGISTER_TEXT_H
#define REGISTER_TEXT_H

#include <string>

#include <QDate>
#include <QString>

namespace registry {

// A character that CP1252 does not have becomes "?".
std::string toBytes(const QString &text);
QString fromBytes(const char *bytes);

// YYYYMMDD; 0 for no day, and the other way round.
int toNumber(QDate day);
QDate fromNumber(int number);

// DD/MM/YYYY; empty for no day.
QString shown(QDate day);

}  // namespace registry

#endif
