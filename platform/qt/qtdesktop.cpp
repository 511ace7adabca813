#include "platform/qt/qtdesktop.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include "platform/qt/application.h"
#include "platform/qt/qtdialog.h"

namespace korvel::platform::qt {
namespace {

// A window is the address of its widget, which is looked at only while Qt knows of it.
WindowRef referenceTo(QWidget *widget) { return reinterpret_cast<WindowRef>(widget); }

QWidget *livingWindow(WindowRef window) {
  if (window == nullptr || QCoreApplication::instance() == nullptr) return nullptr;
  for (QWidget *widget : QApplication::topLevelWidgets())
    if (referenceTo(widget) == window) return widget;
  return nullptr;
}

Rect fromQt(const QRect &rect) {
  return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}

}  // namespace

bool QtDesktop::hasScreen(std::string &problem) { return ensureApplication(problem); }

WindowRef QtDesktop::frontWindow() { return referenceTo(QApplication::activeWindow()); }

std::optional<Rect> QtDesktop::windowBounds(WindowRef window) {
  const QWidget *widget = livingWindow(window);
  if (widget == nullptr || !widget->isVisible()) return std::nullopt;
  return fromQt(widget->geometry());
}

Rect QtDesktop::screenBounds() {
  const QScreen *screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? Rect() : fromQt(screen->availableGeometry());
}

std::unique_ptr<Dialog> QtDesktop::newDialog(const Rect &bounds, WindowRef parent,
                                             std::string_view title) {
  std::string problem;
  if (!ensureApplication(problem)) return nullptr;
  return std::make_unique<QtDialog>(bounds, livingWindow(parent), title);
}

std::unique_ptr<Dialog> QtDesktop::newDialogFromTemplate(const std::string &path, WindowRef parent,
                                                         std::string &problem) {
  if (!ensureApplication(problem)) return nullptr;
  return QtDialog::fromTemplate(path, livingWindow(parent), problem);
}

WindowRef QtDesktop::hostWindow(void *widget) {
  return widget == nullptr ? nullptr : referenceTo(static_cast<QWidget *>(widget)->window());
}

std::unique_ptr<Port> QtDesktop::newImage(int, int) { return nullptr; }

std::unique_ptr<Port> QtDesktop::painterPort(void *) { return nullptr; }

Port *QtDesktop::windowPort(WindowRef) { return nullptr; }

std::unique_ptr<Picture> QtDesktop::loadPicture(const std::string &) { return nullptr; }

}  // namespace korvel::platform::qt
