// SPDX-License-Identifier: MIT
// The exported functions on files: values, defaults, rewritten files, memory files in use.
#include <algorithm>
#include <array>
#include <climits>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvel/profile.h>

#include "tests/files/processes.h"
#include "tests/files/volumes.h"
#include "tests/profile/literal_profile.h"
#include "tests/profile/random_profiles.h"
#include "tests/support/poisoned_buffer.h"
#include "tests/support/sanitizer.h"

namespace {

using korvel::test::content;
using korvel::test::entries;
using korvel::test::inChildOfAUser;
using korvel::test::modeOf;
using korvel::test::PoisonedBuffer;
using korvel::test::RandomProfiles;
using korvel::test::Volumes;

constexpr char kPath[] = "Data:p.ini";

std::string valueIn(const char *section, const char *key, const char *path = kPath,
                    const char *defaultText = "(default)") {
  PoisonedBuffer buffer(2048);
  const int length =
      GetPrivateProfileString(section, key, defaultText, buffer.data(), buffer.capacity(), path);
  EXPECT_EQ(buffer.text().size(), static_cast<std::size_t>(length));
  EXPECT_TRUE(buffer.guardsIntact());
  return std::string(buffer.text());
}

TEST(ReadString, FindsTheKeyOrGivesTheDefault) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n y=2\r\nz= 3\r\n[B]\r\nlong=0123456789\r\n");
  EXPECT_EQ(valueIn("A", "x"), "1");
  EXPECT_EQ(valueIn("A", "X"), "(default)");
  EXPECT_EQ(valueIn("a", "x"), "(default)");
  EXPECT_EQ(valueIn("A", "y"), "(default)");
  EXPECT_EQ(valueIn("A", "z"), " 3");
  EXPECT_EQ(valueIn("B", "long"), "0123456789");
  EXPECT_EQ(valueIn("A", "long"), "(default)");
}

TEST(ReadString, CutsValueAndDefaultToTheCapacity) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=abcd\r\n");
  for (const auto &[key, text] : {std::pair("x", "abcd"), std::pair("none", "dflt")}) {
    for (int capacity = 1; capacity <= 7; ++capacity) {
      PoisonedBuffer buffer(static_cast<std::size_t>(capacity));
      const auto kept = static_cast<std::size_t>(std::min(capacity - 1, 4));
      EXPECT_EQ(GetPrivateProfileString("A", key, "dflt", buffer.data(), capacity, kPath),
                static_cast<int>(kept));
      EXPECT_EQ(buffer.text(), std::string_view(text).substr(0, kept)) << capacity;
      EXPECT_TRUE(buffer.guardsIntact()) << capacity;
    }
    for (const int capacity : {0, -1, INT_MIN}) {
      PoisonedBuffer buffer(4);
      EXPECT_EQ(GetPrivateProfileString("A", key, "dflt", buffer.data(), capacity, kPath), 0);
      EXPECT_TRUE(buffer.untouchedFrom(0)) << capacity;
    }
  }
  EXPECT_EQ(GetPrivateProfileString("A", "x", "dflt", nullptr, 5, kPath), 0);
}

TEST(ReadString, CutsALongValueAtTheCapacityOnly) {
  Volumes volumes;
  const std::string value(3000, 'v');
  ASSERT_EQ(WritePrivateProfileString("A", "x", value.c_str(), kPath), 1);
  for (const int capacity : {1021, 1022, 1023, 1024, 1025, 3000, 3001, 4096}) {
    PoisonedBuffer buffer(static_cast<std::size_t>(capacity));
    const int kept = std::min(capacity - 1, 3000);
    EXPECT_EQ(GetPrivateProfileString("A", "x", "dflt", buffer.data(), capacity, kPath), kept);
    EXPECT_EQ(buffer.text(), value.substr(0, static_cast<std::size_t>(kept))) << capacity;
    EXPECT_TRUE(buffer.guardsIntact()) << capacity;
  }
}

