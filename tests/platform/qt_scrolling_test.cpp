// SPDX-License-Identifier: MIT
// Dialogs larger than the free area of their screen, here a netbook's: a part of them scrolls, with
// the button pair below it. A process has one set of screens; CTest gives every test a process.
#include <sys/resource.h>

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QBackingStore>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

using test::clickOn;
using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::widgetOf;
using Lines = std::vector<std::string>;

// A netbook's screen, on its right a smaller one.
constexpr char kScreens[] = R"({"screens": [
  {"name": "netbook", "x": 0, "y": 0, "width": 1024, "height": 600},
  {"name": "small", "x": 1024, "y": 0, "width": 640, "height": 480}]})";
constexpr QRect kNetbook(0, 0, 1024, 600), kSmall(1024, 0, 640, 480);
constexpr int kTitleBar = 28;

constexpr int kWidth = 600, kHeight = 900;

class QtScrolling : public testing::Test {
 protected:
  void TearDown() override { person_.finish(); }

  // A dialog of this size whose content begins at a place of the screens.
  void open(int width, int height, const QPoint &corner = {200, 50}) {
    dialog_ = desktop_.newDialog({corner.x(), corner.y(), corner.x() + width, corner.y() + height},
                                 nullptr, "Fiche");
    const int middle = width / 2, top = height - 34;
    dialog_->addItem(ItemKind::PushButton, {middle - 90, top, middle - 10, top + 20}, "OK");
    dialog_->addItem(ItemKind::PushButton, {middle + 10, top, middle + 90, top + 20}, "Annuler");
  }
  // With twenty fields, one below the other, items 3 to 22.
  void openFields() {
    open(kWidth, kHeight);
    for (int top = 20; top < 820; top += 40) {
      dialog_->addStaticText({20, top, 110, top + 15}, "Nom");
      dialog_->addItem(ItemKind::EditText, {120, top, 320, top + 15}, "");
    }
  }
  // Of the box, item 3, half is shown when the bar is at 30.
  void openBoxAndField() {
    open(kWidth, kHeight);
    dialog_->addItem(ItemKind::CheckBox, {20, 20, 120, 38}, "Fumeur");
    dialog_->addItem(ItemKind::EditText, {20, 80, 120, 95}, "");
  }

  QWidget *window() { return widgetOf(dialog_->window()); }
  QWidget &widget(int item) {
    return *test::itemWidgets(window())[static_cast<std::size_t>(item) - 1];
  }
  // Null in a dialog that does not scroll.
  QAbstractScrollArea *body() {
    return window()->findChild<QAbstractScrollArea *>(QString(), Qt::FindDirectChildrenOnly);
  }
  QScrollBar &bar() { return *body()->verticalScrollBar(); }
  QRect placeOf(const QWidget &widget) {
    return {widget.mapTo(window(), QPoint(0, 0)), widget.size()};
  }
  QRect shown() { return placeOf(*body()->viewport()); }

  // What is expected of an open dialog, in its turn among the person's steps.
  template <typename Check>
  void then(Check check) {
    person_.check([=] { check(); });
  }
  Lines run() {
    hits_.record(*dialog_);
    return hits_.lines();
  }
  Lines runUntilEscape() {
    person_.pressEscape();
    return run();
  }

  const test::TemporaryFolder folder_;
  const test::EnvironmentGuard screens_{
      "QT_QPA_PLATFORM", ("offscreen:configfile=" + folder_.add("screens.json", kScreens)).c_str()};
  Desktop &desktop_ = qtDesktop();
  std::unique_ptr<Dialog> dialog_;
  QtPerson person_{"Fiche"};
  RecordedHits hits_;
};

