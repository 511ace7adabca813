// SPDX-License-Identifier: MIT
// Copies a table line by line into its replacement and puts that in place.
#include "tables/rewrite.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits.h>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/posix.h"
#include "strings/plain_lines.h"
#include "tables/scan.h"

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

// A table whose folder may not be written is left as it is.
constexpr files::ReplaceRules kRules{.inPlace = false};

class LineCopier {
 public:
  LineCopier(LineEdit &edit, RewriteOutput &output)
      : edit_(edit), output_(output), edited_(edit.nextAfter(0)) {}

  // Takes the next whole lines. Returns false when the edit gave up or something could not be
  // written.
  bool take(std::string_view lines) {
    while (!lines.empty()) {
      while (lines.starts_with(kIgnored)) lines.remove_prefix(1);
      const std::string_view plain = strings::plainLines(lines, kLineSize - 1);
      const FirstLines unchanged = firstLines(plain, edited_ - line_ - 1);
      if (unchanged.count > 0) output_.write(lines.substr(0, unchanged.bytes));
      line_ += unchanged.count;
      lines.remove_prefix(unchanged.bytes);
      const std::size_t end = lines.find(kLineEnd);
      if (!takeOne(keptOf(lines.substr(0, end), scratch_))) return false;
      lines.remove_prefix(end + 1);
    }
    return true;
  }

 private:
  bool takeOne(std::string_view kept) {
    ++line_;
    if (line_ != edited_) {
      output_.writeLine({kept});
      return !output_.failed();
    }
    const bool goesOn = edit_.apply(line_, kept, output_);
    edited_ = edit_.nextAfter(line_);
    return goesOn && !output_.failed();
  }

  LineEdit &edit_;
  RewriteOutput &output_;
  int edited_;    // the next line that does not stay
  int line_ = 0;  // number of lines so far
  LineScratch scratch_;
};

constexpr int kAttempts = 3;

bool isUnused(const char *path) {
  struct stat status;
  return lstat(path, &status) != 0 && errno == ENOENT;
}

bool leadToOneFile(const char *a, const char *b, decltype(lstat) *look = stat) {
  struct stat ofA;
  struct stat ofB;
  return look(a, &ofA) == 0 && look(b, &ofB) == 0 && base::isSameFile(ofA, ofB);
}

// The folder of a POSIX path, with '/' behind it.
struct Folder {
  explicit Folder(const char *path) {
    const std::string_view text = path;
    text_[text.copy(text_, std::min(text.rfind('/') + 1, sizeof text_ - 1))] = '\0';
  }
  const char *text() const { return text_; }

 private:
  char text_[PATH_MAX];
};

// Whether a link may be renamed to the other path and then still leads to its file.
bool mayMoveLink(const char *path, const char *newPath) {
  char target[PATH_MAX];
  const ssize_t length = readlink(path, target, sizeof target);
  if (length <= 0 || length == static_cast<ssize_t>(sizeof target)) return false;
  const Folder folder(newPath);
  const std::string_view text(target, static_cast<std::size_t>(length));
  const std::string seenFromThere = std::string(text[0] == '/' ? "" : folder.text()).append(text);
  struct stat from;
  struct stat to;
  return leadToOneFile(seenFromThere.c_str(), path) && mayRemove(path) &&
         mayWriteFolderOf(newPath) && stat(Folder(path).text(), &from) == 0 &&
         stat(folder.text(), &to) == 0 && from.st_dev == to.st_dev;
}

// Whether both paths have the same target, through any links.
bool isSamePlace(const char *a, const char *b) {
  char placeOfA[PATH_MAX];
  char placeOfB[PATH_MAX];
  return realpath(a, placeOfA) != nullptr && realpath(b, placeOfB) != nullptr &&
         std::strcmp(placeOfA, placeOfB) == 0;
}

}  // namespace

bool isOneEntry(const char *a, const char *b) { return leadToOneFile(a, b, lstat); }

bool mayWriteFolderOf(const char *path) {
  return faccessat(AT_FDCWD, Folder(path).text(), W_OK | X_OK, AT_EACCESS) == 0;
}

bool mayRemove(const char *path) {
  struct stat ofFolder;
  struct stat ofFile;
  if (!mayWriteFolderOf(path) || stat(Folder(path).text(), &ofFolder) != 0 ||
      lstat(path, &ofFile) != 0)
    return false;
  const uid_t user = geteuid();
  return (ofFolder.st_mode & S_ISVTX) == 0 || user == 0 || user == ofFile.st_uid ||
         user == ofFolder.st_uid;
}

TableRewrite::TableRewrite(const TablePath &path, const TablePath &newPath)
    : colonPath_(path),
      path_(path.text),
      newPath_(newPath.text),
      move_(std::strcmp(path.text, newPath.text) == 0 ? Move::Nothing : moveOfEntry()) {}

TableRewrite::Move TableRewrite::moveOfEntry() const {
  struct stat entry;
  if (lstat(path_.text(), &entry) != 0) return Move::Unknown;
  return S_ISLNK(entry.st_mode) ? Move::Link : Move::File;
}

