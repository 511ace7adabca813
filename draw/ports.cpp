// The ports that the library hands out, and which of them is current.
#include "draw/ports.h"

#include <memory>
#include <utility>

#include <korvel/desktop.h>

#include "platform/loader.h"

using korvel::platform::Desktop;
using korvel::platform::Port;

// Never freed, only used again: a port that was given back can so be told from a live one.
struct KorvelPort {
  // Asked of the desktop at each use, as a window goes without telling.
  Port *surface() const {
    if (window == nullptr) return own.get();
    Desktop *desktop = korvel::platform::desktopForDrawing();
    return desktop == nullptr ? nullptr : desktop->windowPort(window);
  }

  std::unique_ptr<Port> own;   // of an image or a painter
  WindowRef window = nullptr;  // of a window's port
  KorvelPort *next = nullptr;
};

namespace korvel::draw {
namespace {

constinit KorvelPort *g_ports = nullptr;
constinit KorvelPort *g_current = nullptr;

KorvelPort *portOfWindow(WindowRef window) {
  KorvelPort *port = g_ports;
  while (port != nullptr && port->window != window) port = port->next;
  return port;
}

// The one that was current has gone with its surface, and does not come back with another.
KorvelPort *unusedPort() {
  KorvelPort *port = g_ports;
  while (port != nullptr && port->surface() != nullptr) port = port->next;
  if (port == nullptr) {
    port = new KorvelPort;
    port->next = std::exchange(g_ports, port);
  }
  if (g_current == port) g_current = nullptr;
  return port;
}

KorvelPort *portOn(std::unique_ptr<Port> surface) {
  if (surface == nullptr) return nullptr;
  KorvelPort *port = unusedPort();
  port->window = nullptr;
  port->own = std::move(surface);
  return port;
}

KorvelPort *portOn(WindowRef window) {
  if (KorvelPort *known = portOfWindow(window)) return known;
  KorvelPort *port = unusedPort();
  port->window = window;
  return port;
}

}  // namespace

Port *surfaceOf(CGrafPtr port) { return port == nullptr ? nullptr : port->surface(); }

}  // namespace korvel::draw

using korvel::base::orOnFailure;
using korvel::draw::onSurface;
using korvel::draw::portOn;
using korvel::draw::surfaceOf;
using korvel::platform::desktopForDrawing;

CGrafPtr KorvelImagePort(int width, int height) {
  return orOnFailure(nullptr, [&] {
    Desktop *desktop = desktopForDrawing();
    return desktop == nullptr ? nullptr : portOn(desktop->newImage(width, height));
  });
}

CGrafPtr KorvelPainterPort(void *qpainter) {
  return orOnFailure(nullptr, [&] {
    Desktop *desktop = qpainter == nullptr ? nullptr : desktopForDrawing();
    return desktop == nullptr ? nullptr : portOn(desktop->painterPort(qpainter));
  });
}

CGrafPtr GetWindowPort(WindowRef window) {
  return orOnFailure(nullptr, [&] {
    Desktop *desktop = window == nullptr ? nullptr : desktopForDrawing();
    const bool hasPort = desktop != nullptr && desktop->windowPort(window) != nullptr;
    return hasPort ? portOn(window) : nullptr;
  });
}

void KorvelPortRelease(CGrafPtr port) {
  if (port != nullptr) port->own.reset();
}

int KorvelPortSave(CGrafPtr port, const char *pngPath) {
  return onSurface(port, [&](const Port &surface) {
    return pngPath != nullptr && surface.save(pngPath) ? 1 : 0;
  });
}

int KorvelPortPixel(CGrafPtr port, int x, int y, RGBColor *colour) {
  if (colour == nullptr) return 0;
  return onSurface(port, [&](const Port &surface) {
    const std::optional<RGBColor> pixel = surface.pixel(x, y);
    if (pixel) *colour = *pixel;
    return pixel ? 1 : 0;
  });
}

void SetPort(CGrafPtr port) { korvel::draw::g_current = port; }

void GetPort(CGrafPtr *port) {
  if (port == nullptr) return;
  CGrafPtr current = korvel::draw::g_current;
  *port = orOnFailure(nullptr, [&] { return surfaceOf(current) == nullptr ? nullptr : current; });
}
