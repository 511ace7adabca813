// SPDX-License-Identifier: MIT
// For tests/dialogs/: every test starts from the tables as they are at load, and records the calls
// of its callbacks.
#ifndef KORVEL_TESTS_DIALOGS_DIALOG_FIXTURE_H
#define KORVEL_TESTS_DIALOGS_DIALOG_FIXTURE_H

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/platform/scripted_desktop.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {

// Resets every exported variable of the dialogs to its first value, when made and when destroyed.
class DialogGlobals {
 public:
  DialogGlobals() { reset(); }
  ~DialogGlobals() { reset(); }
  DialogGlobals(const DialogGlobals &) = delete;
  DialogGlobals &operator=(const DialogGlobals &) = delete;

  static void reset();

  // How many of those that begin as zero, or leading to their tables, do not.
  static int setAtLoad();
};

struct GlobalCall {
  int item;
  int textInUse, textFirstItem;
  char **texts;
  int textCount;
  int boolInUse, boolFirstItem;
  int *bools;
  int boolCount;
  int intInUse, intFirstItem;
  int *ints;
  int intCount;
  int numInUse, numFirstItem;
  double *nums;
  int numCount;
  int dateInUse, dateFirstItem;
  int *dates;
  int dateCount;
  int *redisplay;
  int capacity;
};

struct FinalCall {
  WindowRef window;
  int textInUse;
  char **texts;
  int textCount;
  int boolInUse;
  int *bools;
  int boolCount;
  int intInUse;
  int *ints;
  int intCount;
  int numInUse;
  double *nums;
  int numCount;
  int dateInUse;
  int *dates;
  int dateCount;
};

// Callbacks that record their calls and return what a test wants.
class Callbacks {
 public:
  static int global(int item, int textInUse, int textFirstItem, char **texts, int textCount,
                    int boolInUse, int boolFirstItem, int *bools, int boolCount, int intInUse,
                    int intFirstItem, int *ints, int intCount, int numInUse, int numFirstItem,
                    double *nums, int numCount, int dateInUse, int dateFirstItem, int *dates,
                    int dateCount, int *redisplay, int capacity);
  static int final(WindowRef window, int textInUse, char **texts, int textCount, int boolInUse,
                   int *bools, int boolCount, int intInUse, int *ints, int intCount, int numInUse,
                   double *nums, int numCount, int dateInUse, int *dates, int dateCount);
  static int action(WindowRef window);

  static void reset();

  static inline std::vector<GlobalCall> globalCalls;
  static inline std::vector<FinalCall> finalCalls;
  static inline std::vector<WindowRef> actionCalls;
  // What the callbacks do besides, and their results.
  static inline std::function<int(const GlobalCall &)> onGlobal;
  static inline std::function<int(const FinalCall &)> onFinal;
  static inline std::function<void()> onAction;

  // The identifiers with which the global callback was called, for example "10 12 ".
  static std::string identifiers();

  // A built dialog has identifiers of the test's choice, a template item numbers. Tests of both use
  // those of the built dialog. Maps each type's first identifier to its first item in the template.
  static inline std::map<int, int> firstItems;
  static int inDialog(int identifier);
  static int inTest(int identifier);
};

// A global callback that asks for these identifiers to be redisplayed.
std::function<int(const GlobalCall &)> redisplaying(std::vector<int> identifiers);

class DialogTest : public ::testing::Test {
 protected:
  DialogTest() { Callbacks::reset(); }
  void TearDown() override {
    desk.finish();
    EXPECT_EQ(DlgBox_hDlg, nullptr);
  }

  DialogGlobals globals;
  ScriptedDesktop desk;
};

// The application's resource folder, with templates, for its lifetime.
class TemplateFolder {
 public:
  TemplateFolder();
  ~TemplateFolder();
  TemplateFolder(const TemplateFolder &) = delete;
  TemplateFolder &operator=(const TemplateFolder &) = delete;

  // Adds a file that the desktop reads as this template.
  void add(ScriptedDesktop &desk, const std::string &name, Template described);

 private:
  TemporaryFolder folder_;
  std::string before_;
};

// A template with an item for each field in use, numbered by the tables.
Template describedTemplate(const std::string &title);

// Dialogs built from the tables, and the same ones drawn in a template. All but their item numbers
// is alike.
enum class Kind { Built, Drawn };

class BothKinds : public DialogTest, public ::testing::WithParamInterface<Kind> {
 protected:
  bool isDrawn() const { return GetParam() == Kind::Drawn; }
  // The number of a type's first field: an identifier of the test's choice in a dialog that is
  // built, an item in one that is drawn.
  int first(int identifier, int item) const {
    if (!isDrawn()) return identifier;
    Callbacks::firstItems[identifier] = item;
    return item;
  }
  // A template numbers its items itself.
  int rank(int r) const { return isDrawn() ? -1 : r; }
  int run();

 private:
  TemplateFolder templates;
};

#define KORVEL_IN_BOTH_KINDS(suite)                         \
  INSTANTIATE_TEST_SUITE_P(                                 \
      , suite, ::testing::Values(Kind::Built, Kind::Drawn), \
      [](const auto &each) { return each.param == Kind::Built ? "Built" : "Drawn"; })

constexpr int kOk = 1;
constexpr int kCancel = 2;

}  // namespace korvel::test

#endif