// Reading a value in order to write it again loses nothing.
TEST(ReadString, GivesWholeWhatWasWrittenAlsoAfterLaterRewritings) {
  Volumes volumes;
  for (const std::size_t length : {1021U, 1022U, 5000U, 16381U}) {
    const std::string value = std::string(length - 1, 'v') + "\xE9";
    std::string read(20000, '\0');
    for (int round = 0; round < 3; ++round) {
      ASSERT_EQ(WritePrivateProfileString("A", "x", value.c_str(), kPath), 1);
      ASSERT_EQ(WritePrivateProfileString("A", "y", std::to_string(round).c_str(), kPath), 1);
      const int got = GetPrivateProfileString("A", "x", "", read.data(), 20000, kPath);
      EXPECT_EQ(read.substr(0, static_cast<std::size_t>(got)), value) << round;
      EXPECT_EQ(WritePrivateProfileString("A", "x", read.c_str(), kPath), 1);
    }
    EXPECT_EQ(content(volumes.posix("p.ini")), "[A]\r\nx=" + value + "\r\ny=2\r\n");
  }
}

TEST(ReadString, ReplacesALongerDefaultByAShortValue) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\nempty=\r\n");
  PoisonedBuffer buffer(16);
  EXPECT_EQ(GetPrivateProfileString("A", "x", "a default", buffer.data(), 16, kPath), 1);
  EXPECT_EQ(buffer.text(), "1");
  EXPECT_EQ(GetPrivateProfileString("A", "empty", "a default", buffer.data(), 16, kPath), 0);
  EXPECT_EQ(buffer.text(), "");
}

TEST(ReadString, TakesItsOwnBufferAsDefault) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  PoisonedBuffer buffer(16, "kept");
  EXPECT_EQ(GetPrivateProfileString("A", "y", buffer.data(), buffer.data(), 16, kPath), 4);
  EXPECT_EQ(buffer.text(), "kept");
  EXPECT_EQ(GetPrivateProfileString("A", "y", buffer.data() + 1, buffer.data(), 16, kPath), 3);
  EXPECT_EQ(buffer.text(), "ept");
}

TEST(ReadString, AnswersWhatItCannotReadByTheDefault) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  EXPECT_EQ(valueIn("A", "x", "Data:missing.ini"), "(default)");
  EXPECT_EQ(valueIn("A", "x", "Data"), "(default)");
  EXPECT_EQ(valueIn("A", "x", ""), "(default)");
  EXPECT_EQ(valueIn("A", "x", nullptr), "(default)");
  EXPECT_EQ(valueIn("A", "x", (std::string("Data:") + std::string(1000, 'p')).c_str()),
            "(default)");
  EXPECT_EQ(valueIn(nullptr, "x"), "(default)");
  EXPECT_EQ(valueIn("A", nullptr), "(default)");
  EXPECT_EQ(valueIn("A", "y", kPath, nullptr), "");
  // A pipe is not a profile, and opening it does not wait for a writer.
  ASSERT_EQ(mkfifo(volumes.posix("pipe").c_str(), 0666), 0);
  EXPECT_EQ(valueIn("A", "x", "Data:pipe"), "(default)");
}

// The colon path that leads from the root to a POSIX path.
std::string fromRoot(std::string posix) {
  std::replace(posix.begin(), posix.end(), '/', ':');
  return posix;
}

TEST(ReadString, KnowsAVolumeThatIsAFile) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  std::filesystem::rename(volumes.folder(), volumes.root() + "/Other");
  std::ofstream(volumes.root() + "/Data") << "a file";
  EXPECT_EQ(valueIn("A", "x"), "(default)");
  EXPECT_EQ(valueIn("A", "x", ("Data" + fromRoot(volumes.root() + "/Other/p.ini")).c_str()), "1");
  EXPECT_EQ(valueIn("A", "x", "Other:p.ini"), "1");
  std::filesystem::remove(volumes.root() + "/Data");
}

