// SPDX-License-Identifier: MIT
// The variables that lead Qt to code, and whether Qt would run at all.
#include "platform/qt/privileges.h"

#include <stdlib.h>

#include <sys/auxv.h>
#include <unistd.h>

#include <QCoreApplication>

namespace korvel::platform::qt {
namespace {

constexpr const char *kLeadToCode[] = {
    // Folders of plugins.
    "QT_PLUGIN_PATH", "QT_QPA_PLATFORM_PLUGIN_PATH",
    // Plugins that nobody needs, some of which load further ones.
    "QT_IM_MODULE", "QT_QPA_GENERIC_PLUGINS", "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE",
    // Choose a platform theme, which loads another toolkit: that one ends such a process.
    "DESKTOP_SESSION", "GNOME_DESKTOP_SESSION_ID", "KDE_FULL_SESSION", "XDG_CURRENT_DESKTOP",
    // Addresses of message buses, which may be commands.
    "AT_SPI_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS", "IBUS_ADDRESS",
    // The same for the other toolkit, which a platform theme loads.
    "GDK_PIXBUF_MODULE_FILE", "GIO_EXTRA_MODULES", "GIO_MODULE_DIR", "GTK_EXE_PREFIX",
    "GTK_MODULES", "GTK_PATH"};

}  // namespace

void forgetForeignCode() {
  if (getauxval(AT_SECURE) == 0) return;
  for (const char *name : kLeadToCode) unsetenv(name);
}

bool endsThisProcess() { return geteuid() != getuid() && !QCoreApplication::isSetuidAllowed(); }

}  // namespace korvel::platform::qt
