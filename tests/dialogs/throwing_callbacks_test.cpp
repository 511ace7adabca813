// SPDX-License-Identifier: MIT
// Callbacks that throw, in an application of the shared library as it is installed, which has its
// own copy of the C++ runtime, with the desktop module.
#include <csetjmp>
#include <cstdlib>
#include <deque>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <korvel/dialogs.h>

namespace {

constexpr const char *kOkText = "OK";
constexpr const char *kCancelText = "Annuler";
constexpr const char *kActionText = "Agir";

// An exception of the application's own.
class Thrown {
 public:
  explicit Thrown(int *living) : living_(living) { ++*living_; }
  Thrown(const Thrown &other) : living_(other.living_) { ++*living_; }
  ~Thrown() { --*living_; }

 private:
  int *const living_;
};

int s_living = 0;
int s_calls = 0;

[[noreturn]] int throwCounted() {
  ++s_calls;
  throw Thrown(&s_living);
}

int throwFromGlobal(int, int, int, char **, int, int, int, int *, int, int, int, int *, int, int,
                    int, double *, int, int, int, int *, int, int *, int) {
  throwCounted();
}
int throwFromFinal(WindowRef, int, char **, int, int, int *, int, int, int *, int, int, double *,
                   int, int, int *, int) {
  throwCounted();
}
int throwFromAction(WindowRef) { throwCounted(); }
int throwFromValidator(char *, int *) { throw std::runtime_error("validator"); }

QWidget *dialogThatIsUp() { return QApplication::activeModalWidget(); }

QAbstractButton *buttonOf(const char *text) {
  for (auto *button : dialogThatIsUp()->findChildren<QAbstractButton *>())
    if (button->text() == QLatin1String(text)) return button;
  return nullptr;
}

// A person's steps, in turn, in the next dialog.
class Person {
 public:
  Person() {
    timer_.callOnTimeout([this] { step(); });
    timer_.start(0);
  }
  Person &press(const char *text) {
    steps_.push_back([text] { QTest::mouseClick(buttonOf(text), Qt::LeftButton); });
    return *this;
  }
  Person &type(const char *text) {
    steps_.push_back([text] {
      QTest::keyClicks(dialogThatIsUp()->findChild<QLineEdit *>(), QLatin1String(text));
    });
    return *this;
  }
  Person &check(std::function<void()> checks) {
    steps_.push_back(std::move(checks));
    return *this;
  }

 private:
  void step() {
    if (steps_.empty() || dialogThatIsUp() == nullptr) return;
    const std::function<void()> next = std::move(steps_.front());
    steps_.pop_front();
    next();
  }

  QTimer timer_;
  std::deque<std::function<void()>> steps_;
};

class ThrowingCallbacks : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("KORVEL_DESKTOP", KORVEL_TEST_MODULE, 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("KORVEL_UNSEEN", "1", 1);
    static int count = 1;
    static char name[] = "application";
    static char *arguments[] = {name, nullptr};
    static auto *application = new QApplication(count, arguments);
    application->setQuitOnLastWindowClosed(false);
  }
  ThrowingCallbacks() {
    s_calls = 0;
    describe();
  }
  ~ThrowingCallbacks() override {
    EXPECT_EQ(s_living, 0) << "the exception is destroyed once";
    EXPECT_EQ(std::uncaught_exceptions(), 0);
  }
  // An integer field, item 3, and a push button.
  static void describe() {
    TailleDlgBox_set(200, 100);
    IntDlgBox_param(1, 100);
    IntDlgBox_set_geo(0, 10, 10, 40, 12, 0);
    IntDlgBox_set(0, 5, 0);
    PushDlgBox_param(1, 200);
    PushDlgBox_set_geo(0, kActionText, 10, 30, 60, 16, 1);
  }
  static int run() { return ZRVDlgBoxEx("T", nullptr); }

  Person person;
};

TEST_F(ThrowingCallbacks, TheGlobalCallbackEndsOnlyItsHit) {
  DlgBoxGlobal_set(throwFromGlobal);
  person.press(kActionText).type("7").press(kActionText).press(kOkText);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(s_calls, 3);
  EXPECT_EQ(IDB_iInts[0], 57);
}

TEST_F(ThrowingCallbacks, TheFinalCallbackKeepsTheDialogOpen) {
  DlgBoxFinal_set(throwFromFinal);
  person.press(kOkText).type("7").press(kOkText).press(kCancelText);
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(s_calls, 2);
}

TEST_F(ThrowingCallbacks, AnActionEndsOnlyItsHit) {
  PushDlgBox_set_fvalid(0, throwFromAction);
  person.press(kActionText).press(kActionText).press(kOkText);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(s_calls, 2);
}

TEST_F(ThrowingCallbacks, AValidatorHasNotAccepted) {
  person.check([] { IntDlgBox_set_fvalid(0, throwFromValidator); })
      .type("7")
      .check([] { EXPECT_FALSE(buttonOf(kOkText)->isEnabled()); })
      .press(kCancelText);
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(IDB_bOK[0], 0);
  EXPECT_EQ(IDB_iInts[0], 5);
}

TEST_F(ThrowingCallbacks, AValidatorWhileFillingEndsAsACancel) {
  IntDlgBox_set_fvalid(0, throwFromValidator);
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(IDB, 0);
  describe();
  person.press(kOkText);
  EXPECT_EQ(run(), 1) << "a further dialog is shown";
}

TEST_F(ThrowingCallbacks, AnApplicationMayBeHandlingAnExceptionOfItsOwn) {
  DlgBoxGlobal_set(throwFromGlobal);
  person.press(kActionText).press(kOkText);
  try {
    throw std::runtime_error("of the application");
  } catch (const std::exception &handled) {
    EXPECT_EQ(run(), 1);
    EXPECT_STREQ(handled.what(), "of the application");
    try {
      throw;
    } catch (const std::runtime_error &again) {
      EXPECT_EQ(&again, &handled);
    }
  }
}

std::jmp_buf s_before;
int leaveByJump(WindowRef) { std::longjmp(s_before, 1); }

// Afterwards the process can show no dialog, so the test has its own.
[[noreturn]] void jumpOutOfAnAction(Person &person) {
  PushDlgBox_set_fvalid(0, leaveByJump);
  person.press(kActionText);
  if (setjmp(s_before) == 0) ZRVDlgBoxEx("T", nullptr);
  const bool isStillThere = dialogThatIsUp() != nullptr && DlgBox_hDlg != nullptr;
  std::_Exit(isStillThere && ZRVDlgBoxEx("T", nullptr) == 0 ? 0 : 1);
}

TEST_F(ThrowingCallbacks, ALongjmpLeavesTheDialogThereAndNoOtherIsShown) {
  EXPECT_EXIT(jumpOutOfAnAction(person), testing::ExitedWithCode(0), "");
}

}  // namespace
