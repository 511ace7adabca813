// SPDX-License-Identifier: MIT
// For tests/faults/: the one table of operations, a row for each exported function and case.
#ifndef KORVEL_TESTS_FAULTS_OPERATIONS_H
#define KORVEL_TESTS_FAULTS_OPERATIONS_H

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "tests/platform/scripted_desktop.h"

namespace korvel::faults {

// What a call gave: its result, and what it left in its parameters and in globals. Made without a
// request of any kind.
class Answer {
 public:
  class Part {
   public:
    Part(int number);
    Part(double number);
    Part(const char *text);  // may be null
    Part(std::string_view text);

   private:
    friend Answer;
    char text_[512];
  };

  Answer(std::initializer_list<Part> parts);

  std::string_view text() const { return text_; }
  std::string_view result() const { return text().substr(0, text().find('|')); }
  friend bool operator==(const Answer &a, const Answer &b) { return a.text() == b.text(); }

 private:
  char text_[2048];
};

// What a failure may leave, besides what it always may.
enum Leeway : unsigned {
  kStrict = 0,
  // The files need not agree with the answer: the function passes on what the system does, or its
  // result says something else.
  kAnyFiles = 1U << 0,
  // Two names change: one of them may already be the new one.
  kTwoNames = 1U << 1,
  // It starts tools, which takes its time: each request is refused once, none for good.
  kSpawns = 1U << 8,
  // A link is moved after its file has changed.
  kLinkMoves = 1U << 7,
  // The answer of success does not say that the files have changed.
  kSaysDone = 1U << 2,
  // Less may be read or written than was asked for, and interruptions are passed on.
  kPartial = 1U << 3,
  // The handle is gone, or has moved: the call cannot be made again.
  kUsedUp = 1U << 4,
  // Any answer: something is drawn, or shown, as far as memory allows.
  kAnyAnswer = 1U << 5,
  // It is killed as well, at every request, with nameless temporaries and with named ones.
  kReplaces = 1U << 6,
};

struct Operation {
  const char *name;  // the function, and after a comma the case
  void (*prepare)();
  Answer (*call)();
  const char *good;      // the ordinary result
  const char *failures;  // the results of a failure, with blanks between them; null: none
  unsigned leeway = kStrict;
};

// The rows, by folders.
std::span<const Operation> stringOperations();
std::span<const Operation> codecOperations();
std::span<const Operation> dateOperations();
std::span<const Operation> fileOperations();
std::span<const Operation> shellOperations();
std::span<const Operation> profileOperations();
std::span<const Operation> tableOperations();
std::span<const Operation> drawOperations();
std::span<const Operation> dialogOperations();

// The place of an operation, empty at first: the volume Data, and a desktop once one is asked for.
// The exported globals are as they are at load, but for szVolumes.
namespace place {

// Writes a file on the volume.
void put(const std::string &name, std::string_view content);
void link(const std::string &name, const std::string &target);
void folder(const std::string &name);
// The POSIX path of something on the volume, valid until the next call.
const char *posix(const std::string &name);
// The content of a file there.
std::string content(const std::string &name);
test::ScriptedDesktop &desktop();

}  // namespace place

// Drives the operation through every failure. Returns how many there were.
int surviveEveryFault(const Operation &operation);

}  // namespace korvel::faults

#endif
