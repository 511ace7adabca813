// SPDX-License-Identifier: MIT
// The string primitives beside what a user would take instead.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <fnmatch.h>
#include <iconv.h>

#include <glib.h>

#include <korvel/strings.h>

#include "bench/support/ratios.h"

namespace {

using benchmark::State;
using korvel::bench::goal;

// French prose of any length in CP1252: words drawn at random (the same ones at every run), about
// one letter in thirty accented as the language has it. Random, so that no processor learns where
// the accents stand.
std::string prose(std::size_t length) {
  static constexpr const char *kWords[] = {
      "le ",           "patient ",
      "se ",           "plaint ",
      "de ",           "douleurs ",
      "\xE0 ",         "l'",
      "\xE9paule ",    "gauche ",
      "depuis ",       "trois ",
      "semaines, ",    "sans ",
      "traumatisme ",  "r\xE9v\xE9l\xE9 ",
      "la ",           "mobilit\xE9 ",
      "reste ",        "compl\xE8te, ",
      "mais ",         "elle ",
      "est ",          "douloureuse ",
      "en ",           "fin ",
      "de ",           "course. ",
      "bilan ",        "radiographique ",
      "normal, ",      "temp\xE9rature ",
      "37,2\xB0, ",    "tension ",
      "13/8. ",        "re\xE7oit ",
      "un ",           "traitement ",
      "par ",          "anti-inflammatoires ",
      "pendant ",      "dix ",
      "jours, ",       "puis ",
      "contr\xF4le. ",
  };
  std::minstd_rand random(1);
  std::string text;
  while (text.size() < length) text += kWords[random() % std::size(kWords)];
  text.resize(length);
  return text;
}

std::string macProse(std::size_t length) {
  std::string text = prose(length);
  w2mstr(text.data());
  return text;
}

int length(const std::string &s) { return static_cast<int>(s.size()); }

// --- Substring: the pattern stands at the very end ---------------------------------------------

constexpr char kPattern[] = "zygomatique";

std::string proseEndingInPattern(std::size_t length) {
  return prose(length - std::strlen(kPattern)) + kPattern;
}

void chcherKorvel(State &state, std::size_t size) {
  const std::string text = proseEndingInPattern(size);
  for (auto _ : state) benchmark::DoNotOptimize(chcher(kPattern, text.c_str()));
}

void chcherStrstr(State &state, std::size_t size) {
  const std::string text = proseEndingInPattern(size);
  for (auto _ : state) benchmark::DoNotOptimize(strstr(text.c_str(), kPattern));
}

void szinclKorvel(State &state, std::size_t size) {
  const std::string text = proseEndingInPattern(size);
  const int patternLength = static_cast<int>(std::strlen(kPattern));
  for (auto _ : state) {
    benchmark::DoNotOptimize(szincl(kPattern, patternLength, text.data(), length(text)));
  }
}

void szinclMemmem(State &state, std::size_t size) {
  const std::string text = proseEndingInPattern(size);
  const std::size_t patternLength = std::strlen(kPattern);
  for (auto _ : state) {
    benchmark::DoNotOptimize(memmem(text.data(), text.size(), kPattern, patternLength));
  }
}

// --- Work in place ------------------------------------------------------------------------------

// Copies of a text for functions that change it. All copies are renewed at once when each was used,
// as texts come from elsewhere in an application too: a copy made just before the call would
// measure how a processor waits for its own stores.
class Copies {
 public:
  Copies(State &state, const std::string &text)
      : state_(state),
        stride_(text.size() + kRoom),
        count_(std::max<std::size_t>(1, kTotal / stride_)) {
    for (std::size_t i = 0; i < count_; ++i) {
      fresh_ += text;
      fresh_.append(kRoom, '\0');
    }
    used_ = fresh_;
  }
  char *next() {
    if (at_ == count_) renew();
    return used_.data() + stride_ * at_++;
  }

 private:
  static constexpr std::size_t kRoom = 32;
  static constexpr std::size_t kTotal = 8192;