void turnWheelOver(QWidget &widget, int steps) {
  const QPoint place = widget.rect().center();
  QWindow *window = widget.window()->windowHandle();
  QWheelEvent event(QPointF(widget.mapTo(widget.window(), place)), widget.mapToGlobal(place),
                    QPoint(), QPoint(0, -120 * steps), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QSpontaneKeyEvent::setSpontaneous(&event);  // as only such a one goes on to the parent
  qApp->notify(window, &event);
}

// ---- The window ----

TEST_F(QtScrolling, OnlyWhatIsLargerThanTheFreeAreaScrolls) {
  const QSize most(kNetbook.width(), kNetbook.height() - kTitleBar);
  open(most.width(), most.height());
  EXPECT_EQ(window()->geometry(), QRect(QPoint(0, kTitleBar), most));
  EXPECT_EQ(window()->minimumSize(), window()->maximumSize());
  EXPECT_EQ(body(), nullptr);
  EXPECT_EQ(widget(kOkItem).parentWidget(), window());
  for (const QSize &larger : {most + QSize(1, 0), most + QSize(0, 1)}) {
    open(larger.width(), larger.height());
    EXPECT_NE(body(), nullptr);
    EXPECT_TRUE(QRect(QPoint(0, kTitleBar), most).contains(window()->geometry()));
  }
  open(kWidth, 200);
  runUntilEscape();
}

TEST_F(QtScrolling, ThePairStandsBelowThePartThatScrollsWhereverThatIs) {
  openFields();
  then([this] {
    EXPECT_EQ(window()->height(), kNetbook.height() - kTitleBar);
    EXPECT_EQ(shown().size(), QSize(kWidth, window()->height() - 48));
    for (const int place : {0, bar().maximum() / 2, bar().maximum()}) {
      bar().setValue(place);
      for (const int button : {kOkItem, kCancelItem}) {
        EXPECT_GT(placeOf(widget(button)).top(), shown().bottom());
        EXPECT_EQ(widget(button).visibleRegion(), QRegion(widget(button).rect()));
      }
    }
    const QRect ok = placeOf(widget(kOkItem)), cancel = placeOf(widget(kCancelItem));
    EXPECT_EQ(ok.size(), QSize(80, 22));
    EXPECT_EQ(cancel.left() - ok.right() - 1, 20);
    EXPECT_NEAR((ok.left() + cancel.right()) / 2, window()->width() / 2, 1);
    EXPECT_EQ(bar().maximum(), kHeight - 35 - shown().height()) << "nothing lies beside the pair";
  });
  person_.press(kOkItem);
  EXPECT_EQ(run(), Lines{"1"});
}

TEST_F(QtScrolling, WhatLiesBesideThePairIsReached) {
  open(kWidth, kHeight);
  dialog_->addItem(ItemKind::CheckBox, {20, kHeight - 30, 120, kHeight - 12}, "Imprimer");
  then([this] { EXPECT_EQ(bar().maximum(), kHeight - shown().height()); });
  runUntilEscape();
}

TEST_F(QtScrolling, AWideDialogScrollsAcross) {
  open(1500, 300);
  dialog_->addItem(ItemKind::EditText, {20, 20, 220, 35}, "");
  dialog_->addItem(ItemKind::EditText, {1250, 20, 1450, 35}, "");
  then([this] {
    EXPECT_EQ(window()->width(), kNetbook.width());
    EXPECT_FALSE(bar().isVisible());
    EXPECT_EQ(bar().maximum(), 0);
    for (const int button : {kOkItem, kCancelItem})
      EXPECT_EQ(widget(button).visibleRegion(), QRegion(widget(button).rect()));
  });
  person_.key(Qt::Key_Tab);
  then([this] {
    EXPECT_TRUE(shown().contains(placeOf(widget(4))));
    EXPECT_FALSE(shown().contains(placeOf(widget(3))));
  });
  runUntilEscape();
}

TEST_F(QtScrolling, OverASmallerScreenItFitsIntoThatOne) {
  open(kWidth, 460, kSmall.topLeft() + QPoint(40, 30));
  EXPECT_NE(body(), nullptr);
  EXPECT_TRUE(kSmall.adjusted(0, kTitleBar, 0, 0).contains(window()->geometry()));
  open(kWidth, 460);
  EXPECT_EQ(body(), nullptr) << "on the larger one";
  runUntilEscape();
}

TEST_F(QtScrolling, ItStandsInTheMiddleOfWhatItIsCentredOn) {
  open(400, kHeight, {500, -200});
  EXPECT_NEAR(window()->geometry().center().x(), 700, 1);
  EXPECT_EQ(window()->geometry().top(), kTitleBar);
  runUntilEscape();
}

TEST_F(QtScrolling, APersonMayChangeTheWindowsSize) {
  openFields();
  then([this] {
    const QSize before = window()->size();
    window()->resize(1, 1);
    EXPECT_LT(window()->height(), 200);
    EXPECT_LT(window()->width(), kWidth);
    for (const int button : {kOkItem, kCancelItem})
      EXPECT_EQ(widget(button).visibleRegion(), QRegion(widget(button).rect()));
    EXPECT_TRUE(body()->horizontalScrollBar()->isVisible());
    window()->resize(before);
    EXPECT_FALSE(body()->horizontalScrollBar()->isVisible());
    window()->resize(2000, 2000);
    EXPECT_FALSE(bar().isVisible());
    EXPECT_GE(shown().height(), kHeight - 35);
    EXPECT_LT(window()->height(), kHeight + 20);
  });
  runUntilEscape();
}

// ---- The focus ----

TEST_F(QtScrolling, TheFocusMovesIntoView) {
  openFields();
  const auto expectInView = [this] {
    EXPECT_TRUE(shown().contains(placeOf(*window()->focusWidget())));
  };
  for (int field = 3; field < 22; ++field) {
    person_.key(Qt::Key_Tab);
    then(expectInView);
  }
  then([this] {
    EXPECT_TRUE(widget(22).hasFocus());
    EXPECT_GT(bar().value(), 0);
  });
  for (int field = 22; field > 3; --field) {
    person_.key(Qt::Key_Backtab);
    then(expectInView);
  }
  then([this] {
    EXPECT_TRUE(widget(3).hasFocus());
    EXPECT_EQ(bar().value(), 0);
  });
  runUntilEscape();
}

TEST_F(QtScrolling, TheFirstFocusIsInView) {
  open(kWidth, kHeight);
  dialog_->addItem(ItemKind::EditText, {120, 700, 320, 715}, "");
  then([this] { EXPECT_TRUE(shown().contains(placeOf(widget(3)))); });
  runUntilEscape();
}

TEST_F(QtScrolling, AFocusThatTheProgramMovesIsInView) {
  openFields();
  dialog_->addItem(ItemKind::PushButton, {400, 780, 480, 800}, "Action");
  then([this] {
    widget(23).setFocus();
    EXPECT_GT(bar().value(), 0);
    dialog_->setEnabled(23, false);
    EXPECT_TRUE(widget(3).hasFocus());
    EXPECT_TRUE(shown().contains(placeOf(widget(3))));
  });
  runUntilEscape();
}

TEST_F(QtScrolling, WhatIsTypedIsInView) {
  openFields();
  then([this] { bar().setValue(bar().maximum()); });
  person_.type(3, "a");
  then([this] { EXPECT_TRUE(shown().contains(placeOf(widget(3)))); });
  EXPECT_EQ(runUntilEscape(), (Lines{"3 text a", "2"}));
}

TEST_F(QtScrolling, WhatIsClickedOnStaysWhereItIs) {
  openBoxAndField();
  then([this] {
    EXPECT_TRUE(widget(4).hasFocus());
    bar().setValue(30);
  });
  person_.clickAt(3, {8, 16});
  then([this] {
    EXPECT_TRUE(widget(3).hasFocus());
    EXPECT_EQ(bar().value(), 30);
  });
  EXPECT_EQ(runUntilEscape(), (Lines{"3 value 0", "2"}));
}

// Such a click gives the window the focus first, and with it the field that had it before.
TEST_F(QtScrolling, AClickThatComesBackToTheDialogHitsWhatItIsAimedAt) {
  openFields();
  dialog_->addItem(ItemKind::CheckBox, {400, 420, 500, 438}, "Fumeur");
  then([this] {
    bar().setValue(300);
    const QPoint place = placeOf(widget(23)).topLeft() + QPoint(8, 8);
    QWindow other;  // of no widget, as another application's
    other.setTransientParent(window()->windowHandle());
    other.show();
    other.requestActivate();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !widget(3).hasFocus(); }));
    window()->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([this] { return widget(3).hasFocus(); }));
    QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    EXPECT_TRUE(widget(23).hasFocus());
    EXPECT_EQ(bar().value(), 300);
  });
  EXPECT_EQ(runUntilEscape(), (Lines{"23 value 0", "2"}));
}

