// SPDX-License-Identifier: MIT
// Starts the QApplication, where need be after a trial in a child process: Qt ends a process whose
// platform cannot be started.
#include "platform/qt/application.h"

#include <atomic>
#include <clocale>
#include <csignal>
#include <errno.h>
#include <memory>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QScreen>
#include <QThread>
#include <QWidget>

#include "base/posix.h"
#include "platform/qt/privileges.h"
#include "platform/qt/screencheck.h"
#include "platform/qt/xserver.h"

namespace korvel::platform::qt {
namespace {

// Qt sets the process's C locale from the environment, and warns when that has no UTF-8. The
// application keeps its own locale, and the warning is dropped. So is the one about a session
// folder that is missing or another user's, as it often is without a screen.
class QuietStart {
 public:
  QuietStart() : locale_(std::setlocale(LC_ALL, nullptr)) {
    outer_ = qInstallMessageHandler(dropNotices);
  }
  ~QuietStart() {
    qInstallMessageHandler(outer_);
    std::setlocale(LC_ALL, locale_.c_str());
  }
  QuietStart(const QuietStart &) = delete;
  QuietStart &operator=(const QuietStart &) = delete;

 private:
  static void dropNotices(QtMsgType type, const QMessageLogContext &context,
                          const QString &message) {
    for (const char *notice : {"Detected locale", "QStandardPaths: "})
      if (message.startsWith(QLatin1String(notice))) return;
    outer_(type, context, message);
  }

  static constinit inline QtMessageHandler outer_ = nullptr;
  const std::string locale_;
};

// Two threads of the toolkit may find that the compositor has gone away: each says so and ends the
// process. One is enough, for which the other one waits.
constinit QtMessageHandler sayAll = nullptr;

void sayOneEnd(QtMsgType type, const QMessageLogContext &context, const QString &message) {
  static constinit std::atomic<bool> isEnding = false;
  const bool isEnd = message.startsWith(QLatin1String("The Wayland connection"));
  if (!isEnd || !isEnding.exchange(true)) return sayAll(type, context, message);
  sleep(1);
}

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

void makeApplication(const std::string &platform) {
  const QuietStart quiet;
  static Arguments arguments(platform);
  // Never destroyed: widgets and threads of the host may outlive every static destructor.
  static QApplication *application = new QApplication(arguments.count, arguments.values);
  application->setQuitOnLastWindowClosed(false);
}

void startApplication(const std::string &platform) {
  LostConnection *before = lostConnectionHandler();
  makeApplication(platform);
  outliveXServer(before);
  sayAll = qInstallMessageHandler(nullptr);  // known before it is asked for
  qInstallMessageHandler(sayOneEnd);
}

constexpr unsigned kTrialSeconds = 10;

// In the child process: default signal actions, no core file, a limited time, and silence.
void standAlone() {
  for (const int signal : {SIGALRM, SIGABRT, SIGSEGV, SIGTERM}) std::signal(signal, SIG_DFL);
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_UNBLOCK, &all, nullptr);
  const rlimit noCore{};
  setrlimit(RLIMIT_CORE, &noCore);
  alarm(kTrialSeconds);
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
  const int nowhere = open("/dev/null", O_RDWR);
  if (nowhere < 0) return;
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
}

[[noreturn]] void tryOut(const std::string &platform) {
  standAlone();
  startApplication(platform);
  const bool hasScreen = QGuiApplication::primaryScreen() != nullptr;
  if (hasScreen) {
    QWidget window;
    window.show();
    QCoreApplication::processEvents();
  }
  _exit(hasScreen ? 0 : 1);
}

// Tried in a child process: a platform that cannot be started ends the process or hangs.
bool startsInTrial(const std::string &platform) {
  const pid_t child = fork();
  if (child == 0) tryOut(platform);
  int status = -1;
  const pid_t ended = child < 0 ? -1 : base::retried([&] { return waitpid(child, &status, 0); });
  return ended > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Why the application made for drawing alone has no screen. It is the process's only one, so the
// reason holds until the process ends.
constinit const std::string *withoutScreen = nullptr;

bool startOffscreen(const std::string &problem) {
  if (endsThisProcess() || !hasOffscreenPlatform()) return false;
  auto kept = std::make_unique<std::string>(problem);
  startApplication(kOffscreenPlatform);
  withoutScreen = kept.release();
  return true;
}

// Empty when dialogs can be shown with this application.
std::string whyUnfit(const QCoreApplication &application) {
  if (qobject_cast<const QApplication *>(&application) == nullptr)
    return "no screen: the application's QCoreApplication is not a QApplication";
  if (application.thread() != QThread::currentThread())
    return "dialog not shown: asked for in another thread than the first one";
  if (xServerHasGone()) return kXServerGone;
  return whyUnseen(QGuiApplication::platformName().toStdString());
}

}  // namespace

bool ensureApplication(std::string &problem) {
  if (withoutScreen != nullptr) {
    problem = *withoutScreen;
    return false;
  }
  if (QCoreApplication *application = QCoreApplication::instance()) {
    const std::string why = whyUnfit(*application);
    if (!why.empty()) problem = why;
    return why.empty();
  }
  if (endsThisProcess()) {
    problem = "no screen: Qt does not work for a user that a set-user-id program changed to";
    return false;
  }
  const PlatformChoice choice = choosePlatform(startsInTrial);
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
