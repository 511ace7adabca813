// SPDX-License-Identifier: MIT
// The files of a folder, listed by "ls -1F" and "grep -i", or as these would list them.
#include "shell/listing.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "base/guard.h"
#include "shell/command.h"
#include "shell/existence.h"
#include "shell/folder.h"
#include "shell/misuse.h"
#include "shell/system.h"
#include "shell/tool.h"

constinit int BSDcr = 0;
constinit int BSDnNbFic = 0;
constinit FileVisit_t BSDDir_ProcessFiles_fPtr = nullptr;

namespace korvel::shell {
namespace {

std::string listCommand(std::string_view folder, std::string_view pattern) {
  return "ls -1F " + quoted(std::string(folder) + "/") + " | grep -i " + quoted(pattern);
}

bool mayBeListed(const char *folder) { return folder[0] != '\0' && exists(folder); }

// Whether it is known without the tools what they print.
bool needsNoTool(const char *folder, std::string_view pattern) {
  return runsOnUnix() && !textDecides(folder) && meansItself(pattern) && isSystemTool("ls") &&
         isSystemTool("grep");
}

std::string_view withoutExecutableMark(std::string_view line) {
  if (line.ends_with('*')) line.remove_suffix(1);
  return line;
}

bool isFolder(std::string_view line) { return line.ends_with('/'); }

// The caller's rows, filled one after the other.
class NameRows {
 public:
  NameRows(char *out, int max) : out_(out), max_(max) {}

  // Kept: the count has 16 bits and goes on from 0 after 65535.
  void add(std::string_view name) {
    if (stored_ < max_) {
      store(name.substr(0, kRowSize - 1));
      ++stored_;
    }
    ++count_;
  }
  int count() const { return count_; }

 private:
  void store(std::string_view name) {
    char *row = out_ + count_ * kRowSize;
    std::memcpy(row, name.data(), name.size());
    row[name.size()] = '\0';
  }

  char *out_;
  int max_;
  int stored_ = 0;
  std::uint16_t count_ = 0;
};

int storeNames(std::string_view listing, NameRows rows) {
  while (!listing.empty()) {
    const std::size_t end = std::min(listing.find('\n'), listing.size());
    const std::string_view name = withoutExecutableMark(listing.substr(0, end));
    if (!isFolder(name)) rows.add(name);
    listing.remove_prefix(std::min(end + 1, listing.size()));
  }
  return rows.count();
}

// Hands the file of a line on; a folder is passed over. A visit may have set the function to null.
int visitLine(char *line) {
  if (BSDDir_ProcessFiles_fPtr == nullptr) return 0;
  const std::string_view name = withoutExecutableMark(line);
  line[name.size()] = '\0';
  if (isFolder(name)) return 0;
  const char *lastSlash = std::strrchr(line, '/');
  BSDcr = BSDDir_ProcessFiles_fPtr(lastSlash == nullptr ? line : lastSlash + 1);
  ++BSDnNbFic;
  return BSDcr;
}

}  // namespace

int findFiles(char *out, const char *folder, int max, std::string_view pattern) {
  if (!mayBeListed(folder)) return 0;
  const std::size_t limit = kRowSize * (max == 0 ? 1 : static_cast<std::size_t>(max)) - 1;
  if (needsNoTool(folder, pattern)) {
    const std::string listing = listingOf(folder, pattern, limit);
    return storeNames(std::string_view(listing).substr(0, limit), NameRows(out, max));
  }
  const Tool tool(listCommand(folder, pattern).c_str(), Flow::FromTool, Environment::PlainBytes);
  if (!tool.started()) return 0;
  return storeNames(tool.text(limit), NameRows(out, max));
}

int processFiles(const char *folder, std::string_view pattern, FileVisit_t visit) {
  if (!mayBeListed(folder)) return 0;
  BSDDir_ProcessFiles_fPtr = visit;
  BSDnNbFic = 0;
  if (needsNoTool(folder, pattern)) {
    handLines(listingOf(folder, pattern), visitLine);
    return BSDcr;
  }
  const Tool tool(listCommand(folder, pattern).c_str(), Flow::FromTool, Environment::PlainBytes);
  if (tool.started()) handLines(tool, visitLine);
  return BSDcr;
}

}  // namespace korvel::shell

using namespace korvel::shell;
using korvel::base::guarded;

int BSDDir_FindFiles(char *out, const char *folder, int max, const char *pattern) {
  const Call call("BSDDir_FindFiles", {orNull(filled(out)), folder, max, pattern});
  if (call) needsListing(call, out, folder, max);
  if (folder == nullptr || pattern == nullptr || max < 0 || (out == nullptr && max > 0)) return 0;
  const int found = guarded(0, [&] { return findFiles(out, folder, max, pattern); });
  if (call) needsSlots(call, max, found);
  return found;
}

int BSDDir_ProcessFiles(const char *folder, const char *pattern, FileVisit_t visit) {
  lookForMisuse([=] {
    needsListing(Call("BSDDir_ProcessFiles", {folder, pattern, given(visit)}), nullptr, folder, 0);
  });
  if (folder == nullptr || pattern == nullptr || visit == nullptr) return 0;
  return guarded(0, [&] { return processFiles(folder, pattern, visit); });
}

int BSDDir_ProcessFiles_f(char *line) {
  lookForMisuse([=] { Call("BSDDir_ProcessFiles_f", {line}).needsAll(); });
  return line == nullptr ? 0 : visitLine(line);
}
