// SPDX-License-Identifier: MIT
// Profiles beside the system calls that they need and beside other readers of such files: the
// settings of Qt, the key files of GLib, inih. Each of them parses the file again for every call,
// as the library does; QSettings, which would keep what it parsed, is given a file whose time has
// changed. Those that write sync what they wrote, as the library does.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <ini.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QSettings>
#include <QString>
#include <glib.h>

#include <korvel/desktop.h>
#include <korvel/profile.h>

#include "bench/support/ratios.h"

namespace {

using benchmark::State;
using korvel::bench::goal;

constexpr int kSmall = 200;
constexpr int kLarge = 20000;
constexpr char kSection[] = "Main";
constexpr char kMissing[] = "key99999";

std::string numbered(int key) {
  char name[16];
  std::snprintf(name, sizeof name, "key%05d", key);
  return name;
}

// A profile of one section in a folder of its own, removed at the end.
class Profile {
 public:
  explicit Profile(int keys, bool inMemory = false) : middle_(numbered(keys / 2)) {
    const std::filesystem::path place =
        inMemory ? std::filesystem::path("/dev/shm") : std::filesystem::temp_directory_path();
    std::string folder = (place / "korvel-bench-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    root_ = folder;
    std::snprintf(szVolumes, sizeof szVolumes, "%s", folder.c_str());
    std::filesystem::create_directory(root_ + "/Data");
    bytes_ = "[Main]\r\n";
    for (int i = 0; i < keys; ++i) bytes_ += numbered(i) + "=value" + std::to_string(i) + "\r\n";
    std::ofstream(path(), std::ios::binary) << bytes_;
    buffer_.resize(bytes_.size() + 1);
  }
  ~Profile() { std::filesystem::remove_all(root_); }
  Profile(const Profile &) = delete;
  Profile &operator=(const Profile &) = delete;

  std::string path() const { return root_ + "/Data/profile.ini"; }
  const char *colonPath() const { return "Data:profile.ini"; }
  const std::string &bytes() const { return bytes_; }
  const char *middleKey() const { return middle_.c_str(); }
  std::vector<char> &buffer() { return buffer_; }

  // Gives the file another time, so that nobody takes it for the one it was.
  void touch() {
    const timespec times[2] = {{++second_, 0}, {second_, 0}};
    utimensat(AT_FDCWD, path().c_str(), times, 0);
  }

 private:
  std::string root_;
  std::string middle_;
  std::string bytes_;
  std::vector<char> buffer_;
  time_t second_ = 1'000'000'000;
};

// ---- Reading one key ----

const char *wantedKey(const State &state, const Profile &profile) {
  return state.range(1) != 0 ? profile.middleKey() : kMissing;
}

void readByKorvel(State &state) {
  Profile profile(static_cast<int>(state.range(0)));
  const char *key = wantedKey(state, profile);
  char value[256];
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        GetPrivateProfileString(kSection, key, "", value, sizeof value, profile.colonPath()));
  }
}

std::size_t readWhole(const std::string &path, std::vector<char> &buffer) {
  const int file = open(path.c_str(), O_RDONLY);
  const ssize_t got = read(file, buffer.data(), buffer.size());
  close(file);
  return got < 0 ? 0 : static_cast<std::size_t>(got);
}

void readByOpenReadClose(State &state) {
  Profile profile(static_cast<int>(state.range(0)));
  const std::string path = profile.path();
  for (auto _ : state) benchmark::DoNotOptimize(readWhole(path, profile.buffer()));
}

void readByReadAndMemchr(State &state) {
  Profile profile(static_cast<int>(state.range(0)));
  const std::string path = profile.path();
  for (auto _ : state) {
    const std::size_t size = readWhole(path, profile.buffer());
    benchmark::DoNotOptimize(std::memchr(profile.buffer().data(), '\x01', size));
  }
}

void readByQSettings(State &state) {
  Profile profile(static_cast<int>(state.range(0)));
  const QString path = QString::fromStdString(profile.path());
  const QString key = QString("Main/") + wantedKey(state, profile);
  for (auto _ : state) {
    profile.touch();
    benchmark::DoNotOptimize(QSettings(path, QSettings::IniFormat).value(key));
  }
}

void readByGKeyFile(State &state) {
  Profile profile(static_cast<int>(state.range(0)));
  const std::string path = profile.path();
  const char *key = wantedKey(state, profile);
  for (auto _ : state) {
    GKeyFile *file = g_key_file_new();
    g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr);
    g_free(g_key_file_get_value(file, kSection, key, nullptr));
    g_key_file_free(file);
  }
}

struct Wanted {
  const char *key;
  std::string value;
};

int keepWanted(void *wanted, const char *section, const char *name, const char *value) {
  Wanted &key = *static_cast<Wanted *>(wanted);
  if (std::strcmp(section, kSection) == 0 && std::strcmp(name, key.key) == 0) key.value = value;
  return 1;
}

void readByInih(State &state) {
  Profile profile(static_cast<int>(state.range(0)));
  const std::string path = profile.path();
  for (auto _ : state) {
    Wanted wanted{wantedKey(state, profile), ""};
    ini_parse(path.c_str(), keepWanted, &wanted);
    benchmark::DoNotOptimize(wanted.value.data());
  }
}

