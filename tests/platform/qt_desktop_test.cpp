// SPDX-License-Identifier: MIT
// The desktop of the Qt module: application, windows, the modal run.
#include <clocale>
#include <thread>

#include <dlfcn.h>
#include <sys/resource.h>

#include <QApplication>
#include <QBackingStore>
#include <QDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::widgetOf;
using Lines = std::vector<std::string>;

constexpr Rect kBounds{200, 150, 500, 350};

std::unique_ptr<Dialog> newDialog(WindowRef parent = nullptr) {
  auto dialog = qtDesktop().newDialog(kBounds, parent, "Fiche");
  dialog->addItem(ItemKind::PushButton, {50, 160, 130, 180}, "OK");
  dialog->addItem(ItemKind::PushButton, {150, 160, 230, 180}, "Annuler");
  dialog->addItem(ItemKind::EditText, {20, 20, 120, 35}, "");
  dialog->addItem(ItemKind::EditText, {20, 50, 120, 65}, "");
  return dialog;
}

ModuleEntry moduleEntry() {
  qtDesktop();
  void *module = dlopen(getenv("KORVEL_DESKTOP"), RTLD_NOW | RTLD_LOCAL);
  return reinterpret_cast<ModuleEntry>(dlsym(module, kModuleEntry));
}

// ---- Module and application ----
//
// A process has one application, so each of these tests needs a process of its own: CTest gives
// every test one.

TEST(QtModule, IsThereForItsOwnVersionOnly) {
  EXPECT_EQ(moduleEntry()(kSeamVersion), &qtDesktop());
  EXPECT_EQ(moduleEntry()(kSeamVersion + 1), nullptr);
  EXPECT_EQ(moduleEntry()(0), nullptr);
}

