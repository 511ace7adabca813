// Fixed-digit numbers: runs of decimal characters of a fixed width, without terminator.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <korvel/codecs.h>

#include "codecs/integer.h"
#include "codecs/status.h"

namespace korvel::codecs {

namespace {

// The working areas of the readers, terminator included.
constexpr int kIntegerArea = 12;
constexpr int kRealArea = 20;

// A width below 0 is that of a part that is not there at all.
struct Run {
  const char *begin;
  int width;
};

bool isBlank(char c) { return c == ' '; }

void trimEnd(Run &run) {
  while (run.width > 0 && isBlank(run.begin[run.width - 1])) --run.width;
}

void trimStart(Run &run) {
  for (; run.width > 0 && isBlank(*run.begin); --run.width) ++run.begin;
}

bool dropLast(Run &run, char c) {
  if (run.width <= 0 || run.begin[run.width - 1] != c) return false;
  --run.width;
  return true;
}

bool dropFirst(Run &run, char c) {
  if (run.width <= 0 || *run.begin != c) return false;
  ++run.begin;
  --run.width;
  return true;
}

// Copies the run into a working area and terminates it there. Returns false when it does not fit.
bool copyTerminated(Run num, char *area, int size) {
  if (num.begin == nullptr || num.width < 0 || num.width >= size) return false;
  std::memcpy(area, num.begin, static_cast<std::size_t>(num.width));
  area[num.width] = '\0';
  return true;
}

int readNum(Run num, std::uint32_t limit, int *result) {
  if (result == nullptr) return kWrongWidth;
  *result = 0;
  char text[kIntegerArea];
  if (!copyTerminated(num, text, kIntegerArea)) return kWrongWidth;
  int value = 0;
  const int status = readInteger(text, limit, &value);
  if (status != kRead) return status;
  if (value < 0) return kNegative;
  *result = value;
  return kRead;
}

// Kept: the fill stands in front of the sign.
int writeNum(int value, char *destination, int width) {
  char text[kIntegerSize];
  writeInteger(value, text, kIntegerSize, kIntegerSize);
  const int length = static_cast<int>(std::strlen(text));
  if (destination == nullptr || length > width) return kWrongWidth;
  const int fill = width - length;
  std::memset(destination, '0', static_cast<std::size_t>(fill));
  std::memcpy(destination + fill, text, static_cast<std::size_t>(length));
  return kWritten;
}

struct Bounds {
  Run low;
  Run high;
};

bool separatesBounds(char c) { return c == ',' || c == '-' || c == ';'; }

Bounds splitAtSeparator(Run run) {
  const char *const end = run.begin + std::max(run.width, 0);
  const char *const separator = std::find_if(run.begin, end, separatesBounds);
  if (separator == end) return {run, {end, -1}};
  return {{run.begin, static_cast<int>(separator - run.begin)},
          {separator + 1, static_cast<int>(end - separator) - 1}};
}

// One item of a list and what follows its separator, null after the last one.
struct Item {
  Run text;
  const char *next;
};

Item itemAt(const char *list) {
  const std::size_t length = std::strcspn(list, "+,-");
  // An item that fills the working area is refused; how much longer it is does not matter.
  const auto width = static_cast<int>(std::min<std::size_t>(length, kIntegerArea));
  return {{list, width}, list[length] != '\0' ? list + length + 1 : nullptr};
}

}  // namespace

}  // namespace korvel::codecs

using namespace korvel::codecs;

int LongToNUM(int value, char *destination, int width) {
  return writeNum(value, destination, width);
}

// What is written does not depend on the range of the value.
int IntToNUM(int value, char *destination, int width) {
  return writeNum(value, destination, width);
}

int NUMToLong(const char *num, int width, int *result) {
  return readNum({num, width}, kLimit32, result);
}

int NUMToInt(const char *num, int width, int *result) {
  return readNum({num, width}, kLimit16, result);
}

int NUMP100ToLong(const char *num, int width, int *result) {
  Run run{num, num != nullptr ? width : -1};
  trimEnd(run);
  if (dropLast(run, '%')) trimEnd(run);
  return readNum(run, kLimit32, result);
}

int NUMPInterToLong(const char *text, int width, int *low, int *high) {
  Run run{text, text != nullptr ? width : -1};
  trimEnd(run);
  if (dropLast(run, ']')) trimEnd(run);
  trimStart(run);
  if (dropFirst(run, '[')) trimStart(run);
  Bounds bounds = splitAtSeparator(run);
  trimEnd(bounds.low);
  trimStart(bounds.high);
  return readNum(bounds.low, kLimit32, low) + readNum(bounds.high, kLimit32, high);
}

// Kept: the writer of reals answers 1 for the 20 bytes that would be formatted into, which counts
// as a failure; nothing is ever placed.
int DoubleToNUMD(double /*value*/, char * /*destination*/, int /*width*/, int /*decimals*/) {
  return kBelowSafeSize;
}

int NUMDToDouble(const char *num, int width, double *result) {
  if (result == nullptr) return kWrongWidth;
  *result = 0.0;
  Run run{num, num != nullptr ? width : -1};
  const bool isPercentage = dropLast(run, '%');
  if (isPercentage) trimEnd(run);
  char text[kRealArea];
  if (!copyTerminated(run, text, kRealArea)) return kWrongWidth;
  double value = 0.0;
  const int status = realcod_d(text, &value);
  if (status != kRead) return status;
  if (value < 0.0) return kNegative;
  *result = isPercentage ? value / 100.0 : value;
  return kRead;
}

int Teste_NUM_liste(const char *list) {
  int count = 0;
  while (list != nullptr) {
    const Item item = itemAt(list);
    int value = 0;
    if (readNum(item.text, kLimit32, &value) != kRead) return 0;
    ++count;
    list = item.next;
  }
  return count;
}

int Get_NUM_liste(const char *list, int index) {
  if (index < 0) return 0;
  int value = 0;
  for (int i = 0; list != nullptr && i <= index; ++i) {
    const Item item = itemAt(list);
    if (readNum(item.text, kLimit32, &value) != kRead) return 0;
    list = item.next;
  }
  // Kept: past the last item it is still the last one.
  return value;
}