TEST(ReadString, KnowsVolumesWithASlashInTheirName) {
  Volumes volumes;
  const std::string folder = volumes.root() + "/a:b";
  std::filesystem::create_directory(folder);
  std::ofstream(folder + "/p.ini") << "[A]\r\nx=1\r\n";
  EXPECT_EQ(valueIn("A", "x", "a/b:p.ini"), "1");
  // Such a volume is looked for under its name as written.
  std::filesystem::create_directory(volumes.root() + "/a");
  std::ofstream(volumes.root() + "/a/b") << "a file";
  EXPECT_EQ(valueIn("A", "x", "a/b:p.ini"), "(default)");
}

TEST(ReadString, ReadsFilesOfEverySizeAroundABlock) {
  Volumes volumes;
  for (const std::size_t size : {4094U, 4095U, 4096U, 4097U, 8192U, 100000U}) {
    std::string text = "[A]\r\npad=";
    text.resize(size - 7, 'p');
    text += "\r\nx=1\r\n";
    volumes.file("p.ini", text.substr(0, size));
    EXPECT_EQ(valueIn("A", "x").substr(0, 1), "1") << size;
  }
}

TEST(ReadString, EndsItsTextAtANulOfTheFile) {
  Volumes volumes;
  volumes.file("p.ini", std::string_view("[A]\r\nx=a\0b\r\n", 12));
  char buffer[8];
  EXPECT_EQ(GetPrivateProfileString("A", "x", "", buffer, 8, kPath), 1);
  EXPECT_EQ(std::string_view(buffer, 4), std::string_view("a\0b\0", 4));
}

TEST(ReadInt, TakesWhatTheIntegerReaderTakes) {
  Volumes volumes;
  const struct {
    std::string_view value;
    int defaultValue;
    int result;
  } kRows[] = {
      {"5", 7, 5},
      {" 12 ", 7, 12},
      {"+12", 7, 12},
      {"0", 7, 0},
      {"2147483647", 7, INT_MAX},
      // A value that is not an integer, too large or negative gives 0, not the default.
      {"-3", 7, 0},
      {"12abc", 7, 0},
      {"", 7, 0},
      {"-", 7, 0},
      {"1 2", 7, 0},
      {"2147483648", 7, 0},
      {"99999999999", 7, 0},
      // Eleven characters are read.
      {"00000000012", 7, 12},
      {"000000000012", 7, 1},
      {"          12", 7, 1},
      {"           12", 7, 0},
  };
  for (const auto &row : kRows) {
    volumes.file("p.ini", "[A]\r\nx=" + std::string(row.value) + "\r\n");
    EXPECT_EQ(GetPrivateProfileInt("A", "x", row.defaultValue, kPath), row.result) << row.value;
  }
}

TEST(ReadInt, GivesTheDefaultOfAMissingKey) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  for (const int value : {0, 1, 42, 32767, 32768, 1234567890, INT_MAX})
    EXPECT_EQ(GetPrivateProfileInt("A", "y", value, kPath), value);
  // A negative default gives 0.
  for (const int value : {-1, -32768, INT_MIN + 1, INT_MIN})
    EXPECT_EQ(GetPrivateProfileInt("A", "y", value, kPath), 0);
  EXPECT_EQ(GetPrivateProfileInt("A", "x", 42, "Data:missing.ini"), 42);
  EXPECT_EQ(GetPrivateProfileInt(nullptr, "x", 42, kPath), 42);
  EXPECT_EQ(GetPrivateProfileInt("A", nullptr, 42, kPath), 42);
  EXPECT_EQ(GetPrivateProfileInt("A", "x", 42, nullptr), 42);
}

