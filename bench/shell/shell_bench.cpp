// Path conversion and existence beside the stat that they need, and listings beside the bare
// command.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <korvel/desktop.h>
#include <korvel/shell.h>

#include "bench/support/ratios.h"

namespace {

using benchmark::State;
using korvel::bench::goal;

constexpr int kFiles = 4000;

// A volumes folder with one volume in it, and a folder of many files.
class Scene {
 public:
  Scene() {
    char pattern[] = "/tmp/korvel-bench-XXXXXX";
    if (mkdtemp(pattern) == nullptr) std::abort();
    folder_ = pattern;
    std::filesystem::create_directories(folder_ + "/Data/Docs");
    std::filesystem::create_symlink("Data", folder_ + "/Link");
    std::ofstream(folder_ + "/Data/Docs/file") << "x";
    std::filesystem::create_directory(many());
    for (int i = 0; i < kFiles; ++i) {
      std::ofstream(many() + "/FICHE" + std::to_string(100000 + i * 7919 % 99991) + ".TXT");
    }
    std::strcpy(szVolumes, folder_.c_str());
    // Both sides list in the same locale.
    setenv("LC_ALL", "C", 1);
  }
  ~Scene() { std::filesystem::remove_all(folder_); }
  Scene(const Scene &) = delete;
  Scene &operator=(const Scene &) = delete;

  std::string path(const std::string &name) const { return folder_ + "/" + name; }
  std::string many() const { return path("many"); }

 private:
  std::string folder_;
};

const Scene &scene() {
  static const Scene only;
  return only;
}

void callStat(State &state, const std::string &path) {
  struct stat entry;
  for (auto _ : state) benchmark::DoNotOptimize(stat(path.c_str(), &entry));
}

void convert(State &state, const char *macPath) {
  scene();
  char out[256];
  for (auto _ : state) benchmark::DoNotOptimize(BSDMAC2UNIX(macPath, out));
}

void exist(State &state, const std::string &path) {
  for (auto _ : state) benchmark::DoNotOptimize(BSDIsExisting(path.c_str()));
}

std::string listing() { return "ls -1F '" + scene().many() + "/' | grep -i '.txt'"; }

void listByLibrary(State &state) {
  const std::string folder = scene().many();
  std::vector<char> out(kFiles * 256);
  for (auto _ : state) {
    if (BSDDir_FindFiles(out.data(), folder.c_str(), kFiles, ".txt") != kFiles) {
      state.SkipWithError("files are missing");
    }
  }
}

void listByPopen(State &state) {
  const std::string command = listing();
  std::vector<char> out(kFiles * 256);
  for (auto _ : state) {
    FILE *pipe = popen(command.c_str(), "r");
    if (fread(out.data(), 1, out.size() - 1, pipe) < kFiles) state.SkipWithError("cut listing");
    pclose(pipe);
  }
}

void existByPopen(State &state) {
  const std::string command = "ls -a '" + scene().path("Data/Docs/file") + "'";
  for (auto _ : state) {
    FILE *pipe = popen(command.c_str(), "r");
    benchmark::DoNotOptimize(fgetc(pipe));
    pclose(pipe);
  }
}

// A workload whose peer is the stat of one path.
void besideStat(const std::string &workload, const std::string &path, void (*run)(State &)) {
  goal(workload, "stat", 2.0);
  benchmark::RegisterBenchmark((workload + "/korvel").c_str(), run);
  benchmark::RegisterBenchmark((workload + "/stat").c_str(),
                               [path](State &state) { callStat(state, scene().path(path)); });
}

const bool kRegistered = [] {
  besideStat("convert, volume is a folder", "Data",
             [](State &state) { convert(state, "Data:Docs:dossier:fiche a/b"); });
  besideStat("convert, volume is a link", "Link",
             [](State &state) { convert(state, "Link:Docs:dossier:fiche a/b"); });
  besideStat("convert, unknown volume", "Other",
             [](State &state) { convert(state, "Other:Docs:dossier:fiche a/b"); });
  besideStat("exists, file", "Data/Docs/file",
             [](State &state) { exist(state, scene().path("Data/Docs/file")); });
  besideStat("exists, folder", "Data/Docs",
             [](State &state) { exist(state, scene().path("Data/Docs")); });
  besideStat("exists, link to a folder", "Link",
             [](State &state) { exist(state, scene().path("Link")); });
  besideStat("exists, missing", "Data/Docs/missing",
             [](State &state) { exist(state, scene().path("Data/Docs/missing")); });
  benchmark::RegisterBenchmark("exists, file/popen ls", existByPopen)->UseRealTime();

  // A process's own time does not count its children.
  goal("list 4,000 files", "popen", 1.05);
  benchmark::RegisterBenchmark("list 4,000 files/korvel", listByLibrary)->UseRealTime();
  benchmark::RegisterBenchmark("list 4,000 files/popen", listByPopen)->UseRealTime();
  return true;
}();

}  // namespace

KORVEL_BENCH_MAIN()
