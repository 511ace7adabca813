// SPDX-License-Identifier: MIT
// Path conversion and existence beside the stat that they need, and listings beside the bare
// command and beside a program's own reading of the folder.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

#include <korvel/desktop.h>
#include <korvel/shell.h>

#include "bench/support/ratios.h"

namespace {

using benchmark::State;
using korvel::bench::goal;

constexpr int kFiles = 4000;
constexpr int kFewFiles = 20;

// A volumes folder with one volume in it, and a folder of many files and one of few.
class Scene {
 public:
  Scene() {
    char pattern[] = "/tmp/korvel-bench-XXXXXX";
    if (mkdtemp(pattern) == nullptr) std::abort();
    folder_ = pattern;
    std::filesystem::create_directories(folder_ + "/Data/Docs");
    std::filesystem::create_symlink("Data", folder_ + "/Link");
    std::ofstream(folder_ + "/Data/Docs/file") << "x";
    fill(many(), kFiles);
    fill(few(), kFewFiles);
    std::strcpy(szVolumes, folder_.c_str());
    // Both sides list in the same locale.
    setenv("LC_ALL", "C", 1);
  }
  ~Scene() { std::filesystem::remove_all(folder_); }
  Scene(const Scene &) = delete;
  Scene &operator=(const Scene &) = delete;

  std::string path(const std::string &name) const { return folder_ + "/" + name; }
  std::string many() const { return path("many"); }
  std::string few() const { return path("few"); }

 private:
  static void fill(const std::string &folder, int files) {
    std::filesystem::create_directory(folder);
    for (int i = 0; i < files; ++i) {
      std::ofstream(folder + "/FICHE" + std::to_string(100000 + i * 7919 % 99991) + ".TXT");
    }
  }

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

// A listing of all files of a folder.
struct Listing {
  std::string folder;
  int files;
  std::string pattern;
};

void listByLibrary(State &state, const Listing &listing) {
  std::vector<char> out(static_cast<std::size_t>(listing.files) * 256);
  for (auto _ : state) {
    if (BSDDir_FindFiles(out.data(), listing.folder.c_str(), listing.files,
                         listing.pattern.c_str()) != listing.files) {
      state.SkipWithError("files are missing");
    }
  }
}

void listByPopen(State &state, const Listing &listing) {
  const std::string command =
      "ls -1F '" + listing.folder + "/' | grep -i '" + listing.pattern + "'";
  std::vector<char> out(static_cast<std::size_t>(listing.files) * 256);
  for (auto _ : state) {
    FILE *pipe = popen(command.c_str(), "r");
    const std::size_t length = fread(out.data(), 1, out.size() - 1, pipe);
    if (std::count(out.data(), out.data() + length, '\n') != listing.files) {
      state.SkipWithError("files are missing");
    }
    pclose(pipe);
  }
}

// Reads the folder, compares and sorts; the mark of a link, say, is not looked for.
void listByHand(State &state, const Listing &listing) {
  for (auto _ : state) {
    std::vector<std::string> names;
    DIR *folder = opendir(listing.folder.c_str());
    while (const dirent *entry = readdir(folder)) {
      const bool isHidden = entry->d_name[0] == '.';
      if (!isHidden && strcasestr(entry->d_name, listing.pattern.c_str()) != nullptr) {
        names.emplace_back(entry->d_name);
      }
    }
    closedir(folder);
    std::sort(names.begin(), names.end());
    if (names.size() != static_cast<std::size_t>(listing.files)) {
      state.SkipWithError("files are missing");
    }
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

// Listings beside the bare command take real time: a process's own does not count its children.
void listBesidePopen(const std::string &workload, double ratio, const Listing &listing) {
  goal(workload, "popen", ratio);
  benchmark::RegisterBenchmark((workload + "/korvel").c_str(), listByLibrary, listing)
      ->UseRealTime();
  benchmark::RegisterBenchmark((workload + "/popen").c_str(), listByPopen, listing)->UseRealTime();
}

void listBesideHand(const std::string &workload, double ratio, const Listing &listing) {
  goal(workload, "by hand", ratio);
  benchmark::RegisterBenchmark((workload + "/korvel").c_str(), listByLibrary, listing);
  benchmark::RegisterBenchmark((workload + "/by hand").c_str(), listByHand, listing);
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

  listBesidePopen("list 4,000 files, '.txt'", 1.05, {scene().many(), kFiles, ".txt"});
  listBesidePopen("list 20 files, 'fiche'", 0.1, {scene().few(), kFewFiles, "fiche"});
  listBesideHand("list 4,000 files, 'fiche'", 1.3, {scene().many(), kFiles, "fiche"});
  listBesideHand("list 4,000 files, all", 1.3, {scene().many(), kFiles, ""});
  return true;
}();

}  // namespace

KORVEL_BENCH_MAIN()
