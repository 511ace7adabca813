// SPDX-License-Identifier: MIT
// The edits of the writers through the interface, and the texts of both files by the writers'
// accounts, built without the library.
#include "tests/load/practice.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <signal.h>

#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <korvel/desktop.h>
#include <korvel/profile.h>
#include <korvel/tables.h>

namespace korvel::load {
namespace {

constexpr const char *kTable = "partage";
constexpr const char *kProfile = "Data:reglages";
constexpr const char *kTableFile = "partage.tab";
constexpr const char *kProfileFile = "reglages";
constexpr int kFillers = 2000;  // some blocks of writing
constexpr int kHeading = 3;     // lines before the writers' ones

// ---- What a target holds after so many rounds ----

// Texts of many lengths, none of them the same as the one before.
std::string textOf(Target target, int round) {
  static constexpr const char *kNames[] = {"colonne",
                                           "tampon",
                                           "cl\xE9",
                                           "passage",
                                           "section",
                                           ("n\xE9"
                                            "ant"),
                                           "titre"};
  return std::string(kNames[target]) + " " + std::to_string(round) +
         std::string(static_cast<std::size_t>(round % 40), '\xE8');
}

bool isThereAfter(int round) { return round % 2 == 1; }

std::string codeOf(int writer) {
  char code[8];
  std::snprintf(code, sizeof code, "%02d", writer);
  return code;
}

std::string keysOf(int writer) { return "poste " + codeOf(writer); }
std::string sectionOf(int writer) { return "liste " + codeOf(writer); }

// Up to six lines.
std::string sectionText(int round) {
  std::string text = "0=" + textOf(kSection, round);
  for (int n = 1; n <= round % 6; ++n) text += "\r\n" + std::to_string(n) + "=suite";
  return text;
}

std::string fillerCode(int n) { return "F" + std::to_string(n); }

std::string fillers() {
  std::string text;
  for (int n = 0; n < kFillers; ++n) text += fillerCode(n) + ",Libell\xE9 sans histoire\r\n";
  return text;
}

std::string tableText(const std::vector<Rounds> &rounds) {
  std::string text = textOf(kTitle, rounds[0][kTitle]) +
                     "\r\nVersion: " + std::to_string(rounds[0][kTitle]) + "\r\n#DEBUT\r\n";
  for (std::size_t writer = 0; writer < rounds.size(); ++writer) {
    text += codeOf(static_cast<int>(writer)) + "," + textOf(kColumn, rounds[writer][kColumn]) +
            "," + textOf(kFlushedColumn, rounds[writer][kFlushedColumn]) + "\r\n";
  }
  if (isThereAfter(rounds[0][kLine]))
    text +=
        "N\xE9"
        "ant,N\xE9"
        "ant\r\n";
  static const std::string kRest = fillers() + "#FIN\r\n";
  return text + kRest;
}

std::string profileText(const std::vector<Rounds> &rounds) {
  std::string text;
  for (std::size_t writer = 0; writer < rounds.size(); ++writer) {
    const int number = static_cast<int>(writer);
    text += "[" + keysOf(number) + "]\r\nchange=" + textOf(kKey, rounds[writer][kKey]) + "\r\n";
    if (isThereAfter(rounds[writer][kPassingKey]))
      text += "passe=" + textOf(kPassingKey, rounds[writer][kPassingKey]) + "\r\n";
    text += "[" + sectionOf(number) + "]\r\n" + sectionText(rounds[writer][kSection]) + "\r\n";
  }
  return text;
}

// ---- The folder ----

// Where syncing costs nothing, unless the environment names a place.
std::string placeForFolders() {
  if (const char *wanted = std::getenv("TMPDIR")) return wanted;
  return access("/dev/shm", W_OK | X_OK) == 0 ? "/dev/shm" : "/tmp";
}

std::string newFolder() {
  std::string name = placeForFolders() + "/korvel-load-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) {
    std::perror(name.c_str());
    std::exit(2);
  }
  std::filesystem::create_directory(name + "/Data");
  return name;
}

template <std::size_t Size>
void setText(char (&to)[Size], const std::string &text) {
  std::snprintf(to, Size, "%s", text.c_str());
}

void write(const std::string &path, const std::string &text) {
  std::ofstream(path, std::ios::binary) << text;
}

std::string read(const std::string &path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  std::string text(static_cast<std::size_t>(std::max<std::streamoff>(file.tellg(), 0)), '\0');
  file.seekg(0);
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  return text;
}

Account *sharedAccounts(int writers) {
  void *memory = mmap(nullptr, static_cast<std::size_t>(writers) * sizeof(Account),
                      PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    std::perror("mmap");
    std::exit(2);
  }
  auto *accounts = static_cast<Account *>(memory);
  for (int writer = 0; writer < writers; ++writer)
    (new (accounts + writer) Account{})->current = Account::kNone;
  return accounts;
}

// The first line that differs, from either side.
void showDifference(const char *what, const std::string &expected, const std::string &found) {
  if (expected == found) return;
  std::size_t line = 0;
  std::size_t at = 0;
  for (; at < expected.size() && at < found.size() && expected[at] == found[at]; ++at)
    if (expected[at] == '\n') line = at + 1;
  std::fprintf(stderr, "%s (%zu bytes, %zu expected) differs at byte %zu:\n  %s\nexpected:\n  %s\n",
               what, found.size(), expected.size(), at, found.substr(line, 80).c_str(),
               expected.substr(line, 80).c_str());
}

}  // namespace

