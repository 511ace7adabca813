// SPDX-License-Identifier: MIT
// Answers the seam: finds windows, and makes dialogs, ports and pictures.
#include "platform/qt/qtdesktop.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include "base/guard.h"
#include "platform/qt/application.h"
#include "platform/qt/painterport.h"
#include "platform/qt/picture.h"
#include "platform/qt/qtdialog.h"
#include "platform/qt/rasterport.h"
#include "platform/qt/windowport.h"

namespace korvel::platform::qt {
namespace {

QWidget *livingWindow(WindowRef window) {
  if (window == nullptr || QCoreApplication::instance() == nullptr) return nullptr;
  if (isOfGoneWindow(window)) return nullptr;
  const auto *address = reinterpret_cast<const QWidget *>(window);
  for (QWidget *widget : QApplication::topLevelWidgets())
    if (widget == address) return widget;
  return nullptr;
}

bool canBeInFront(const QWidget &window) {
  const bool isOrdinary = window.windowType() == Qt::Window || window.windowType() == Qt::Dialog;
  return isOrdinary && window.isVisible() && !window.isMinimized();
}

QWidget *newestThatCanBeInFront() {
  const QWidgetList widgets = QApplication::topLevelWidgets();
  const QWindowList windows = QGuiApplication::topLevelWindows();  // in order of creation
  for (auto window = windows.rbegin(); window != windows.rend(); ++window)
    for (QWidget *widget : widgets)
      if (widget->windowHandle() == *window && canBeInFront(*widget)) return widget;
  return nullptr;
}

// Qt has no active window while another application is active.
QWidget *windowInFront() {
  if (qobject_cast<QApplication *>(QCoreApplication::instance()) == nullptr) return nullptr;
  if (QWidget *active = QApplication::activeWindow()) return active;
  if (QWidget *running = QApplication::activeModalWidget()) return running;
  return newestThatCanBeInFront();
}

// While a dialog runs, a further one is put in front of it: behind it nobody could use it.
QWidget *windowToCover(QWidget *parent) {
  QWidget *running = QApplication::activeModalWidget();
  return running != nullptr ? running : parent;
}

Rect fromQt(const QRect &rect) {
  return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}

}  // namespace

bool QtDesktop::hasScreen(std::string &problem) { return ensureApplication(problem); }

WindowRef QtDesktop::frontWindow() { return referenceTo(windowInFront()); }

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
  return std::make_unique<QtDialog>(bounds, windowToCover(livingWindow(parent)), title);
}

std::unique_ptr<Dialog> QtDesktop::newDialogFromTemplate(const std::string &path, WindowRef parent,
                                                         std::string &problem) {
  if (!ensureApplication(problem)) return nullptr;
  return QtDialog::fromTemplate(path, livingWindow(parent), problem);
}

WindowRef QtDesktop::hostWindow(void *widget) {
  return widget == nullptr ? nullptr : referenceTo(static_cast<QWidget *>(widget)->window());
}

std::unique_ptr<Port> QtDesktop::newImage(int width, int height) {
  return base::guarded(nullptr,
                       [&] { return ensureDrawing() ? ImagePort::make(width, height) : nullptr; });
}

std::unique_ptr<Port> QtDesktop::painterPort(void *painter) {
  return base::guarded(nullptr, [&]() -> std::unique_ptr<Port> {
    if (painter == nullptr || !ensureDrawing()) return nullptr;
    return std::make_unique<PainterPort>(static_cast<QPainter *>(painter));
  });
}

Port *QtDesktop::windowPort(WindowRef window) {
  if (WindowPort *made = madePortOf(window)) return made;
  return base::guarded(nullptr, [&] {
    QWidget *widget = livingWindow(window);
    return widget == nullptr ? nullptr : &portOf(widget);
  });
}

std::unique_ptr<Picture> QtDesktop::loadPicture(const std::string &path) {
  return base::guarded(nullptr, [&] { return ensureDrawing() ? QtPicture::read(path) : nullptr; });
}

}  // namespace korvel::platform::qt
