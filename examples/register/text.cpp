// SPDX-License-Identifier: MIT
// Conversions of texts and days, so that no other source has to know both kinds.
#include "text.h"

#include <cstring>

#include <korvel/strings.h>

namespace registry {

std::string toBytes(const QString &text) {
  const QByteArray utf8 = text.normalized(QString::NormalizationForm_C).toUtf8();
  std::string bytes(static_cast<std::size_t>(utf8.size()) + 1, '\0');
  KorvelFromUtf8(utf8.constData(), bytes.data(), static_cast<int>(bytes.size()));
  bytes.resize(std::strlen(bytes.c_str()));
  return bytes;
}

QString fromBytes(const char *bytes) {
  constexpr std::size_t kLongest = 3;
  std::string utf8(kLongest * std::strlen(bytes) + 1, '\0');
  KorvelToUtf8(bytes, utf8.data(), static_cast<int>(utf8.size()));
  return QString::fromUtf8(utf8.c_str());
}

int toNumber(QDate day) {
  return day.isValid() ? day.year() * 10000 + day.month() * 100 + day.day() : 0;
}

QDate fromNumber(int number) { return {number / 10000, number / 100 % 100, number % 100}; }

QString shown(QDate day) { return day.toString("dd/MM/yyyy"); }

}  // namespace registry
