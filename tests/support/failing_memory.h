// For tests/: memory that runs out at the n-th allocation of the library's own code.
#ifndef KORVEL_TESTS_SUPPORT_FAILING_MEMORY_H
#define KORVEL_TESTS_SUPPORT_FAILING_MEMORY_H

namespace korvel::test {

// As long as it lives, the n-th `new` from now on (from 1) fails, and only that one. What the
// toolkit allocates inside itself does not count: it does not promise to survive that.
class FailingMemory {
 public:
  explicit FailingMemory(int n);
  ~FailingMemory();
  FailingMemory(const FailingMemory &) = delete;
  FailingMemory &operator=(const FailingMemory &) = delete;

  bool hasFailed() const;
};

}  // namespace korvel::test

#endif