TEST(WriteString, ChangesTheFile) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  const std::string file = volumes.posix("p.ini");
  EXPECT_EQ(WritePrivateProfileString("A", "y", "2", kPath), 1);
  EXPECT_EQ(content(file), "[A]\r\nx=1\r\ny=2\r\n");
  EXPECT_EQ(WritePrivateProfileString("B", "z", "3", kPath), 1);
  EXPECT_EQ(content(file), "[A]\r\nx=1\r\ny=2\r\n\r\n[B]\r\nz=3\r\n");
  EXPECT_EQ(WritePrivateProfileString("A", "x", nullptr, kPath), 1);
  EXPECT_EQ(content(file), "[A]\r\ny=2\r\n\r\n[B]\r\nz=3\r\n");
  // No key: the section is emptied.
  EXPECT_EQ(WritePrivateProfileString("A", nullptr, "ignored", kPath), 1);
  EXPECT_EQ(content(file), "[A]\r\n\r\n[B]\r\nz=3\r\n");
  EXPECT_EQ(WritePrivateProfileSection("B", "a=1\r\nb=2", kPath), 1);
  EXPECT_EQ(content(file), "[A]\r\n\r\n[B]\r\na=1\r\nb=2\r\n");
  EXPECT_EQ(WritePrivateProfileSection("B", nullptr, kPath), 1);
  EXPECT_EQ(content(file), "[A]\r\n\r\n[B]\r\n");
  EXPECT_EQ(entries(volumes.folder()), std::vector<std::string>{"p.ini"});
}

TEST(WriteString, NeedsASection) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  EXPECT_EQ(WritePrivateProfileString(nullptr, "x", "2", kPath), 0);
  EXPECT_EQ(WritePrivateProfileString(nullptr, nullptr, "2", kPath), 0);
  EXPECT_EQ(WritePrivateProfileSection(nullptr, "x=2", kPath), 0);
  EXPECT_EQ(WritePrivateProfileString(nullptr, "x", "2", "Data:new.ini"), 0);
  EXPECT_EQ(content(volumes.posix("p.ini")), "[A]\r\nx=1\r\n");
  EXPECT_EQ(entries(volumes.folder()), std::vector<std::string>{"p.ini"});
}

TEST(WriteString, CreatesAMissingFileForAll) {
  Volumes volumes;
  const mode_t mask = umask(077);
  EXPECT_EQ(WritePrivateProfileString("A", "x", "1", "Data:key.ini"), 1);
  EXPECT_EQ(WritePrivateProfileSection("A", "x=1", "Data:section.ini"), 1);
  // Without a value there is nothing to write, but the file is there.
  EXPECT_EQ(WritePrivateProfileString("A", "x", nullptr, "Data:empty.ini"), 1);
  EXPECT_EQ(WritePrivateProfileSection("A", nullptr, "Data:nothing.ini"), 1);
  EXPECT_EQ(umask(mask), 077u);
  EXPECT_EQ(content(volumes.posix("key.ini")), "[A]\r\nx=1\r\n");
  EXPECT_EQ(content(volumes.posix("section.ini")), "[A]\r\nx=1\r\n");
  EXPECT_EQ(content(volumes.posix("empty.ini")), "");
  EXPECT_EQ(entries(volumes.folder()),
            (std::vector<std::string>{"empty.ini", "key.ini", "nothing.ini", "section.ini"}));
  for (const std::string &name : entries(volumes.folder()))
    EXPECT_EQ(modeOf(volumes.posix(name)), 0777u) << name;
}

TEST(WriteString, FailsWhereNoFileCanBeCreated) {
  Volumes volumes;
  EXPECT_EQ(WritePrivateProfileString("A", "x", "1", "Data:missing:p.ini"), 0);
  EXPECT_EQ(WritePrivateProfileString("A", "x", "1", "Data"), 0);
  EXPECT_EQ(WritePrivateProfileString("A", "x", "1", ""), 0);
  EXPECT_EQ(WritePrivateProfileString("A", "x", "1", nullptr), 0);
  EXPECT_EQ(WritePrivateProfileSection("A", "x=1", "Data:missing:p.ini"), 0);
  EXPECT_EQ(entries(volumes.folder()), std::vector<std::string>{});
}

TEST(WriteString, CountsWhatCannotBeReadAsDone) {
  Volumes volumes;
  // Kept: what cannot be read counts as done.
  ASSERT_EQ(mkfifo(volumes.posix("pipe").c_str(), 0666), 0);
  EXPECT_EQ(WritePrivateProfileString("A", "x", "1", "Data:pipe"), 1);
  EXPECT_EQ(entries(volumes.folder()), std::vector<std::string>{"pipe"});
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  chmod(volumes.root().c_str(), 0777);
  chmod(volumes.folder().c_str(), 0777);
  chmod(volumes.posix("p.ini").c_str(), 0222);
  EXPECT_EQ(inChildOfAUser([] { return WritePrivateProfileString("A", "x", "2", kPath); }), 1);
  chmod(volumes.posix("p.ini").c_str(), 0666);
  EXPECT_EQ(content(volumes.posix("p.ini")), "[A]\r\nx=1\r\n");
}

