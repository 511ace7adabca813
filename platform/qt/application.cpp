#include "platform/qt/application.h"

#include <errno.h>

#include <QApplication>
#include <clocale>
#include <memory>

#include "platform/qt/screencheck.h"

namespace korvel::platform::qt {
namespace {

// Qt sets the C locale of the process from the environment, and says so when it has no UTF-8; the
// application keeps the locale that it had, and hears nothing. Nor does it hear of a session's
// folder, of which there often is none, or another user's, where there is no screen.
class QuietStart {
 public:
  QuietStart() : before_(std::setlocale(LC_ALL, nullptr)) {
    g_previous = qInstallMessageHandler(dropNotices);
  }
  ~QuietStart() {
    qInstallMessageHandler(g_previous);
    std::setlocale(LC_ALL, before_.c_str());
  }
  QuietStart(const QuietStart &) = delete;
  QuietStart &operator=(const QuietStart &) = delete;

 private:
  static void dropNotices(QtMsgType type, const QMessageLogContext &context,
                          const QString &message) {
    for (const char *notice : {"Detected locale", "QStandardPaths: "})
      if (message.startsWith(QLatin1String(notice))) return;
    g_previous(type, context, message);
  }

  static constinit inline QtMessageHandler g_previous = nullptr;
  const std::string before_;
};

// Qt keeps references to both for as long as it lives.
struct Arguments {
  explicit Arguments(std::string name)
      : platform(std::move(name)),
        values{program_invocation_name, option, platform.data(), nullptr} {}

  std::string platform;
  char option[10] = "-platform";
  char *values[4];
  int count = 3;
};

void startApplication(const std::string &platform) {
  const QuietStart quiet;
  static Arguments arguments(platform);
  // Never destroyed: the widgets and threads of a host that comes and goes may outlive any moment
  // at which that could be done.
  static QApplication *application = new QApplication(arguments.count, arguments.values);
  application->setQuitOnLastWindowClosed(false);
}

// Why the application that was made for drawing alone has no screen. It stays the process's only
// one, so that what was found out then holds for good.
constinit const std::string *g_withoutScreen = nullptr;

bool startOffscreen(const std::string &problem) {
  if (!hasOffscreenPlatform()) return false;
  auto kept = std::make_unique<std::string>(problem);
  startApplication(kOffscreenPlatform);
  g_withoutScreen = kept.release();
  return true;
}

}  // namespace

bool ensureApplication(std::string &problem) {
  if (g_withoutScreen != nullptr) {
    problem = *g_withoutScreen;
    return false;
  }
  if (QCoreApplication *application = QCoreApplication::instance()) {
    if (qobject_cast<QApplication *>(application) != nullptr) return true;
    problem = "no screen: the application's QCoreApplication is not a QApplication";
    return false;
  }
  const PlatformChoice choice = choosePlatform();
  if (choice.name.empty()) {
    problem = choice.problem;
    return false;
  }
  startApplication(choice.name);
  return true;
}

bool ensureDrawing() {
  if (QCoreApplication *application = QCoreApplication::instance())
    return qobject_cast<QGuiApplication *>(application) != nullptr;
  std::string problem;
  return ensureApplication(problem) || startOffscreen(problem);
}

}  // namespace korvel::platform::qt
