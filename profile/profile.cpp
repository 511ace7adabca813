// SPDX-License-Identifier: MIT
// The exported functions: profiles read and, under their locks, replaced as files. Searching and
// rewriting, which know only texts, are elsewhere.
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/profile.h>

#include "base/guard.h"
#include "codecs/integer.h"
#include "files/lock.h"
#include "files/paths.h"
#include "files/replace.h"
#include "profile/find.h"
#include "profile/memory_file.h"
#include "profile/misuse.h"
#include "profile/rewrite.h"

namespace korvel::profile {
namespace {

constexpr int kDone = 1;
constexpr int kFailed = 0;

std::optional<std::string_view> optionalText(const char *text) {
  return text == nullptr ? std::nullopt : std::optional<std::string_view>(text);
}

// A buffer of the application's, filled with one text.
class Destination {
 public:
  Destination(char *bytes, int capacity)
      : bytes_(bytes), room_(static_cast<std::size_t>(capacity - 1)) {}

  // The text may be in the buffer already.
  void set(const char *text) {
    const std::size_t length = text == nullptr ? 0 : strnlen(text, room_);
    if (length > 0) std::memmove(bytes_, text, length);
    bytes_[length] = '\0';
  }
  void set(Characters value) { bytes_[value.copyTo(bytes_, room_)] = '\0'; }

  // A text from a file ends at its first NUL too.
  int length() const { return static_cast<int>(std::strlen(bytes_)); }

 private:
  char *bytes_;
  std::size_t room_;
};

// Returns whether there is a value.
bool readValue(const char *section, const char *key, const char *path, Destination &destination) {
  InputFile file;
  if (section == nullptr || key == nullptr || !file.open(path)) return false;
  // One byte more shows that the file has come to its end.
  MemoryFile memory(file.size() + 1);
  if (!memory.isOpen() || !memory.load(file.descriptor(), file.size())) return false;
  const auto value = findValue(memory.bytes(), section, key);
  if (value) destination.set(*value);
  return value.has_value();
}

// A value of a profile, as the application names it.
struct Entry {
  const char *section;
  const char *key;
  const char *path;
};

// As much of a default as there is room for, and its end: it need not have one behind that.
std::string_view defaultOf(const char *text, int capacity) {
  if (text == nullptr) return {};
  return {text, strnlen(text, static_cast<std::size_t>(std::max(capacity, 0)))};
}

// Tells of a value, or of a default, that does not fit. A value is read once more, into room for
// more.
void needsRoomForValue(const Call &call, const Entry &entry, std::string_view defaultText,
                       const char *destination, int capacity) {
  needsRoom(call, destination, capacity);
  needsEntry(call, entry.section, entry.key, entry.path);
  if (!call) return;
  const base::ErrnoKept kept;
  char whole[1 << 14];
  Destination text(whole, sizeof whole);
  const bool isThere = readValue(entry.section, entry.key, entry.path, text);
  if (isThere) needsWhole(call, std::strlen(whole), capacity);
  call.misusedIf(!isThere && defaultText.size() == static_cast<std::size_t>(capacity),
                 {"the default is cut to ", capacity - 1, " characters"});
}

// Tells of a value that is no number.
void needsIntegerValue(const Call &call, const Entry &entry, int defaultValue) {
  needsDefault(call, defaultValue);
  needsEntry(call, entry.section, entry.key, entry.path);
  if (!call) return;
  const base::ErrnoKept kept;
  char text[codecs::kIntegerSize];
  Destination destination(text, codecs::kIntegerSize);
  if (!readValue(entry.section, entry.key, entry.path, destination)) return;
  int value = 0;
  const bool isInteger = codecs::readInteger(text, codecs::kLimit32, &value) == 0;
  needsInteger(call, text, isInteger && value >= 0);
}

int readInteger(const char *section, const char *key, int defaultValue, const char *path) {
  char text[codecs::kIntegerSize];
  Destination destination(text, codecs::kIntegerSize);
  if (!readValue(section, key, path, destination)) return std::max(defaultValue, 0);
  int value = 0;
  const bool isInteger = codecs::readInteger(text, codecs::kLimit32, &value) == 0;
  return isInteger ? std::max(value, 0) : 0;
}

// Passes the new content on to the file: large pieces as they are, small ones gathered in a memory
// file.
class FileOutput final : public Output {
 public:
  FileOutput(files::Replacement &replacement, MemoryFile &gathered)
      : replacement_(replacement), gathered_(gathered) {}

  void write(std::string_view piece) override {
    if (piece.empty()) return;
    if (gathered_.bytes().size() + piece.size() <= kGathered) {
      whole_ = gathered_.append(piece) && whole_;
    } else {
      pass(piece);
    }
  }

  // Whether everything was passed on.
  bool finish() {
    pass({});
    return whole_;
  }

  static constexpr std::size_t kGathered = 16384;

 private:
  void pass(std::string_view last) {
    const std::string_view pieces[] = {gathered_.bytes(), last};
    whole_ = replacement_.append(pieces) && whole_;
    gathered_.clear();
  }

