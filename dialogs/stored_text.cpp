// SPDX-License-Identifier: MIT
// The texts of the exported tables: slices of a store, or buffers of the application.
#include "dialogs/stored_text.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "strings/copy.h"

namespace korvel::dialogs {

namespace {

bool isInside(const TextStore &store, const char *text) {
  const std::less<> before;
  return !before(text, store.bytes) && before(text, store.bytes + store.size);
}

// Bytes at text i that belong to it, terminator included.
std::size_t roomOf(const TextStore &store, int i) {
  const char *text = store.texts[i];
  if (text == nullptr || *store.sliceSize <= 0) return 0;
  int room = *store.sliceSize;
  if (isInside(store, text)) {
    room = std::min(room, static_cast<int>(store.bytes + store.size - text));
  }
  return static_cast<std::size_t>(room);
}

}  // namespace

void cutSlices(const TextStore &store, int n, int sliceSize) {
  *store.sliceSize = sliceSize;
  for (int i = 0; i < n; ++i) {
    useOwnSlice(store, i);
    store.texts[i][0] = '\0';
  }
}

void useOwnSlice(const TextStore &store, int i) {
  const long long offset = static_cast<long long>(i) * *store.sliceSize;
  if (offset >= 0 && offset < store.size) store.texts[i] = store.bytes + offset;
}

std::string_view storedText(const TextStore &store, int i) {
  const char *text = store.texts[i];
  if (text == nullptr) return "";
  if (!isInside(store, text)) return text;
  return boundedText(text, roomOf(store, i));
}

bool storeText(const TextStore &store, int i, std::string_view text) {
  return strings::copyTerminated({store.texts[i], roomOf(store, i)}, text);
}

std::string_view boundedText(const char *text, std::size_t room) {
  return {text, strnlen(text, room)};
}

}  // namespace korvel::dialogs
