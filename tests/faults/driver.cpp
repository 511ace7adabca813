// SPDX-License-Identifier: MIT
// One driver for all operations: each is made once for every request and every way to refuse it,
// until it runs through.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <set>

#include <fcntl.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <korvel/korvel.h>

#include "files/lock.h"
#include "files/replace.h"
#include "files/slots.h"
#include "tests/dialogs/dialog_fixture.h"
#include "tests/draw/drawing_fixture.h"
#include "tests/faults/operations.h"
#include "tests/faults/requests.h"
#include "tests/files/processes.h"
#include "tests/files/volumes.h"
#include "tests/support/failures_aside.h"
#include "tests/tables/edits.h"

namespace korvel::faults {

using namespace korvel::test;

namespace {

namespace fs = std::filesystem;

// Everything on the volume, by its path there.
using Files = std::map<std::string, std::string>;

// Where operations take place, one after the other.
class Place {
 public:
  void clear() {
    leave();
    disk_ = std::make_unique<MemoryDisk>();
    volumes_ = std::make_unique<Volumes>();
    resetGlobals();
  }
  void leave() {
    SetPort(nullptr);
    const FailuresAside aside;
    if (desktop_) desktop_->finish();
    desktop_ = nullptr;
    volumes_ = nullptr;
    disk_ = nullptr;
    setenv("PATH", searched_.c_str(), 1);
  }

  Files files() const {
    Files files;
    const std::string root = volumes_->folder();
    for (const auto &entry : fs::recursive_directory_iterator(root))
      files[entry.path().string().substr(root.size() + 1)] = contentOf(entry);
    return files;
  }
  const Volumes &volumes() const { return *volumes_; }
  ScriptedDesktop &desktop() {
    if (desktop_ == nullptr) desktop_ = std::make_unique<ScriptedDesktop>();
    return *desktop_;
  }
  bool hasDesktop() const { return desktop_ != nullptr; }

 private:
  static std::string contentOf(const fs::directory_entry &entry) {
    if (entry.is_symlink()) return "-> " + fs::read_symlink(entry.path()).string();
    return entry.is_directory() ? "(folder)" : content(entry.path());
  }
  static void resetGlobals() {
    DialogGlobals::reset();
    DrawingGlobals::reset();
    std::memset(szDirTables, 0, sizeof szDirTables);
    std::memset(ZRV_Libelle_NC_szDirTables, 0, sizeof ZRV_Libelle_NC_szDirTables);
    std::memset(ZRV_Libelle_NC_szBuffer, 0, sizeof ZRV_Libelle_NC_szBuffer);
    ZRV_Libelle_NC_il = ZRV_Libelle_NC_read = 0;
    tables::TableReader::blockSize = tables::TableReader::kLargestBlock;
    tables::keeping = tables::Keeping::WhenAskedAgain;
    KorvelForgetTables();
    BSDtest = BSDcr = BSDnNbFic = 0;
  }

  // Operations may have tools of theirs found first.
  const std::string searched_ = std::getenv("PATH");
  std::unique_ptr<MemoryDisk> disk_;
  std::unique_ptr<Volumes> volumes_;
  std::unique_ptr<ScriptedDesktop> desktop_;
};

Place here;

std::set<int> openDescriptors() {
  std::set<int> open;
  for (int file = 0; file < 64; ++file) {
    if (fcntl(file, F_GETFD) >= 0) open.insert(file);
  }
  return open;
}

// What the process holds that a call may take.
struct Holdings {
  std::set<int> descriptors = openDescriptors();
  int files = used(DATA_FILE_TAB);
  int memoryFiles = used(DATA_MFIL_TAB);
  bool hasDialog = DlgBox_hDlg != nullptr;

