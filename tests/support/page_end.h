// For tests/: bytes that end, or begin, where the readable memory does.
#ifndef KORVEL_TESTS_SUPPORT_PAGE_END_H
#define KORVEL_TESTS_SUPPORT_PAGE_END_H

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

namespace korvel::test {

// Room for `size` bytes between two pages that may not be touched: reading or writing one byte too
// many ends the test program.
class GuardedPages {
 public:
  explicit GuardedPages(std::size_t size) {
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t usable = (size / page + 1) * page;
    mapped_ = usable + 2 * page;
    base_ =
        static_cast<char *>(mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (base_ == MAP_FAILED || mprotect(base_ + page, usable, PROT_READ | PROT_WRITE) != 0)
      throw std::runtime_error("no page for the test");
    begin_ = base_ + page;
    end_ = begin_ + usable;
  }
  ~GuardedPages() { munmap(base_, mapped_); }
  GuardedPages(const GuardedPages &) = delete;
  GuardedPages &operator=(const GuardedPages &) = delete;

  char *begin() { return begin_; }
  char *end() { return end_; }

 private:
  std::size_t mapped_ = 0;
  char *base_ = nullptr;
  char *begin_ = nullptr;
  char *end_ = nullptr;
};

// Holds `bytes` (as they are, no terminator added) right before a page that may not be touched.
class PageEnd {
 public:
  explicit PageEnd(std::string_view bytes)
      : pages_(bytes.size()), size_(bytes.size()), data_(pages_.end() - size_) {
    std::memcpy(data_, bytes.data(), size_);
  }

  char *data() { return data_; }
  std::string_view bytes() const { return {data_, size_}; }

 private:
  GuardedPages pages_;
  std::size_t size_;
  char *data_;
};

// The same right behind one.
class PageBegin {
 public:
  explicit PageBegin(std::string_view bytes)
      : pages_(bytes.size()), bytes_(pages_.begin(), bytes.size()) {
    std::memcpy(pages_.begin(), bytes.data(), bytes.size());
  }

  std::string_view bytes() const { return bytes_; }

 private:
  GuardedPages pages_;
  std::string_view bytes_;
};

}  // namespace korvel::test

#endif