TEST(QtModule, MakesAnApplicationThatLeavesTheLocaleAlone) {
  const test::EnvironmentGuard french("LC_ALL", "C.UTF-8");
  std::setlocale(LC_ALL, "C");
  ASSERT_EQ(QCoreApplication::instance(), nullptr);
  testing::internal::CaptureStderr();
  qtDesktop();
  EXPECT_EQ(testing::internal::GetCapturedStderr().find("ocale"), std::string::npos);
  ASSERT_NE(qobject_cast<QApplication *>(QCoreApplication::instance()), nullptr);
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

TEST(QtModule, SaysNothingAboutALocaleWithoutUtf8) {
  const test::EnvironmentGuard plain("LC_ALL", "C");
  testing::internal::CaptureStderr();
  qtDesktop();
  EXPECT_EQ(testing::internal::GetCapturedStderr().find("ocale"), std::string::npos);
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

TEST(QtModule, WhatElseIsSaidAtTheStartReachesItsHost) {
  const test::EnvironmentGuard style("QT_STYLE_OVERRIDE", "nowhere");
  static QString told;
  qInstallMessageHandler(
      [](QtMsgType, const QMessageLogContext &, const QString &message) { told += message; });
  qtDesktop();
  EXPECT_TRUE(told.contains("nowhere")) << told.toStdString();
}

// Two threads of the toolkit may do so.
TEST(QtModule, ThatTheCompositorHasGoneAwayIsSaidOnce) {
  static QStringList told;
  qInstallMessageHandler(
      [](QtMsgType, const QMessageLogContext &, const QString &message) { told << message; });
  qtDesktop();
  told.clear();
  for (int n = 0; n < 2; ++n) qWarning("The Wayland connection broke. Is it gone?");
  for (int n = 0; n < 2; ++n) qWarning("Something else");
  EXPECT_EQ(told, (QStringList{"The Wayland connection broke. Is it gone?", "Something else",
                               "Something else"}));
}

TEST(QtModule, UsesTheApplicationOfItsHost) {
  const test::EnvironmentGuard offscreen("QT_QPA_PLATFORM", "offscreen");
  int count = 1;
  char name[] = "host";
  char *arguments[] = {name, nullptr};
  QApplication host(count, arguments);
  qtDesktop();
  EXPECT_EQ(QCoreApplication::instance(), &host);
  EXPECT_TRUE(host.quitOnLastWindowClosed()) << "the host's own settings stay";
}

TEST(QtModule, AnApplicationWithoutWindowsIsNoScreen) {
  int count = 1;
  char name[] = "host";
  char *arguments[] = {name, nullptr};
  const QCoreApplication host(count, arguments);
  setenv("KORVEL_DESKTOP", KORVEL_TEST_MODULE, 0);
  void *module = dlopen(KORVEL_TEST_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr);
  Desktop *desktop = reinterpret_cast<ModuleEntry>(dlsym(module, kModuleEntry))(kSeamVersion);
  std::string problem;
  EXPECT_FALSE(desktop->hasScreen(problem));
  EXPECT_NE(problem.find("QApplication"), std::string::npos);
  EXPECT_EQ(desktop->newDialog(kBounds, nullptr, "Fiche"), nullptr);
  EXPECT_EQ(desktop->frontWindow(), nullptr);
  EXPECT_EQ(desktop->newImage(10, 10), nullptr) << "it has no fonts";
  EXPECT_EQ(desktop->painterPort(&count), nullptr);
  EXPECT_EQ(desktop->loadPicture("picture.svg"), nullptr);
  EXPECT_EQ(desktop->windowPort(nullptr), nullptr);
}

TEST(QtModule, DrawsImagesWithAnApplicationThatHasFontsButNoWidgets) {
  const test::EnvironmentGuard offscreen("QT_QPA_PLATFORM", "offscreen");
  int count = 1;
  char name[] = "host";
  char *arguments[] = {name, nullptr};
  const QGuiApplication host(count, arguments);
  void *module = dlopen(KORVEL_TEST_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr);
  Desktop *desktop = reinterpret_cast<ModuleEntry>(dlsym(module, kModuleEntry))(kSeamVersion);
  std::string problem;
  EXPECT_FALSE(desktop->hasScreen(problem));
  const auto image = desktop->newImage(100, 40);
  ASSERT_NE(image, nullptr);
  EXPECT_GT(image->drawText(5, 20, "Bonjour"), 20);
}

TEST(QtModule, APortOutlivesTheApplicationOfItsHost) {
  const test::EnvironmentGuard offscreen("QT_QPA_PLATFORM", "offscreen");
  std::unique_ptr<Port> image;
  Desktop *desktop = nullptr;
  int width = 0;
  {
    int count = 1;
    char name[] = "host";
    char *arguments[] = {name, nullptr};
    const QApplication host(count, arguments);
    desktop = &qtDesktop();
    image = desktop->newImage(100, 40);
    ASSERT_TRUE(image->setFont("Arial", 0));
    width = image->drawText(5, 20, "Avant");
  }
  EXPECT_EQ(image->drawText(5, 35, "Avant"), width);
  image->drawText(5, 35, "Jamais vu");
  image->setFontSize(90);
  image->drawText(5, 35, "Grand");
  EXPECT_FALSE(image->setFont("Courier New", 0)) << "fonts end with the application";
  image->fillRect({0, 0, 10, 10});
  image->drawLine(3, 5, 30, 39, 2);
  EXPECT_EQ(image->pixel(5, 5)->red, 0);

  const auto next = desktop->newImage(100, 40);
  ASSERT_NE(next, nullptr);
  ASSERT_TRUE(next->setFont("Arial", 0));
  EXPECT_EQ(next->drawText(5, 20, "Avant"), width);
  image->setFontSize(20);
  image->setFontSize(12);
  EXPECT_EQ(image->drawText(5, 35, "Avant"), width);
}

TEST(QtModule, AHostThatNobodySeesIsNoScreenButDraws) {
  const test::EnvironmentGuard offscreen("QT_QPA_PLATFORM", "offscreen");
  int count = 1;
  char name[] = "host";
  char *arguments[] = {name, nullptr};
  const QApplication host(count, arguments);
  Desktop &desktop = qtDesktop();
  for (const char *value : {static_cast<const char *>(nullptr), "", "0", "yes"}) {
    const test::EnvironmentGuard unseen("KORVEL_UNSEEN", value);
    std::string problem;
    EXPECT_FALSE(desktop.hasScreen(problem));
    EXPECT_NE(problem.find("platform offscreen"), std::string::npos) << problem;
    EXPECT_EQ(desktop.newDialog(kBounds, nullptr, "Fiche"), nullptr);
    EXPECT_NE(desktop.newImage(10, 10), nullptr);
  }
  std::string problem;
  EXPECT_TRUE(desktop.hasScreen(problem)) << problem;
}

TEST(QtModule, InAnotherThreadThereIsNoScreen) {
  Desktop &desktop = qtDesktop();
  std::thread([&] {
    std::string problem;
    EXPECT_FALSE(desktop.hasScreen(problem));
    EXPECT_NE(problem.find("another thread"), std::string::npos) << problem;
    EXPECT_EQ(desktop.newDialog(kBounds, nullptr, "Fiche"), nullptr);
  }).join();
  std::string problem;
  EXPECT_TRUE(desktop.hasScreen(problem)) << problem;
}

TEST(QtModule, DrawsOnTheScreenThatThereIs) {
  const test::EnvironmentGuard offscreen("QT_QPA_PLATFORM", "offscreen");
  const test::EnvironmentGuard unseen("KORVEL_UNSEEN", "1");
  void *module = dlopen(KORVEL_TEST_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr);
  Desktop *desktop = reinterpret_cast<ModuleEntry>(dlsym(module, kModuleEntry))(kSeamVersion);
  ASSERT_NE(desktop->newImage(10, 10), nullptr);
  std::string problem;
  EXPECT_TRUE(desktop->hasScreen(problem)) << "an image first is no end of dialogs: " << problem;
}

// ---- Windows ----

TEST(QtDesktop, AWidgetStandsForItsWindow) {
  Desktop &desktop = qtDesktop();
  QWidget window;
  auto *inside = new QLineEdit(&window);
  EXPECT_EQ(widgetOf(desktop.hostWindow(inside)), &window);
  EXPECT_EQ(widgetOf(desktop.hostWindow(&window)), &window);
}

TEST(QtDesktop, AWindowHasTheBoundsOfItsContentWhileItIsShown) {
  Desktop &desktop = qtDesktop();
  auto window = std::make_unique<QWidget>();
  const WindowRef reference = desktop.hostWindow(window.get());
  EXPECT_EQ(desktop.windowBounds(reference), std::nullopt);
  window->setGeometry(30, 40, 300, 200);
  window->show();
  EXPECT_EQ(desktop.windowBounds(reference), (Rect{30, 40, 330, 240}));
  window.reset();
  EXPECT_EQ(desktop.windowBounds(reference), std::nullopt);
}

TEST(QtDesktop, TheActiveWindowIsInFront) {
  Desktop &desktop = qtDesktop();
  EXPECT_EQ(desktop.frontWindow(), nullptr);
  QWidget window;
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  EXPECT_EQ(widgetOf(desktop.frontWindow()), &window);
}

TEST(QtDesktop, WhileNoneIsActiveTheDialogThatRunsIsInFrontElseTheNewestWindow) {
  Desktop &desktop = qtDesktop();
  QDialog dialog;
  QWidget older, newer, hint(nullptr, Qt::ToolTip);
  dialog.setModal(true);
  for (QWidget *window : {static_cast<QWidget *>(&dialog), &older, &newer, &hint})
    window->setAttribute(Qt::WA_ShowWithoutActivating);
  newer.winId();  // made, but not shown
  older.show();
  hint.show();
  ASSERT_EQ(QApplication::activeWindow(), nullptr);
  EXPECT_EQ(widgetOf(desktop.frontWindow()), &older);
  QWidget newest;
  newest.setAttribute(Qt::WA_ShowWithoutActivating);
  newest.show();
  EXPECT_EQ(widgetOf(desktop.frontWindow()), &newest);
  newest.showMinimized();
  EXPECT_EQ(widgetOf(desktop.frontWindow()), &older);
  dialog.show();
  newest.showNormal();
  ASSERT_EQ(QApplication::activeWindow(), nullptr);
  EXPECT_EQ(widgetOf(desktop.frontWindow()), &dialog);
}

TEST(QtDesktop, ANewDialogIsNotYetVisibleAndCoversItsBounds) {
  const auto dialog = newDialog();
  const QWidget *window = widgetOf(dialog->window());
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(window->geometry(), QRect(200, 150, 300, 200));
  EXPECT_EQ(window->minimumSize(), window->maximumSize());
  EXPECT_EQ(window->windowTitle(), "Fiche");
}

TEST(QtDesktop, TitlesAreShownAsTheyStand) {
  const auto dialog = newDialog();
  dialog->setTitle("\xC9l\xE9onore & Cie [*]");
  EXPECT_EQ(widgetOf(dialog->window())->windowTitle(), QStringLiteral("Éléonore & Cie [*][*]"))
      << "Qt shows a doubled mark as the mark itself";
}

TEST(QtDesktop, ADialogOutsideTheScreenIsMovedIntoView) {
  const Rect screen = qtDesktop().screenBounds();
  const Rect kOutside[] = {
      {-500, -500, -200, -300},
      {screen.right + 100, 0, screen.right + 400, 200},
      {screen.right - 100, screen.bottom - 100, screen.right + 200, screen.bottom + 100}};
  for (const Rect &bounds : kOutside) {
    const auto dialog = qtDesktop().newDialog(bounds, nullptr, "Fiche");
    const QRect place = widgetOf(dialog->window())->geometry();
    EXPECT_EQ(place.size(), QSize(300, 200));
    EXPECT_TRUE(QRect(screen.left, screen.top, screen.width(), screen.height()).contains(place))
        << place.x() << ' ' << place.y();
  }
}

TEST(QtDesktop, ADialogBeyondTheBottomRightCornerIsMovedIntoIt) {
  const Rect screen = qtDesktop().screenBounds();
  const auto dialog = qtDesktop().newDialog(
      {screen.right, screen.bottom, screen.right + 300, screen.bottom + 200}, nullptr, "Fiche");
  EXPECT_EQ(widgetOf(dialog->window())->geometry(),
            QRect(screen.right - 300, screen.bottom - 200, 300, 200));
}

TEST(QtDesktop, ADialogLargerThanTheScreenShowsItsTopLeftCorner) {
  const auto dialog = qtDesktop().newDialog({-100, -100, 9900, 9900}, nullptr, "Fiche");
  const QRect place = widgetOf(dialog->window())->geometry();
  EXPECT_EQ(place.left(), qtDesktop().screenBounds().left);
  EXPECT_GE(place.top(), qtDesktop().screenBounds().top);
  EXPECT_LT(place.top(), qtDesktop().screenBounds().top + 60);
}

// Needs a process of its own, as its largest memory is measured.
void expectTheLargestDialogToTakeLittleMemory() {
  constexpr int kSide = 16384;
  const auto dialog = qtDesktop().newDialog({0, 0, kSide, kSide}, nullptr, "Fiche");
  dialog->addItem(ItemKind::PushButton, {20, kSide - 34, 100, kSide - 14}, "OK");
  dialog->addItem(ItemKind::PushButton, {120, kSide - 34, 200, kSide - 14}, "Annuler");
  constexpr Rect kAll{0, 0, kSide, kSide};
  for (const ItemKind kind :
       {ItemKind::PushButton, ItemKind::CheckBox, ItemKind::ListBox, ItemKind::EditText}) {
    dialog->addItem(kind, kAll, "x");
  }
  dialog->addItem(ItemKind::PopUp, {0, 0, kSide, 14}, "");
  dialog->addGroupBox(kAll, "x");
  dialog->addStaticText(kAll, "x");
  dialog->addIcon(kAll, KORVEL_TEST_RESOURCES "/icons/2.svg");
  QtPerson person("Fiche");
  person.act(0, [&](QWidget *window) {
    EXPECT_TRUE(window->isVisible());
    EXPECT_LE(window->width(), window->screen()->size().width());
    EXPECT_LT(window->height(), window->screen()->size().height());
    window->repaint();
    Port *port = qtDesktop().windowPort(dialog->window());
    ASSERT_NE(port, nullptr);
    port->fillRect({0, 0, kSide, kSide});
    for (auto *bar : window->findChildren<QScrollBar *>()) bar->setValue(bar->maximum());
    window->repaint();
    EXPECT_LE(window->backingStore()->size().height(), window->height());
  });
  person.pressEscape();
  RecordedHits hits;
  hits.record(*dialog);
  person.finish();
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  EXPECT_LT(used.ru_maxrss, 1L << 20) << "in KiB";
}

TEST(QtDesktop, TheLargestDialogIsShownAndDrawnOnInLessThanAGibibyte) {
  expectTheLargestDialogToTakeLittleMemory();
}

TEST(QtDesktop, AtScale2TheLargestDialogTakesNoMoreMemory) {
  setenv("QT_SCALE_FACTOR", "2", 1);
  expectTheLargestDialogToTakeLittleMemory();
  ASSERT_EQ(qGuiApp->devicePixelRatio(), 2);
}

TEST(QtDesktop, ADialogStandsInFrontOfItsParent) {
  QWidget *window = nullptr;
  qtDesktop();
  QWidget parent;
  parent.show();
  const auto dialog = newDialog(qtDesktop().hostWindow(&parent));
  window = widgetOf(dialog->window());
  EXPECT_EQ(window->windowHandle()->transientParent(), parent.windowHandle());
  EXPECT_EQ(window->windowModality(), Qt::ApplicationModal);
}

TEST(QtDesktop, ADialogOutlivesItsParent) {
  qtDesktop();
  auto parent = std::make_unique<QWidget>();
  parent->show();
  const auto dialog = newDialog(qtDesktop().hostWindow(parent.get()));
  QtPerson person("Fiche");
  person.check([&] { parent.reset(); });
  person.press(kCancelItem);
  RecordedHits hits;
  hits.record(*dialog);
  EXPECT_EQ(hits.lines(), Lines{"2"});
  person.finish();
}

TEST(QtDesktop, OneDialogComesAfterTheOther) {
  for (int n = 0; n < 3; ++n) {
    const auto dialog = newDialog();
    QtPerson person("Fiche");
    person.pressEscape();
    RecordedHits hits;
    hits.record(*dialog);
    EXPECT_EQ(hits.lines(), Lines{"2"});
    person.finish();
  }
}

// ---- The run ----

class QtRun : public testing::Test {
 protected:
  void TearDown() override { person_.finish(); }

  Lines run() {
    hits_.record(*dialog_);
    return hits_.lines();
  }
  QWidget *widget(int item) {
    return test::itemWidgets(widgetOf(dialog_->window()))[static_cast<std::size_t>(item) - 1];
  }

  std::unique_ptr<Dialog> dialog_ = newDialog();
  QtPerson person_{"Fiche"};
  RecordedHits hits_;
};

TEST_F(QtRun, TheDialogIsOnTheScreenOnlyWhileItRuns) {
  const QWidget *window = widgetOf(dialog_->window());
  person_.check([&] { EXPECT_TRUE(window->isVisible()); });
  person_.press(kCancelItem);
  run();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(QtRun, TheWindowThatWasActiveIsActiveAgain) {
  QWidget host;
  host.show();
  host.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&host));
  person_.press(kCancelItem);
  run();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&host));
}

