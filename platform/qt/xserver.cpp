// SPDX-License-Identifier: MIT
// Speaks to the server through the libraries that the toolkit has loaded for it, opened by name so
// that the module itself needs no X11.
#include "platform/qt/xserver.h"

#include <dlfcn.h>
#include <poll.h>

#include <QGuiApplication>

namespace korvel::platform::qt {
namespace {

constexpr const char *kXcb = "libxcb.so.1";

// Null where the library or its function is missing. The library stays loaded.
template <typename Function>
Function *functionOf(const char *library, const char *name) {
  void *opened = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  return opened == nullptr ? nullptr : reinterpret_cast<Function *>(dlsym(opened, name));
}

bool isOnX11() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

// The other end may have closed the connection before anybody has read so.
bool hasHungUp(int descriptor) {
  pollfd asked{descriptor, POLLRDHUP, 0};
  return poll(&asked, 1, 0) == 1;
}

}  // namespace

bool xServerAnswers() {
  const auto connect = functionOf<void *(const char *, int *)>(kXcb, "xcb_connect");
  const auto hasError = functionOf<int(void *)>(kXcb, "xcb_connection_has_error");
  const auto disconnect = functionOf<void(void *)>(kXcb, "xcb_disconnect");
  if (connect == nullptr || hasError == nullptr || disconnect == nullptr) return false;
  void *connection = connect(nullptr, nullptr);
  const bool answers = connection != nullptr && hasError(connection) == 0;
  disconnect(connection);
  return answers;
}

bool xServerHasGone() {
  if (!isOnX11()) return false;
  const auto *application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  const auto descriptorOf = functionOf<int(void *)>(kXcb, "xcb_get_file_descriptor");
  return descriptorOf != nullptr && hasHungUp(descriptorOf(application->connection()));
}

void keepLastWordsShort() {
  if (!isOnX11()) return;
  using Handler = int(void *);
  const auto setHandler = functionOf<Handler *(Handler *)>("libX11.so.6", "XSetIOErrorHandler");
  if (setHandler == nullptr) return;
  Handler *const before = setHandler(nullptr);  // sets the library's own, which is read by the next
  Handler *const standard = setHandler([](void *) { return 0; });
  if (before != standard) setHandler(before);
}

}  // namespace korvel::platform::qt
