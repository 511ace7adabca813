// SPDX-License-Identifier: MIT
// Misuse of profiles: names and values that a profile cannot hold, buffers that cut. A key that is
// not there is none: that is what defaults are for.
#include "profile/misuse.h"

#include "base/views.h"

namespace korvel::profile {

using base::Quoted;

namespace {

constexpr std::size_t kLongestLine = 16383;

// Where a line or a name ends, the rest would be found by nobody.
void needsName(const Call &call, const char *what, std::string_view name, std::string_view ends) {
  needsCp1252(call, what, name);
  call.misusedIf(name.find_first_of(ends) != name.npos,
                 {what, " ", Quoted(name), " has a character that ends it"});
}

}  // namespace

void needsEntry(const Call &call, const char *section, const char *key, const char *path) {
  call.needsAll();
  needsName(call, "the section", base::textOf(section), "]\r\n");
  needsName(call, "the key", base::textOf(key), "=[\r\n");
  files::needsPathInFolder(call, path);
  files::needsMemorySlots(call, 1);
}

void needsValue(const Call &call, const char *section, const char *key, const char *value,
                const char *path) {
  needsEntry(call, section, key, path);
  files::needsMemorySlots(call, 2);
  const std::string_view text = base::textOf(value);
  needsCp1252(call, "the value", text);
  if (key == nullptr || !call) return;
  const std::size_t length = std::string_view(key).size() + 1 + text.size();
  needsFit(call, "the line", length, kLongestLine);
}

void needsWhole(const Call &call, std::size_t length, int capacity) {
  needsFit(call, "the value", length, static_cast<std::size_t>(capacity - 1));
}

void needsDefault(const Call &call, int defaultValue) {
  call.misusedIf(defaultValue < 0, {"a default of ", defaultValue, " counts as 0"});
}

void needsInteger(const Call &call, const char *text, bool isInteger) {
  call.misusedIf(!isInteger, {"the value ", Quoted(text), " is no integer from 0 to 2147483647"});
}

}  // namespace korvel::profile