TEST(WriteString, CreatesTheTargetOfALinkThatLeadsToNothing) {
  Volumes volumes;
  std::filesystem::create_symlink("target.ini", volumes.posix("one"));
  std::filesystem::create_symlink(volumes.posix("one"), volumes.posix("two"));
  EXPECT_EQ(WritePrivateProfileString("A", "x", "1", "Data:two"), 1);
  EXPECT_EQ(content(volumes.posix("target.ini")), "[A]\r\nx=1\r\n");
  EXPECT_EQ(modeOf(volumes.posix("target.ini")), 0777u);
  EXPECT_EQ(WritePrivateProfileSection("B", "y=2", "Data:one"), 1);
  EXPECT_EQ(content(volumes.posix("target.ini")), "[A]\r\nx=1\r\n\r\n[B]\r\ny=2\r\n");
  EXPECT_TRUE(std::filesystem::is_symlink(volumes.posix("two")));
  EXPECT_EQ(entries(volumes.folder()), (std::vector<std::string>{"one", "target.ini", "two"}));
}

TEST(WriteString, FailsBehindALinkWhereNoFileCanBeCreated) {
  Volumes volumes;
  std::filesystem::create_symlink("missing/p.ini", volumes.posix("away"));
  std::filesystem::create_symlink("loop2", volumes.posix("loop1"));
  std::filesystem::create_symlink("loop1", volumes.posix("loop2"));
  for (const char *path : {"Data:away", "Data:loop1", "Data:loop2", "Data:loop1:p.ini"}) {
    EXPECT_EQ(WritePrivateProfileString("A", "x", "1", path), 0) << path;
    EXPECT_EQ(WritePrivateProfileSection("A", "x=1", path), 0) << path;
  }
  EXPECT_EQ(entries(volumes.folder()), (std::vector<std::string>{"away", "loop1", "loop2"}));
}

// Many small pieces, and pieces of every size around the limit of what is gathered.
TEST(WriteString, WritesLargeFilesWhole) {
  Volumes volumes;
  std::string small = "[A]\r";
  for (int i = 0; i < 20000; ++i) small += "key" + std::to_string(i) + "=\n" + "v\r";
  const std::string large = "[A]\r\nx=" + std::string(16000, 'v') + "\r\n";
  for (const std::string &old : {small, large + small, small + large + large}) {
    volumes.file("p.ini", old);
    EXPECT_EQ(WritePrivateProfileString("A", "key7", "new", kPath), 1);
    EXPECT_EQ(content(volumes.posix("p.ini")),
              korvel::test::literalWriteKey(old, "A", "key7", "new"));
  }
  for (std::size_t size = 16360; size < 16400; ++size) {
    volumes.file("p.ini", "[A]\r\nx=1\r\n");
    const std::string value(size, 'v');
    EXPECT_EQ(WritePrivateProfileString("A", "x", value.c_str(), kPath), 1);
    EXPECT_EQ(content(volumes.posix("p.ini")), "[A]\r\nx=" + value + "\r\n");
  }
}

TEST(WriteString, KeepsALinkAndTheModeOfItsFile) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  chmod(volumes.posix("p.ini").c_str(), 0640);
  std::filesystem::create_symlink("p.ini", volumes.posix("link.ini"));
  EXPECT_EQ(WritePrivateProfileString("A", "x", "2", "Data:link.ini"), 1);
  EXPECT_TRUE(std::filesystem::is_symlink(volumes.posix("link.ini")));
  EXPECT_EQ(content(volumes.posix("p.ini")), "[A]\r\nx=2\r\n");
  EXPECT_EQ(modeOf(volumes.posix("p.ini")), 0640u);
}

