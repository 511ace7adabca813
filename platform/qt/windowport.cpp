// SPDX-License-Identifier: MIT
// Keeps the port of each window by its address, grows its raster, and shows it after the window's
// own paint.
#include "platform/qt/windowport.h"

#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

#include "base/guard.h"
#include "platform/qt/dialogwindow.h"
#include "platform/qt/mostpixels.h"
#include "platform/qt/scrolledbody.h"

namespace korvel::platform::qt {
namespace {

QSize devicePixels(const QSize &size, qreal scale) {
  return {static_cast<int>(std::ceil(size.width() * scale)),
          static_cast<int>(std::ceil(size.height() * scale))};
}

void copy(const QImage &from, Raster &to) {
  QPainter &painter = to.painter();
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.drawImage(0, 0, from);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

// By the addresses of their windows.
using Ports = std::unordered_map<const void *, std::unique_ptr<WindowPort>>;

// Never destroyed, as windows may outlive every static destructor.
Ports &ports() {
  static auto &made = *new Ports;
  return made;
}

// The addresses of destroyed windows that had ports: a new window at such an address is not the one
// that an old reference means. Each stays until there is a window again, as somebody may still have
// the reference; the heap gives out the same ones over and over.
using Addresses = std::unordered_set<const void *>;

Addresses &goneWindows() {
  static auto &kept = *new Addresses;
  return kept;
}

// A dialog that scrolls is drawn on where its items lie.
QWidget *surfaceOf(QWidget *window) {
  auto *dialog = dynamic_cast<DialogWindow *>(window);
  return dialog != nullptr ? dialog->ground() : window;
}

void endPort(const void *window) {
  ports().erase(window);
  base::asFarAsMemoryAllows([&] { goneWindows().insert(window); });
}

}  // namespace

WindowRef referenceTo(QWidget *window) {
  goneWindows().erase(window);
  return reinterpret_cast<WindowRef>(window);
}

bool isOfGoneWindow(WindowRef reference) { return goneWindows().contains(reference); }

WindowPort::WindowPort(QWidget *surface)
    : window_(surface),
      body_(ScrolledBody::withGround(*surface)),
      scale_(surface->devicePixelRatioF()) {
  surface->installEventFilter(this);
}

// Stretches what was drawn so far to the pixels of the new screen.
void WindowPort::adopt(qreal scale) {
  if (scale == scale_) return;
  if (raster_ != nullptr) {
    const QSize size = devicePixels(raster_->size(), scale / scale_);
    const QImage stretched =
        raster_->image().scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    std::unique_ptr<Raster> adopted = Raster::make(size, Raster::Ground::Nothing);
    if (adopted != nullptr) copy(stretched, *adopted);
    raster_ = std::move(adopted);
  }
  scale_ = scale;
}

bool WindowPort::grow(const QSize &size) {
  if (raster_ != nullptr) {
    const QSize before = raster_->size();
    if (before.width() >= size.width() && before.height() >= size.height()) return true;
  }
  const QSize before = raster_ == nullptr ? QSize(0, 0) : raster_->size();
  std::unique_ptr<Raster> larger = Raster::make(size.expandedTo(before), Raster::Ground::Nothing);
  if (larger == nullptr) return raster_ != nullptr;
  if (raster_ != nullptr) copy(raster_->image(), *larger);
  raster_ = std::move(larger);
  return true;
}

Raster *WindowPort::prepared() {
  adopt(window_->devicePixelRatioF());
  const QSize size = withinMostPixels(window_->size(), scale_);
  return grow(devicePixels(size, scale_)) ? raster_.get() : nullptr;
}

std::optional<RGBColor> WindowPort::pixel(int x, int y) const {
  if (!window_->rect().contains(x, y)) return std::nullopt;
  return RasterPort::pixel(x, y);
}

// What is drawn while the window paints itself shows with that paint, clipped to its region.
// Requesting another paint would never end, as it would draw again.
void WindowPort::touched(const QRect &rect) {
  if (isInPaint_) return;
  const QRectF place(QPointF(rect.topLeft()) / scale_, QSizeF(rect.size()) / scale_);
  const QRect seen = place.toAlignedRect() & window_->rect();
  if (body_ != nullptr && !seen.isEmpty()) body_->reachTo(seen.bottom() + 1);
  window_->update(seen);
}

void WindowPort::show(const QRegion &region) {
  adopt(window_->devicePixelRatioF());
  if (raster_ == nullptr) return;
  QPainter painter(window_);
  for (const QRect &part : region) {
    const QRectF pixels(QPointF(part.topLeft()) * scale_, QSizeF(part.size()) * scale_);
    painter.drawImage(QRectF(part), raster_->image(), pixels);
  }
}

bool WindowPort::eventFilter(QObject *object, QEvent *event) {
  if (object != window_ || event->type() != QEvent::Paint || isInPaint_) return false;
  isInPaint_ = true;
  object->event(event);
  isInPaint_ = false;
  base::asFarAsMemoryAllows([&] { show(static_cast<QPaintEvent *>(event)->region()); });
  return true;
}

WindowPort &portOf(QWidget *window) {
  if (WindowPort *made = madePortOf(window)) return *made;
  auto port = std::make_unique<WindowPort>(surfaceOf(window));
  const void *address = window;
  QObject::connect(window, &QObject::destroyed, [address] { endPort(address); });
  return *(ports()[window] = std::move(port));
}

WindowPort *madePortOf(const void *window) {
  const auto found = ports().find(window);
  return found == ports().end() ? nullptr : found->second.get();
}

}  // namespace korvel::platform::qt
