// SPDX-License-Identifier: MIT
// For tests/faults/: what the library asks of the system and of memory, and how it is refused.
//
// A program that is built with korvel_faulty() has every system call and every allocation of the
// library's objects come here first. What tests and the toolkit ask passes through.
#ifndef KORVEL_TESTS_FAULTS_REQUESTS_H
#define KORVEL_TESTS_FAULTS_REQUESTS_H

#include <functional>
#include <string>
#include <string_view>

namespace korvel::faults {

// In place of an error number: half of the bytes are read or written.
inline constexpr int kShort = -1;

enum class Lasting {
  Once,
  ForGood,  // all later requests of the same name fail in the same way
  Deadly,   // the process is killed before the request is answered
};

// Until its end the n-th request from now on (from 1) is refused in the way with this number
// (from 0). What the toolkit asks for inside itself does not count: it does not promise to survive.
class Refusal {
 public:
  Refusal(int nth, int way, Lasting lasting);
  ~Refusal() { end(); }
  Refusal(const Refusal &) = delete;
  Refusal &operator=(const Refusal &) = delete;

  // Nothing is refused any more; what was can be asked for still.
  void end();

  // Whether there were so many requests.
  bool isMet() const;
  // Whether that request can be refused in so many ways.
  bool hasWay() const;
  // A short transfer or an interruption, after which a call goes on as if nothing had happened.
  bool isHarmless() const;
  // The name of the request that was refused.
  std::string_view call() const;
  // The request and the error, for messages.
  std::string description() const;
};

// The same for memory alone: the n-th allocation fails.
class FailingMemory {
 public:
  explicit FailingMemory(int n);
  ~FailingMemory();
  FailingMemory(const FailingMemory &) = delete;
  FailingMemory &operator=(const FailingMemory &) = delete;

  bool hasFailed() const;
};

// What a request is about: a descriptor or a path, where it has one.
struct Request {
  int file = -1;
  const char *path = "";
};

// As long as it lives, every request of this name is answered by `act`: with an error number, with
// kShort, or with 0 for the real answer.
class Instead {
 public:
  using Act = std::function<int(const Request &)>;
  Instead(const char *call, Act act);
  Instead(const char *call, int error)
      : Instead(call, [error](const Request &) { return error; }) {}
  ~Instead();
  Instead(const Instead &) = delete;
  Instead &operator=(const Instead &) = delete;
};

// What stands in for the desktop is compiled so that its functions tell when they begin and end:
// what they ask for is no request of the library's. Where they call the library, it is again.
class InLibrary {
 public:
  explicit InLibrary(bool is = true);
  ~InLibrary();
  InLibrary(const InLibrary &) = delete;
  InLibrary &operator=(const InLibrary &) = delete;

 private:
  int before_;
};

}  // namespace korvel::faults

#endif
