// SPDX-License-Identifier: MIT
// Makes chosen calls of the library some times and twice as often, and has callgrind write down the
// instructions of both: what lies between the two is the calls alone. Outside of callgrind it only
// sees to it that the calls answer right. Prints what the numbers depend on, apart from the
// library.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gnu/libc-version.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

#include <korvel/codecs.h>
#include <korvel/dates.h>
#include <korvel/desktop.h>
#include <korvel/profile.h>
#include <korvel/strings.h>
#include <korvel/tables.h>

namespace {

constexpr int kTimes = 5;
constexpr int kLines = 10000;
constexpr int kKeys = 200;
// A table counts as at rest some time after its last change only.
constexpr unsigned kSecondsToRest = 3;

// ---- What the calls work on, in a folder that is removed at the end ----

std::string numbered(const char *format, int n) {
  char text[64];
  std::snprintf(text, sizeof text, format, n);
  return text;
}

std::string code(int line) { return numbered("%05d", line); }
std::string label(int line) { return numbered("Acte de soins %05d", line); }
std::string key(int n) { return numbered("cle%03d", n); }

std::string tableText() {
  std::string text = "Actes\r\nVersion: 1\r\n#DEBUT\r\n";
  for (int line = 0; line < kLines; ++line)
    text += code(line) + "," + label(line) + ",B3,01/01/95,31/12/99\r\n";
  return text + "#FIN\r\n";
}

std::string profileText() {
  std::string text = "[Cabinet]\r\n";
  for (int n = 0; n < kKeys; ++n) text += key(n) + "=valeur " + std::to_string(n) + "\r\n";
  return text;
}

class Volume {
 public:
  Volume() {
    ready_ = mkdtemp(root_.data()) != nullptr &&
             std::filesystem::create_directories(root_ + "/Data/tables") &&
             write("tables/lues.tab", tableText()) && write("tables/modifiees.tab", tableText()) &&
             write("reglages.ini", profileText());
    std::snprintf(szVolumes, sizeof szVolumes, "%s", root_.c_str());
    std::snprintf(szDirTables, sizeof szDirTables, "Data:tables");
  }
  ~Volume() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
  Volume(const Volume &) = delete;
  Volume &operator=(const Volume &) = delete;

  bool isReady() const { return ready_; }

 private:
  bool write(const char *name, const std::string &text) const {
    return static_cast<bool>(std::ofstream(root_ + "/Data/" + name, std::ios::binary) << text);
  }

