// SPDX-License-Identifier: MIT
// Decides which tables stay in memory, and whether a copy still is what stands in its file.
#include "tables/kept.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <memory>
#include <utility>

#include <korvel/tables.h>

#include "base/guard.h"
#include "base/posix.h"

namespace korvel::tables {
namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

// File systems stamp changes with the tick of the clock, some of them with every second second: two
// changes may bear the same time if less than two seconds lie between them.
constexpr std::int64_t kAtRest = 2 * kSecond;

// Where the wall's clock lost less than this, it was not set back to before a file's rest. A clock
// that is brought in line by and by loses no more than half a thousandth of the time.
constexpr std::int64_t kSetBack = 1 * kSecond;

std::int64_t nanoseconds(clockid_t clock) {
  timespec now = {};
  clock_gettime(clock, &now);
  return now.tv_sec * kSecond + now.tv_nsec;
}

bool isBefore(const timespec &time, std::int64_t moment) {
  const std::int64_t seconds = moment / kSecond;
  return time.tv_sec < seconds || (time.tv_sec == seconds && time.tv_nsec < moment % kSecond);
}

// A table that was asked, with its copy if it has one.
struct Asked {
  struct stat file = {};  // all zeros: none
  // When it was asked last, the time before, and the time before that; 0 for never. In askings of
  // all tables.
  std::array<std::uint64_t, 3> askings = {};
  // When the file was first seen as it is or, with a copy, when that was read.
  Moment since = {};
  KeptTable *kept = nullptr;
};

// More than there are copies: where a table is asked for the first time there is one without.
constinit Asked asked[2 * kMostKept] = {};
constinit std::uint64_t askings = 0;

// An index takes half as many bytes as its table at most.
std::size_t bytesFor(off_t size) {
  const auto bytes = static_cast<std::size_t>(size);
  return bytes + bytes / LineIndex::kLeastRatio;
}

void forget(Asked &one) {
  delete one.kept;
  one = {};
}

bool wasClockSetBack(const Moment &since, const Moment &now) {
  return now.wall - since.wall < now.steady - since.steady - kSetBack;
}

// The one of a file. If it has none yet: that of the table without a copy whose last asking is the
// longest ago.
Asked &placeOf(const struct stat &file) {
  const auto same = std::ranges::find_if(
      asked, [&](const Asked &one) { return base::isSameFile(one.file, file); });
  if (same != std::end(asked)) return *same;
  return *std::ranges::min_element(
      asked, {}, [](const Asked &one) { return std::pair(one.kept != nullptr, one.askings[0]); });
}

Asked &noteAsking(const struct stat &file, const Moment &now) {
  Asked &one = placeOf(file);
  if (!isUnchanged(one.file, file) || wasClockSetBack(one.since, now)) {
    forget(one);
    one.file = file;
    one.since = now;
  }
  one.askings = {++askings, one.askings[0], one.askings[1]};
  return one;
}

struct Held {
  std::size_t tables = 0;
  std::size_t bytes = 0;
  Asked *oldest = nullptr;
};

Held held() {
  Held all;
  for (Asked &one : asked) {
    if (one.kept == nullptr) continue;
    ++all.tables;
    all.bytes += bytesFor(one.file.st_size);
    if (all.oldest == nullptr || one.askings[0] < all.oldest->askings[0]) all.oldest = &one;
  }
  return all;
}

// Gives back the copies asked the longest ago until there is room for another one. One that was
// asked since the new table's last askings is worth as much as that: else tables that are asked in
// turn, one more than there is room for, would push each other out at every call.
bool makeRoomFor(const Asked &table) {
  for (;;) {
    const Held all = held();
    if (all.tables < kMostKept && all.bytes + bytesFor(table.file.st_size) <= kMostBytesKept) {
      return true;
    }
    if (all.oldest->askings[0] > table.askings.back()) return false;
    delete all.oldest->kept;
    all.oldest->kept = nullptr;
  }
}

// Where the time of change is in whole seconds nothing is kept: it may be another machine's, or no
// more than the time of content, which anybody may set.
bool isAtRest(const struct stat &status, const Moment &now) {
  const std::int64_t before = now.wall - kAtRest;
  return status.st_ctim.tv_nsec != 0 && isBefore(status.st_ctim, before) &&
         isBefore(status.st_mtim, before);
}

bool isOfKeptSize(const struct stat &status) {
  return S_ISREG(status.st_mode) && status.st_size > 0 &&
         status.st_size <= static_cast<off_t>(kLargestKept);
}

// Null when the file does not fit into memory, or changes while it is read.
KeptTable *copied(int descriptor, const struct stat &file) {
  return base::guarded(nullptr, [&]() -> KeptTable * {
    auto kept = std::make_unique<KeptTable>();
    if (!kept->table.read(descriptor, static_cast<std::size_t>(file.st_size))) return nullptr;
    kept->index.build(kept->table.lines());
    struct stat now;
    const bool isSame = fstat(descriptor, &now) == 0 && isUnchanged(file, now);
    return isSame && kept->index.count() > 0 ? kept.release() : nullptr;
  });
}

}  // namespace

constinit Keeping keeping = Keeping::WhenAskedAgain;

constinit Clocks *currentMoment = [] {
  return Moment{nanoseconds(CLOCK_REALTIME_COARSE), nanoseconds(CLOCK_BOOTTIME)};
};

const KeptTable *keptTable(int descriptor, const struct stat &status) {
  if (keeping == Keeping::Never || !isOfKeptSize(status)) return nullptr;
  // Before the file is read: a change from now on bears a later time than a file at rest.
  const Moment now = currentMoment();
  if (keeping == Keeping::Always) forgetTables();
  Asked &table = noteAsking(status, now);
  if (table.kept != nullptr) return table.kept;
  const bool mayBeKept = table.askings.back() != 0 && isAtRest(status, now);
  if ((mayBeKept || keeping == Keeping::Always) && makeRoomFor(table)) {
    table.kept = copied(descriptor, status);
    if (table.kept != nullptr) {
      table.since = now;
    } else {  // perhaps there is memory once it was asked twice more
      table.askings = {table.askings[0]};
    }
  }
  return table.kept;
}

void forgetTables() { std::ranges::for_each(asked, forget); }

}  // namespace korvel::tables

void KorvelForgetTables(void) { korvel::tables::forgetTables(); }
