// The scan for every machine, and the choice of one.
#include "profile/scan.h"

#include <algorithm>

#include "profile/scan_loop.h"
#include "strings/machine.h"

namespace korvel::profile {

KeyProbe::KeyProbe(std::string_view text)
    : key(text.data()),
      size(static_cast<std::ptrdiff_t>(text.size())),
      last(text.back()),
      lastButOne(text[text.size() - std::min<std::size_t>(text.size(), 2)]),
      lastButOneDistance(std::min<std::ptrdiff_t>(size, 2)) {}

const char *scanBaseline(const char *at, const char *end, const KeyProbe &probe) {
  return KeyScan(probe).run(at, end);
}

const char *scan(const char *at, const char *end, const KeyProbe &probe) {
  return (strings::usesAvx2() ? scanAvx2 : scanBaseline)(at, end, probe);
}

}  // namespace korvel::profile
