// SPDX-License-Identifier: MIT
// For tests/: bytes that end where the readable memory ends.
#ifndef KORVEL_TESTS_SUPPORT_PAGE_END_H
#define KORVEL_TESTS_SUPPORT_PAGE_END_H

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

namespace korvel::test {

// Holds `bytes` (as they are, no terminator added) right before a page that may not be touched:
// reading or writing one byte too many ends the test program.
class PageEnd {
 public:
  explicit PageEnd(std::string_view bytes) : size_(bytes.size()) {
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t usable = (size_ / page + 1) * page;
    mapped_ = usable + page;
    base_ = static_cast<char *>(
        mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (base_ == MAP_FAILED || mprotect(base_ + usable, page, PROT_NONE) != 0)
      throw std::runtime_error("no page for the test");
    data_ = base_ + usable - size_;
    std::memcpy(data_, bytes.data(), size_);
  }
  ~PageEnd() { munmap(base_, mapped_); }
  PageEnd(const PageEnd &) = delete;
  PageEnd &operator=(const PageEnd &) = delete;

  char *data() { return data_; }
  std::string_view bytes() const { return {data_, size_}; }

 private:
  std::size_t size_;
  std::size_t mapped_ = 0;
  char *base_ = nullptr;
  char *data_ = nullptr;
};

}  // namespace korvel::test

#endif