TEST_F(QtScrolling, AClickDuringAHitHitsWhatItWasAimedAt) {
  openBoxAndField();
  hits_.on(4, [this] {
    bar().setValue(30);
    clickOn(&widget(3), {8, 16});
    EXPECT_EQ(hits_.lines().size(), 1U);
  });
  person_.type(4, "a");
  then([this] {
    EXPECT_TRUE(widget(3).hasFocus());
    EXPECT_EQ(bar().value(), 30);
  });
  EXPECT_EQ(runUntilEscape(), (Lines{"4 text a", "3 value 0", "2"}));
}

TEST_F(QtScrolling, AnItemLargerThanWhatIsShownStaysWhileItFillsThat) {
  open(kWidth, 1500);
  dialog_->addItem(ItemKind::ListBox, {20, 20, 320, 1400}, "");
  dialog_->setEntries(3, Lines(200, "Ligne"));
  then([this] { bar().setValue(400); });
  person_.key(Qt::Key_Down);
  then([this] { EXPECT_EQ(bar().value(), 400); });
  EXPECT_EQ(runUntilEscape(), (Lines{"3 row 0 Ligne", "2"}));
}

TEST_F(QtScrolling, AltAndALetterReachWhatIsNotShown) {
  openFields();
  dialog_->addItem(ItemKind::CheckBox, {400, 780, 500, 798}, "Fumeur");
  person_.act(0, [](QWidget *window) {
    QTest::simulateEvent(window->windowHandle(), true, Qt::Key_F, Qt::AltModifier,
                         QStringLiteral("f"), false);
  });
  then([this] { EXPECT_TRUE(shown().contains(placeOf(widget(23)))); });
  EXPECT_EQ(runUntilEscape(), (Lines{"23 value 0", "2"}));
}

