// SPDX-License-Identifier: MIT
// Puts words into a widget's description and tooltip, and its own back.
#include "platform/qt/hint.h"

#include <QCursor>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

namespace korvel::platform::qt {
namespace {

// As much as stands well in one line.
constexpr int kShort = 80;

// Only a rich text is wrapped, which short words need not be. They may quote a label that looks
// like markup.
QString asToolTip(const QString &words) {
  if (words.size() <= kShort && !Qt::mightBeRichText(words)) return words;
  return QStringLiteral("<qt>%1</qt>").arg(words.toHtmlEscaped());
}

}  // namespace

void Hint::tell(const QString &words) {
  if (words == words_) return;
  if (words_.isEmpty()) {
    ownDescription_ = widget_.accessibleDescription();
    ownToolTip_ = widget_.toolTip();
  }
  words_ = words;
  widget_.setAccessibleDescription(words.isEmpty() ? ownDescription_ : words);
  widget_.setToolTip(words.isEmpty() ? ownToolTip_ : asToolTip(words));
  if (QToolTip::isVisible() && widget_.underMouse())
    QToolTip::showText(QCursor::pos(), widget_.toolTip(), &widget_);
}

}  // namespace korvel::platform::qt