  files::Replacement &replacement_;
  MemoryFile &gathered_;
  bool whole_ = true;
};

enum class Outcome { Done, Failed, MadeByAnother };

Outcome outcomeOf(bool done) { return done ? Outcome::Done : Outcome::Failed; }

// A missing file appears at once with its content, and takes no other file's place.
Outcome create(files::Replacement &replacement) {
  if (replacement.commitNew()) return Outcome::Done;
  return errno == EEXIST ? Outcome::MadeByAnother : Outcome::Failed;
}

Outcome createEmpty(const char *path) {
  files::Replacement replacement;
  if (!replacement.begin(path, files::IfMissing::Create)) return Outcome::Failed;
  return outcomeOf(create(replacement) != Outcome::Failed);
}

// Whether the file is not regular, or this process may not read it. error: why it was not opened.
bool cannotBeRead(const char *path, int error) {
  struct stat status;
  if (stat(path, &status) != 0) return false;
  if (error == EINVAL) return !S_ISREG(status.st_mode);
  return error == EACCES && faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) != 0 && errno == EACCES;
}

// Replaces the content of a file by what `rewrite` makes of it. The lock holds the file, or nothing
// if it is missing.
template <typename Rewrite>
Outcome rewriteOpen(const char *path, const files::FileLock &lock, Rewrite rewrite) {
  const int file = lock.descriptor();
  const bool missing = file < 0;
  struct stat status = {};
  if (!missing && fstat(file, &status) != 0) return Outcome::Failed;
  MemoryFile gathered(FileOutput::kGathered);
  if (gathered.isWithoutMemory()) return Outcome::Failed;
  // Kept: a lack of memory files counts as done.
  if (!gathered.isOpen()) return missing ? createEmpty(path) : Outcome::Done;
  MemoryFile input(status.st_size + 1);
  if (!input.isOpen() || !(missing || input.load(file, status.st_size))) return Outcome::Failed;
  files::Replacement replacement;
  if (!replacement.begin(path, files::IfMissing::Create)) return Outcome::Failed;
  FileOutput output(replacement, gathered);
  rewrite(input.bytes(), output);
  if (!output.finish()) return Outcome::Failed;
  if (missing) return create(replacement);
  // A program that takes no lock may have put another file there, which others then changed.
  bool isAnother = false;
  const bool done = replacement.commit([&] {
    isAnother = !lock.isAt(path);
    return !isAnother;
  });
  return isAnother ? Outcome::MadeByAnother : outcomeOf(done);
}

// The same for the file at a path, one process after another.
template <typename Rewrite>
Outcome rewriteLocked(const char *path, Rewrite rewrite) {
  files::FileLock lock;
  if (lock.take(path) || errno == ENOENT) return rewriteOpen(path, lock, rewrite);
  // Kept: what cannot be read counts as done.
  return outcomeOf(cannotBeRead(path, errno));
}

template <typename Rewrite>
int rewriteFile(const char *path, Rewrite rewrite) {
  constexpr int kAttempts = 100;  // beside others that make, remove or exchange the file
  const files::PosixPath posixPath(path);
  Outcome outcome = Outcome::MadeByAnother;
  for (int i = 0; i < kAttempts && outcome == Outcome::MadeByAnother; ++i)
    outcome = rewriteLocked(posixPath.text(), rewrite);
  return outcome == Outcome::Done ? kDone : kFailed;
}

int writeSection(std::string_view section, const char *content, const char *path) {
  return rewriteFile(path, [&](std::string_view text, Output &output) {
    rewriteSection(text, section, optionalText(content), output);
  });
}

int writeKey(std::string_view section, const char *key, const char *value, const char *path) {
  if (key == nullptr) return writeSection(section, nullptr, path);
  return rewriteFile(path, [&](std::string_view text, Output &output) {
    rewriteKey(text, section, key, optionalText(value), output);
  });
}

}  // namespace
}  // namespace korvel::profile

using namespace korvel;
using namespace korvel::profile;
using korvel::base::guarded;

int GetPrivateProfileString(const char *section, const char *key, const char *defaultText,
                            char *destination, int capacity, const char *path) {
  lookForMisuse([=] {
    const std::string_view shown = defaultOf(defaultText, capacity);
    needsRoomForValue(Call("GetPrivateProfileString",
                           {section, key, orNull(shown), filled(destination), capacity, path}),
                      {section, key, path}, shown, destination, capacity);
  });
  if (destination == nullptr || capacity < 1) return 0;
  Destination text(destination, capacity);
  text.set(defaultText);
  readValue(section, key, path, text);
  return text.length();
}

int GetPrivateProfileInt(const char *section, const char *key, int defaultValue, const char *path) {
  lookForMisuse([=] {
    needsIntegerValue(Call("GetPrivateProfileInt", {section, key, defaultValue, path}),
                      {section, key, path}, defaultValue);
  });
  return readInteger(section, key, defaultValue, path);
}

int WritePrivateProfileString(const char *section, const char *key, const char *value,
                              const char *path) {
  const Call call("WritePrivateProfileString", {section, orNull(key), orNull(value), path});
  if (call) needsValue(call, section, key, value, path);
  if (section == nullptr) return kFailed;
  const files::ErrnoOfWork errnoOfWork(call);
  const int result = guarded(kFailed, [&] { return writeKey(section, key, value, path); });
  if (call) files::needsDone(call, result == kDone);
  return result;
}

int WritePrivateProfileSection(const char *section, const char *text, const char *path) {
  const Call call("WritePrivateProfileSection", {section, orNull(text), path});
  if (call) needsValue(call, section, nullptr, text, path);
  if (section == nullptr) return kFailed;
  const files::ErrnoOfWork errnoOfWork(call);
  const int result = guarded(kFailed, [&] { return writeSection(section, text, path); });
  if (call) files::needsDone(call, result == kDone);
  return result;
}
