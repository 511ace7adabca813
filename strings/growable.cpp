// SPDX-License-Identifier: MIT
// Appends to a heap buffer of the application that grows as needed.
#include "strings/growable.h"

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <korvel/strings.h>

#include "base/views.h"
#include "strings/misuse.h"

namespace korvel::strings {

namespace {

void copyBytes(char *d, const char *source, int n) {
  if (n > 0) std::memmove(d, source, static_cast<std::size_t>(n));
}

// The old block is released last: source may be part of it.
int replaceBuffer(char **buf, int *capacity, int used, const char *source, int n,
                  Allocate allocate) {
  // A first block holds exactly what comes in; later ones leave room for as much again.
  const std::int64_t size = used == 0 ? n : (std::int64_t{*capacity} + n) * 2;
  if (size > INT_MAX) return 0;
  char *block = static_cast<char *>(allocate(static_cast<std::size_t>(size)));
  if (block == nullptr && used > 0) return 0;
  if (block != nullptr) {
    copyBytes(block, *buf, used);
    copyBytes(block + used, source, n);
  }
  std::free(*buf);
  *buf = block;
  *capacity = static_cast<int>(size);
  return block != nullptr ? 1 : 0;
}

}  // namespace

int appendGrowing(char **buf, int *capacity, int used, const char *source, int n,
                  Allocate allocate) {
  if (buf == nullptr || capacity == nullptr || source == nullptr || used < 0 || n < 0) return 0;
  // A null buffer holds nothing, whatever its capacity says (as after a failed allocation).
  const int available = *buf == nullptr ? 0 : *capacity;
  if (used > available) return 0;
  if (available - used < n) return replaceBuffer(buf, capacity, used, source, n, allocate);
  if (n > 0) copyBytes(*buf + used, source, n);
  return 1;
}

}  // namespace korvel::strings

using namespace korvel::strings;

int szcopyex(char **buf, int *capacity, int used, const char *source, int n) {
  lookForMisuse([=] {
    needsGrowable(Call("szcopyex", {filled(buf), filled(capacity), used, shownRun(source, n), n}),
                  buf, capacity, used, n);
  });
  return appendGrowing(buf, capacity, used, source, n, std::malloc);
}
