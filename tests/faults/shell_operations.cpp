// SPDX-License-Identifier: MIT
// The functions that run tools.
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>

#include <korvel/desktop.h>
#include <korvel/shell.h>

#include "tests/faults/operations.h"
#include "tests/faults/requests.h"

namespace korvel::faults {
namespace {

using namespace korvel::faults::place;

// The paths that calls use, made before them.
char paths[3][300];
void setPath(int number, const std::string &name) {
  std::string_view path = posix(name);
  paths[number][path.copy(paths[number], sizeof paths[number] - 1)] = '\0';
}

// A folder d with files, a file f, and a folder e in which to put something.
void putFiles() {
  put("f", "content");
  folder("d");
  put("d/b", "1");
  put("d/a", "22");
  folder("d/sub");
  folder("e");
  setPath(0, "f");
  setPath(1, "d");
  setPath(2, "e");
}
void putMarkedName() {
  putFiles();
  put("d/c*", "#!/bin/sh\n");
  chmod(posix("d/c*"), 0755);
}
void putOlder() {
  putFiles();
  put("e/f", "older");
}
// A tool of the volume is found first.
void putTool(const char *name, const char *script) {
  const std::string before = std::getenv("PATH");
  putFiles();
  put(name, script);
  const std::string path = posix(name);
  chmod(path.c_str(), 0755);
  setenv("PATH", (path.substr(0, path.rfind('/')) + ':' + before).c_str(), 1);
}
void putSudo() { putTool("sudo", "#!/bin/sh\nread password\nshift 3\nexec \"$@\"\n"); }
// Two processes, one of a name that was cut.
void putProcesses() {
  putTool("ps",
          "#!/bin/sh\necho ' 99998 ? 00:00:00 faults_test'\n"
          "echo ' 99999 ? 00:00:00 fifteen-letters'\n");
}
void putOpener() { putTool("xdg-open", "#!/bin/sh\nexit 3\n"); }

int lines;
int countLine(char *) { return ++lines, 0; }
int countName(const char *) { return ++lines, 0; }

Answer found(const char *pattern) {
  char names[3][256] = {};
  const int count = BSDDir_FindFiles(names[0], paths[1], 3, pattern);
  return {count, names[0], names[1], names[2]};
}
Answer handedOver(const char *pattern) {
  lines = 0;
  const int result = BSDDir_ProcessFiles(paths[1], pattern, countName);
  return {result, lines};
}

// With the copy: a good result without it is none.
Answer copied(int result, const char *copy) {
  const InLibrary outside(false);
  return {result, std::string_view(content(copy))};
}

constexpr char kNoProcess[] = "no.process.is.called.so";

Answer loaded(int (*load)(const char *, CFBundleRef *), const char *name) {
  CFBundleRef bundle = nullptr;
  const int status = load(name, &bundle);
  return {status, bundle != nullptr ? 1 : 0};
}

// What a tool does is not undone where its end, or what it said, could not be had.
constexpr Operation kShell[] = {
    {"MACOSVersion", nullptr, [] { return Answer{MACOSVersion()}; }, "4192", nullptr},
    {"RunningOnCarbonX", nullptr, [] { return Answer{RunningOnCarbonX()}; }, "1", nullptr},
    {"LoadFrameworkBundleSystem", nullptr,
     [] { return loaded(LoadFrameworkBundleSystem, "System.framework"); }, "0", "-4960"},
    {"LoadFrameworkBundle", nullptr, [] { return loaded(LoadFrameworkBundle, "System.framework"); },
     "0", "-4960"},
    {"BSDInvokeTool", nullptr,
     [] {
       char out[16] = "";
       const int status = BSDInvokeTool("echo bonjour; exit 1", out, sizeof out);
       return Answer{status, out};
     },
     "256", "-1 13 256", kSpawns},
    {"BSDInvokeToolWr", [] { setPath(0, "written"); },
     [] {
       char command[400] = "cat >";
       std::strcat(command, paths[0]);
       return Answer{BSDInvokeToolWr(command, "text")};
     },
     "0", "-1 0", kAnyFiles | kSpawns},
    {"BSDInvokeToolPr", nullptr,
     [] {
       lines = 0;
       const int status = BSDInvokeToolPr("echo un; echo deux", countLine);
       return Answer{status, lines};
     },
     "0", "-1 13 0", kSpawns},
    {"BSDMAC2UNIX", putFiles,
     [] {
       char out[256] = "";
       const int length = BSDMAC2UNIX("Data:f", out);
       return Answer{std::string_view(out).ends_with("/Data/f") ? 1 : 0, length > 0 ? 1 : 0};
     },
     "1", nullptr},
    {"BSDMAC2UNIX, with a quote", putFiles,
     [] {
       char out[256] = "";
       const int length = BSDMAC2UNIX("Data'f:f", out);
       return Answer{length, out};
     },
     "2", "0", kSpawns},
    {"BSDMACchmodrwx", putFiles, [] { return Answer{BSDMACchmodrwx("Data:f")}; }, "0", "-1"},
    {"BSDIsExisting", putFiles, [] { return Answer{BSDIsExisting(paths[0])}; }, "1", "0"},
    {"BSDSCopy", putFiles,
     [] {
       std::strcat(paths[2], "/copy");
       const int status = BSDSCopy(paths[0], paths[2]);
       paths[2][std::strlen(paths[2]) - 5] = '\0';
       return copied(status, "e/copy");
     },
     "0", "-1", kAnyFiles | kSpawns},
    {"BSDCopy", putFiles, [] { return copied(BSDCopy(paths[0], paths[2]), "e/f"); }, "0", "-1",
     kAnyFiles | kSpawns},
    {"BSDCopy, over an older one", putOlder,
     [] { return copied(BSDCopy(paths[0], paths[2]), "e/f"); }, "0", "-1", kAnyFiles | kSpawns},
    {"BSDCopy_psw", putSudo,
     [] { return copied(BSDCopy_psw(paths[0], paths[2], "password"), "e/f"); }, "0", "-1",
     kAnyFiles | kSpawns},
    {"BSDRemove", putFiles, [] { return Answer{BSDRemove(paths[1])}; }, "0", "-1",
     kAnyFiles | kSpawns},
    {"BSDRemove_psw", putSudo, [] { return Answer{BSDRemove_psw(paths[0], "password")}; }, "0",
     "-1", kAnyFiles | kSpawns},
    {"BSDkill", putProcesses, [] { return Answer{BSDkill(kNoProcess)}; }, "256", "-1", kSpawns},
    {"BSDprocessf", nullptr,
     [] {
       char line[] = "0x";
       return Answer{BSDprocessf(line)};
     },
     "0", nullptr, kSpawns},
    {"BSDtestProcess", putProcesses,
     [] {
       return Answer{BSDtestProcess("faults_test"), BSDtest};
     },
     "1", "0", kSpawns},
    {"BSDprocesst", nullptr,
     [] {
       return Answer{BSDprocesst(paths[0]), BSDtest};
     },
     "0", nullptr},
    {"BSDopen", putOpener, [] { return Answer{BSDopen(paths[0])}; }, "768", "-1 0", kSpawns},
    {"BSDDir_FindFiles", putFiles, [] { return found(""); }, "2", "0 1"},
    {"BSDDir_FindFiles, a name that ends like a program's", putMarkedName, [] { return found(""); },
     "3", "0 1 2 3"},
    {"BSDDir_FindFiles, by the tools", putFiles, [] { return found("."); }, "2", "0 1", kSpawns},
    {"BSDDir_ProcessFiles", putFiles, [] { return handedOver(""); }, "0", "0"},
    {"BSDDir_ProcessFiles, by the tools", putFiles, [] { return handedOver("."); }, "0", "0",
     kSpawns},
    {"BSDDir_ProcessFiles_f", nullptr,
     [] {
       char line[] = "a/b*";
       BSDDir_ProcessFiles_fPtr = countName;
       lines = 0;
       const int result = BSDDir_ProcessFiles_f(line);
       return Answer{result, lines};
     },
     "0", nullptr},
};

}  // namespace

std::span<const Operation> shellOperations() { return kShell; }

}  // namespace korvel::faults
