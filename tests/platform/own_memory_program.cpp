// SPDX-License-Identifier: MIT
// An application of the shared library with memory of its own: it knows what it has given out, and
// ends with 1 when it is given back anything else. Asks for a dialog, and ends with the answer.
#include <cstddef>
#include <cstdlib>
#include <new>

#include <korvel/dialogs.h>

namespace {

// In front of what is given out, which stays as aligned as it was.
struct alignas(std::max_align_t) Head {
  const void *owner;
};

const int kOwner = 0;

}  // namespace

void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
  void *memory = std::malloc(sizeof(Head) + size);
  return memory == nullptr ? nullptr : new (memory) Head{&kOwner} + 1;
}

void *operator new(std::size_t size) {
  if (void *memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}

void operator delete(void *memory) noexcept {
  if (memory == nullptr) return;
  Head *head = static_cast<Head *>(memory) - 1;
  if (head->owner != &kOwner) std::_Exit(1);
  head->owner = nullptr;
  std::free(head);
}

void operator delete(void *memory, std::size_t) noexcept { operator delete(memory); }

int main() { return ZRVDlgBoxEx("Fiche", nullptr); }
