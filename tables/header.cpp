// SPDX-License-Identifier: MIT
// The heading lines of a table: changed together with its name, or put back.
#include <optional>
#include <string_view>

#include <sys/stat.h>

#include <korvel/tables.h>

#include "base/guard.h"
#include "files/paths.h"
#include "tables/line.h"
#include "tables/misuse.h"
#include "tables/path.h"
#include "tables/rewrite.h"

namespace korvel::tables {
namespace {

constexpr int kTitleLine = 1;
constexpr int kVersionLine = 2;
constexpr int kBeginLine = 3;

struct Heading {
  std::string_view version;
  std::string_view title;

  void writeTitle(RewriteOutput &output) const { output.writeLine({title}); }
  void writeVersion(RewriteOutput &output) const { output.writeLine({kVersionMark, version}); }
};

class ChangeHeading final : public LineEdit {
 public:
  explicit ChangeHeading(const Heading &heading) : heading_(heading) {}

  void restart() override { isMet_ = false; }
  int nextAfter(int line) const override {
    if (line < kTitleLine) return kTitleLine;
    return line < kVersionLine ? kVersionLine : kNoLine;
  }
  bool apply(int line, std::string_view /*kept*/, RewriteOutput &output) override {
    isMet_ = true;
    if (line == kTitleLine) {
      heading_.writeTitle(output);
    } else {
      heading_.writeVersion(output);
    }
    return true;
  }
  // True once the table turned out to have a line.
  bool isMet() const { return isMet_; }

 private:
  Heading heading_;
  bool isMet_ = false;
};

class RestoreHeading final : public LineEdit {
 public:
  enum class Finding { None, Sound, Damaged, Restored };

  explicit RestoreHeading(const Heading &heading) : heading_(heading) {}

  void restart() override { finding_ = Finding::None; }
  int nextAfter(int line) const override {
    if (line < kTitleLine) return kTitleLine;
    return line < kBeginLine && finding_ == Finding::None ? kBeginLine : kNoLine;
  }
  // An old heading, sound or not, is left alone, and the rest of the table with it.
  bool apply(int line, std::string_view kept, RewriteOutput &output) override {
    if (line == kBeginLine) {
      finding_ = kept == kBeginMark ? Finding::Sound : Finding::Damaged;
      return false;
    }
    if (kept != heading_.title) {
      finding_ = Finding::Restored;
      heading_.writeTitle(output);
      heading_.writeVersion(output);
    }
    output.writeLine({kept});
    return true;
  }
  bool isWanted() const override { return finding_ == Finding::Restored; }
  // None: line 3 was not read.
  Finding finding() const { return finding_; }

 private:
  Heading heading_;
  Finding finding_ = Finding::None;
};

bool isFolder(const TablePath &path) {
  struct stat status;
  return lstat(files::PosixPath(path.text).text(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool modify(const char *name, const char *newName, const Heading &heading) {
  const TablePath path = tablePath(name);
  const TablePath newPath = tablePath(newName);
  const bool keepsName = std::string_view(path.text) == newPath.text;
  if (!newPath || (!keepsName && isFolder(newPath))) return false;
  ChangeHeading edit(heading);
  // Kept: a table without a line gets its new name, too.
  return TableRewrite(path, newPath).run(edit) == TableRewrite::Result::Done && edit.isMet();
}

// Returns whether the heading is sound now; nothing where the table cannot be opened or replaced.
std::optional<bool> repair(const char *name, const Heading &heading) {
  using Finding = RestoreHeading::Finding;
  using Result = TableRewrite::Result;
  RestoreHeading edit(heading);
  const Result result = TableRewrite(tablePath(name)).run(edit);
  if (result == Result::Unopened) return std::nullopt;
  if (edit.finding() == Finding::Sound) return true;
  return result == Result::Done && edit.finding() != Finding::Damaged;
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel;
using namespace korvel::base;
using namespace korvel::tables;

int ZRV_Table_modify(const char *name, const char *newName, const char *version,
                     const char *title) {
  const Call call("ZRV_Table_modify", {name, newName, version, title});
  if (call) needsNames(call, name, newName, version, title);
  if (version == nullptr || title == nullptr) return 0;
  const auto work = [&] { return modify(name, newName, {version, title}); };
  const files::ErrnoOfWork errnoOfWork(call);
  const bool isModified = guarded(false, work);
  if (call) needsModified(call, name, newName, isModified);
  return isModified ? 1 : 0;
}

int ZRV_Table_repair(const char *name, const char *version, const char *title) {
  const Call call("ZRV_Table_repair", {name, version, title});
  if (call) needsTableToRepair(call, name, version, title);
  if (version == nullptr || title == nullptr) return 0;
  const files::ErrnoOfWork errnoOfWork(call);
  const std::optional<bool> isSound = repair(name, {version, title});
  if (call) needsSoundHeading(call, name, isSound);
  // Kept: where nothing can be read or rewritten, nothing counts as damaged.
  return isSound.value_or(true) ? 1 : 0;
}
