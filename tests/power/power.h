// SPDX-License-Identifier: MIT
// For tests/power/: changes of files, and what is left of them after a loss of power.
#ifndef KORVEL_TESTS_POWER_POWER_H
#define KORVEL_TESTS_POWER_POWER_H

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

#include "tests/power/disk.h"
#include "tests/power/mounts.h"
#include "tests/tables/edits.h"

namespace korvel::test {

// The files by their paths, except for those that a replacement may leave until the next one.
inline Files filesUnder(const std::string &folder) {
  Files files;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().lexically_relative(folder);
    if (entry.path().filename().string().starts_with(".korvel-")) continue;
    if (entry.is_symlink()) {
      files[name] = "-> " + std::filesystem::read_symlink(entry.path()).string();
    } else if (entry.is_regular_file()) {
      files[name] = content(entry.path());
    }
  }
  return files;
}

inline bool has(const Files &files, const Files::value_type &file) {
  const auto at = files.find(file.first);
  return at != files.end() && at->second == file.second;
}

// For a message, without the contents.
inline std::string differences(const Files &found, const Files &expected) {
  std::string text;
  for (const auto &file : expected) {
    if (!found.contains(file.first)) {
      text += file.first + " is missing. ";
    } else if (!has(found, file)) {
      text += file.first + " has other bytes. ";
    }
  }
  for (const auto &file : found)
    if (!expected.contains(file.first)) text += file.first + " is there. ";
  return text;
}

// A file system on a recording disk, for the scratch folders of the test.
class OnDisk {
 public:
  explicit OnDisk(const FileSystem &fileSystem)
      : fileSystem_(fileSystem), obstacle_(mounts_.obstacle()) {
    if (obstacle_.empty() && begin()) scratch_.emplace(root());
  }
  ~OnDisk() { mounts_.unmount("live"); }
  OnDisk(const OnDisk &) = delete;
  OnDisk &operator=(const OnDisk &) = delete;

 protected:
  // What this machine does not give, if that is why there is none; else "".
  const std::string &obstacle() const { return obstacle_; }
  // Any other reason why there is none.
  const std::string &defect() const { return defect_; }
  std::string root() const { return mounts_.path("live"); }
  // The disk before the first request.
  const Sectors &formatted() const { return formatted_; }
  Recording &recording() { return disk_.recording(); }

  // Has everything that was written reach the disk.
  void sync() const {
    const int folder = open(root().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    EXPECT_EQ(syncfs(folder), 0);
    close(folder);
  }

  // The files on a disk with this content, once the journal is played back.
  Files filesOn(const Sectors &sectors) const {
    const Image copy(fileSystem_.size);
    if (!writeTo(copy.file(), sectors) ||
        !mounts_.mountFile(copy.file(), fileSystem_.name, MS_RDONLY, fileSystem_.copysOptions,
                           "copy")) {
      ADD_FAILURE() << "cannot mount a copy: " << std::strerror(errno);
      return {};
    }
    Files files = filesUnder(mounts_.path("copy"));
    EXPECT_TRUE(mounts_.unmount("copy"));
    return files;
  }

 private:
  bool begin() {
    if (!canFormat(fileSystem_)) {
      obstacle_ = std::string("no command for ") + fileSystem_.name;
      return false;
    }
    formatted_ = korvel::test::formatted(fileSystem_);
    if (formatted_.empty()) {
      defect_ = std::string("failed: ") + fileSystem_.format;
      return false;
    }
    const std::string at = mounts_.path("disk");
    close(open(at.c_str(), O_CREAT | O_CLOEXEC, 0600));
    return canDo(disk_.start(formatted_, fileSystem_.size, mounts_.path("dev/fuse"), at),
                 "cannot serve a disk") &&
           canDo(mounts_.mountFile(disk_.file(), fileSystem_.name, MS_NOATIME, fileSystem_.options,
                                   "live"),
                 "cannot mount the disk");
  }

  // A missing right, device or file system is the machine's; everything else the disk's.
  bool canDo(bool done, const char *what) {
    if (done) return true;
    const bool isMissing = errno == EPERM || errno == EACCES || errno == ENODEV;
    (isMissing ? obstacle_ : defect_) = std::string(what) + ": " + std::strerror(errno);
    return false;
  }

  const FileSystem &fileSystem_;
  PrivateMounts mounts_;
  std::string obstacle_;
  std::string defect_;
  Sectors formatted_;
  Disk disk_;
  std::optional<ScratchPlace> scratch_;
};

// A call of the library that changes files.
struct Change {
  const char *name;
  std::function<int()> make;
  int answer = 1;
  std::string mixed = "";  // the end of the path of a file that may be a mixture meanwhile
};

class Power : protected OnDisk, public Tables, public testing::WithParamInterface<FileSystem> {
 protected:
  Power() : OnDisk(GetParam()) {}