TEST_F(QtScrolling, AssistiveSoftwareLearnsWhereItemsAre) {
  openFields();
  then([this] {
    QAccessibleInterface *field = QAccessible::queryAccessibleInterface(&widget(22));
    const auto place = [&] { return field->rect(); };
    const auto body = QAccessible::queryAccessibleInterface(this->body())->rect();
    EXPECT_EQ(place().topLeft(), widget(22).mapToGlobal(QPoint(0, 0)));
    EXPECT_FALSE(body.contains(place()));
    QAccessibleActionInterface *action = field->actionInterface();
    ASSERT_NE(action, nullptr);
    action->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(widget(22).hasFocus());
    EXPECT_EQ(place().topLeft(), widget(22).mapToGlobal(QPoint(0, 0)));
    EXPECT_TRUE(body.contains(place()));
  });
  runUntilEscape();
}

// ---- Wheel and page keys ----

TEST_F(QtScrolling, TheWheelScrollsOverItemsAndChangesNone) {
  open(kWidth, kHeight);
  const int field = dialog_->addItem(ItemKind::EditText, {20, 200, 220, 215}, "");
  const int popUp = dialog_->addItem(ItemKind::PopUp, {20, 240, 220, 254}, "");
  const int list = dialog_->addItem(ItemKind::ListBox, {20, 280, 220, 350}, "");
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 360, 220, 378}, "Fumeur");
  for (const int item : {popUp, list}) dialog_->setEntries(item, {"a", "b", "c"});
  dialog_->setValue(popUp, 2);
  then([=, this] {
    for (const int item : {field, popUp, list, box, kOkItem}) {
      bar().setValue(0);
      turnWheelOver(widget(item), 1);
      EXPECT_GT(bar().value(), 0) << item;
      turnWheelOver(widget(item), -1);
      EXPECT_EQ(bar().value(), 0) << item;
    }
    turnWheelOver(*window(), 1);
    EXPECT_TRUE(widget(field).hasFocus());
    EXPECT_EQ(dialog_->value(popUp), 2);
    EXPECT_EQ(dialog_->lastClick(list).row, -1);
  });
  EXPECT_EQ(runUntilEscape(), Lines{"2"});
}

