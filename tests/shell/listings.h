// SPDX-License-Identifier: MIT
// For tests/shell/: what listings find in a folder, and folders to find it in.
#ifndef KORVEL_TESTS_SHELL_LISTINGS_H
#define KORVEL_TESTS_SHELL_LISTINGS_H

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {

using Names = std::vector<std::string>;

struct Found {
  int count;
  Names names;  // of the slots that were filled
};

// Calls the function with a poisoned buffer of exactly max rows.
inline Found find(const std::string &folder, int max, const std::string &pattern) {
  PoisonedBuffer out(static_cast<std::size_t>(max) * 256);
  Found found = {BSDDir_FindFiles(out.data(), folder.c_str(), max, pattern.c_str()), {}};
  const int stored = std::min(found.count, max);
  for (int i = 0; i < stored; ++i) found.names.emplace_back(out.data() + i * 256);
  EXPECT_TRUE(out.guardsIntact());
  EXPECT_TRUE(out.untouchedFrom(static_cast<std::size_t>(stored) * 256));
  return found;
}

// A model on the output of the bare command.
inline Found literalFind(const std::string &folder, int max, const std::string &pattern) {
  const Variable bytes("LC_ALL", "C");
  const std::size_t size = max == 0 ? 256 : static_cast<std::size_t>(max) * 256;
  const std::string listing =
      popenOf("ls -1F '" + folder + "/' | grep -i '" + pattern + "'", size - 1).text;
  Found found = {0, {}};
  for (std::size_t begin = 0; begin < listing.size();) {
    const std::size_t end = std::min(listing.find('\n', begin), listing.size());
    std::string line = listing.substr(begin, end - begin);
    begin = end + 1;
    if (!line.empty() && line.back() == '*') line.pop_back();
    if (!line.empty() && line.back() == '/') continue;
    if (found.count < max) found.names.push_back(line.substr(0, 255));
    ++found.count;
  }
  return found;
}

inline Names visitedNames;
inline int lastVisit = 0;  // the visit that stops, from 1; 0: none

inline int visit(const char *name) {
  visitedNames.emplace_back(name);
  return static_cast<int>(visitedNames.size()) == lastVisit ? 40 + lastVisit : 0;
}

inline Names visited(const std::string &folder, const std::string &pattern, int stopAt = 0) {
  visitedNames.clear();
  lastVisit = stopAt;
  BSDDir_ProcessFiles(folder.c_str(), pattern.c_str(), visit);
  return visitedNames;
}

inline std::string randomName(std::mt19937 &random) {
  constexpr std::string_view kLetters = "abAB.*@= \n\t\xE9\xC9-~#$\\\"";
  std::string name;
  for (std::size_t length = 1 + random() % 12; length > 0; --length) {
    name += random() % 5 == 0 ? static_cast<char>(128 + random() % 128)
                              : kLetters[random() % kLetters.size()];
  }
  return name == "." || name == ".." ? "dots" : name;
}

inline void makeRandomEntry(std::mt19937 &random, const Workspace &folder) {
  const std::string name = randomName(random);
  if (isThere(folder.path(name))) return;
  switch (random() % 6) {
    case 0:
      folder.makeFolder(name);
      break;
    case 1:
      folder.makeLink(name, "nowhere");
      break;
    case 2:
      chmod(folder.makeFile(name).c_str(), 0755);
      break;
    default:
      folder.makeFile(name);
  }
}

}  // namespace korvel::test

#endif
