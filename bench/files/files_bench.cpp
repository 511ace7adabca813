// SPDX-License-Identifier: MIT
// The file layer beside the system calls it is made of and beside what a user would take instead.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/desktop.h>
#include <korvel/files.h>

#include "bench/support/ratios.h"
#include "files/replace.h"

namespace {

using benchmark::State;
using korvel::bench::goal;

constexpr int kFiles = 4000;
constexpr int kRow = 256;

// A volume "Data" in a folder of its own, with all that the workloads need; removed at the end.
class Stage {
 public:
  Stage() {
    char folder[] = "/tmp/korvel-bench-XXXXXX";
    if (mkdtemp(folder) == nullptr) std::abort();
    root_ = folder;
    std::snprintf(szVolumes, sizeof szVolumes, "%s", folder);
    std::filesystem::create_directories(root_ + "/Data/many");
    std::mt19937 random(1);
    for (int i = 0; i < kFiles; ++i) {
      char name[64];
      std::snprintf(name, sizeof name, "patient_%08lu_%04d.tab",
                    static_cast<unsigned long>(random() % 100000000), i);
      write("many/" + std::string(name), std::string(random() % 3000, 'x'));
      names_.push_back("Data:many:" + std::string(name));
    }
    std::shuffle(names_.begin(), names_.end(), random);
    write("small.ini", std::string(4000, 's'));
    write("medium.tab", std::string(1500000, 'm'));
    write("large.tab", std::string(40000000, 'l'));
  }
  ~Stage() { std::filesystem::remove_all(root_); }
  Stage(const Stage &) = delete;
  Stage &operator=(const Stage &) = delete;

  std::string posix(const std::string &name) const { return root_ + "/Data/" + name; }
  const std::string &root() const { return root_; }

  // The colon paths of all files, in no order, as rows of a file list.
  std::vector<char> rows() const {
    std::vector<char> rows(static_cast<std::size_t>(kFiles * kRow));
    for (std::size_t i = 0; i < names_.size(); ++i)
      std::memcpy(rows.data() + i * kRow, names_[i].c_str(), names_[i].size() + 1);
    return rows;
  }