TEST_F(QtScrolling, OverAListTheWheelScrollsItsRowsFirst) {
  open(kWidth, kHeight);
  dialog_->addItem(ItemKind::ListBox, {20, 280, 220, 350}, "");
  dialog_->setEntries(3, Lines(9, "Ligne"));
  then([this] {
    auto &rows = *dynamic_cast<QListView &>(widget(3)).verticalScrollBar();
    turnWheelOver(widget(3), 1);
    EXPECT_GT(rows.value(), 0);
    EXPECT_EQ(bar().value(), 0);
    for (int n = 0; n < 5; ++n) turnWheelOver(widget(3), 1);
    EXPECT_EQ(rows.value(), rows.maximum());
    EXPECT_GT(bar().value(), 0);
  });
  EXPECT_EQ(runUntilEscape(), Lines{"2"});
}

TEST_F(QtScrolling, PageKeysScrollWhereTheyMeanNothingElse) {
  openFields();
  dialog_->addItem(ItemKind::ListBox, {400, 20, 580, 70}, "");
  dialog_->setEntries(23, Lines(9, "Ligne"));
  person_.key(Qt::Key_PageDown);
  then([this] {
    EXPECT_EQ(bar().value(), bar().maximum());
    EXPECT_TRUE(widget(3).hasFocus());
  });
  person_.key(Qt::Key_PageUp);
  then([this] {
    EXPECT_EQ(bar().value(), 0);
    widget(kOkItem).setFocus();
  });
  person_.key(Qt::Key_PageDown);
  then([this] {
    EXPECT_EQ(bar().value(), bar().maximum());
    widget(23).setFocus();
    EXPECT_EQ(bar().value(), 0);
  });
  person_.key(Qt::Key_PageDown);
  then([this] { EXPECT_EQ(bar().value(), 0); });
  EXPECT_EQ(runUntilEscape(), (Lines{"23 row 2 Ligne", "2"}));
}

TEST_F(QtScrolling, ArrowsInAFieldDoNotScroll) {
  openFields();
  person_.key(Qt::Key_Down).key(Qt::Key_Down);
  then([this] { EXPECT_EQ(bar().value(), 0); });
  EXPECT_EQ(runUntilEscape(), Lines{"2"});
}

TEST_F(QtScrolling, InADialogThatFitsPageKeysAndTheWheelMeanNothing) {
  open(kWidth, 300);
  dialog_->addItem(ItemKind::EditText, {20, 20, 220, 35}, "");
  person_.key(Qt::Key_PageDown);
  then([this] {
    turnWheelOver(widget(3), 1);
    EXPECT_TRUE(widget(3).hasFocus());
  });
  EXPECT_EQ(runUntilEscape(), Lines{"2"});
}

// ---- What is drawn ----

QRgb pixelShown(QWidget *window, const QPoint &place) {
  QCoreApplication::processEvents();
  return window->screen()->grabWindow(window->winId()).toImage().pixel(place);
}

constexpr RGBColor kRed{0xFFFF, 0, 0};

