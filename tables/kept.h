// SPDX-License-Identifier: MIT
// For tables/: the tables that stay in memory, each as long as it is what stands in its file.
//
// The file remains the only truth. A table is opened at each call, and its file's identity looked
// at: device, inode, size, and the times of the last change of content and of anything, to the
// nanosecond. A copy in memory counts only while all of it is as it was when the copy was read, and
// the copy is only made of a file at rest: one that was last changed so long before that no later
// change can bear the same time. A change that the system stamps with no time of its own, or with
// one that was before it, is seen with the next one: what is stored through a mapping that is older
// than the copy, and the end of a single write that takes seconds.
//
// A table is read as if nothing were kept until it has been asked twice without a change: a copy
// and its index cost as much as some ten readings.
#ifndef KORVEL_TABLES_KEPT_H
#define KORVEL_TABLES_KEPT_H

#include <cstddef>
#include <cstdint>

#include <sys/stat.h>

#include "tables/index.h"
#include "tables/loaded.h"

namespace korvel::tables {

inline constexpr std::size_t kMostKept = 8;
inline constexpr std::size_t kLargestKept = std::size_t{32} << 20;
// Of all copies together, with their indexes, while one is made, too.
inline constexpr std::size_t kMostBytesKept = std::size_t{64} << 20;

struct KeptTable {
  LoadedTable table;
  LineIndex index;
};

// The copy of an open file of that status, which is asked once more; null when it is to be read.
// Valid until the next call of this function or the next: nothing of the application runs in
// between.
const KeptTable *keptTable(int descriptor, const struct stat &status);

// Gives all copies back.
void forgetTables();

// For tests: the way to decide. Always makes a new copy at every asking.
enum class Keeping { WhenAskedAgain, Always, Never };
extern Keeping keeping;

// For tests: the clocks, in nanoseconds. The wall's is the one that file systems take their times
// from, and somebody may set it; nobody sets the other one.
struct Moment {
  std::int64_t wall;
  std::int64_t steady;
};
using Clocks = Moment();
extern Clocks *currentMoment;

}  // namespace korvel::tables

#endif
