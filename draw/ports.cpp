// SPDX-License-Identifier: MIT
// The ports that the library hands out, and which of them is current.
#include "draw/ports.h"

#include <memory>
#include <utility>

#include <korvel/desktop.h>

#include "draw/misuse.h"
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
  lookForMisuse([=] { needsImageSize(Call("KorvelImagePort", {width, height}), width, height); });
  return guarded(nullptr, [&] { return portOnImage(width, height); });
}

CGrafPtr KorvelPainterPort(void *qpainter) {
  lookForMisuse([=] { Call("KorvelPainterPort", {filled(qpainter)}).needsAll(); });
  if (qpainter == nullptr) return nullptr;
  return guarded(nullptr, [&] { return portOnPainter(qpainter); });
}

CGrafPtr GetWindowPort(WindowRef window) {
  const Call call("GetWindowPort", {window});
  const CGrafPtr result = guarded(nullptr, [&] { return portOf(window); });
  if (call) needsMade(call, result);
  return result;
}

void KorvelPortRelease(CGrafPtr port) {
  lookForMisuse([=] {
    needsOwnPort(Call("KorvelPortRelease", {port}), port,
                 port == nullptr || port->window == nullptr);
  });
  if (port != nullptr) port->own.reset();
}

int KorvelPortSave(CGrafPtr port, const char *pngPath) {
  const Call call("KorvelPortSave", {port, pngPath});
  if (call) needsFile(call, port, pngPath);
  if (pngPath == nullptr) return 0;
  const int result =
      onSurface(port, 0, [&](const Port &surface) { return surface.save(pngPath) ? 1 : 0; });
  if (call) needsSaved(call, result == 1);
  return result;
}

int KorvelPortPixel(CGrafPtr port, int x, int y, RGBColor *colour) {
  const Call call("KorvelPortPixel", {port, x, y, filled(colour)});
  if (call) needsPort(call, port);
  if (colour == nullptr) return 0;
  const int result =
      onSurface(port, 0, [&](const Port &surface) { return readPixel(surface, x, y, *colour); });
  if (call) needsPixel(call, x, y, result == 1);
  return result;
}

void SetPort(CGrafPtr port) {
  lookForMisuse([=] { needsPortOrNull(Call("SetPort", {orNull(port)}), port); });
  setCurrentPort(port);
}

void GetPort(CGrafPtr *port) {
  lookForMisuse([=] { Call("GetPort", {filled(port)}).needsAll(); });
  if (port != nullptr) *port = guarded(nullptr, [] { return currentPort(); });
}