TEST_F(QtScrolling, WhatIsDrawnOnItScrollsWithTheItems) {
  openFields();
  then([this] {
    Port *port = desktop_.windowPort(dialog_->window());
    port->setForeground(kRed);
    port->fillRect({400, 700, 420, 720});
    EXPECT_EQ(port->pixel(410, 710)->red, kRed.red);
    const QRgb before = pixelShown(window(), {410, 300});
    bar().setValue(bar().maximum());
    const QPoint place(410, 710 - bar().value());
    EXPECT_EQ(pixelShown(window(), place), qRgb(255, 0, 0));
    bar().setValue(bar().maximum() - 25);
    EXPECT_EQ(pixelShown(window(), place), before);
    EXPECT_EQ(pixelShown(window(), place + QPoint(0, 25)), qRgb(255, 0, 0));
  });
  runUntilEscape();
}

TEST_F(QtScrolling, WhatIsDrawnBesideThePairIsReached) {
  openFields();
  then([this] {
    const int before = bar().maximum();
    Port *port = desktop_.windowPort(dialog_->window());
    port->setForeground(kRed);
    port->fillRect({400, 700, 420, 720});
    EXPECT_EQ(bar().maximum(), before);
    port->fillRect({20, kHeight - 30, 40, kHeight - 10});
    EXPECT_EQ(bar().maximum(), kHeight - 10 - shown().height());
    bar().setValue(bar().maximum());
    EXPECT_EQ(pixelShown(window(), {30, shown().bottom() - 5}), qRgb(255, 0, 0));
  });
  runUntilEscape();
}

TEST_F(QtScrolling, AMarkScrollsWithItsField) {
  openFields();
  dialog_->setAcceptable(22, false);
  then([this] {
    const auto bar = [this] {
      return pixelShown(window(), placeOf(widget(22)).topLeft() + QPoint(1, 10));
    };
    this->bar().setValue(this->bar().maximum() - 40);
    const QRgb mark = bar();
    dialog_->setAcceptable(22, true);
    EXPECT_NE(bar(), mark);
    dialog_->setAcceptable(22, false);
    this->bar().setValue(this->bar().maximum());
    EXPECT_EQ(bar(), mark);
    EXPECT_FALSE(widget(22).toolTip().isEmpty());
  });
  runUntilEscape();
}

// In KiB.
long mostMemory() {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  return used.ru_maxrss;
}

TEST_F(QtScrolling, WhatIsNotShownHasNoPixels) {
  constexpr long kSide = 16000, kAllPixels = kSide * kSide * 4 / 1024;
  const long before = mostMemory();
  open(kSide, kSide);
  dialog_->addItem(ItemKind::EditText, {20, 15000, 15000, 15015}, "");
  then([this] {
    EXPECT_TRUE(shown().contains(placeOf(widget(3)).topLeft()));
    const QSize kept = window()->backingStore()->size();
    EXPECT_LE(kept.width(), kNetbook.width());
    EXPECT_LE(kept.height(), kNetbook.height());
    for (const QWidget *each : window()->findChildren<QWidget *>())
      EXPECT_FALSE(each->internalWinId()) << "a part with a window of its own";
  });
  runUntilEscape();
  EXPECT_LT(mostMemory() - before, kAllPixels / 4) << "in KiB";
}

// ---- Messages ----

TEST_F(QtScrolling, AllButtonsOfAMessageAreInReach) {
  open(kWidth, kHeight);
  dialog_->addItem(ItemKind::PushButton, {20, 866, 100, 886}, "Non");
  dialog_->addMessage({60, 10, 500, 100}, "Un message", {"", 12, 20, 15});
  then([this] {
    for (const int button : {1, 2, 3})
      EXPECT_EQ(widget(button).visibleRegion(), QRegion(widget(button).rect()));
    EXPECT_LT(placeOf(widget(3)).right(), placeOf(widget(1)).left());
  });
  person_.press(3);
  hits_.stopAt(3);
  EXPECT_EQ(run(), Lines{"3"});
}

// ---- Forms ----

std::string geometry(int x, int y, int width, int height) {
  return "<property name=\"geometry\"><rect><x>" + std::to_string(x) + "</x><y>" +
         std::to_string(y) + "</y><width>" + std::to_string(width) + "</width><height>" +
         std::to_string(height) + "</height></rect></property>";
}

