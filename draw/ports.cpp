// SPDX-License-Identifier: MIT
// The ports that the library hands out, and which of them is current.
#include "draw/ports.h"

#include <memory>
#include <utility>

#include <korvel/desktop.h>

#include "platform/loader.h"

using korvel::platform::Desktop;
using korvel::platform::desktopForDrawing;
using korvel::platform::Port;

// Never freed, only reused: so a port that was given back can be told from a live one.
struct KorvelPort {
  // The desktop is asked at each use: it does not say when a window goes.
  Port *surface() const {
    if (window == nullptr) return own.get();
    Desktop *desktop = desktopForDrawing();
    return desktop == nullptr ? nullptr : desktop->windowPort(window);
  }

  std::unique_ptr<Port> own;   // of an image or a painter
  WindowRef window = nullptr;  // of a window's port
  KorvelPort *next = nullptr;
};

namespace korvel::draw {
namespace {

constinit KorvelPort *ports = nullptr;
constinit KorvelPort *current = nullptr;

// Reuses a port whose surface is gone; if it was current, no port is current afterwards.
KorvelPort *unusedPort() {
  KorvelPort *port = ports;
  while (port != nullptr && port->surface() != nullptr) port = port->next;
  if (port == nullptr) {
    port = new KorvelPort;
    port->next = std::exchange(ports, port);
  }
  if (current == port) current = nullptr;
  return port;
}

CGrafPtr portOn(std::unique_ptr<Port> surface) {
  if (surface == nullptr) return nullptr;
  KorvelPort *port = unusedPort();
  port->window = nullptr;
  port->own = std::move(surface);
  return port;
}

CGrafPtr portOnImage(int width, int height) {
  Desktop *desktop = desktopForDrawing();
  return desktop == nullptr ? nullptr : portOn(desktop->newImage(width, height));
}

CGrafPtr portOnPainter(void *painter) {
  Desktop *desktop = desktopForDrawing();
  return desktop == nullptr ? nullptr : portOn(desktop->painterPort(painter));
}

bool readPixel(const Port &surface, int x, int y, RGBColor &colour) {
  const std::optional<RGBColor> pixel = surface.pixel(x, y);
  if (pixel) colour = *pixel;
  return pixel.has_value();
}

}  // namespace

Port *surfaceOf(CGrafPtr port) { return port == nullptr ? nullptr : port->surface(); }

CGrafPtr portOf(WindowRef window) {
  Desktop *desktop = window == nullptr ? nullptr : desktopForDrawing();
  if (desktop == nullptr || desktop->windowPort(window) == nullptr) return nullptr;
  KorvelPort *port = ports;
  while (port != nullptr && port->window != window) port = port->next;
  if (port == nullptr) {
    port = unusedPort();
    port->window = window;
  }
  return port;
}

CGrafPtr currentPort() { return surfaceOf(current) == nullptr ? nullptr : current; }

void setCurrentPort(CGrafPtr port) { current = port; }

void leavePortOf(WindowRef window) {
  if (current != nullptr && current->window == window) current = nullptr;
}

}  // namespace korvel::draw

using namespace korvel::draw;
using korvel::base::guarded;

CGrafPtr KorvelImagePort(int width, int height) {
  return guarded(nullptr, [&] { return portOnImage(width, height); });
}

CGrafPtr KorvelPainterPort(void *qpainter) {
  if (qpainter == nullptr) return nullptr;
  return guarded(nullptr, [&] { return portOnPainter(qpainter); });
}

CGrafPtr GetWindowPort(WindowRef window) {
  return guarded(nullptr, [&] { return portOf(window); });
}

void KorvelPortRelease(CGrafPtr port) {
  if (port != nullptr) port->own.reset();
}

int KorvelPortSave(CGrafPtr port, const char *pngPath) {
  if (pngPath == nullptr) return 0;
  return onSurface(port, 0, [&](const Port &surface) { return surface.save(pngPath) ? 1 : 0; });
}

int KorvelPortPixel(CGrafPtr port, int x, int y, RGBColor *colour) {
  if (colour == nullptr) return 0;
  return onSurface(port, 0, [&](const Port &surface) { return readPixel(surface, x, y, *colour); });
}

void SetPort(CGrafPtr port) { setCurrentPort(port); }

void GetPort(CGrafPtr *port) {
  if (port != nullptr) *port = guarded(nullptr, [] { return currentPort(); });
}