 private:
  void write(const std::string &name, const std::string &text) const {
    std::ofstream(posix(name), std::ios::binary) << text;
  }
  std::string root_;
  std::vector<std::string> names_;
};

Stage &stage() {
  static Stage instance;
  return instance;
}

// ---- Paths ----

const bool kPathGoals = goal("path_conversion", "its_stat", 2.0) &&
                        goal("existence", "its_stats", 2.0) &&
                        goal("open_for_writing", "chmod_by_a_process", 0.05);

void convertPath(State &state) {
  stage();
  char out[256];
  for (auto _ : state) benchmark::DoNotOptimize(MAC2UNIX("Data:small.ini", out));
}
BENCHMARK(convertPath)->Name("path_conversion/korvel");

void statVolume(State &state) {
  const std::string volume = stage().root() + "/Data";
  struct stat status;
  for (auto _ : state) benchmark::DoNotOptimize(stat(volume.c_str(), &status));
}
BENCHMARK(statVolume)->Name("path_conversion/its_stat");

void existence(State &state) {
  stage();
  for (auto _ : state) benchmark::DoNotOptimize(File_Is_Existing("Data:small.ini"));
}
BENCHMARK(existence)->Name("existence/korvel");

void statVolumeAndFile(State &state) {
  const std::string volume = stage().root() + "/Data";
  const std::string file = stage().posix("small.ini");
  struct stat status;
  for (auto _ : state) {
    benchmark::DoNotOptimize(stat(volume.c_str(), &status));
    benchmark::DoNotOptimize(lstat(file.c_str(), &status));
  }
}
BENCHMARK(statVolumeAndFile)->Name("existence/its_stats");

void openForWriting(State &state) {
  stage();
  for (auto _ : state) File_Close(File_Open("Data:small.ini", 0, 1));
}
BENCHMARK(openForWriting)->Name("open_for_writing/korvel")->UseRealTime();

void openAndChangeMode(State &state) {
  const std::string file = stage().posix("small.ini");
  for (auto _ : state) {
    const int fd = open(file.c_str(), O_WRONLY | O_CREAT, 0666);
    chmod(file.c_str(), 0777);
    struct stat status;
    fstat(fd, &status);
    close(fd);
  }
}
BENCHMARK(openAndChangeMode)->Name("open_for_writing/open_chmod_fstat_close")->UseRealTime();

void changeModeByAProcess(State &state) {
  const std::string command = "chmod 0777 '" + stage().posix("small.ini") + "'";
  for (auto _ : state) pclose(popen(command.c_str(), "r"));
}
BENCHMARK(changeModeByAProcess)->Name("open_for_writing/chmod_by_a_process")->UseRealTime();

// ---- Memory files ----

const bool kLoadGoal = goal("load_40MB_by_8192", "one_read_fresh_block", 2.0);

void load(State &state) {
  stage();
  char block[8192];
  for (auto _ : state) {
    const int file = File_Open("Data:large.tab", 1, 0);
    const int memory = MFil_Open("", -1, 0);
    for (int n = File_Read(file, block, sizeof block); n > 0;
         n = File_Read(file, block, sizeof block))
      MFil_Write(memory, block, n);
    benchmark::DoNotOptimize(MFil_Size(memory));
    MFil_Close(memory);
    File_Close(file);
  }
}
BENCHMARK(load)->Name("load_40MB_by_8192/korvel")->Unit(benchmark::kMillisecond);

void readWhole(const std::string &path, char *to, std::size_t size) {
  const int fd = open(path.c_str(), O_RDONLY);
  benchmark::DoNotOptimize(read(fd, to, size));
  close(fd);
}

void readIntoFreshBlock(State &state) {
  const std::string path = stage().posix("large.tab");
  for (auto _ : state) {
    char *block = static_cast<char *>(std::malloc(40000000));
    readWhole(path, block, 40000000);
    std::free(block);
  }
}
BENCHMARK(readIntoFreshBlock)
    ->Name("load_40MB_by_8192/one_read_fresh_block")
    ->Unit(benchmark::kMillisecond);

void readIntoKeptBlock(State &state) {
  const std::string path = stage().posix("large.tab");
  std::vector<char> block(40000000);
  for (auto _ : state) readWhole(path, block.data(), block.size());
}
BENCHMARK(readIntoKeptBlock)
    ->Name("load_40MB_by_8192/one_read_kept_block")
    ->Unit(benchmark::kMillisecond);

// ---- Directories ----

const bool kListGoals = goal("list_4000_files", "bare_command", 1.05);

void findFiles(State &state) {
  stage();
  std::vector<char> rows(static_cast<std::size_t>(kFiles * kRow));
  for (auto _ : state)
    benchmark::DoNotOptimize(Dir_FindFiles(rows.data(), "Data:many", kFiles, "*.tab"));
}
BENCHMARK(findFiles)->Name("list_4000_files/korvel")->Unit(benchmark::kMillisecond)->UseRealTime();

void bareCommand(State &state) {
  const std::string command = "ls -1F '" + stage().posix("many") + "/' | grep -i '.tab'";
  std::vector<char> output(static_cast<std::size_t>(kFiles * kRow));
  for (auto _ : state) {
    FILE *pipe = popen(command.c_str(), "r");
    benchmark::DoNotOptimize(fread(output.data(), 1, output.size() - 1, pipe));
    pclose(pipe);
  }
}
BENCHMARK(bareCommand)
    ->Name("list_4000_files/bare_command")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// ---- Sorting ----

const bool kSortGoals = goal("sort_4000_names", "qsort_of_rows", 0.7) &&
                        goal("sort_4000_names", "stable_sort_of_strings", 2.5) &&
                        goal("sort_4000_by_size", "stat_each_and_sort", 2.2) &&
                        goal("sort_4000_by_size", "file_size_and_stable_sort", 1.9);

// Runs `sort` on the unsorted rows, again and again.
template <typename Sort>
void sortAgain(State &state, Sort sort) {
  const std::vector<char> unsorted = stage().rows();
  std::vector<char> rows = unsorted;
  for (auto _ : state) {
    state.PauseTiming();
    rows = unsorted;
    state.ResumeTiming();
    sort(rows.data());
  }
}

int compareRows(const void *a, const void *b) {
  return std::strcmp(static_cast<const char *>(a), static_cast<const char *>(b));
}

void sortNames(State &state) {
  sortAgain(state, [](char *rows) { benchmark::DoNotOptimize(Dir_SortFiles(rows, kFiles)); });
}
BENCHMARK(sortNames)->Name("sort_4000_names/korvel");

void qsortRows(State &state) {
  sortAgain(state, [](char *rows) { std::qsort(rows, kFiles, kRow, compareRows); });
}
BENCHMARK(qsortRows)->Name("sort_4000_names/qsort_of_rows");

// Moves the rows' texts as the indexes say.
void arrange(char *rows, const std::vector<int> &order) {
  std::vector<char> old(rows, rows + kFiles * kRow);
  for (int i = 0; i < kFiles; ++i)
    std::strcpy(rows + i * kRow, old.data() + order[static_cast<std::size_t>(i)] * kRow);
}

void stableSortNames(State &state) {
  sortAgain(state, [](char *rows) {
    std::vector<std::string> names;
    for (int i = 0; i < kFiles; ++i) names.emplace_back(rows + i * kRow);
    std::stable_sort(names.begin(), names.end());
    for (int i = 0; i < kFiles; ++i)
      std::strcpy(rows + i * kRow, names[static_cast<std::size_t>(i)].c_str());
  });
}
BENCHMARK(stableSortNames)->Name("sort_4000_names/stable_sort_of_strings");

void sortSizes(State &state) {
  sortAgain(state, [](char *rows) { benchmark::DoNotOptimize(Dir_SortSizeFiles(rows, kFiles)); });
}
BENCHMARK(sortSizes)->Name("sort_4000_by_size/korvel")->Unit(benchmark::kMillisecond);

template <typename SizeOf>
void sortBySizes(char *rows, SizeOf sizeOf) {
  std::vector<std::uintmax_t> sizes;
  for (int i = 0; i < kFiles; ++i) {
    std::string path = stage().root() + "/" + (rows + i * kRow);
    std::replace(path.begin(), path.end(), ':', '/');
    sizes.push_back(sizeOf(path));
  }
  std::vector<int> order(kFiles);
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
    return sizes[static_cast<std::size_t>(a)] > sizes[static_cast<std::size_t>(b)];
  });
  arrange(rows, order);
}

