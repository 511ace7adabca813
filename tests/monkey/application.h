// SPDX-License-Identifier: MIT
// For tests/monkey/: the application that the monkey plays with: a dialog with fields of every
// type, whose callbacks rebuild lists, show messages and ask for the chooser, and the chooser
// itself.
#ifndef KORVEL_TESTS_MONKEY_APPLICATION_H
#define KORVEL_TESTS_MONKEY_APPLICATION_H

#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/files/volumes.h"

namespace korvel::test {

// ---- The dialog ----

inline constexpr char kFieldsTitle[] = "Singe", kMessageTitle[] = "Message",
                      kChooserTitle[] = "Sélection de praticien en base";

enum { kShort, kMasked, kFree, kPopUp, kList, kTexts };
enum { kPlainInt, kMaskedInt, kInts };
enum { kMandatory, kOptional, kNums, kDates = kNums, kBools = kNums };
enum { kChange, kRebuild, kTell, kChoose, kPushes };

inline constexpr int kTextId = 100, kIntId = 200, kNumId = 300, kDateId = 400, kBoolId = 500,
                     kPushId = 600;

// Their items.
inline constexpr int kFirstText = 3, kFirstInt = 8, kFirstNum = 10, kFirstDate = 12,
                     kFirstBool = 18, kItems = 23;

// A message that is up.
struct Message {
  std::string text;
  bool isQuestion;
};

// The application's chances, and what its callbacks have seen and done.
class Application {
 public:
  explicit Application(unsigned seed);
  ~Application();
  Application(const Application &) = delete;
  Application &operator=(const Application &) = delete;

  // One of its windows, to its end.
  void runDialog();
  void runChooser();

  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  bool oneIn(int n) { return below(n) == 0; }

  void changeSomething();
  void rebuildLists();
  void tellSomething();
  void askForChooser();

  std::string maskedInt;          // what the masked integer's validation function was last given
  std::map<int, int> changes;     // accepted changes, by identifier
  std::vector<Message> messages;  // those that are up
  std::string chosenRow;          // the chooser's, after its last event
  int told = 0, rebuilt = 0, refusedChoosers = 0, choosers = 0;

 private:
  std::mt19937 random_;
  Volumes volumes_;
};

// The one that runs, or null.
extern Application *application;

}  // namespace korvel::test

#endif
