#include "shell/replace.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include <sys/stat.h>

#include "shell/command.h"

namespace korvel::shell {
namespace {

struct Identity {
  dev_t device;
  ino_t inode;
  friend bool operator==(const Identity &, const Identity &) = default;
};
using MaybeIdentity = std::optional<Identity>;

// What the path itself names, a link being a thing of its own.
MaybeIdentity entryAt(const std::string &path) {
  struct stat entry;
  if (lstat(path.c_str(), &entry) != 0) return std::nullopt;
  return Identity{entry.st_dev, entry.st_ino};
}

// What the path leads to.
MaybeIdentity objectAt(const std::string &path) {
  struct stat object;
  if (stat(path.c_str(), &object) != 0) return std::nullopt;
  return Identity{object.st_dev, object.st_ino};
}

bool same(const MaybeIdentity &a, const MaybeIdentity &b) { return a && b && *a == *b; }

// The path without links, or the empty text for what leads nowhere.
std::string realPath(const std::string &path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                         std::free);
  return real == nullptr ? std::string() : std::string(real.get());
}

// True if `path` names the entry or the object of `target`, or leads through one of them.
bool leadsThrough(const std::string &path, const std::string &target) {
  const MaybeIdentity targetEntry = entryAt(target);
  const MaybeIdentity targetObject = objectAt(target);
  for (std::size_t end = 0; end != std::string::npos;) {
    end = path.find('/', end + 1);
    const std::string prefix = path.substr(0, end);
    for (const MaybeIdentity &step : {entryAt(prefix), objectAt(prefix)}) {
      if (same(step, targetEntry) || same(step, targetObject)) return true;
    }
  }
  return false;
}

// True if `folder` is `source`, or stands somewhere inside it. A link holds nothing itself.
bool standsIn(const std::string &folder, const std::string &source) {
  const std::string real = realPath(folder);
  const MaybeIdentity sourceEntry = entryAt(source);
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
         !standsIn(folder, source);
}

}  // namespace korvel::shell
