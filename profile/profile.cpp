// Profiles read and written through memory files.
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/codecs.h>
#include <korvel/files.h>
#include <korvel/profile.h>

#include "files/lock.h"
#include "files/paths.h"
#include "files/replace.h"
#include "profile/find.h"
#include "profile/memory_file.h"
#include "profile/rewrite.h"

namespace korvel::profile {
namespace {

constexpr int kDone = 1;
constexpr int kFailed = 0;

// Holds every 32-bit integer.
constexpr int kIntegerCapacity = 12;

using Text = std::optional<std::string_view>;

Text optionalText(const char *text) { return text == nullptr ? Text() : Text(text); }

// A buffer of the application's to fill with one text.
class Destination {
 public:
  Destination(char *bytes, int capacity)
      : bytes_(bytes), room_(static_cast<std::size_t>(capacity - 1)) {}

  // The text may stand in the buffer already.
  void set(const char *text) {
    const std::size_t length = text == nullptr ? 0 : strnlen(text, room_);
    if (length > 0) std::memmove(bytes_, text, length);
    bytes_[length] = '\0';
  }
  void set(Characters value) { bytes_[value.copyTo(bytes_, room_)] = '\0'; }

  // A text ends at its first NUL, also one that came from a file.
  int length() const { return static_cast<int>(std::strlen(bytes_)); }

 private:
  char *bytes_;
  std::size_t room_;
};

void readValue(const char *section, const char *key, const char *path, Destination &destination) {
  InputFile file;
  if (!file.open(path)) return;
  // One byte more shows that the file has come to its end.
  MemoryFile memory(file.size() + 1);
  if (!memory.isOpen() || !memory.load(file.descriptor(), file.size())) return;
  if (const auto value = findValue(memory.bytes(), section, key)) destination.set(*value);
}

// A new content is on the disk before its name leads there, so that a loss of power leaves one of
// the two contents whole (where it is exchanged); waiting until it is certain to be the new one
// would double the time that the application waits.
constexpr files::ReplaceRules kRules = {.folderSync = false};

// Hands a new content on to the file: large pieces as they are, small ones gathered in a memory
// file.
class FileOutput final : public Output {
 public:
  FileOutput(files::Replacement &replacement, MemoryFile &gathered)
      : replacement_(replacement), gathered_(gathered) {}

  void write(std::string_view piece) override {
    if (piece.empty()) return;
    if (gathered_.bytes().size() + piece.size() <= kGathered)
      whole_ = gathered_.append(piece) && whole_;
    else
      pass(piece);
  }

  // True when all was handed on.
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

// A file that was missing comes into being at once with its content, and takes nobody's place.
Outcome create(files::Replacement &replacement) {
  if (replacement.commitNew()) return Outcome::Done;
  return errno == EEXIST ? Outcome::MadeByAnother : Outcome::Failed;
}

Outcome createEmpty(const char *path) {
  files::Replacement replacement;
  if (!replacement.begin(path, files::IfMissing::Create, kRules)) return Outcome::Failed;
  return outcomeOf(create(replacement) != Outcome::Failed);
}

// What is there is no regular file, or this process may not read it. `error`: that of the opening.
bool cannotBeRead(const char *path, int error) {
  struct stat status;
  if (stat(path, &status) != 0) return false;
  if (error == EINVAL) return !S_ISREG(status.st_mode);
  return error == EACCES && faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) != 0 && errno == EACCES;
}

// Puts what `rewrite` makes of the content of a file in its place. The lock holds the file, or
// nothing where that is missing.
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
  if (!replacement.begin(path, files::IfMissing::Create, kRules)) return Outcome::Failed;
  FileOutput output(replacement, gathered);
  rewrite(input.bytes(), output);
  if (!output.finish()) return Outcome::Failed;
  if (missing) return create(replacement);
  // Somebody who knows no lock may have put another file there, and a third one written to that.
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
  constexpr int kAttempts = 100;  // against others who make, remove or exchange the file
  const files::PosixPath posixPath(path);
  Outcome outcome = Outcome::MadeByAnother;
  for (int i = 0; i < kAttempts && outcome == Outcome::MadeByAnother; ++i)
    outcome = rewriteLocked(posixPath.text(), rewrite);
  return outcome == Outcome::Done ? kDone : kFailed;
}

int writeKey(std::string_view section, std::string_view key, Text value, const char *path) {
  return rewriteFile(path, [&](std::string_view text, Output &output) {
    rewriteKey(text, section, key, value, output);
  });
}

int writeSection(std::string_view section, Text content, const char *path) {
  return rewriteFile(path, [&](std::string_view text, Output &output) {
    rewriteSection(text, section, content, output);
  });
}

}  // namespace
}  // namespace korvel::profile

using namespace korvel::profile;

int GetPrivateProfileString(const char *section, const char *key, const char *defaultText,
                            char *destination, int capacity, const char *path) {
  if (destination == nullptr || capacity < 1) return 0;
  Destination result(destination, capacity);
  result.set(defaultText);
  if (section != nullptr && key != nullptr) readValue(section, key, path, result);
  return result.length();
}

int GetPrivateProfileInt(const char *section, const char *key, int defaultValue, const char *path) {
  char text[kIntegerCapacity];
  intdco_i(defaultValue, text, kIntegerCapacity);
  GetPrivateProfileString(section, key, text, text, kIntegerCapacity, path);
  int value = 0;
  return intcod_l(text, &value) == 0 && value >= 0 ? value : 0;
}

int WritePrivateProfileString(const char *section, const char *key, const char *value,
                              const char *path) {
  if (section == nullptr) return kFailed;
  if (key == nullptr) return WritePrivateProfileSection(section, nullptr, path);
  return writeKey(section, key, optionalText(value), path);
}

int WritePrivateProfileSection(const char *section, const char *text, const char *path) {
  if (section == nullptr) return kFailed;
  return writeSection(section, optionalText(text), path);
}