int Account::answered() const {
  int all = 0;
  for (const std::atomic<int> &each : rounds) all += each;
  return all;
}

Practice::Practice(int writers)
    : writers_(writers), folder_(newFolder()), accounts_(sharedAccounts(writers)) {
  setText(szVolumes, folder_);
  setText(szDirTables, "Data");
  write(folder_ + "/Data/" + kTableFile, tableText(answered()));
  write(folder_ + "/Data/" + kProfileFile, profileText(answered()));
}

Practice::~Practice() {
  munmap(accounts_, static_cast<std::size_t>(writers_) * sizeof(Account));
  std::filesystem::remove_all(folder_);
}

std::vector<Rounds> Practice::answered() const {
  std::vector<Rounds> rounds(static_cast<std::size_t>(writers_));
  for (int writer = 0; writer < writers_; ++writer)
    for (std::size_t target = 0; target < kTargets; ++target)
      rounds[static_cast<std::size_t>(writer)][target] = accounts_[writer].rounds[target];
  return rounds;
}

std::vector<int> Practice::interrupted() const {
  std::vector<int> found;
  for (int writer = 0; writer < writers_; ++writer)
    if (accounts_[writer].current != Account::kNone) found.push_back(writer);
  return found;
}

// Tries every set of those edits that were going on.
bool Practice::settle() {
  const std::vector<int> killed = interrupted();
  const std::string table = read(folder_ + "/Data/" + kTableFile);
  const std::string profile = read(folder_ + "/Data/" + kProfileFile);
  for (unsigned made = 0; made < 1U << killed.size(); ++made) {
    std::vector<Rounds> rounds = answered();
    for (std::size_t n = 0; n < killed.size(); ++n) {
      const auto writer = static_cast<std::size_t>(killed[n]);
      const auto target = static_cast<std::size_t>(accounts_[writer].current);
      rounds[writer][target] += static_cast<int>(made >> n & 1U);
    }
    if (table != tableText(rounds) || profile != profileText(rounds)) continue;
    enter(rounds);
    return true;
  }
  return false;
}

void Practice::enter(const std::vector<Rounds> &rounds) {
  for (std::size_t writer = 0; writer < rounds.size(); ++writer) {
    for (std::size_t target = 0; target < kTargets; ++target)
      accounts_[writer].rounds[target] = rounds[writer][target];
    accounts_[writer].current = Account::kNone;
  }
}

bool Practice::isTidy() const {
  int files = 0;
  for (const auto &entry : std::filesystem::directory_iterator(folder_ + "/Data")) {
    const std::string name = entry.path().filename();
    if (name != kTableFile && name != kProfileFile) return false;
    ++files;
  }
  return files == 2;
}

void Practice::complain() const {
  for (const auto &entry : std::filesystem::directory_iterator(folder_ + "/Data"))
    std::fprintf(stderr, "there is %s\n", entry.path().filename().c_str());
  for (const int writer : interrupted())
    std::fprintf(stderr, "writer %d was editing target %d\n", writer,
                 accounts_[writer].current.load());
  showDifference("the table", tableText(answered()), read(folder_ + "/Data/" + kTableFile));
  showDifference("the profile", profileText(answered()), read(folder_ + "/Data/" + kProfileFile));
}

