// SPDX-License-Identifier: MIT
// The kernel keeps 15 bytes of a process's name, and `ps -c` shows no more. The rest is in the name
// of the program's file, or, for a script, in the interpreter's arguments.
#include "shell/processnames.h"

#include <algorithm>
#include <charconv>
#include <limits.h>

#include <fcntl.h>
#include <unistd.h>

#include "shell/descriptor.h"

namespace korvel::shell {
namespace {

constexpr std::size_t kKeptSize = 15;

// The content of a file; empty if it cannot be read.
std::string contentOf(const std::string &path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::string content;
  char block[4096];
  for (ssize_t got; (got = read(file.get(), block, sizeof block)) > 0;) {
    content.append(block, static_cast<std::size_t>(got));
  }
  return content;
}

std::string_view lastComponent(std::string_view path) { return path.substr(path.rfind('/') + 1); }

// Takes the text before the next `separator` off `rest`, or all of it without one.
std::string_view cutAt(std::string_view &rest, char separator) {
  const std::size_t end = std::min(rest.find(separator), rest.size());
  const std::string_view piece = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return piece;
}

// The folder of /proc for the process whose number a line begins with.
std::string folderOf(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  int process = 0;
  std::from_chars(line.data(), line.data() + line.size(), process);
  return "/proc/" + std::to_string(process) + "/";
}

// The name of the file that the process runs, even if a newer file has replaced it.
std::string programOf(const std::string &folder) {
  constexpr std::string_view kReplaced = " (deleted)";
  char path[PATH_MAX];
  const ssize_t length = readlink((folder + "exe").c_str(), path, sizeof path);
  std::string_view name =
      lastComponent({path, static_cast<std::size_t>(std::max<ssize_t>(length, 0))});
  if (name.ends_with(kReplaced)) name.remove_suffix(kReplaced.size());
  return std::string(name);
}

// A line goes to `kill` as it is: what is appended must stay part of its last word.
bool isPartOfWord(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z') || std::string_view("._-+@%,:=").find(c) != std::string::npos;
}

bool makesWhole(std::string_view name, std::string_view kept) {
  return name.size() > kept.size() && name.starts_with(kept) &&
         std::all_of(name.begin() + kKeptSize - 1, name.end(), isPartOfWord);
}

// What the kernel has cut off a name; empty if that is not known.
std::string cutOff(const std::string &folder, std::string_view kept) {
  const std::string program = programOf(folder);
  if (makesWhole(program, kept)) return program.substr(kKeptSize);
  const std::string arguments = contentOf(folder + "cmdline");
  for (std::string_view rest = arguments; !rest.empty();) {
    const std::string_view name = lastComponent(cutAt(rest, '\0'));
    if (makesWhole(name, kept)) return std::string(name.substr(kKeptSize));
  }
  return {};
}

// Whether a line ends with a name. `ps` shows a byte that it cannot print as "?".
bool endsWith(std::string_view line, std::string_view name) {
  return line.size() > name.size() &&
         std::equal(name.rbegin(), name.rend(), line.rbegin(),
                    [](char c, char shown) { return shown == c || shown == '?'; });
}

// `ps` shows "?" for a letter of several bytes whose last ones are cut off.
char withLetter(char shown, char kept) {
  return shown == '?' && static_cast<unsigned char>(kept) >= 0x80 ? kept : shown;
}

std::string withWholeName(std::string_view line) {
  std::string whole(line);
  const std::string folder = folderOf(line);
  const std::string comm = contentOf(folder + "comm");
  const std::string_view kept = std::string_view(comm).substr(0, comm.rfind('\n'));
  if (kept.size() != kKeptSize || !endsWith(line, kept)) return whole;
  const std::string rest = cutOff(folder, kept);
  if (rest.empty()) return whole;
  const auto name = whole.end() - kKeptSize;
  std::transform(name, whole.end(), kept.begin(), name, withLetter);
  return whole + rest;
}

}  // namespace

std::string withWholeNames(std::string_view listing) {
  std::string lines;
  while (!listing.empty()) lines.append(withWholeName(cutAt(listing, '\n'))).append(1, '\n');
  return lines;
}

}  // namespace korvel::shell