TEST_F(QtRun, AWindowBehindItGivesTheFocusBack) {
  QWidget host;
  host.show();
  dialog_ = newDialog(qtDesktop().hostWindow(&host));
  person_.check([&] {
    host.activateWindow();
    QCoreApplication::processEvents();
    EXPECT_TRUE(QTest::qWaitForWindowActive(widgetOf(dialog_->window())));
  });
  person_.press(kCancelItem);
  run();
}

TEST_F(QtRun, AWindowOfItsOwnKeepsTheFocus) {
  person_.act(0, [](QWidget *window) {
    QWidget own(window, Qt::Tool);
    own.show();
    own.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&own));
    QCoreApplication::processEvents();
    EXPECT_TRUE(own.isActiveWindow());
  });
  person_.press(kCancelItem);
  run();
}

TEST_F(QtRun, TabFollowsTheItemNumbers) {
  const auto focusIs = [this](int item) {
    person_.check([=, this] { EXPECT_TRUE(widget(item)->hasFocus()) << item; });
  };
  focusIs(3);
  person_.key(Qt::Key_Tab);
  focusIs(4);
  person_.key(Qt::Key_Tab);
  focusIs(1);
  person_.key(Qt::Key_Tab);
  focusIs(2);
  person_.key(Qt::Key_Backtab);
  focusIs(1);
  person_.press(kCancelItem);
  run();
}

