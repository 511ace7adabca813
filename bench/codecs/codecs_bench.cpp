// SPDX-License-Identifier: MIT
// Numbers to text and back, a million random values each, beside the standard library's own
// conversions. The library's texts are terminated and trimmed in place; the peers are told where
// their text ends and leave it without a terminator.
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <korvel/codecs.h>

#include "bench/support/ratios.h"

namespace {

using benchmark::State;
using korvel::bench::goal;

constexpr std::size_t kValues = 1000000;
constexpr std::uint64_t kSeed = 20040307;
constexpr int kSize = 32;

using Random = std::mt19937_64;

// Texts side by side, each terminated.
class Texts {
 public:
  void add(std::string_view text) {
    starts_.push_back(bytes_.size());
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    bytes_.push_back('\0');
  }
  char *begin(std::size_t i) { return bytes_.data() + starts_[i]; }
  const char *end(std::size_t i) {
    return bytes_.data() + (i + 1 < starts_.size() ? starts_[i + 1] : bytes_.size()) - 1;
  }

 private:
  std::vector<char> bytes_;
  std::vector<std::size_t> starts_;
};

bool isHeads(Random &random) { return (random() & 1U) != 0; }

// Magnitudes that fill 32 bits: nine values of ten have nine or ten digits.
int uniformInteger(Random &random) {
  const auto magnitude = static_cast<int>(random() >> 33U);
  return isHeads(random) ? -magnitude : magnitude;
}

// From one to ten digits, each count as often as any other.
int mixedInteger(Random &random) {
  std::uint64_t bound = 10;
  for (std::uint64_t more = random() % 10; more > 0; --more) bound *= 10;
  const std::uint64_t limit = std::numeric_limits<int>::max();
  const auto magnitude = static_cast<int>(std::min(random() % bound, limit));
  return isHeads(random) ? -magnitude : magnitude;
}

// From one to six digits before the point.
double mixedReal(Random &random) {
  double bound = 10.0;
  for (std::uint64_t more = random() % 6; more > 0; --more) bound *= 10.0;
  const double magnitude = bound * static_cast<double>(random() >> 11U) / 9007199254740992.0;
  return isHeads(random) ? -magnitude : magnitude;
}

template <typename Value>
std::vector<Value> valuesOf(Value (*draw)(Random &)) {
  Random random(kSeed);
  std::vector<Value> drawn(kValues);
  for (Value &value : drawn) value = draw(random);
  return drawn;
}

Texts textsOf(const std::vector<int> &values) {
  Texts texts;
  for (const int value : values) texts.add(std::to_string(value));
  return texts;
}

Texts textsOf(const std::vector<double> &values) {
  Texts texts;
  for (const double value : values) {
    char text[kSize];
    const int length = std::snprintf(text, sizeof text, "%.4f", value);
    texts.add({text, static_cast<std::size_t>(length)});
  }
  return texts;
}

// A million values and their texts, made when first asked for.
template <typename Value, Value (*draw)(Random &)>
struct Data {
  static const std::vector<Value> &values() {
    static const std::vector<Value> drawn = valuesOf(draw);
    return drawn;
  }
  static Texts &texts() {
    static Texts written = textsOf(values());
    return written;
  }
};

using Uniform = Data<int, uniformInteger>;
using Mixed = Data<int, mixedInteger>;
using Reals = Data<double, mixedReal>;

// One iteration converts one value, the next iteration the next value.
template <typename Convert>
void overAll(State &state, Convert convert) {
  std::size_t i = 0;
  for (auto _ : state) {
    convert(i);
    if (++i == kValues) i = 0;
  }
}

template <typename Value>
void readKorvel(State &state, Texts &texts, int (*read)(char *, Value *)) {
  overAll(state, [&](std::size_t i) {
    Value value{};
    benchmark::DoNotOptimize(read(texts.begin(i), &value));
    benchmark::DoNotOptimize(value);
  });
}

template <typename Value>
void readFromChars(State &state, Texts &texts) {
  overAll(state, [&](std::size_t i) {
    Value value{};
    benchmark::DoNotOptimize(std::from_chars(texts.begin(i), texts.end(i), value).ptr);
    benchmark::DoNotOptimize(value);
  });
}

template <typename Value, typename Write>
void writeAll(State &state, const std::vector<Value> &values, Write write) {
  char buffer[kSize];
  overAll(state, [&](std::size_t i) {
    benchmark::DoNotOptimize(write(values[i], buffer));
    benchmark::DoNotOptimize(buffer);
    benchmark::ClobberMemory();
  });
}

template <typename Integers>
void integerToText(State &state) {
  writeAll(state, Integers::values(),
           [](int value, char *buffer) { return intdco_l(value, buffer, kSize); });
}

template <typename Integers>
void integerToChars(State &state) {
  writeAll(state, Integers::values(), [](int value, char *buffer) {
    return std::to_chars(buffer, buffer + kSize, value).ptr;
  });
}

void realToText(State &state) {
  writeAll(state, Reals::values(),
           [](double value, char *buffer) { return realdco_d(value, buffer, kSize, 2); });
}

void realToChars(State &state) {
  writeAll(state, Reals::values(), [](double value, char *buffer) {
    return std::to_chars(buffer, buffer + kSize, value, std::chars_format::fixed, 2).ptr;
  });
}

template <typename Integers>
void textToInteger(State &state) {
  readKorvel(state, Integers::texts(), intcod_l);
}

template <typename Integers>
void textFromChars(State &state) {
  readFromChars<int>(state, Integers::texts());
}

void textToReal(State &state) { readKorvel(state, Reals::texts(), realcod_d); }

void realFromChars(State &state) { readFromChars<double>(state, Reals::texts()); }

using Workload = void (*)(State &);

void add(const std::string &workload, Workload library, const char *peerName, Workload peer,
         double ratio) {
  benchmark::RegisterBenchmark((workload + "/korvel").c_str(), library);
  benchmark::RegisterBenchmark((workload + "/" + peerName).c_str(), peer);
  goal(workload, peerName, ratio);
}

bool addAll() {
  add("text to integer, 32 bits", textToInteger<Uniform>, "from_chars", textFromChars<Uniform>,
      0.75);
  add("text to integer, 1-10 digits", textToInteger<Mixed>, "from_chars", textFromChars<Mixed>,
      0.75);
  add("integer to text, 32 bits", integerToText<Uniform>, "to_chars", integerToChars<Uniform>, 1.1);
  add("integer to text, 1-10 digits", integerToText<Mixed>, "to_chars", integerToChars<Mixed>, 1.1);
  add("text to real, 4 decimals", textToReal, "from_chars", realFromChars, 0.9);
  add("real to text, 2 decimals", realToText, "to_chars", realToChars, 0.35);
  return true;
}

const bool kRegistered = addAll();

}  // namespace

KORVEL_BENCH_MAIN()
