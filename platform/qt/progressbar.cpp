// SPDX-License-Identifier: MIT
// The bar of a work that goes on, and the number that it shows.
#include "platform/qt/progressbar.h"

#include <algorithm>

namespace korvel::platform::qt {

ProgressBar::ProgressBar(QWidget *window, const QRect &rect) : QProgressBar(window) {
  setGeometry(rect);
  setFocusPolicy(Qt::TabFocus);
  setAlignment(Qt::AlignCenter);
  setFormat(QStringLiteral("%p\u00A0%"));
  setAccessibleName(window->windowTitle());
  show(0, 1);
}

// The toolkit's bar moves without an end where its range is empty.
void ProgressBar::show(int done, int total) {
  setRange(0, std::max(total, 0));
  setValue(std::clamp(done, 0, maximum()));
}

}  // namespace korvel::platform::qt
