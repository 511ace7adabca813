// Profiles read and written through memory files.
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include <korvel/codecs.h>
#include <korvel/files.h>
#include <korvel/profile.h>
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
  if (!memory.isOpen() || !memory.load(file)) return;
  if (const auto value = findValue(memory.bytes(), section, key)) destination.set(*value);
}

// A profile is never overwritten in place, which a kill might interrupt. Its new content is on the
// disk before its name leads there, so that a loss of power leaves one of the two contents whole;
// waiting until it is certain to be the new one would double the time that the application waits.
constexpr files::ReplaceRules kRules = {.inPlace = false, .folderSync = false};

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

// Puts in the place of a file what `rewrite` makes of its content.
template <typename Rewrite>
int rewriteFile(const char *path, Rewrite rewrite) {
  using files::IfMissing;
  const files::PosixPath posixPath(path);
  InputFile file;
  const bool missing = File_Is_Existing(path) == 0;
  // Kept: a file that cannot be read counts as done, and so does a lack of memory files.
  if (!missing && !file.open(path)) return kDone;
  MemoryFile gathered(FileOutput::kGathered);
  if (!gathered.isOpen()) {
    const bool created =
        !missing || files::replaceFile(posixPath.text(), {}, IfMissing::Create, kRules);
    return created ? kDone : kFailed;
  }
  MemoryFile input(file.size() + 1);
  if (!input.isOpen() || !(missing || input.load(file))) return kFailed;
  files::Replacement replacement;
  if (!replacement.begin(posixPath.text(), IfMissing::Create, kRules)) return kFailed;
  FileOutput output(replacement, gathered);
  rewrite(input.bytes(), output);
  return output.finish() && replacement.commit() ? kDone : kFailed;
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
