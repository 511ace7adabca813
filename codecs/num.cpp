// SPDX-License-Identifier: MIT
// Numbers of a fixed width: runs of decimal characters without terminator.
#include "codecs/num.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include <korvel/codecs.h>

#include "base/views.h"
#include "codecs/misuse.h"
#include "codecs/real.h"
#include "codecs/status.h"
#include "strings/copy.h"
#include "strings/separated_list.h"

namespace korvel::codecs {

namespace {

// Blanks and signs may be around a number: only the pointers and widths below 0 are wrong.
constexpr int kWidest = 2147483647;

void trimEnd(std::string_view &run) {
  while (run.ends_with(' ')) run.remove_suffix(1);
}

void trimStart(std::string_view &run) {
  while (run.starts_with(' ')) run.remove_prefix(1);
}

bool dropLast(std::string_view &run, char c) {
  if (!run.ends_with(c)) return false;
  run.remove_suffix(1);
  return true;
}

bool dropFirst(std::string_view &run, char c) {
  if (!run.starts_with(c)) return false;
  run.remove_prefix(1);
  return true;
}

// read(text, &value): as readInteger. Its text has kArea bytes, terminator included.
template <int kArea, typename Number, typename Read>
int readRun(std::string_view run, Number *result, Read read) {
  *result = 0;
  char text[kArea];
  if (!strings::copyWhole(text, run)) return kWrongWidth;
  Number value = 0;
  const int status = read(text, &value);
  if (status != kRead) return status;
  if (value < 0) return kNegative;
  *result = value;
  return kRead;
}

int readPercentage(std::string_view run, int *result) {
  trimEnd(run);
  if (dropLast(run, '%')) trimEnd(run);
  return readNum(run, result);
}

bool separatesBounds(char c) { return c == ',' || c == '-' || c == ';'; }

// Without a separator the high bound has no data.
int readInterval(std::string_view run, int *low, int *high) {
  trimEnd(run);
  if (dropLast(run, ']')) trimEnd(run);
  trimStart(run);
  if (dropFirst(run, '[')) trimStart(run);
  const auto separator = std::find_if(run.begin(), run.end(), separatesBounds);
  std::string_view lowBound(run.begin(), separator);
  std::string_view highBound;
  if (separator != run.end()) highBound = {separator + 1, run.end()};
  trimEnd(lowBound);
  trimStart(highBound);
  return readNum(lowBound, low) + readNum(highBound, high);
}

int readRealNum(std::string_view run, double *result) {
  const bool isPercentage = dropLast(run, '%');
  if (isPercentage) trimEnd(run);
  const int status = readRun<20>(run, result, readReal);
  if (isPercentage) *result /= 100.0;
  return status;
}

int countNums(std::string_view list) {
  int value = 0;
  int count = 0;
  for (; list.data() != nullptr; ++count) {
    if (readNum(strings::cutItem(list), &value) != kRead) return 0;
  }
  return count;
}

int numAt(std::string_view list, int index) {
  int value = 0;
  // Kept: past the last item it is still the last one.
  for (; list.data() != nullptr && index >= 0; --index) {
    if (readNum(strings::cutItem(list), &value) != kRead) return 0;
  }
  return value;
}

}  // namespace

// Kept: the zeros are in front of the sign.
int writeNum(int value, std::span<char> destination) {
  char text[kIntegerSize];
  writeInteger(value, text, kIntegerSize);
  const std::size_t length = std::strlen(text);
  if (length > destination.size()) return kWrongWidth;
  const std::size_t fill = destination.size() - length;
  std::memset(destination.data(), '0', fill);
  std::memcpy(destination.data() + fill, text, length);
  return kWritten;
}

int readNum(std::string_view num, int *result, std::uint32_t limit) {
  if (result == nullptr) return kWrongWidth;
  return readRun<kIntegerSize>(
      num, result, [limit](char *text, int *value) { return readInteger(text, limit, value); });
}

}  // namespace korvel::codecs

using namespace korvel::base;
using namespace korvel::codecs;

int LongToNUM(int value, char *destination, int width) {
  lookForMisuse([=] {
    needsWidth(Call("LongToNUM", {value, filled(destination), width}), destination, width, value);
  });
  return writeNum(value, roomOf(destination, width));
}

// What is written does not depend on the range of the value.
int IntToNUM(int value, char *destination, int width) {
  lookForMisuse([=] {
    needsWidth(Call("IntToNUM", {value, filled(destination), width}), destination, width, value);
  });
  return writeNum(value, roomOf(destination, width));
}

int NUMToLong(const char *num, int width, int *result) {
  lookForMisuse([=] {
    needsReadableWidth(Call("NUMToLong", {shownRun(num, width), width, filled(result)}), width,
                       kIntegerSize - 1);
  });
  return readNum(bytesOf(num, width), result);
}

int NUMToInt(const char *num, int width, int *result) {
  lookForMisuse([=] {
    needsReadableWidth(Call("NUMToInt", {shownRun(num, width), width, filled(result)}), width,
                       kIntegerSize - 1);
  });
  return readNum(bytesOf(num, width), result, kLimit16);
}

int NUMP100ToLong(const char *num, int width, int *result) {
  lookForMisuse([=] {
    needsReadableWidth(Call("NUMP100ToLong", {shownRun(num, width), width, filled(result)}), width,
                       kWidest);
  });
  return readPercentage(bytesOf(num, width), result);
}

int NUMPInterToLong(const char *text, int width, int *low, int *high) {
  lookForMisuse([=] {
    needsReadableWidth(
        Call("NUMPInterToLong", {shownRun(text, width), width, filled(low), filled(high)}), width,
        kWidest);
  });
  return readInterval(bytesOf(text, width), low, high);
}

// Kept: the writer of reals answers 1 for the 20 bytes that would be formatted into, which counts
// as a failure; nothing is ever placed.
int DoubleToNUMD(double value, char *destination, int width, int decimals) {
  lookForMisuse([=] {
    needsAnotherWriter(Call("DoubleToNUMD", {value, filled(destination), width, decimals}));
  });
  return kBelowSafeSize;
}

int NUMDToDouble(const char *num, int width, double *result) {
  lookForMisuse([=] {
    needsReadableWidth(Call("NUMDToDouble", {shownRun(num, width), width, filled(result)}), width,
                       kWidest);
  });
  return result == nullptr ? kWrongWidth : readRealNum(bytesOf(num, width), result);
}

int Teste_NUM_liste(const char *list) {
  lookForMisuse([=] { Call("Teste_NUM_liste", {list}).needsAll(); });
  return list == nullptr ? 0 : countNums(list);
}

int Get_NUM_liste(const char *list, int index) {
  lookForMisuse([=] { needsIndex(Call("Get_NUM_liste", {list, index}), index); });
  return list == nullptr ? 0 : numAt(list, index);
}