  // Slots in use whose handles somebody knows.
  template <typename Slot>
  static int used(const Slot (&table)[files::kSlots]) {
    int count = 0;
    for (int handle = 0; handle < files::kSlots; ++handle)
      count += table[handle].mode != files::kFreeSlot && !files::isOwn(table, handle) ? 1 : 0;
    return count;
  }
};

// The descriptors of slots that are the library's own until it needs a slot.
void forgetOwnSlots() {
  for (int handle = 0; handle < files::kSlots; ++handle) {
    if (files::isOwn(DATA_FILE_TAB, handle)) files::release(DATA_FILE_TAB[handle]);
    if (files::isOwn(DATA_MFIL_TAB, handle)) files::release(DATA_MFIL_TAB[handle]);
  }
}

// Those of the library, and the left-over file of another program, which an edit uses up.
bool isTemporary(const std::string &name) {
  return name.find(".korvel-") != name.npos || name.ends_with(".ta_");
}

bool isLeftTemporary(const std::pair<const std::string, std::string> &file) {
  return file.first.find(".korvel-") != file.first.npos;
}

Files withoutTemporaries(Files files) {
  std::erase_if(files, [](const auto &file) { return isTemporary(file.first); });
  return files;
}

bool holds(const Files &files, const std::pair<const std::string, std::string> &file) {
  const auto found = files.find(file.first);
  return found != files.end() && found->second == file.second;
}

bool holdsAll(const Files &files, const Files &part) {
  return std::all_of(part.begin(), part.end(),
                     [&](const auto &file) { return holds(files, file); });
}

std::string printed(const Files &files) {
  std::string text;
  for (const auto &[name, content] : files) text += "\n    " + name + ": " + content.substr(0, 200);
  return text;
}

// While it lives, the file system has no nameless files.
class NamedTemporaries {
 public:
  NamedTemporaries() {
    files::replaceFault = [](files::ReplaceStep step) {
      return step == files::ReplaceStep::Temporary ? EOPNOTSUPP : 0;
    };
  }
  ~NamedTemporaries() { files::replaceFault = nullptr; }
  NamedTemporaries(const NamedTemporaries &) = delete;
  NamedTemporaries &operator=(const NamedTemporaries &) = delete;
};

// What was refused in the last run, for messages.
std::string refused;

// One operation, with its ordinary run to compare others with.
class Drive {
 public:
  explicit Drive(const Operation &operation) : operation_(operation) {}

  int everyFault() {
    if (!runOrdinarily()) return 0;
    const int requests = refuseEverything(Lasting::Once);
    if (!has(kSpawns)) refuseEverything(Lasting::ForGood);
    if (has(kReplaces)) {
      killEverywhere(requests);
      const NamedTemporaries named;
      killEverywhere(refuseEverything(Lasting::Once));
    }
    return faults_;
  }

 private:
  bool has(Leeway leeway) const { return (operation_.leeway & leeway) != 0; }

  void prepare() {
    here.clear();
    if (operation_.prepare != nullptr) operation_.prepare();
  }

  bool runOrdinarily() {
    prepare();
    before_ = here.files();
    good_ = operation_.call();
    after_ = here.files();
    if (here.hasDesktop()) here.desktop().finish();
    EXPECT_EQ(good_.result(), operation_.good) << good_.text();
    return good_.result() == operation_.good;
  }

  // Returns how many requests there are.
  int refuseEverything(Lasting lasting) {
    int nth = 1;
    while (refuse(nth, lasting)) ++nth;
    return nth - 1;
  }

  // Refuses a request in every way. Returns whether there was such a request.
  bool refuse(int nth, Lasting lasting) {
    for (int way = 0;; ++way) {
      prepare();
      const Holdings held;
      Refusal refusal(nth, way, lasting);
      const Answer answer = callUnheard();
      refusal.end();
      if (!refusal.isMet()) return expectOrdinary(answer), false;
      if (!refusal.hasWay()) return true;
      if (lasting == Lasting::ForGood && refusal.isHarmless()) continue;
      ++faults_;
      refused = refusal.description() + ", request " + std::to_string(nth);
      judge(refusal, answer);
      expectNothingHeld(held);
      callAgain(answer);
    }
  }

  // Departures from the desktop's script, which a fault may bring about, are no failures.
  Answer callUnheard() const {
    const FailuresAside aside;
    return operation_.call();
  }

  void expectOrdinary(const Answer &answer) const {
    EXPECT_EQ(answer.text(), good_.text()) << refused;
    EXPECT_EQ(here.files(), after_) << refused;
  }

  bool isFailure(const Answer &answer) const {
    if (operation_.failures == nullptr) return false;
    const std::string results = ' ' + std::string(operation_.failures) + ' ';
    return results.find(' ' + std::string(answer.result()) + ' ') != results.npos;
  }

  void judge(const Refusal &refusal, const Answer &answer) const {
    const bool isGood = answer == good_;
    if (!has(kAnyAnswer)) {
      EXPECT_TRUE(isGood || isFailure(answer)) << refused << ": " << answer.text();
    }
    if (refusal.isHarmless() && !has(kPartial)) {
      EXPECT_TRUE(isGood) << refused << ": " << answer.text();
    }
    const Files now = here.files();
    const Files visible = withoutTemporaries(now);
    if (!mayLeaveTemporary(refusal.call())) {
      EXPECT_TRUE(std::none_of(now.begin(), now.end(), isLeftTemporary)) << refused << printed(now);
    }
    if (!has(kAnyFiles)) {
      EXPECT_TRUE(agree(isGood, visible)) << refused << ": " << answer.text() << printed(now);
    }
  }

  // One that could not be removed, or not be told from another process's.
  static bool mayLeaveTemporary(std::string_view call) {
    return call == "unlinkat" || call == "fstatat" || call == "fstat" || call == "flock";
  }

  bool agree(bool isGood, const Files &now) const {
    const Files before = withoutTemporaries(before_);
    if (has(kSaysDone)) return now == before || now == after_;
    if (isGood) return now == after_;
    return has(kTwoNames) || has(kLinkMoves) ? isComplete(now) : now == before;
  }