// ---- Writing one key ----

// Two values in turn: every write changes the file.
const char *nextValue() {
  static bool odd = false;
  odd = !odd;
  return odd ? "odd" : "even";
}

void writeByKorvel(State &state) {
  Profile profile(static_cast<int>(state.range(0)), state.range(1) != 0);
  for (auto _ : state) {
    const int result =
        WritePrivateProfileString(kSection, profile.middleKey(), nextValue(), profile.colonPath());
    if (result != 1) state.SkipWithError("the profile was not written");
  }
}

// `folderToo`: the new name is made to outlast a loss of power, as the library does.
void writeAndRename(State &state, bool folderToo) {
  Profile profile(static_cast<int>(state.range(0)), state.range(1) != 0);
  const std::string path = profile.path();
  const std::string temporary = path + ".new";
  const std::string &bytes = profile.bytes();
  const int folder = open(std::filesystem::path(path).parent_path().c_str(), O_RDONLY);
  for (auto _ : state) {
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const bool written =
        write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    if (!written || fsync(file) != 0) state.SkipWithError("the file was not written");
    close(file);
    std::rename(temporary.c_str(), path.c_str());
    if (folderToo) fsync(folder);
  }
  close(folder);
}

void writeByWriteSyncRename(State &state) { writeAndRename(state, false); }
void writeByWriteSyncRenameSync(State &state) { writeAndRename(state, true); }

void writeByQSettings(State &state) {
  Profile profile(static_cast<int>(state.range(0)), state.range(1) != 0);
  const QString path = QString::fromStdString(profile.path());
  const QString key = QString("Main/") + profile.middleKey();
  for (auto _ : state) {
    profile.touch();
    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(key, nextValue());
    settings.sync();
  }
}

void writeByGKeyFile(State &state) {
  Profile profile(static_cast<int>(state.range(0)), state.range(1) != 0);
  const std::string path = profile.path();
  for (auto _ : state) {
    GKeyFile *file = g_key_file_new();
    g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr);
    g_key_file_set_value(file, kSection, profile.middleKey(), nextValue());
    g_key_file_save_to_file(file, path.c_str(), nullptr);
    g_key_file_free(file);
  }
}

// ---- Workloads ----

using Body = void (*)(State &);

void registerRead(const char *who, Body body, int keys, bool hit) {
  const std::string name = std::string("read_key/") + who;
  benchmark::RegisterBenchmark(name.c_str(), body)
      ->Args({keys, hit ? 1 : 0})
      ->ArgNames({"keys", "hit"});
}

// A disk makes everyone wait; in memory what is left is the work. Real time, for the waiting.
void registerWrite(const char *who, Body body, int keys, bool inMemory) {
  const std::string name = std::string("write_key/") + who;
  benchmark::RegisterBenchmark(name.c_str(), body)
      ->Args({keys, inMemory ? 1 : 0})
      ->ArgNames({"keys", "memory"})
      ->UseRealTime();
}

std::string readName(int keys, bool hit) {
  return "read_key/keys:" + std::to_string(keys) + "/hit:" + (hit ? "1" : "0");
}

void registerAll() {
  for (const auto &[keys, hit] : {std::pair(kSmall, true), {kLarge, true}, {kLarge, false}}) {
    const double ofBestPeer = keys == kSmall ? 0.3 : 0.1;
    const char *limit = keys == kSmall ? "open+read+close" : "read+memchr";
    registerRead("korvel", readByKorvel, keys, hit);
    registerRead(limit, keys == kSmall ? readByOpenReadClose : readByReadAndMemchr, keys, hit);
    registerRead("QSettings", readByQSettings, keys, hit);
    registerRead("GKeyFile", readByGKeyFile, keys, hit);
    registerRead("inih", readByInih, keys, hit);
    goal(readName(keys, hit), limit, keys == kSmall ? 1.7 : 1.6);
    for (const char *peer : {"QSettings", "GKeyFile", "inih"})
      goal(readName(keys, hit), peer, ofBestPeer);
  }
  for (const auto &[keys, inMemory] :
       {std::pair(kSmall, false), {kLarge, false}, {kSmall, true}, {kLarge, true}}) {
    registerWrite("korvel", writeByKorvel, keys, inMemory);
    registerWrite("write+fsync+rename", writeByWriteSyncRename, keys, inMemory);
    registerWrite("the same+fsync folder", writeByWriteSyncRenameSync, keys, inMemory);
    registerWrite("QSettings", writeByQSettings, keys, inMemory);
    registerWrite("GKeyFile", writeByGKeyFile, keys, inMemory);
    const std::string name =
        "write_key/keys:" + std::to_string(keys) + "/memory:" + (inMemory ? "1" : "0");
    goal(name, "the same+fsync folder", 1.3);
    for (const char *peer : {"QSettings", "GKeyFile"}) goal(name, peer, 0.2);
  }
}

}  // namespace

int main(int argc, char **argv) {
  registerAll();
  return korvel::bench::runAndPrintRatios(argc, argv);
}