TEST_F(QtRun, TheSpaceBarPressesTheButtonWithTheFocus) {
  person_.key(Qt::Key_Tab).key(Qt::Key_Tab).key(Qt::Key_Tab).key(Qt::Key_Space);
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtRun, ReturnIsTheDefaultItemAlsoOnAnotherButton) {
  dialog_->setDefaultItem(kOkItem);
  person_.key(Qt::Key_Tab).key(Qt::Key_Tab).key(Qt::Key_Tab).key(Qt::Key_Return);
  EXPECT_EQ(run(), Lines{"1"});
}

TEST_F(QtRun, TheEnterKeyIsReturn) {
  dialog_->setDefaultItem(kOkItem);
  person_.key(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(run(), Lines{"1"});
}

TEST_F(QtRun, TheEnterKeyIsReturnAlsoWhereNothingTellsItsKeypad) {
  dialog_->setDefaultItem(kOkItem);
  person_.key(Qt::Key_Enter, Qt::ControlModifier).key(Qt::Key_Enter);
  EXPECT_EQ(run(), Lines{"1"});
}

TEST_F(QtRun, ReturnWithAModifierIsNothing) {
  dialog_->setDefaultItem(kOkItem);
  person_.key(Qt::Key_Return, Qt::ControlModifier).key(Qt::Key_Escape);
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtRun, TheDefaultButtonLooksLikeOne) {
  const auto isDefault = [this](int item) {
    return qobject_cast<QPushButton *>(widget(item))->isDefault();
  };
  EXPECT_FALSE(isDefault(kOkItem));
  dialog_->setDefaultItem(kOkItem);
  EXPECT_TRUE(isDefault(kOkItem));
  dialog_->setDefaultItem(kCancelItem);
  EXPECT_FALSE(isDefault(kOkItem));
  EXPECT_TRUE(isDefault(kCancelItem));
  person_.key(Qt::Key_Return);
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtRun, ADisabledCancelItemIsNotPressedByEscapeOrTheCloseBox) {
  dialog_->setEnabled(kCancelItem, false);
  person_.pressEscape().closeBox().press(kOkItem);
  EXPECT_EQ(run(), Lines{"1"});
}

TEST_F(QtRun, AHostThatRejectsTheDialogCancelsIt) {
  hits_.keepOpen(kCancelItem);
  const auto reject = [](QWidget *window) {
    dynamic_cast<QDialog &>(*window).reject();
    EXPECT_TRUE(window->isVisible()) << "the program decides";
  };
  person_.act(0, reject).press(kOkItem);
  EXPECT_EQ(run(), (Lines{"2", "1"}));
}

TEST_F(QtRun, ADisabledItemIsGreyedAndCannotBeHit) {
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 80, 120, 92}, "Fumeur");
  dialog_->setEnabled(box, false);
  dialog_->setEnabled(kOkItem, false);
  EXPECT_FALSE(widget(box)->isEnabled());
  person_.click(box).press(kOkItem).press(kCancelItem);
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtRun, FocusMovesFromADisabledButtonToAField) {
  person_.key(Qt::Key_Tab).key(Qt::Key_Tab).check([this] {
    ASSERT_TRUE(widget(kOkItem)->hasFocus());
    dialog_->setEnabled(kOkItem, false);
    EXPECT_TRUE(widget(3)->hasFocus());
  });
  person_.pressEscape();
  run();
}

