// SPDX-License-Identifier: MIT
// What a copy may remove, told by the identity of files and not by their names.
#include "shell/replace.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include <sys/stat.h>

#include "base/posix.h"
#include "shell/command.h"

namespace korvel::shell {
namespace {

using Status = std::optional<struct stat>;

// The entry that the path names, be it a link.
Status entryAt(const std::string &path) {
  struct stat entry;
  return lstat(path.c_str(), &entry) == 0 ? Status(entry) : std::nullopt;
}

// What the path leads to.
Status objectAt(const std::string &path) {
  struct stat object;
  return stat(path.c_str(), &object) == 0 ? Status(object) : std::nullopt;
}

bool same(const Status &a, const Status &b) { return a && b && base::isSameFile(*a, *b); }

// The path without links; empty for a path that leads nowhere.
std::string realPath(const std::string &path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                         std::free);
  return real == nullptr ? std::string() : std::string(real.get());
}

// Whether `path` names the entry or the object of `target`, or leads through one of them.
bool leadsThrough(const std::string &path, const std::string &target) {
  const Status targetEntry = entryAt(target);
  const Status targetObject = objectAt(target);
  for (std::size_t end = 0; end != std::string::npos;) {
    end = path.find('/', end + 1);
    const std::string prefix = path.substr(0, end);
    for (const Status &step : {entryAt(prefix), objectAt(prefix)}) {
      if (same(step, targetEntry) || same(step, targetObject)) return true;
    }
  }
  return false;
}

// Whether `folder` is `source` or lies somewhere inside it. A link itself holds nothing.
bool liesIn(const std::string &folder, const std::string &source) {
  const std::string real = realPath(folder);
  const Status sourceEntry = entryAt(source);
  for (std::size_t end = 0; end != std::string::npos;) {
    end = real.find('/', end + 1);
    if (same(entryAt(real.substr(0, end)), sourceEntry)) return true;
  }
  return false;
}

}  // namespace

bool mayBeReplaced(const std::string &target, const std::string &folder,
                   const std::string &source) {
  if (textDecides(target.c_str()) || textDecides(source.c_str())) return false;
  return !leadsThrough(source, target) && !leadsThrough(realPath(source), target) &&
         !liesIn(folder, source);
}

}  // namespace korvel::shell
