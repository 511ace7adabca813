// The heading lines of a table: changed together with its name, or put back.
#include <string_view>

#include <sys/stat.h>

#include <korvel/tables.h>

#include "base/guard.h"
#include "files/paths.h"
#include "tables/markers.h"
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

  void restart() override { met_ = false; }
  int nextAfter(int line) const override {
    if (line < kTitleLine) return kTitleLine;
    return line < kVersionLine ? kVersionLine : kNoLine;
  }
  bool apply(int line, std::string_view /*kept*/, RewriteOutput &output) override {
    met_ = true;
    if (line == kTitleLine) {
      heading_.writeTitle(output);
    } else {
      heading_.writeVersion(output);
    }
    return true;
  }
  // Whether the table has any line.
  bool met() const { return met_; }

 private:
  Heading heading_;
  bool met_ = false;
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
  // A heading that is there, sound or not, is left alone, and the rest of the table with it.
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
  // None: the table is too short to tell, or was not read so far.
  Finding finding() const { return finding_; }

 private:
  Heading heading_;
  Finding finding_ = Finding::None;
};

bool isFolder(const TablePath &path) {
  struct stat status;
  return lstat(files::PosixPath(path.text).text(), &status) == 0 && S_ISDIR(status.st_mode);
}

int modify(const TablePath &path, const TablePath &newPath, const Heading &heading) {
  const bool keepsName = std::string_view(path.text) == newPath.text;
  if (!newPath || (!keepsName && isFolder(newPath))) return 0;
  ChangeHeading edit(heading);
  const bool done = TableRewrite(path, newPath).run(edit) == TableRewrite::Result::Done;
  // Kept: a table without a line gets its new name, too.
  return done && edit.met() ? 1 : 0;
}

int repair(const TablePath &path, const Heading &heading) {
  RestoreHeading edit(heading);
  const TableRewrite::Result result = TableRewrite(path).run(edit);
  // Kept: where nothing can be read or rewritten, nothing counts as damaged.
  if (result == TableRewrite::Result::Unopened) return 1;
  switch (edit.finding()) {
    case RestoreHeading::Finding::Sound:
      return 1;
    case RestoreHeading::Finding::Damaged:
      return 0;
    case RestoreHeading::Finding::Restored:
    case RestoreHeading::Finding::None:
      break;
  }
  return result == TableRewrite::Result::Done ? 1 : 0;
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel::tables;

int ZRV_Table_modify(const char *name, const char *newName, const char *version,
                     const char *title) {
  if (version == nullptr || title == nullptr) return 0;
  return korvel::base::orOnFailure(0, [&] {
    return modify(tablePath(name), tablePath(newName), {version, title});
  });
}

int ZRV_Table_repair(const char *name, const char *version, const char *title) {
  if (version == nullptr || title == nullptr) return 0;
  return repair(tablePath(name), {version, title});
}
