// For dialogs/ only: texts that stand in the exported tables, read and written within their room.
#ifndef KORVEL_DIALOGS_STORED_TEXT_H
#define KORVEL_DIALOGS_STORED_TEXT_H

#include <cstddef>
#include <string_view>

#include <korvel/dialogs.h>

namespace korvel::dialogs {

// One text per field: a store cut into equal slices, and the pointers through which all code
// reaches the texts. An application may point them at texts of its own, which then count as being
// as large as a slice.
struct TextStore {
  char *bytes;
  int size;
  int *sliceSize;
  char **texts;
};

inline constexpr TextStore kFieldTexts{TDB_szBuffer, 8192, &TDB_BUFFERSIZE, TDB_pszBuffer};
inline constexpr TextStore kChoices{TDB_SZLBUFFER, 8192, &TDB_BUFFERSIZE, TDB_PSZLBUFFER};
inline constexpr TextStore kBoolLabels{BDB_szBuffer, 3072, &BDB_BUFFERSIZE, BDB_pszBuffer};
inline constexpr TextStore kPushLabels{PDB_szBuffer, 160, &PDB_BUFFERSIZE, PDB_pszBuffer};
inline constexpr TextStore kStaticTexts{SDB_szBuffer, 65536, &SDB_BUFFERSIZE, SDB_pszBuffer};

// Cuts the store into slices, points the first n texts at theirs and empties these. n slices must
// fit.
void cutSlices(const TextStore &store, int n, int sliceSize);

// Points text i at its own slice again.
void useOwnSlice(const TextStore &store, int i);

// Text i; empty for a null pointer. A text inside the store ends with its room at the latest.
std::string_view storedText(const TextStore &store, int i);

// Copies what fits of `text` to text i. Returns whether all of it did.
bool storeText(const TextStore &store, int i, std::string_view text);

// The same for a text of fixed room.
bool copyCut(char *destination, std::size_t room, std::string_view text);
template <std::size_t kRoom>
bool copyCut(char (&destination)[kRoom], std::string_view text) {
  return copyCut(destination, kRoom, text);
}

// The text in an array, which ends with the array at the latest.
std::string_view boundedText(const char *text, std::size_t room);
template <std::size_t kRoom>
std::string_view boundedText(const char (&text)[kRoom]) {
  return boundedText(text, kRoom);
}

// Copies `text` and a terminator to dst only when it is shorter than size.
void copyWhole(char *dst, int size, std::string_view text);

}  // namespace korvel::dialogs

#endif