  // The copy of a long text would weigh as much as the work, so the clock stands still for it.
  // Among many short ones it weighs less than stopping the clock.
  void renew() {
    const bool isLong = count_ == 1;
    if (isLong) state_.PauseTiming();
    std::memcpy(used_.data(), fresh_.data(), fresh_.size());
    benchmark::ClobberMemory();
    at_ = 0;
    if (isLong) state_.ResumeTiming();
  }

  State &state_;
  std::size_t stride_;
  std::size_t count_;
  std::size_t at_ = 0;
  std::string fresh_;
  std::string used_;
};

template <typename Work>
void onCopies(State &state, const std::string &text, Work work) {
  Copies copies(state, text);
  for (auto _ : state) {
    work(copies.next());
    benchmark::ClobberMemory();
  }
}

// --- Trimming: two blanks in front, three behind ------------------------------------------------

const std::string &paddedField() {
  static const std::string text = "  " + prose(59) + "   ";
  return text;
}

void trimKorvel(State &state) {
  onCopies(state, paddedField(), [](char *s) {
    chelibl_f(s);
    chelibl_d(s);
  });
}

void trimGlib(State &state) {
  onCopies(state, paddedField(), [](char *s) { g_strstrip(s); });
}

// --- Insertion of ten bytes into two hundred ----------------------------------------------------

void insertKorvel(State &state) {
  onCopies(state, prose(200),
           [](char *s) { benchmark::DoNotOptimize(chinsch(s, 211, "0123456789", 100)); });
}

void insertStdString(State &state) {
  const std::string text = prose(200);
  for (auto _ : state) {
    std::string copy = text;
    copy.insert(100, "0123456789");
    benchmark::DoNotOptimize(copy.data());
  }
}

// --- Wildcard comparison of two runs that agree, one joker in the middle ------------------------

std::string withJoker(std::string text) {
  text[text.size() / 2] = '?';
  return text;
}

void wildcardKorvel(State &state, std::size_t size) {
  const std::string text = prose(size);
  const std::string pattern = withJoker(text);
  for (auto _ : state) {
    benchmark::DoNotOptimize(szcompex(pattern.data(), length(pattern), text.data(), length(text)));
  }
}

// A trailing star besides, as code searches use it.
void prefixKorvel(State &state, std::size_t size) {
  const std::string text = prose(size);
  std::string pattern = withJoker(text);
  pattern.back() = '*';
  for (auto _ : state) {
    benchmark::DoNotOptimize(szcompex2(pattern.data(), length(pattern), text.data(), length(text)));
  }
}

void wildcardFnmatch(State &state, std::size_t size) {
  const std::string text = prose(size);
  const std::string pattern = withJoker(text);
  for (auto _ : state) benchmark::DoNotOptimize(fnmatch(pattern.c_str(), text.c_str(), 0));
}

void prefixFnmatch(State &state, std::size_t size) {
  const std::string text = prose(size);
  std::string pattern = withJoker(text);
  pattern.back() = '*';
  for (auto _ : state) benchmark::DoNotOptimize(fnmatch(pattern.c_str(), text.c_str(), 0));
}

// --- Character sets and capitals: the library works in place, the peers copy --------------------

void convertIconv(State &state, const char *to, const char *from, const std::string &text) {
  const iconv_t converter = iconv_open(to, from);
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    state.SkipWithError("no such character set");
    return;
  }
  std::string source = text;
  std::vector<char> buffer(2 * text.size());
  for (auto _ : state) {
    char *in = source.data();
    char *out = buffer.data();
    std::size_t inLeft = source.size();
    std::size_t outLeft = buffer.size();
    if (iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) {
      state.SkipWithError("a byte has no place in the other set");
      break;
    }
    benchmark::ClobberMemory();
  }
  iconv_close(converter);
}

void toMacKorvel(State &state, std::size_t size) { onCopies(state, prose(size), w2mstr); }

void toMacIconv(State &state, std::size_t size) {
  convertIconv(state, "MACINTOSH", "CP1252", prose(size));
}

// The letters that only iconv knows are left out of this text, so that both do the same work.
std::string commonMacProse(std::size_t size) {
  std::string text = prose(size);
  std::replace(text.begin(), text.end(), '\xF4', 'o');
  w2mstr(text.data());
  return text;
}