std::string made(const std::string &className, const std::string &name, const std::string &inside,
                 int item = 0) {
  const std::string number = item == 0 ? ""
                                       : "<property name=\"item\" stdset=\"0\"><number>" +
                                             std::to_string(item) + "</number></property>";
  return "<widget class=\"" + className + "\" name=\"" + name + "\">" + number + inside +
         "</widget>";
}

class QtScrollingForm : public QtScrolling {
 protected:
  void read(const std::string &inside, const std::string &behind = "") {
    std::string problem;
    dialog_ = desktop_.newDialogFromTemplate(
        folder_.add(
            "forms/f.ui",
            "<ui version=\"4.0\">" +
                made("QDialog", "F",
                     geometry(0, 0, kWidth, kHeight) +
                         "<property name=\"windowTitle\"><string>Fiche</string></property>" +
                         inside) +
                behind + "</ui>"),
        nullptr, problem);
    ASSERT_NE(dialog_, nullptr) << problem;
    ASSERT_NE(body(), nullptr);
  }
  template <typename Widget>
  Widget &named(const char *name) {
    return *window()->findChild<Widget *>(QString::fromLatin1(name));
  }
  void expectInReach(const QWidget &button) {
    EXPECT_EQ(button.visibleRegion(), QRegion(button.rect()));
    EXPECT_FALSE(body()->isAncestorOf(&button));
  }
};

TEST_F(QtScrollingForm, ItsOwnPairStandsBelowThePartThatScrolls) {
  read(made("QLineEdit", "first", geometry(20, 20, 200, 24), 3) +
       made("QLineEdit", "last", geometry(20, 800, 200, 24), 4) +
       made("QSpinBox", "spin", geometry(20, 200, 200, 24)) +
       made("QLabel", "hidden", geometry(20, 850, 200, 24)) +
       made("QPushButton", "no", geometry(500, 860, 80, 26), 2) +
       made("QPushButton", "ok", geometry(400, 860, 80, 26), 1));
  then([this] {
    const auto &ok = named<QPushButton>("ok"), &no = named<QPushButton>("no");
    expectInReach(ok);
    expectInReach(no);
    EXPECT_LT(placeOf(ok).right(), placeOf(no).left());
    EXPECT_EQ(named<QWidget>("last").pos(), QPoint(20, 800));
    auto &spin = named<QSpinBox>("spin");
    turnWheelOver(spin, -1);
    turnWheelOver(spin, 1);
    EXPECT_EQ(spin.value(), 0);
    EXPECT_GT(bar().value(), 0);
    EXPECT_TRUE(named<QLineEdit>("first").hasFocus());
  });
  person_.key(Qt::Key_Tab);
  then([this] { EXPECT_TRUE(shown().contains(placeOf(named<QLineEdit>("last")))); });
  person_.act(0, [this](QWidget *) { clickOn(&named<QPushButton>("ok"), {20, 10}); });
  EXPECT_EQ(run(), Lines{"1"});
}

std::string cell(const std::string &inside) { return "<item>" + inside + "</item>"; }

std::string high(int height) {
  return "<property name=\"minimumSize\"><size><width>10</width><height>" + std::to_string(height) +
         "</height></size></property>";
}

TEST_F(QtScrollingForm, ALayoutGivesTheRoomOfThePairToTheRest) {
  read("<layout class=\"QVBoxLayout\" name=\"v\">" +
       cell(made("QListWidget", "list", high(300), 3)) +
       cell(made("QListWidget", "other", high(400), 4)) +
       cell("<layout class=\"QHBoxLayout\" name=\"h\">" + cell(made("QPushButton", "ok", "", 1)) +
            cell(made("QPushButton", "no", "", 2)) + "</layout>") +
       "</layout>");
  then([this] {
    expectInReach(named<QPushButton>("ok"));
    expectInReach(named<QPushButton>("no"));
    const QRect lowest = named<QWidget>("other").geometry();
    const int whole = bar().maximum() + shown().height();
    EXPECT_LT(whole, kHeight);
    EXPECT_GE(whole, lowest.bottom());
    EXPECT_LT(whole - lowest.bottom(), 20);
    EXPECT_GE(named<QWidget>("list").height(), 300);
  });
  runUntilEscape();
}

