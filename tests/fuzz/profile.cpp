// SPDX-License-Identifier: MIT
// Profiles of any bytes, read and written beside the literal reader and writer; with a step of the
// replacement that fails, the old file or the new one stands there, as the answer says.
#include <optional>

#include <korvel/profile.h>

#include "files/replace.h"
#include "tests/files/volumes.h"
#include "tests/fuzz/target.h"
#include "tests/profile/literal_profile.h"

namespace korvel::test {
namespace {

constexpr char kPath[] = "Data:p";

files::ReplaceStep failing;
int passagesLeft = 0;

int fail(files::ReplaceStep step) { return step == failing && --passagesLeft == 0 ? ENOSPC : 0; }

// One profile, with names and a value to look for and to write.
class Profile {
 public:
  explicit Profile(Input &input)
      : input_(input),
        content_(bytes(input, 40000)),
        section_(text(input)),
        key_(text(input, 1100)),
        value_(text(input, 2000)) {
    volumes_.file("p", content_);
  }

  void use() {
    switch (input_.ConsumeIntegralInRange(0, 5)) {
      case 0:
      case 1:
        return readText();
      case 2:
        return readInteger();
      case 3:
      case 4:
        return writeKey();
      default:
        return writeSection();
    }
  }

 private:
  void readText() {
    const int capacity = number(input_, 0, 1200);
    Exactly out(std::min(capacity, 70000));
    const int length = GetPrivateProfileString(section_.c_str(), key_.c_str(), value_.c_str(),
                                               out.data(), out.size(), kPath);
    if (out.size() < 1) return require(length == 0);
    const std::string whole = literalRead(content_, section_, key_).value_or(value_);
    const std::string expected = whole.substr(0, static_cast<std::size_t>(out.size()) - 1);
    require(out.text() == std::string_view(expected.c_str()));
    require(length >= 0 && length < out.size());
  }

  void readInteger() {
    const int value = GetPrivateProfileInt(section_.c_str(), key_.c_str(), 7, kPath);
    require(value >= 0);
    if (!literalRead(content_, section_, key_)) require(value == 7);
  }

  void writeKey() {
    const bool removes = input_.ConsumeBool();
    const std::optional<std::string> value =
        removes ? std::nullopt : std::optional<std::string>(value_);
    const std::string changed = literalWriteKey(content_, section_, key_, value);
    compare(changed, [&] {
      return WritePrivateProfileString(section_.c_str(), key_.c_str(),
                                       removes ? nullptr : value_.c_str(), kPath);
    });
  }

  void writeSection() {
    const bool empties = input_.ConsumeBool();
    const std::optional<std::string> value =
        empties ? std::nullopt : std::optional<std::string>(value_);
    const std::string changed = literalWriteSection(content_, section_, value);
    compare(changed, [&] {
      return WritePrivateProfileSection(section_.c_str(), empties ? nullptr : value_.c_str(),
                                        kPath);
    });
  }

  template <typename Write>
  void compare(const std::string &changed, Write write) {
    passagesLeft = input_.ConsumeIntegralInRange(0, 3);
    failing = static_cast<files::ReplaceStep>(
        input_.ConsumeIntegralInRange(0, static_cast<int>(files::ReplaceStep::Folder)));
    const bool mayFail = passagesLeft > 0;
    files::replaceFault = mayFail ? fail : nullptr;
    const int answer = write();
    files::replaceFault = nullptr;
    require(answer == 1 || (answer == 0 && mayFail));
    if (answer == 1) content_ = changed;
    require(content(volumes_.posix("p")) == content_);
    require(entries(volumes_.folder()).size() == 1);
  }

  Input &input_;
  Volumes volumes_;
  std::string content_;
  const std::string section_;
  const std::string key_;
  const std::string value_;
};

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  korvel::test::Input input(data, size);
  korvel::test::Profile profile(input);
  for (int uses = 0; uses < 4; ++uses) profile.use();
  return 0;
}