void statEachAndSort(State &state) {
  sortAgain(state, [](char *rows) {
    sortBySizes(rows, [](const std::string &path) {
      struct stat status;
      return stat(path.c_str(), &status) == 0 ? static_cast<std::uintmax_t>(status.st_size) : 0;
    });
  });
}
BENCHMARK(statEachAndSort)
    ->Name("sort_4000_by_size/stat_each_and_sort")
    ->Unit(benchmark::kMillisecond);

void fileSizeAndSort(State &state) {
  sortAgain(state, [](char *rows) {
    sortBySizes(rows, [](const std::string &path) { return std::filesystem::file_size(path); });
  });
}
BENCHMARK(fileSizeAndSort)
    ->Name("sort_4000_by_size/file_size_and_stable_sort")
    ->Unit(benchmark::kMillisecond);

// ---- Replacement ----

const bool kReplaceGoals = goal("replace_4KB", "write_sync_rename", 1.3) &&
                           goal("replace_4KB", "write_sync_rename_syncfolder", 1.3) &&
                           goal("replace_1.5MB", "write_sync_rename_syncfolder", 1.3);

void replaceWhole(State &state, const char *name) {
  const std::string path = stage().posix(name);
  const std::string text(std::filesystem::file_size(path), 'n');
  for (auto _ : state) {
    korvel::files::Replacement replacement;
    const bool done =
        replacement.begin(path.c_str()) && replacement.append(text) && replacement.commit();
    benchmark::DoNotOptimize(done);
  }
}

void writeSyncRename(State &state, const char *name, bool syncsFolder) {
  const std::string path = stage().posix(name);
  const std::string temporary = path + "_";
  const std::string folder = stage().posix("");
  const std::string text(std::filesystem::file_size(path), 'n');
  for (auto _ : state) {
    const int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    benchmark::DoNotOptimize(write(fd, text.data(), text.size()));
    fsync(fd);
    close(fd);
    std::rename(temporary.c_str(), path.c_str());
    if (!syncsFolder) continue;
    const int folderFd = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    fsync(folderFd);
    close(folderFd);
  }
}

BENCHMARK_CAPTURE(replaceWhole, small, "small.ini")->Name("replace_4KB/korvel")->UseRealTime();
BENCHMARK_CAPTURE(writeSyncRename, small, "small.ini", false)
    ->Name("replace_4KB/write_sync_rename")
    ->UseRealTime();
BENCHMARK_CAPTURE(writeSyncRename, smallFolder, "small.ini", true)
    ->Name("replace_4KB/write_sync_rename_syncfolder")
    ->UseRealTime();
BENCHMARK_CAPTURE(replaceWhole, medium, "medium.tab")->Name("replace_1.5MB/korvel")->UseRealTime();
BENCHMARK_CAPTURE(writeSyncRename, mediumFolder, "medium.tab", true)
    ->Name("replace_1.5MB/write_sync_rename_syncfolder")
    ->UseRealTime();

}  // namespace

KORVEL_BENCH_MAIN()