TableRewrite::Result TableRewrite::run(LineEdit &edit) {
  for (int attempt = 1;; ++attempt) {
    edit.restart();
    if (!begin()) return attempt == 1 ? Result::Unopened : Result::Failed;
    if (copy(edit) && (!edit.isWanted() || commit())) return Result::Done;
    if (!hasChanged_ || attempt == kAttempts) return Result::Failed;
    giveBack();
  }
}

// An application sees the handles given back in this order.
void TableRewrite::giveBack() {
  handle_.giveBack();
  reader_.close();
  lock_.release();
  targetLock_.release();
}

// Reads the file that is locked, whatever the path leads to by now.
bool TableRewrite::begin() {
  if (!colonPath_) return false;
  const bool isOurs = takeLocks();
  if (!reader_.open(colonPath_.text, Slots::File) || !isOurs) return false;
  if (move_ == Move::Unknown) return false;
  if (fstat(lock_.descriptor(), &asRead_) != 0) return false;
  reader_.readThrough(lock_.descriptor());
  if (openTemporary()) return openTarget();
  // Kept: the table stays open when it cannot be rewritten.
  reader_.leaveOpen();
  return false;
}

// Takes the locks of two tables always in the same order, so that no two renamings wait for each
// other.
bool TableRewrite::takeLocks() {
  const bool replaces = move_ != Move::Nothing && !leadToOneFile(path_.text(), newPath_.text());
  const bool targetFirst = replaces && std::strcmp(newPath_.text(), path_.text()) < 0;
  files::Patience patience;
  return (!targetFirst || takeTargetLock(patience)) && lock_.take(path_.text(), patience) &&
         (!replaces || targetFirst || takeTargetLock(patience));
}

// A target that cannot be locked need not be waited for.
bool TableRewrite::takeTargetLock(files::Patience &patience) {
  return targetLock_.take(newPath_.text(), patience) || errno != ETIMEDOUT;
}

bool TableRewrite::openTemporary() {
  const TablePath temporary = temporaryPath(colonPath_);
  if (!handle_.take(temporary.text)) return false;
  const bool opened =
      leftOver_.openFor(path_.text()) &&
      (move_ == Move::File ? mayRemove(path_.text())
                           : replacement_.begin(path_.text(), files::IfMissing::Fail, kRules));
  if (!opened) handle_.dropUnopened();
  return opened;
}

// Prepares the new path, if it is another one.
bool TableRewrite::openTarget() {
  if (move_ == Move::Link) return mayMoveLink(path_.text(), newPath_.text());
  return move_ == Move::Nothing ||
         replacement_.begin(newPath_.text(), files::IfMissing::Create,
                            {.inPlace = false, .anew = true, .like = lock_.descriptor()});
}

bool TableRewrite::copy(LineEdit &edit) {
  RewriteOutput output(replacement_);
  const bool done = copyLines(edit, output) && appendLeftOver(output) && output.flush();
  leftOver_.consume();
  if (!done) replacement_.discard();
  // It may have been cut short while it was read.
  hasChanged_ = !reader_.isWhole() && !isAsRead();
  return done;
}

bool TableRewrite::copyLines(LineEdit &edit, RewriteOutput &output) {
  LineCopier copier(edit, output);
  for (auto lines = reader_.nextLines(); !lines.empty(); lines = reader_.nextLines()) {
    if (!copier.take(lines)) return false;
  }
  return reader_.isWhole();
}

bool TableRewrite::appendLeftOver(RewriteOutput &output) const {
  char block[8192];
  for (;;) {
    const long got = leftOver_.read(static_cast<long>(output.size()), block, sizeof block);
    if (got <= 0) return got == 0;
    output.write({block, static_cast<std::size_t>(got)});
  }
}

bool TableRewrite::isAsRead() const {
  struct stat now;
  return stat(path_.text(), &now) == 0 && isUnchanged(asRead_, now);
}

bool TableRewrite::commit() {
  const bool wasUnused = move_ == Move::File && isUnused(newPath_.text());
  const auto isStillAsRead = [this] {
    hasChanged_ = !isAsRead();
    return !hasChanged_;
  };
  if (!replacement_.commit(isStillAsRead)) return false;
  switch (move_) {
    case Move::File:
      return finishMovingFile(wasUnused);
    case Move::Link:
      return moveLink();
    case Move::Nothing:
    case Move::Unknown:
      break;
  }
  return true;
}

// The new table has its new name. A kill here leaves the old table under the old name, too.
bool TableRewrite::finishMovingFile(bool wasUnused) {
  // Both are spellings of one name, which leads to the new table already.
  if (isOneEntry(path_.text(), newPath_.text())) return true;
  if (unlink(path_.text()) != 0) {
    if (wasUnused) unlink(newPath_.text());
    return false;
  }
  files::syncFolderOf(path_.text(), lock_.descriptor());
  return true;
}

// A kill before this leaves the new table under the old name. A link that would replace its own
// table, or a link on the way there, is only removed.
bool TableRewrite::moveLink() {
  if (isOneEntry(path_.text(), newPath_.text())) return true;
  const bool isMoved = isSamePlace(path_.text(), newPath_.text())
                           ? unlink(path_.text()) == 0
                           : rename(path_.text(), newPath_.text()) == 0;
  if (!isMoved) return false;
  files::syncFolderOf(newPath_.text(), lock_.descriptor());
  files::syncFolderOf(path_.text(), lock_.descriptor());
  return true;
}

}  // namespace korvel::tables