TEST_F(QtRun, KeysPressedDuringAHitAreHitsAfterIt) {
  bool isInHit = false;
  hits_.on(3, [&] {
    EXPECT_FALSE(isInHit) << "a hit within a hit";
    isInHit = true;
    if (dialog_->text(3).size() == 1) {
      test::typeText(widget(3), "bcd");
      EXPECT_EQ(dialog_->text(3), "a") << "the next key waits for the end of the hit";
    }
    isInHit = false;
  });
  person_.type(3, "a").check([] { QCoreApplication::processEvents(); });
  person_.pressEscape();
  EXPECT_EQ(run(), (Lines{"3 text a", "3 text ab", "3 text abc", "3 text abcd", "2"}));
}

TEST_F(QtRun, ClicksAndClosingDuringAHitComeAfterIt) {
  hits_.keepOpen(kOkItem);
  hits_.on(3, [&] {
    test::clickOn(widget(kOkItem), {20, 10});
    widgetOf(dialog_->window())->windowHandle()->close();
    EXPECT_EQ(hits_.lines().size(), 1u);
  });
  person_.type(3, "a");
  EXPECT_EQ(run(), (Lines{"3 text a", "1", "2"}));
}

TEST_F(QtRun, WhatIsNoPersonsDoingIsNotHeldBack) {
  hits_.on(3, [&] {
    QEvent event(QEvent::ZOrderChange);  // a window has no use for it, and says so
    EXPECT_FALSE(QCoreApplication::sendEvent(widgetOf(dialog_->window())->windowHandle(), &event));
  });
  person_.type(3, "a").press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 text a", "2"}));
}

