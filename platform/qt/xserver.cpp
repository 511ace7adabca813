// SPDX-License-Identifier: MIT
// Speaks to the server and to the toolkit's loop through the libraries that the toolkit has loaded
// for them, opened by name so that the module itself needs none.
#include "platform/qt/xserver.h"

#include <cstdio>
#include <limits>
#include <utility>

#include <dlfcn.h>
#include <poll.h>

#include <QDrag>
#include <QGuiApplication>

namespace korvel::platform::qt {
namespace {

constexpr const char *kXcb = "libxcb.so.1";
constexpr const char *kX11 = "libX11.so.6";
constexpr const char *kGLib = "libglib-2.0.so.0";

// Null where the library or its function is missing. The library stays loaded.
template <typename Function>
Function *functionOf(const char *library, const char *name, int flags = 0) {
  void *opened = dlopen(library, RTLD_NOW | RTLD_LOCAL | flags);
  return opened == nullptr ? nullptr : reinterpret_cast<Function *>(dlsym(opened, name));
}

bool isOnX11() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

auto *x11() { return qGuiApp->nativeInterface<QNativeInterface::QX11Application>(); }

// Of the toolkit's connection; below 0 where there is none.
int connection() {
  if (!isOnX11()) return -1;
  const auto descriptorOf = functionOf<int(void *)>(kXcb, "xcb_get_file_descriptor");
  return descriptorOf == nullptr ? -1 : descriptorOf(x11()->connection());
}

// The other end may have closed the connection before anybody has read so.
constexpr int kHungUp = POLLRDHUP | POLLHUP | POLLERR;

bool hasHungUp(int descriptor) {
  pollfd asked{descriptor, kHungUp, 0};
  return poll(&asked, 1, 0) == 1;
}

// Before all that the toolkit has in its loop.
constexpr int kFirstOfAll = std::numeric_limits<int>::min();

using SetHandler = LostConnection *(LostConnection *);
constexpr const char *kSetHandler = "XSetIOErrorHandler";

// The toolkit's connection, and the function of all others.
constinit void *toolkits = nullptr;
constinit LostConnection *ofOthers = nullptr;

int passOver(void *display) { return display == toolkits ? 0 : ofOthers(display); }

void sayOnce() {
  static constinit bool isSaid = false;
  if (!std::exchange(isSaid, true)) std::fprintf(stderr, "korvel: %s\n", kXServerGone);
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
  const int descriptor = connection();
  return descriptor >= 0 && hasHungUp(descriptor);
}

// The library tells what is set only when something else is.
LostConnection *lostConnectionHandler() {
  const auto set = functionOf<SetHandler>(kX11, kSetHandler, RTLD_NOLOAD);
  LostConnection *handler = set == nullptr ? nullptr : set(nullptr);
  if (handler != nullptr) set(handler);
  return handler;
}

void outliveXServer(LostConnection *others) {
  if (!isOnX11()) return;
  using ExitHandler = void(void *, void *);
  const auto set = functionOf<SetHandler>(kX11, kSetHandler);
  const auto setExitHandler =
      functionOf<void(void *, ExitHandler *, void *)>(kX11, "XSetIOErrorExitHandler");
  if (set == nullptr || setExitHandler == nullptr) return;
  toolkits = x11()->display();
  LostConnection *toolkitsOwn = set(passOver);
  ofOthers = others != nullptr ? others : toolkitsOwn;
  setExitHandler(
      toolkits, [](void *, void *) {}, nullptr);
}

XServerWatch::XServerWatch(std::function<void()> onGone) : onGone_(std::move(onGone)) {
  const int descriptor = connection();
  if (descriptor < 0) return;
  using Seen = int(int descriptor, int condition, void *watch);
  const auto add = functionOf<unsigned(int, int, int, Seen *, void *, void (*)(void *))>(
      kGLib, "g_unix_fd_add_full");
  const auto seen = [](int, int, void *watch) {
    return static_cast<XServerWatch *>(watch)->see() ? 1 : 0;
  };
  source_ = add == nullptr ? 0 : add(kFirstOfAll, descriptor, kHungUp, seen, this, nullptr);
}

XServerWatch::~XServerWatch() {
  if (source_ != 0) functionOf<int(unsigned)>(kGLib, "g_source_remove")(source_);
  if (hasSeen_) sayOnce();
}

// False, which gives the source up, when a loop that is none of a dialog goes on.
bool XServerWatch::see() {
  if (std::exchange(hasSeen_, true)) {
    source_ = 0;
    return false;
  }
  QDrag::cancel();  // has a loop of its own
  onGone_();
  return true;
}

}  // namespace korvel::platform::qt
