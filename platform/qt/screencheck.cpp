// SPDX-License-Identifier: MIT
// Asks servers and plugins themselves, as the toolkit would end the process where one of them
// fails.
#include "platform/qt/screencheck.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>
#include <QStringList>

#include "platform/qt/xserver.h"

namespace korvel::platform::qt {
namespace {

std::string environment(const char *name) {
  const char *value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string waylandSocket() {
  std::string display = environment("WAYLAND_DISPLAY");
  if (display.empty() || display.front() == '/') return display;
  return environment("XDG_RUNTIME_DIR") + "/" + display;
}

bool waylandAnswers() {
  const std::string path = waylandSocket();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return false;
  const bool answers =
      connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
  close(descriptor);
  return answers;
}

QStringList pluginFolders() {
  QStringList folders;
  const QString own = qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH");
  if (!own.isEmpty()) folders << own;
  for (const QString &path : QCoreApplication::libraryPaths())
    folders << path + QLatin1String("/platforms");
  return folders;
}

bool servesPlatform(const QPluginLoader &plugin, const QString &platform) {
  const QJsonValue keys = plugin.metaData()[QLatin1String("MetaData")][QLatin1String("Keys")];
  for (const auto &key : keys.toArray())
    if (key.toString().compare(platform, Qt::CaseInsensitive) == 0) return true;
  return false;
}

// A plugin that is there but lacks a library would end the process just as a missing one.
bool pluginLoads(const QString &file, const QString &platform) {
  QPluginLoader plugin(file);
  return servesPlatform(plugin, platform) && plugin.load();
}

bool pluginExists(const std::string &name) {
  const QString platform = QString::fromStdString(name);
  for (const QString &path : pluginFolders()) {
    const QDir folder(path);
    const QString usual = QLatin1String("libq") + platform + QLatin1String(".so");
    if (folder.exists(usual) && pluginLoads(folder.filePath(usual), platform)) return true;
    for (const QString &file : folder.entryList({QStringLiteral("*.so")}, QDir::Files))
      if (file != usual && pluginLoads(folder.filePath(file), platform)) return true;
  }
  return false;
}

// Qt ignores case here, too.
std::string nameOf(const std::string &entry) {
  std::string name = entry.substr(0, entry.find(':'));
  for (char &c : name)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return name;
}

bool isX11(const std::string &name) { return name == "xcb"; }
bool isWayland(const std::string &name) { return name.starts_with("wayland"); }

// Why an entry of QT_QPA_PLATFORM (a platform's name, perhaps with ":" and parameters) cannot be
// started; empty when it can.
std::string problemOf(const std::string &entry, bool (*starts)(const std::string &platform)) {
  const std::string platform = nameOf(entry);
  if (isX11(platform) && !xServerAnswers())
    return "no screen: the X server at DISPLAY=\"" + environment("DISPLAY") + "\" does not answer";
  if (isWayland(platform) && !waylandAnswers())
    return "no screen: the compositor at WAYLAND_DISPLAY=\"" + environment("WAYLAND_DISPLAY") +
           "\" does not answer";
  if (!pluginExists(platform)) return "no screen: Qt has no plugin for platform " + platform;
  std::string unseen = whyUnseen(platform);
  if (!unseen.empty()) return unseen;
  const bool isKnown = isX11(platform) || isWayland(platform) || platform == kOffscreenPlatform;
  if ((!isKnown || entry != platform) && !starts(entry))
    return "no screen: platform " + entry + " cannot be started";
  return {};
}

PlatformChoice chooseAmong(const std::string &entries,
                           bool (*starts)(const std::string &platform)) {
  PlatformChoice choice;
  std::size_t begin = 0;
  while (begin <= entries.size()) {
    const std::size_t end = std::min(entries.find(';', begin), entries.size());
    const std::string entry = entries.substr(begin, end - begin);
    choice.problem = problemOf(entry, starts);
    if (choice.problem.empty()) {
      choice.name = entry;
      return choice;
    }
    begin = end + 1;
  }
  return choice;
}

}  // namespace

std::string whyUnseen(const std::string &name) {
  if (isX11(name) || isWayland(name) || environment("KORVEL_UNSEEN") == "1") return {};
  return "no screen: nobody may see what platform " + name +
         " shows (KORVEL_UNSEEN=1 says that it is meant)";
}

PlatformChoice choosePlatform(bool (*starts)(const std::string &platform)) {
  const std::string wanted = environment("QT_QPA_PLATFORM");
  if (!wanted.empty()) return chooseAmong(wanted, starts);

  PlatformChoice choice;
  if (!environment("DISPLAY").empty()) {
    choice = chooseAmong("xcb", starts);
    if (!choice.name.empty()) return choice;
  }
  if (!environment("WAYLAND_DISPLAY").empty()) return chooseAmong("wayland", starts);
  if (choice.problem.empty())
    choice.problem = "no screen: neither DISPLAY nor WAYLAND_DISPLAY is set";
  return choice;
}

bool hasOffscreenPlatform() { return pluginExists(kOffscreenPlatform); }

}  // namespace korvel::platform::qt