TEST_F(QtRun, WhatComesAfterTheStopIsNoHit) {
  hits_.on(kOkItem, [&] { test::typeText(widget(3), "late"); });
  person_.press(kOkItem);
  EXPECT_EQ(run(), Lines{"1"});
  EXPECT_EQ(dialog_->text(3), "");
}

TEST_F(QtRun, ADialogWithinAHitTakesTheInputUntilItEnds) {
  RecordedHits inner;
  hits_.on(3, [&] {
    if (!inner.lines().empty()) return;
    const auto second = newDialog();
    inner.record(*second);
  });
  person_.type(3, "a").type(3, "x").press(kOkItem);  // the first opens the second dialog
  person_.type(3, "b").pressEscape();
  EXPECT_EQ(run(), (Lines{"3 text a", "3 text ab", "2"}));
  EXPECT_EQ(inner.lines(), (Lines{"3 text x", "1"}));
}

TEST_F(QtRun, ARunWithinTheSameRunIsNone) {
  hits_.on(3, [&] {
    RecordedHits again;
    dialog_->runModal(again);
    EXPECT_TRUE(again.lines().empty());
  });
  person_.type(3, "a").pressEscape();
  EXPECT_EQ(run(), (Lines{"3 text a", "2"}));
}

TEST_F(QtRun, RunsWithinTheLoopOfAHost) {
  Lines lines;
  QTimer::singleShot(0, [&] {
    lines = run();
    QCoreApplication::quit();
  });
  person_.type(3, "a").pressEscape();
  QApplication::exec();
  EXPECT_EQ(lines, (Lines{"3 text a", "2"}));
}

TEST_F(QtRun, AHostThatQuitsCancelsTheDialog) {
  Lines lines;
  QTimer::singleShot(0, [&] { lines = run(); });
  person_.check([] { QCoreApplication::quit(); });
  QApplication::exec();
  EXPECT_EQ(lines, Lines{"2"});
}

TEST_F(QtRun, WithoutAFieldTheFocusIsOnTheFirstButton) {
  dialog_ = qtDesktop().newDialog(kBounds, nullptr, "Fiche");
  dialog_->addItem(ItemKind::PushButton, {50, 160, 130, 180}, "OK");
  dialog_->addItem(ItemKind::PushButton, {150, 160, 230, 180}, "Annuler");
  person_.check([this] { EXPECT_TRUE(widget(kOkItem)->hasFocus()); });
  person_.pressEscape();
  run();
}

TEST_F(QtRun, ADisabledFieldDoesNotGetTheFocus) {
  dialog_->setEnabled(3, false);
  person_.check([this] { EXPECT_TRUE(widget(4)->hasFocus()); });
  person_.pressEscape();
  run();
}

}  // namespace
}  // namespace korvel::platform