  // Whether the old files are there, or the new ones; each may be the one or the other while a link
  // is moved.
  bool isComplete(const Files &now) const {
    return areAllKnown(now) &&
           (holdsAll(now, withoutTemporaries(before_)) || holdsAll(now, after_) ||
            (has(kLinkMoves) && now.size() >= after_.size()));
  }

  // Whether each file is the old one or the new one.
  bool areAllKnown(const Files &now) const {
    return std::all_of(now.begin(), now.end(), [&](const auto &file) {
      return holds(before_, file) || holds(after_, file);
    });
  }

  static void expectNothingHeld(const Holdings &before) {
    const Holdings held;
    EXPECT_LE(held.files, before.files) << refused;
    EXPECT_LE(held.memoryFiles, before.memoryFiles) << refused;
    EXPECT_EQ(held.hasDialog, before.hasDialog) << refused;
    forgetOwnSlots();
    for (const int descriptor : openDescriptors())
      EXPECT_TRUE(before.descriptors.contains(descriptor)) << descriptor << ": " << refused;
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << refused;
  }

  // The same call works now, if need be where everything is as before.
  void callAgain(const Answer &answer) {
    if (answer == good_) return;
    if (has(kUsedUp) || withoutTemporaries(here.files()) != before_) prepare();
    refused += ", made again";
    expectOrdinary(callUnheard());
  }

  // Whether the process was killed at the request with this number (from 1), or elsewhere.
  bool isKilledAt(int nth) {
    prepare();
    return inChild([&] {
             const Refusal refusal(nth, 0, Lasting::Deadly);
             operation_.call();
             return 0;
           }) == -1;
  }

  void killEverywhere(int requests) {
    int kills = 0;
    int old = 0;
    int named = 0;
    for (; kills <= requests && isKilledAt(kills + 1); ++kills) {
      refused = "killed at request " + std::to_string(kills + 1);
      const Files now = here.files();
      if (std::any_of(now.begin(), now.end(), isLeftTemporary)) ++named;
      if (findsOld(now)) ++old;
    }
    EXPECT_EQ(kills, requests);
    // A nameless temporary has a name for an instant only, a named one most of the time.
    if (files::replaceFault == nullptr) {
      EXPECT_LT(named, 10);
    } else {
      EXPECT_GT(named, 5);
    }
    EXPECT_GT(old, 0);
    EXPECT_LT(old, kills);
    faults_ += kills;
  }

  // Sees that a kill left the old files or the new ones. Returns whether it left the old ones.
  bool findsOld(const Files &now) {
    const Files visible = withoutTemporaries(now);
    EXPECT_TRUE(isComplete(visible)) << refused << printed(now);
    EXPECT_LE(now.size(), visible.size() + 1) << refused;
    if (visible != before_) return false;
    // What it left behind neither hinders the next call nor stays.
    expectOrdinary(operation_.call());
    return true;
  }

  const Operation &operation_;
  Files before_, after_;
  Answer good_{};
  int faults_ = 0;
};

platform::Run handOver(platform::HitHandler &handler, int item) {
  const InLibrary back;
  return handler.hit(item);
}

}  // namespace

Answer::Part::Part(int number) { std::snprintf(text_, sizeof text_, "%d", number); }
Answer::Part::Part(double number) { std::snprintf(text_, sizeof text_, "%.9g", number); }
Answer::Part::Part(const char *text)
    : Part(text == nullptr ? std::string_view("null") : std::string_view(text)) {}
Answer::Part::Part(std::string_view text) {
  text = text.substr(0, sizeof text_ - 1);
  text_[text.copy(text_, text.size())] = '\0';
}

Answer::Answer(std::initializer_list<Part> parts) {
  std::size_t length = 0;
  for (const Part &part : parts) {
    const std::string_view text = part.text_;
    if (length > 0) text_[length++] = '|';
    length += text.copy(text_ + length, sizeof text_ - 2 - length);
  }
  text_[length] = '\0';
}

namespace place {

void put(const std::string &name, std::string_view content) { here.volumes().file(name, content); }
void link(const std::string &name, const std::string &target) {
  fs::create_symlink(target, here.volumes().posix(name));
}
void folder(const std::string &name) { fs::create_directory(here.volumes().posix(name)); }
const char *posix(const std::string &name) {
  static std::string path;
  path = here.volumes().posix(name);
  return path.c_str();
}
std::string content(const std::string &name) { return test::content(here.volumes().posix(name)); }
ScriptedDesktop &desktop() { return here.desktop(); }

}  // namespace place

int surviveEveryFault(const Operation &operation) {
  SCOPED_TRACE(operation.name);
  files::lockPatience = 3;
  ScriptedDesktop::handOver = handOver;
  const int faults = Drive(operation).everyFault();
  here.leave();
  files::lockPatience = 5000;
  return faults;
}

}  // namespace korvel::faults