TEST(MemoryFiles, AreLeftAsTheyWere) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  valueIn("A", "x");
  WritePrivateProfileString("A", "x", "2", kPath);
  EXPECT_EQ(DATA_MFIL_ID, -1);
  const int mine = MFil_Open("", 0, 0);
  MFil_Write(mine, "mine", 4);
  valueIn("A", "x");
  WritePrivateProfileString("A", "x", "3", kPath);
  EXPECT_EQ(DATA_MFIL_ID, 0);
  EXPECT_EQ(std::string_view(MFil_LockPtr(mine, 0), 4), "mine");
  for (int handle = 1; handle < 5; ++handle) EXPECT_EQ(DATA_MFIL_TAB[handle].mode, -1) << handle;
}

TEST(MemoryFiles, AreNeededToReadAndToWrite) {
  Volumes volumes;
  volumes.file("p.ini", "[A]\r\nx=1\r\n");
  for (int handle = 0; handle < 5; ++handle) ASSERT_EQ(MFil_Open("", 0, 0), handle);
  // None is free.
  EXPECT_EQ(valueIn("A", "x"), "(default)");
  EXPECT_EQ(GetPrivateProfileInt("A", "x", 9, kPath), 9);
  // Kept: a lack of memory files counts as done. A missing file is there afterwards, and empty.
  EXPECT_EQ(WritePrivateProfileString("A", "x", "2", kPath), 1);
  EXPECT_EQ(WritePrivateProfileSection("A", "x=2", kPath), 1);
  EXPECT_EQ(WritePrivateProfileString("A", "x", "2", "Data:new.ini"), 1);
  EXPECT_EQ(content(volumes.posix("p.ini")), "[A]\r\nx=1\r\n");
  EXPECT_EQ(entries(volumes.folder()), (std::vector<std::string>{"new.ini", "p.ini"}));
  EXPECT_EQ(content(volumes.posix("new.ini")), "");
  EXPECT_EQ(WritePrivateProfileString("A", "x", "2", "Data:missing:new.ini"), 0);
  EXPECT_EQ(DATA_MFIL_ID, 4);
  // One is free: enough to read, too little to write.
  MFil_Close(2);
  EXPECT_EQ(valueIn("A", "x"), "1");
  EXPECT_EQ(WritePrivateProfileString("A", "x", "2", kPath), 0);
  EXPECT_EQ(content(volumes.posix("p.ini")), "[A]\r\nx=1\r\n");
  EXPECT_EQ(DATA_MFIL_ID, 4);
  EXPECT_EQ(DATA_MFIL_TAB[2].mode, -1);
  // Two are free. The one that is opened second is closed first.
  MFil_Close(4);
  EXPECT_EQ(DATA_MFIL_ID, 3);
  EXPECT_EQ(WritePrivateProfileString("A", "x", "2", kPath), 1);
  EXPECT_EQ(content(volumes.posix("p.ini")), "[A]\r\nx=2\r\n");
}

// A model of the handles of memory files that are opened and closed one by one.
class LiteralHandles {
 public:
  LiteralHandles() {
    for (std::size_t i = 0; i < used.size(); ++i) used[i] = DATA_MFIL_TAB[i].mode != -1;
  }
  int open() {
    if (highest < 4) {
      used[static_cast<std::size_t>(++highest)] = true;
      return highest;
    }
    for (int handle = 0; handle < 5; ++handle) {
      if (used[static_cast<std::size_t>(handle)]) continue;
      used[static_cast<std::size_t>(handle)] = true;
      return handle;
    }
    return -1;
  }
  void close(int handle) {
    used[static_cast<std::size_t>(handle)] = false;
    if (handle == highest) --highest;
  }
  void expectTheSame() const {
    ASSERT_EQ(DATA_MFIL_ID, highest);
    for (std::size_t i = 0; i < used.size(); ++i)
      ASSERT_EQ(DATA_MFIL_TAB[i].mode, used[i] ? 2 : -1) << i;
  }

  std::array<bool, 5> used;
  int highest = DATA_MFIL_ID;
};