// ---- The edits ----

bool Writer::editSomething() {
  return edit(static_cast<Target>(random_() % (number_ == 0 ? kTargets : kLine)));
}

bool Writer::edit(Target target) {
  if (!isThere(target)) {
    std::fprintf(stderr, "writer %d: round %d of target %d is lost\n", number_,
                 account_.rounds[target].load(), target);
    return false;
  }
  account_.current = target;
  ++(make(target, account_.rounds[target] + 1) ? account_.rounds[target] : account_.refused);
  account_.current = Account::kNone;
  return true;
}

bool Writer::isThere(Target target) const {
  const int round = account_.rounds[target];
  const std::string code = codeOf(number_);
  char out[256] = "";
  switch (target) {
    case kColumn:
    case kFlushedColumn:
      ZRV_Libelle_NC(code.c_str(), 2, target == kColumn ? 1 : 2, kTable, out, sizeof out);
      return out == textOf(target, round);
    case kKey:
      GetPrivateProfileString(keysOf(number_).c_str(), "change", "", out, sizeof out, kProfile);
      return out == textOf(target, round);
    case kPassingKey:
      GetPrivateProfileString(keysOf(number_).c_str(), "passe", "", out, sizeof out, kProfile);
      return out == (isThereAfter(round) ? textOf(target, round) : "");
    case kSection:
      GetPrivateProfileString(sectionOf(number_).c_str(), "0", "", out, sizeof out, kProfile);
      return out == textOf(target, round);
    case kLine:
      ZRV_Libelle_NC_set_ligne(kHeading + practice_.writers() + 1);
      ZRV_Libelle_NC_idem_0("", 0, 0, kTable, out, sizeof out);
      return out == (isThereAfter(round) ? "N\xE9"
                                           "ant"
                                         : fillerCode(0));
    default:
      ZRV_Libelle_NC_set_ligne(1);
      ZRV_Libelle_NC_idem_0("", 0, 0, kTable, out, sizeof out);
      return out == textOf(target, round);
  }
}

// The line that is edited is the one that isThere() has found.
bool Writer::make(Target target, int round) const {
  const std::string code = codeOf(number_);
  const std::string text = textOf(target, round);
  switch (target) {
    case kColumn:
      return ZRV_Libelle_NC_idem_replace(code.c_str(), 2, 1, kTable, text.c_str()) == 1;
    case kFlushedColumn:
      return ZRV_Libelle_NC_set(code.c_str(), 2, 2, kTable, text.c_str()) == 1 &&
             ZRV_Libelle_NC_idem_flush(code.c_str(), 2, kTable) == 1;
    case kKey:
      return WritePrivateProfileString(keysOf(number_).c_str(), "change", text.c_str(), kProfile) ==
             1;
    case kPassingKey:
      return WritePrivateProfileString(keysOf(number_).c_str(), "passe",
                                       isThereAfter(round) ? text.c_str() : nullptr, kProfile) == 1;
    case kSection:
      return WritePrivateProfileSection(sectionOf(number_).c_str(), sectionText(round).c_str(),
                                        kProfile) == 1;
    case kLine:
      if (!isThereAfter(round)) return ZRV_Libelle_NC_idem_delete("", 0, kTable) == 1;
      ZRV_Libelle_NC_set_ligne(kHeading + practice_.writers());
      return ZRV_Libelle_NC_idem_insert("", 0, kTable, 2) == 1;
    default:
      return ZRV_Table_modify(kTable, kTable, std::to_string(round).c_str(), text.c_str()) == 1;
  }
}

// ---- The processes ----

pid_t startWriting(Practice &practice, int number, unsigned seed, Clock::time_point end) {
  const pid_t process = fork();
  if (process > 0) return process;
  if (process < 0) {
    std::perror("fork");
    std::exit(2);
  }
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  practice.account(number).hasBegun = true;
  Writer writer(practice, number, seed);
  while (Clock::now() < end)
    if (!writer.editSomething()) _exit(1);
  _exit(0);
}

}  // namespace korvel::load