void fromMacKorvel(State &state, std::size_t size) {
  onCopies(state, commonMacProse(size), m2wstr);
}

void fromMacIconv(State &state, std::size_t size) {
  convertIconv(state, "CP1252", "MACINTOSH", commonMacProse(size));
}

void upperKorvelOf(State &state, const std::string &text) {
  onCopies(state, text, [](char *s) { benchmark::DoNotOptimize(strupr(s)); });
}

void upperGlibOf(State &state, const std::string &text) {
  for (auto _ : state) {
    gchar *capitals = g_ascii_strup(text.c_str(), static_cast<gssize>(text.size()));
    benchmark::DoNotOptimize(capitals);
    g_free(capitals);
  }
}

std::string asciiProse(std::size_t size) {
  std::string text = prose(size);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; }, 'e');
  return text;
}

void upperKorvel(State &state, std::size_t size) { upperKorvelOf(state, macProse(size)); }
void upperGlib(State &state, std::size_t size) { upperGlibOf(state, macProse(size)); }
void upperAsciiKorvel(State &state, std::size_t size) { upperKorvelOf(state, asciiProse(size)); }
void upperAsciiGlib(State &state, std::size_t size) { upperGlibOf(state, asciiProse(size)); }

// --- Registration -------------------------------------------------------------------------------

using Sized = void (*)(State &, std::size_t);

struct Peer {
  const char *name;
  Sized run;
};

struct SizeGoal {
  std::size_t size;
  double ratio;
};

std::string sizeName(std::size_t size) {
  return size % 1024 == 0 ? std::to_string(size / 1024) + " KB" : std::to_string(size) + " B";
}

bool registerSized(const std::string &what, Sized library, Peer peer,
                   const std::vector<SizeGoal> &sizes) {
  for (const auto &[size, ratio] : sizes) {
    const std::string workload = what + ", " + sizeName(size);
    benchmark::RegisterBenchmark((workload + "/korvel").c_str(), library, size);
    benchmark::RegisterBenchmark((workload + "/" + peer.name).c_str(), peer.run, size);
    goal(workload, peer.name, ratio);
  }
  return true;
}

void registerPlain(const std::string &workload, void (*library)(State &), const char *peerName,
                   void (*peer)(State &), double ratio) {
  benchmark::RegisterBenchmark((workload + "/korvel").c_str(), library);
  benchmark::RegisterBenchmark((workload + "/" + peerName).c_str(), peer);
  goal(workload, peerName, ratio);
}

void registerAll() {
  registerSized("search in a text", chcherKorvel, {"strstr", chcherStrstr},
                {{1024, 1.1}, {65536, 1.1}});
  registerSized("search in a run", szinclKorvel, {"memmem", szinclMemmem},
                {{1024, 0.75}, {65536, 0.75}});
  registerPlain("trim both ends, 64 B", trimKorvel, "g_strstrip", trimGlib, 0.65);
  registerPlain("insert 10 into 200 B", insertKorvel, "std::string", insertStdString, 0.4);
  registerSized("compare with ?", wildcardKorvel, {"fnmatch", wildcardFnmatch},
                {{8, 0.4}, {64, 0.05}, {1024, 0.05}});
  registerSized("compare with ? and *", prefixKorvel, {"fnmatch", prefixFnmatch},
                {{8, 0.4}, {1024, 0.05}});
  registerSized("CP1252 to Mac", toMacKorvel, {"iconv", toMacIconv},
                {{20, 0.2}, {1024, 0.06}, {65536, 0.06}});
  registerSized("Mac to CP1252", fromMacKorvel, {"iconv", fromMacIconv},
                {{20, 0.2}, {1024, 0.06}, {65536, 0.06}});
  registerSized("capitals, no accents", upperAsciiKorvel, {"g_ascii_strup", upperAsciiGlib},
                {{20, 0.25}, {1024, 0.06}, {65536, 0.06}});
  registerSized("capitals, French", upperKorvel, {"g_ascii_strup", upperGlib},
                {{20, 0.25}, {1024, 0.06}, {65536, 0.06}});
}

const bool kRegistered = (registerAll(), true);

}  // namespace

KORVEL_BENCH_MAIN()