  // In memory: files on a disk are made in other ways on other machines.
  std::string root_ = "/dev/shm/korvel-XXXXXX";
  bool ready_ = false;
};

// ---- The calls; each says whether the answer is right ----

bool writeIntegers() {
  char text[16];
  bool isRight = true;
  for (const int value : {7, -42, 365, 2004, 75011, -123456, 20040307, 2147483647})
    isRight &= intdco_l(value, text, sizeof text) == 0;
  return isRight && std::strcmp(text, "2147483647") == 0;
}

bool readIntegers() {
  char texts[][16] = {"7", "-42", "  365", "2004", "75011", "-123456 ", "20040307", "2147483647"};
  int value = 0;
  bool isRight = true;
  for (char *text : texts) isRight &= intcod_l(text, &value) == 0;
  return isRight && value == 2147483647;
}

bool writeReals() {
  char text[32];
  bool isRight = true;
  for (const double value : {0.5, -3.25, 37.2, 175.005, 1234.56, -99999.994, 20040307.75})
    isRight &= realdco_d(value, text, sizeof text, 2) == 0;
  return isRight && std::strcmp(text, "20040307.75") == 0;
}

bool readReals() {
  char texts[][16] = {"0.5", "-3.25", "37.2000", " 175.005", "1234.56", "-99999.994", "1.5e3"};
  double value = 0.0;
  bool isRight = true;
  for (char *text : texts) isRight &= realcod_d(text, &value) == 0;
  return isRight && value == 1500.0;
}

bool storeDates() {
  char stored[16];
  bool isRight = true;
  for (const char *date : {"07/03/04", "31/12/49", "01/01/50", "29/02/96"})
    isRight &= ZRV_Build_Date_short(date, stored) == 0;
  return isRight && std::strcmp(stored, "19960229") == 0;
}

bool makeCapitals() {
  char text[] = "Consultation sp\216cialis\216e";
  return std::strcmp(strupr(text), "CONSULTATION SPECIALISEE") == 0;
}

bool lookUp() {
  const std::string wanted = code(kLines / 2);
  char out[64];
  return ZRV_Libelle_NC(wanted.data(), static_cast<int>(wanted.size()), 1, "lues", out,
                        sizeof out) == 1 &&
         label(kLines / 2) == out;
}

bool searchInAnyCase() {
  std::string wanted = label(kLines / 2);
  wanted[0] = 'a';
  char out[64];
  return ZRV_CodeNCS_NC(wanted.c_str(), 1, "lues", out, sizeof out) == 1 && code(kLines / 2) == out;
}

bool replaceColumn() {
  static const bool isFound = [] {
    const std::string wanted = code(kLines / 2);
    char out[64];
    return ZRV_Libelle_NC(wanted.data(), static_cast<int>(wanted.size()), 1, "modifiees", out,
                          sizeof out) == 1;
  }();
  const std::string wanted = code(kLines / 2);
  static bool isOdd = false;
  isOdd = !isOdd;
  return isFound && ZRV_Libelle_NC_idem_replace(wanted.data(), static_cast<int>(wanted.size()), 1,
                                                "modifiees", isOdd ? "impair" : "pair") == 1;
}

bool readKey() {
  char out[64];
  GetPrivateProfileString("Cabinet", key(kKeys / 2).c_str(), "", out, sizeof out,
                          "Data:reglages.ini");
  return std::strncmp(out, "valeur ", 7) == 0;
}

bool writeKey() {
  static bool isOdd = false;
  isOdd = !isOdd;
  return WritePrivateProfileString("Cabinet", key(kKeys / 2).c_str(),
                                   isOdd ? "valeur impaire" : "valeur paire",
                                   "Data:reglages.ini") == 1;
}

// ---- Counting ----

struct Call {
  const char *name;
  bool (*make)();
};

constexpr Call kCalls[] = {
    {"8 integers written", writeIntegers},
    {"8 integers read", readIntegers},
    {"7 reals written", writeReals},
    {"7 reals read", readReals},
    {"4 dates stored", storeDates},
    {"capitals of a label", makeCapitals},
    {"lookup in 10,000 lines", lookUp},
    {"search in 10,000 lines, any case", searchInAnyCase},
    {"column replaced in 10,000 lines", replaceColumn},
    {"key read of 200", readKey},
    {"key written of 200", writeKey},
};

bool makeTimes(const Call &call, int times) {
  bool isRight = true;
  for (int n = 0; n < times; ++n) isRight &= call.make();
  return isRight;
}

// The first three calls bind functions, take memory and keep what is to be kept.
bool count(const Call &call) {
  bool isRight = makeTimes(call, 3);
  for (const int times : {kTimes, 2 * kTimes}) {
    const std::string mark = std::to_string(times) + " times " + call.name;
    CALLGRIND_ZERO_STATS;
    isRight &= makeTimes(call, times);
    CALLGRIND_DUMP_STATS_AT(mark.c_str());
  }
  if (!isRight) std::fprintf(stderr, "%s: wrong answer\n", call.name);
  return isRight;
}

// What lies on the stack begins at a page: how much is above it, such as the environment, would
// else decide how texts are aligned.
bool countAll() {
  alignas(4096) volatile char page = 0;
  static_cast<void>(page);
  return std::all_of(std::begin(kCalls), std::end(kCalls), count);
}

}  // namespace

int main() {
  const Volume volume;
  if (!volume.isReady()) {
    std::fprintf(stderr, "no folder in memory\n");
    return 77;
  }
#ifdef __clang__
  const char *const compiler = "clang++";
#else
  const char *const compiler = "g++";
#endif
  std::printf("%s %s, C library %s, %s\n", compiler, __VERSION__, gnu_get_libc_version(),
              __builtin_cpu_supports("avx2") ? "AVX2" : "no AVX2");
  sleep(kSecondsToRest);
  return countAll() ? 0 : 1;
}
