#include "tables/rewrite.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "tables/unchanged.h"

namespace korvel::tables {

void RewriteOutput::write(std::string_view piece) {
  size_ += piece.size();
  if (piece.size() >= kLarge || piece.size() > kGathered - length_) {
    handOn(piece);
  } else if (!piece.empty()) {
    std::memcpy(gathered_ + length_, piece.data(), piece.size());
    length_ += piece.size();
  }
}

void RewriteOutput::writeLine(std::initializer_list<std::string_view> parts) {
  for (const std::string_view part : parts) write(part);
  write(kWrittenEnd);
}

bool RewriteOutput::flush() {
  if (length_ > 0) handOn({});
  return !failed_;
}

void RewriteOutput::handOn(std::string_view piece) {
  const std::string_view pieces[] = {{gathered_, length_}, piece};
  failed_ = failed_ || !to_.append(pieces);
  length_ = 0;
}

namespace {

// A table whose folder may not be written is left as it is. That the new one stands is enough: a
// loss of power soon after brings back the old one or the new one, both whole.
constexpr files::ReplaceRules kRules{.inPlace = false, .folderSync = false};

// Takes the old content block by block.
class LineCopier {
 public:
  LineCopier(LineEdit &edit, RewriteOutput &output)
      : edit_(edit), output_(output), edited_(edit.nextAfter(0)) {}

  // Both return false when the edit gave up or something could not be written.
  bool take(std::string_view block);
  bool finish() { return gathered_.empty() || endLine(gathered_.kept()); }

 private:
  bool takeWholeLines(std::string_view &block);
  bool endLine(std::string_view kept);

  LineEdit &edit_;
  RewriteOutput &output_;
  int edited_;             // the next line that does not stay
  int line_ = 0;           // number of lines so far
  LineGatherer gathered_;  // the beginning of a line whose end is not met yet
  bool unfinished_ = false;
  LineGatherer scratch_;
};

bool LineCopier::take(std::string_view block) {
  if (unfinished_) {
    const std::size_t end = block.find(kLineEnd);
    gathered_.append(block.substr(0, end));
    if (end == std::string_view::npos) return true;
    block.remove_prefix(end + 1);
    if (!endLine(gathered_.kept())) return false;
    gathered_.clear();
  }
  if (!takeWholeLines(block)) return false;
  unfinished_ = !block.empty();
  gathered_.append(block);
  return true;
}

// What remains of the block is the beginning of a line.
bool LineCopier::takeWholeLines(std::string_view &block) {
  for (;;) {
    // Wherever a line feed stands it is no part of a line.
    while (block.starts_with(kIgnored)) block.remove_prefix(1);
    const UnchangedLines unchanged = unchangedLines(block, edited_ - line_ - 1);
    if (unchanged.count > 0) output_.write(block.substr(0, unchanged.bytes));
    line_ += unchanged.count;
    block.remove_prefix(unchanged.bytes);
    const std::size_t end = block.find(kLineEnd);
    if (end == std::string_view::npos) return !output_.failed();
    if (!endLine(keptOf(block.substr(0, end), scratch_))) return false;
    block.remove_prefix(end + 1);
  }
}

bool LineCopier::endLine(std::string_view kept) {
  ++line_;
  if (line_ != edited_) {
    output_.writeLine({kept});
    return !output_.failed();
  }
  const bool goesOn = edit_.apply(line_, kept, output_);
  edited_ = edit_.nextAfter(line_);
  return goesOn && !output_.failed();
}

}  // namespace

bool TableRewrite::begin(const TablePath &path) {
  if (!path) return false;
  path_ = files::PosixPath(path.text);
  const bool isOurs = lock_.take(path_.text());
  if (!reader_.open(path.text, Slots::File) || !isOurs) return false;
  if (openTemporary(path)) return true;
  // Kept: the table stays open when it cannot be rewritten.
  reader_.leaveOpen();
  return false;
}

bool TableRewrite::openTemporary(const TablePath &path) {
  const TablePath temporary = temporaryPath(path);
  if (!handle_.take(temporary.text)) return false;
  const bool opened = leftOver_.openFor(path_.text()) &&
                      replacement_.begin(path_.text(), files::IfMissing::Fail, kRules);
  if (!opened) handle_.dropUnopened();
  return opened;
}

bool TableRewrite::copy(LineEdit &edit) {
  RewriteOutput output(replacement_);
  const bool done = copyLines(edit, output) && appendLeftOver(output) && output.flush();
  leftOver_.consume();
  if (!done) replacement_.discard();
  return done;
}

bool TableRewrite::copyLines(LineEdit &edit, RewriteOutput &output) {
  LineCopier copier(edit, output);
  for (auto block = reader_.next(); !block.empty(); block = reader_.next()) {
    if (!copier.take(block)) return false;
  }
  return reader_.isWhole() && copier.finish();
}

bool TableRewrite::appendLeftOver(RewriteOutput &output) const {
  char block[8192];
  for (;;) {
    const long got = leftOver_.read(static_cast<long>(output.size()), block, sizeof block);
    if (got <= 0) return got == 0;
    output.write({block, static_cast<std::size_t>(got)});
  }
}

bool TableRewrite::commit() { return replacement_.commit(); }

bool TableRewrite::commitAs(const TablePath &path) {
  const files::PosixPath target(path.text);
  struct stat status;
  if (lstat(path_.text(), &status) != 0) return false;
  return S_ISLNK(status.st_mode) ? moveLink(target.text()) : moveFile(target.text());
}

// A kill in the middle leaves the old table under the old path and the new one under the new path.
bool TableRewrite::moveFile(const char *path) {
  if (!replacement_.commitAs(path)) return false;
  if (unlink(path_.text()) == 0) return true;
  unlink(path);
  return false;
}

// A kill in the middle leaves two links to one table.
bool TableRewrite::moveLink(const char *path) {
  char target[PATH_MAX];
  const ssize_t length = readlink(path_.text(), target, sizeof target - 1);
  if (length <= 0) return false;
  target[length] = '\0';
  if (symlink(target, path) != 0) return false;
  struct stat table;
  struct stat linked;
  // A relative link leads elsewhere from another folder.
  const bool leadsToTable = stat(path_.text(), &table) == 0 && stat(path, &linked) == 0 &&
                            table.st_dev == linked.st_dev && table.st_ino == linked.st_ino;
  if (leadsToTable && replacement_.commit()) return unlink(path_.text()) == 0;
  unlink(path);
  return false;
}

}  // namespace korvel::tables
