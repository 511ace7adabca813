#include "platform/qt/application.h"

#include <errno.h>

#include <QApplication>
#include <clocale>

#include "platform/qt/screencheck.h"

namespace korvel::platform::qt {
namespace {

// Qt sets the C locale of the process from the environment, and says so when it has no UTF-8; the
// application keeps the locale that it had, and hears nothing.
class UntouchedLocale {
 public:
  UntouchedLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
    g_previous = qInstallMessageHandler(dropLocaleNotice);
  }
  ~UntouchedLocale() {
    qInstallMessageHandler(g_previous);
    std::setlocale(LC_ALL, before_.c_str());
  }
  UntouchedLocale(const UntouchedLocale &) = delete;
  UntouchedLocale &operator=(const UntouchedLocale &) = delete;

 private:
  static void dropLocaleNotice(QtMsgType type, const QMessageLogContext &context,
                               const QString &message) {
    if (message.startsWith(QLatin1String("Detected locale"))) return;
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
  const UntouchedLocale locale;
  static Arguments arguments(platform);
  // Never destroyed: the widgets and threads of a host that comes and goes may outlive any moment
  // at which that could be done.
  static QApplication *application = new QApplication(arguments.count, arguments.values);
  application->setQuitOnLastWindowClosed(false);
}

}  // namespace

bool ensureApplication(std::string &problem) {
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

}  // namespace korvel::platform::qt
