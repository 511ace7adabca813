// SPDX-License-Identifier: MIT
// Converts between bytes of the screen set and the toolkit's strings.
#include "platform/qt/text.h"

#include <algorithm>

#include "platform/screentext.h"

namespace korvel::platform::qt {
namespace {

bool isLineBreak(QChar character) {
  return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator;
}

bool isControl(QChar character) { return character.category() == QChar::Other_Control; }

bool hasByte(QChar character) { return byteOf(character.unicode()).has_value(); }

// Each line break one character, and none at the end.
QString withSimpleBreaks(QString text) {
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  if (!text.isEmpty() && isLineBreak(text.back())) text.chop(1);
  return text;
}

}  // namespace

QString toQt(std::string_view screenText) {
  QString text(static_cast<qsizetype>(screenText.size()), Qt::Uninitialized);
  std::transform(screenText.begin(), screenText.end(), text.begin(),
                 [](char byte) { return QChar(characterOf(static_cast<unsigned char>(byte))); });
  return text;
}

std::string fromQt(const QString &text) {
  const std::u16string_view characters(reinterpret_cast<const char16_t *>(text.utf16()),
                                       static_cast<std::size_t>(text.size()));
  return toBytes(characters);
}

QString withoutShortcuts(QString title) {
  return title.replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString withShortcut(const QString &shownTitle) {
  const bool hasLetter = !shownTitle.isEmpty() && shownTitle.front().isLetterOrNumber();
  return hasLetter ? QLatin1Char('&') + shownTitle : shownTitle;
}

std::optional<QString> admitted(const QString &entered) {
  QString text = withSimpleBreaks(entered.normalized(QString::NormalizationForm_C));
  for (QChar &character : text)
    if (isLineBreak(character) || character == u'\t') character = u' ';
  text.removeIf(isControl);
  if (!std::all_of(text.cbegin(), text.cend(), hasByte)) return std::nullopt;
  return text;
}

}  // namespace korvel::platform::qt