// Calls in random order on a few files, memory files coming and going, against the literal rules.
class RandomCalls : public testing::Test {
 protected:
  static constexpr std::array kPaths = {"Data:a", "Data:b", "Data:c"};

  std::string &file() { return files_[which_]; }
  const char *path() const { return kPaths[which_]; }
  std::string posix() const { return volumes_.posix(path() + 5); }

  void pickFile() { which_ = random_.below(kPaths.size()); }
  void newContent() {
    files_[which_] = random_.file();
    volumes_.file(path() + 5, files_[which_]);
  }
  void moveAMemoryFile() {
    const int handle = static_cast<int>(random_.below(5));
    if (random_.oneIn(3)) {
      MFil_Open("", 0, 0);
    } else {
      MFil_Close(handle);
    }
  }
  void readString() {
    LiteralHandles handles;
    const std::string section = random_.section();
    const std::string key = random_.key();
    const std::string defaultText = random_.oneIn(2) ? "default" : random_.value();
    const int capacity = random_.oneIn(3) ? static_cast<int>(random_.below(12)) - 1 : 1100;
    std::optional<std::string> value;
    if (const int handle = handles.open(); handle >= 0) {
      value = korvel::test::literalRead(file(), section.c_str(), key.c_str());
      handles.close(handle);
    }
    std::string expected = value.value_or(defaultText);
    expected.resize(std::min(expected.size(), static_cast<std::size_t>(std::max(capacity - 1, 0))));
    expected.resize(std::min(expected.size(), std::string_view(expected).find('\0')));
    PoisonedBuffer buffer(static_cast<std::size_t>(std::max(capacity, 0)));
    if (capacity < 1) handles = LiteralHandles();
    ASSERT_EQ(GetPrivateProfileString(section.c_str(), key.c_str(), defaultText.c_str(),
                                      buffer.data(), capacity, path()),
              static_cast<int>(expected.size()))
        << testing::PrintToString(file()) << section << " / " << key;
    ASSERT_TRUE(capacity < 1 || buffer.text() == expected) << buffer.text() << expected;
    ASSERT_TRUE(buffer.guardsIntact());
    handles.expectTheSame();
  }
  void write(bool wholeSection) {
    LiteralHandles handles;
    const std::string section = random_.section();
    const std::string key = random_.key();
    const std::optional<std::string> value =
        random_.oneIn(3) ? std::nullopt : std::optional(random_.value());
    int expected = 1;
    if (const int output = handles.open(); output >= 0) {
      if (const int input = handles.open(); input >= 0) {
        file() = wholeSection ? korvel::test::literalWriteSection(file(), section, value)
                              : korvel::test::literalWriteKey(file(), section, key, value);
        handles.close(input);
      } else {
        expected = 0;
      }
      handles.close(output);
    }
    const char *text = value ? value->c_str() : nullptr;
    const int result = wholeSection
                           ? WritePrivateProfileSection(section.c_str(), text, path())
                           : WritePrivateProfileString(section.c_str(), key.c_str(), text, path());
    ASSERT_EQ(result, expected);
    ASSERT_EQ(content(posix()), file()) << section << " / " << key;
    handles.expectTheSame();
  }

  RandomProfiles random_{1989};
  korvel::test::MemoryDisk inMemory_;
  Volumes volumes_;
  std::array<std::string, kPaths.size()> files_;
  std::size_t which_ = 0;
};

TEST_F(RandomCalls, AgreeWithTheLiteralRules) {
  for (; which_ < kPaths.size(); ++which_) newContent();
  for (int call = 0; call < korvel::test::rounds(100000); ++call) {
    pickFile();
    switch (random_.below(20)) {
      case 0:
        newContent();
        break;
      case 1:
        moveAMemoryFile();
        break;
      case 2:
        ASSERT_NO_FATAL_FAILURE(write(true)) << call;
        break;
      case 3:
      case 4:
      case 5:
      case 6:
        ASSERT_NO_FATAL_FAILURE(write(false)) << call;
        break;
      default:
        ASSERT_NO_FATAL_FAILURE(readString()) << call;
    }
  }
}

}  // namespace