constexpr char kLongText[] =
    "<property name=\"text\"><string>Enregistrer la fiche et l'imprimer</string></property>";

std::string grid(const std::string &cells) {
  return "<layout class=\"QGridLayout\" name=\"grid\">" + cells + "</layout>";
}
std::string cellOf(int column, const std::string &inside) {
  return "<item row=\"0\" column=\"" + std::to_string(column) + "\">" + inside + "</item>";
}

// Nothing has laid it out before the window is shown.
TEST_F(QtScrollingForm, APairInALayoutInsideAWidgetKeepsItsOrderAndHasWhatItAsksFor) {
  const std::string inner = grid(cellOf(1, made("QPushButton", "ok", kLongText, 1)) +
                                 cellOf(0, made("QPushButton", "no", high(40), 2)));
  read(made("QFrame", "frame",
            geometry(20, 700, 560, 100) + grid(cellOf(0, made("QFrame", "inner", inner)))));
  then([this] {
    const auto &ok = named<QPushButton>("ok"), &no = named<QPushButton>("no");
    for (const QPushButton *each : {&ok, &no}) expectInReach(*each);
    EXPECT_EQ(ok.size(), ok.sizeHint());
    EXPECT_GT(ok.width(), 100) << "the width before anything is laid out";
    EXPECT_EQ(no.size(), QSize(no.sizeHint().width(), 40));
    EXPECT_LT(placeOf(no).right(), placeOf(ok).left());
  });
  runUntilEscape();
}

// The toolkit lays pages out only when they are shown.
TEST_F(QtScrollingForm, APairOnAPageOfTabsHasWhatItAsksFor) {
  read(made("QTabWidget", "tabs",
            geometry(20, 700, 560, 150) +
                made("QWidget", "page", grid(cellOf(0, made("QPushButton", "ok", kLongText, 1))))));
  then([this] {
    const auto &ok = named<QPushButton>("ok");
    expectInReach(ok);
    EXPECT_EQ(ok.size(), ok.sizeHint());
  });
  runUntilEscape();
}

// A form may keep the pair from being used until something is agreed to.
TEST_F(QtScrollingForm, ThePairIsEnabledAndShownWithWhatItWasDesignedIn) {
  const std::string disabled = "<property name=\"enabled\"><bool>false</bool></property>";
  read(made("QLineEdit", "field", geometry(20, 20, 200, 24), 3) +
           made("QCheckBox", "agreed", geometry(20, 100, 200, 24)) +
           made("QFrame", "frame",
                geometry(20, 700, 500, 100) + disabled +
                    made("QPushButton", "ok", geometry(10, 10, 80, 26), 1) +
                    made("QPushButton", "no", geometry(100, 10, 80, 26), 2)),
       "<connections><connection><sender>agreed</sender><signal>toggled(bool)</signal>"
       "<receiver>frame</receiver><slot>setEnabled(bool)</slot></connection></connections>");
  then([this] {
    const auto &ok = named<QPushButton>("ok");
    expectInReach(ok);
    EXPECT_FALSE(ok.isEnabled());
    named<QCheckBox>("agreed").setChecked(true);
    EXPECT_TRUE(ok.isEnabled());
    named<QWidget>("frame").hide();
    EXPECT_FALSE(ok.isVisible());
    named<QWidget>("frame").show();
    EXPECT_TRUE(ok.isVisible());
  });
  person_.act(0, [this](QWidget *) { clickOn(&named<QPushButton>("ok"), {20, 10}); });
  EXPECT_EQ(run(), Lines{"1"});
}

}  // namespace
}  // namespace korvel::platform
