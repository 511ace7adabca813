// SPDX-License-Identifier: MIT
// The listing of a folder without a process: readdir, a search for the pattern's bytes, a sort.
#include "shell/folder.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "base/posix.h"
#include "shell/descriptor.h"

namespace korvel::shell {
namespace {

struct Close {
  void operator()(DIR *folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, Close>;

Folder opened(const std::string &path) {
  constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC;
  Descriptor descriptor(base::retried([&] { return open(path.c_str(), kFlags); }));
  Folder folder(fdopendir(descriptor.get()));
  if (folder != nullptr) descriptor.release();
  return folder;
}

// Null at the end, and where the reading breaks off: `ls` lists what it has read by then.
const dirent *nextIn(DIR *folder) {
  for (;;) {
    errno = 0;
    const dirent *entry = readdir(folder);
    if (entry != nullptr || errno != EINTR) return entry;
  }
}

// The kind and the rights; 0 if they cannot be had.
mode_t modeOf(DIR *folder, const char *name) {
  struct stat status;
  const bool isThere = fstatat(dirfd(folder), name, &status, AT_SYMLINK_NOFOLLOW) == 0;
  return isThere ? status.st_mode : 0;
}

bool isExecutable(mode_t mode) { return S_ISREG(mode) && (mode & 0111) != 0; }

// Not every file system tells the kind of what is in a folder.
unsigned char kindOf(DIR *folder, const dirent &entry) {
  return entry.d_type != DT_UNKNOWN ? entry.d_type : IFTODT(modeOf(folder, entry.d_name));
}

std::string_view markOf(unsigned char kind) {
  switch (kind) {
    case DT_DIR:
      return "/";
    case DT_LNK:
      return "@";
    case DT_FIFO:
      return "|";
    case DT_SOCK:
      return "=";
    default:
      return "";
  }
}

char inSmall(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isFound(std::string_view pattern, std::string_view line) {
  const auto agree = [](char a, char b) { return inSmall(a) == inSmall(b); };
  return pattern.empty() ||
         std::search(line.begin(), line.end(), pattern.begin(), pattern.end(), agree) != line.end();
}

struct Entry {
  std::string name;
  unsigned char kind;
};

// The entries that are not hidden and in whose line the pattern is found, in byte order. A pattern
// that means itself has no "*", and so is never found in the mark of an executable.
std::vector<Entry> entriesOf(DIR *folder, std::string_view pattern) {
  std::vector<Entry> entries;
  std::string line;
  while (const dirent *entry = nextIn(folder)) {
    if (entry->d_name[0] == '.') continue;
    const unsigned char kind = kindOf(folder, *entry);
    line.assign(entry->d_name).append(markOf(kind));
    if (isFound(pattern, line)) entries.push_back({entry->d_name, kind});
  }
  std::sort(entries.begin(), entries.end(),
            [](const Entry &a, const Entry &b) { return a.name < b.name; });
  return entries;
}

// Whether the tools may print more than `limit` bytes: a line has a mark and a line feed at most.
bool mayExceed(std::size_t limit, const std::vector<Entry> &entries) {
  std::size_t length = 0;
  for (const Entry &entry : entries) length += entry.name.size() + 2;
  return length > limit;
}

// A name may hold line feeds. Then the pattern has to be found in each of its lines.
void addLines(std::string &listing, std::string_view lines, std::string_view pattern) {
  const bool isOne = lines.find('\n') == std::string_view::npos;
  for (std::size_t begin = 0, end; begin <= lines.size(); begin = end + 1) {
    end = std::min(lines.find('\n', begin), lines.size());
    const std::string_view line = lines.substr(begin, end - begin);
    if (isOne || isFound(pattern, line)) listing.append(line).append(1, '\n');
  }
}

}  // namespace

bool meansItself(std::string_view pattern) {
  return !pattern.starts_with('-') && pattern.find_first_of("'\n.[*^$\\") == std::string_view::npos;
}

std::string listingOf(std::string_view folder, std::string_view pattern, std::size_t limit) {
  std::string listing;
  const Folder open = opened(std::string(folder) + "/");
  if (open == nullptr) return listing;
  const std::vector<Entry> entries = entriesOf(open.get(), pattern);
  const bool marksCount = mayExceed(limit, entries);
  for (const Entry &entry : entries) {
    if (listing.size() >= limit) break;
    const bool marked = entry.kind == DT_REG && (marksCount || entry.name.ends_with('*')) &&
                        isExecutable(modeOf(open.get(), entry.name.c_str()));
    addLines(listing, entry.name + std::string(marked ? "*" : markOf(entry.kind)), pattern);
  }
  return listing;
}

}  // namespace korvel::shell
