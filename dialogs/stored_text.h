// SPDX-License-Identifier: MIT
// For dialogs/: the texts of the exported tables, read and written within their room.
#ifndef KORVEL_DIALOGS_STORED_TEXT_H
#define KORVEL_DIALOGS_STORED_TEXT_H

#include <cstddef>
#include <string_view>

namespace korvel::dialogs {

// One text per field: a store of equal slices, and the pointers through which all code reaches the
// texts. An application may point them to texts of its own, which count as being as large as a
// slice.
struct TextStore {
  char *bytes;
  int size;
  int *sliceSize;
  char **texts;
};

// Cuts the store into slices, points the first n texts to theirs and empties these. n slices must
// fit.
void cutSlices(const TextStore &store, int n, int sliceSize);

// Points text i to its own slice again.
void useOwnSlice(const TextStore &store, int i);

// Text i, empty for a null pointer. A text inside the store ends with its room at the latest.
std::string_view storedText(const TextStore &store, int i);

// Copies what fits of `text` to text i. Returns whether all of it fits.
bool storeText(const TextStore &store, int i, std::string_view text);

// The text in an array, which ends with the array at the latest.
std::string_view boundedText(const char *text, std::size_t room);
template <std::size_t kRoom>
std::string_view boundedText(const char (&text)[kRoom]) {
  return boundedText(text, kRoom);
}

}  // namespace korvel::dialogs

#endif