  void SetUp() override {
    ASSERT_EQ(defect(), "");
    if (!obstacle().empty()) GTEST_SKIP() << obstacle();
  }

  // Makes the changes one after the other, then looks at what is left if the power is lost at the
  // moment of each answer, and at random ones.
  void expectToSurvive(const std::vector<Change> &changes) {
    changes_ = &changes;
    sync();
    const std::size_t begin = recording().count;
    after_ = {filesUnder(root())};
    for (const Change &change : changes) {
      EXPECT_EQ(change.make(), change.answer) << change.name;
      ++recording().answers;
      after_.push_back(filesUnder(root()));
      EXPECT_NE(differences(after_.back(), after_[after_.size() - 2]), "") << change.name;
    }
    cutAt(begin, recording().count);
  }

 private:
  static constexpr std::size_t kRandomCuts = 16;

  // Goes through the requests; the changes are made from begin on.
  void cutAt(std::size_t begin, std::size_t end) {
    const unsigned seed = randomSeed();
    SCOPED_TRACE("KORVEL_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    const std::set<std::size_t> moments = someOf(begin, end, random);
    Sectors flushed = formatted();
    Sectors cache;
    for (std::size_t i = 0; i < end && !HasFailure(); ++i) {
      const Request &request = recording().requests[i];
      if (request.isFlush) {
        put(cache, flushed);
        cache.clear();
      } else {
        cache.insert_or_assign(request.number, request.content);
      }
      if (i + 1 >= begin) expectAnswered(flushed, request.answers, answersAfter(i, end));
      if (moments.contains(i)) expectOldOrNew(withSomeOf(cache, flushed, random), request.answers);
    }
    std::printf("%s: %zu requests to the disk, %zu answers, %zu random cuts\n", GetParam().name,
                end - begin, changes_->size(), moments.size());
  }

  static std::set<std::size_t> someOf(std::size_t begin, std::size_t end, std::mt19937 &random) {
    std::set<std::size_t> some;
    EXPECT_GT(end - begin, kRandomCuts);
    while (some.size() < std::min(kRandomCuts, end - begin))
      some.insert(begin + random() % (end - begin));
    return some;
  }

  int answersAfter(std::size_t request, std::size_t end) {
    return request + 1 < end ? recording().requests[request + 1].answers : int{recording().answers};
  }

  // Any part of the cache has reached the disk, none and all of it included.
  static Sectors withSomeOf(const Sectors &cache, Sectors sectors, std::mt19937 &random) {
    const auto quarters = random() % 5;
    for (const auto &[number, content] : cache)
      if (random() % 4 < quarters) sectors.insert_or_assign(number, content);
    return sectors;
  }

  // The disk was like this when each of these answers was given.
  void expectAnswered(const Sectors &sectors, int before, int last) const {
    if (before == last) return;
    const Files found = filesOn(sectors);
    for (int answers = before + 1; answers <= last; ++answers)
      EXPECT_EQ(differences(found, after(answers)), "") << "answered: " << name(answers - 1);
  }

  void expectOldOrNew(const Sectors &sectors, int answers) const {
    const Files found = filesOn(sectors);
    const bool isLast = answers == static_cast<int>(changes_->size());
    expectOldOrNew(withoutMixed(found, answers), withoutMixed(after(answers), answers),
                   withoutMixed(after(isLast ? answers : answers + 1), answers),
                   "meanwhile: " + name(answers));
  }

  static void expectOldOrNew(const Files &found, const Files &oldOnes, const Files &newOnes,
                             const std::string &when) {
    for (const auto &file : found)
      EXPECT_TRUE(has(oldOnes, file) || has(newOnes, file)) << when << ": " << file.first;
    // A name goes only once everything else is there.
    for (const auto &file : oldOnes)
      if (!found.contains(file.first)) {
        EXPECT_EQ(differences(found, newOnes), "") << when;
      }
  }

  const Files &after(int answers) const { return after_[static_cast<std::size_t>(answers)]; }

  std::string name(int change) const {
    const auto index = static_cast<std::size_t>(change);
    return index < changes_->size() ? (*changes_)[index].name : "nothing";
  }

  // During a change.
  Files withoutMixed(Files files, int change) const {
    const auto index = static_cast<std::size_t>(change);
    if (index == changes_->size() || (*changes_)[index].mixed.empty()) return files;
    std::erase_if(files,
                  [&](const auto &file) { return file.first.ends_with((*changes_)[index].mixed); });
    return files;
  }

  const std::vector<Change> *changes_ = nullptr;
  std::vector<Files> after_;  // each number of answers
};

}  // namespace korvel::test

#endif
