// SPDX-License-Identifier: MIT
// Misuse of tools: paths that a shell or a tool reads in another way, and what is not there.
#include "shell/misuse.h"

#include <cerrno>

#include "base/views.h"
#include "shell/existence.h"
#include "shell/posix_path.h"

namespace korvel::shell {

using base::ErrnoKept;
using base::Quoted;

namespace {

void needsPlain(const Call &call, std::string_view path) {
  call.misusedIf(path.empty(), {"an empty path names nothing"});
  needsPosixPath(call, path);
  call.misusedIf(path.find('\'') != path.npos,
                 {"the \"'\" in ", Quoted(path), " ends the shell's quotes, and it runs the rest"});
  call.misusedIf(path.starts_with('-'), {Quoted(path),
                                         " is an option of the tool: write \"./\" "
                                         "in front"});
}

void needsEntry(const Call &call, const char *path) {
  if (!call) return;
  const ErrnoKept kept;
  call.misusedIf(!hasEntry(path) && errno != EACCES, {"there is no ", Quoted(path)});
}

}  // namespace

void needsOutput(const Call &call, const void *out, int outSize) {
  call.needsAll();
  call.misusedIf(out != nullptr && outSize < 0, {"there is no buffer of ", outSize, " bytes"});
}

void needsPath(const Call &call, const char *path) {
  call.needsAll();
  needsPlain(call, base::textOf(path));
}

void needsPaths(const Call &call, const char *path, const char *other) {
  needsPath(call, path);
  needsPath(call, other);
}

void needsThere(const Call &call, const char *path) {
  needsPath(call, path);
  needsEntry(call, path);
}

void needsBoth(const Call &call, const char *path, const char *other) {
  needsThere(call, path);
  needsThere(call, other);
}

void needsDocument(const Call &call, const char *path) {
  call.needsAll();
  const std::string_view text = base::textOf(path);
  needsPosixPath(call, text);
  call.misusedIf(text.find_first_of("\"$`\\") != text.npos,
                 {"the shell reads a \"$\", \"`\", \"\\\" or quote in ", Quoted(text)});
}

void needsMacPath(const Call &call, const char *path) {
  call.needsAll();
  const std::string_view text = base::textOf(path);
  needsColonPath(call, text);
  if (!call) return;
  const ErrnoKept kept;
  call.misusedIf(text.size() < kPathSize && PosixPath::ofTools(path).length() == 0,
                 {"there is no volume ", Quoted(text), ", and nothing is left of the path"});
}

void needsShortPath(const Call &call, int length) {
  call.misusedIf(length == 0, {"the path of the system would have more than ", kPathSize - 1,
                               " characters, and is not written"});
}

void needsDone(const Call &call, bool isDone, const char *what) { call.misusedIf(!isDone, {what}); }

void needsBundle(const Call &call, bool isLoaded) {
  call.needsAll();
  call.misusedIf(!isLoaded, {"there is no such bundle: \"System.framework\" is the only one"});
}

void needsListing(const Call &call, const void *out, const char *folder, int max) {
  call.needsAll();
  call.misusedIf(max < 0, {"there are no ", max, " slots: 0 is the least"});
  call.misusedIf(out == nullptr && max > 0, {"there is no list of ", max, " slots"});
  needsThere(call, folder);
}

void needsSlots(const Call &call, int max, int found) {
  call.misusedIf(max > 0 && found > max,
                 {found, " files are found, and the list has ", max, " slots"});
}

}  // namespace korvel::shell
