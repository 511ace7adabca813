// SPDX-License-Identifier: MIT
// For tests/strings/: memory between pages that cannot be read.
#ifndef KORVEL_TESTS_STRINGS_GUARDED_PAGES_H
#define KORVEL_TESTS_STRINGS_GUARDED_PAGES_H

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

namespace korvel::test {

// One readable and writable page between two that may not be touched: reading or writing a single
// byte outside it ends the test program.
class GuardedPages {
 public:
  GuardedPages() : pageSize_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) {
    void *pages = mmap(nullptr, 3 * pageSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) std::abort();
    first_ = static_cast<char *>(pages);
    if (mprotect(page(), pageSize_, PROT_READ | PROT_WRITE) != 0) std::abort();
  }
  ~GuardedPages() { munmap(first_, 3 * pageSize_); }
  GuardedPages(const GuardedPages &) = delete;
  GuardedPages &operator=(const GuardedPages &) = delete;

  // The bytes at the very end of the page.
  char *runAtEnd(std::string_view bytes) { return put(page() + pageSize_ - bytes.size(), bytes); }
  // The bytes at its very start.
  char *runAtStart(std::string_view bytes) { return put(page(), bytes); }
  // The same for a text with its terminator.
  char *textAtEnd(std::string_view text) {
    page()[pageSize_ - 1] = '\0';
    return put(page() + pageSize_ - 1 - text.size(), text);
  }
  char *textAtStart(std::string_view text) {
    page()[text.size()] = '\0';
    return put(page(), text);
  }

 private:
  char *page() { return first_ + pageSize_; }
  static char *put(char *place, std::string_view bytes) {
    if (!bytes.empty()) std::memcpy(place, bytes.data(), bytes.size());
    return place;
  }

  std::size_t pageSize_;
  char *first_;
};

}  // namespace korvel::test

#endif
