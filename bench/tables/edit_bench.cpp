// SPDX-License-Identifier: MIT
// One line replaced in tables of a hundred lines to a million, beside what else would replace it
// and beside the mere writing, syncing and renaming of the same bytes ("write") or the copying of
// the file ("copy"). On a disk, where every way syncs what it writes, and in memory, where syncing
// costs nothing.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <korvel/desktop.h>
#include <korvel/tables.h>

#include "bench/support/ratios.h"
#include "bench/tables/corpus.h"

extern char **environ;

namespace {

namespace fs = std::filesystem;
using benchmark::State;
using korvel::bench::Corpus;
using korvel::bench::corpus;
using korvel::bench::goal;

constexpr int kColumn = 4;
constexpr const char *kOldText = "31/12/99";
// As long as the old one, so that every replacement writes as much as the one before.
constexpr const char *kNewTexts[] = {"31/12/98", "31/12/97"};

std::string read(const fs::path &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

void require(bool done, const char *what) {
  if (done) return;
  std::perror(what);
  std::exit(1);
}

void sync(const std::string &path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  require(file >= 0 && fsync(file) == 0, path.c_str());
  close(file);
}

// A copy of a table of the corpus, to be edited.
struct Copy {
  std::string root;  // the folder of its volume
  std::string folder;
  std::string name;
  std::string path;
  int line;  // the one that is replaced

  // Text that is one line of the table from the start to the end of its last column.
  std::string before;
};

Copy copied(const Corpus &table, const std::string &root) {
  const std::string folder = root + "/Data/edits";
  fs::create_directories(folder);
  Copy copy = {root, folder, table.name, folder + "/" + table.name + ".tab", 0, ""};
  fs::copy_file(table.path, copy.path, fs::copy_options::overwrite_existing);
  // Three heading lines come before the first data line.
  copy.line = table.middle() + 4;
  copy.before = table.code(table.middle()) + ",";
  return copy;
}

// --- The ways ------------------------------------------------------------------------------------

// Replaces the text of the line by another one.
using Way = std::function<void(const Copy &, const char *text)>;

void withKorvel(const Copy &copy, const char *text) {
  ZRV_Libelle_NC_set_ligne(copy.line);
  const int result = ZRV_Libelle_NC_idem_replace("", 1, kColumn, copy.name.c_str(), text);
  require(result == 1, "korvel");
}

// A new file in the place of the old one, filled block by block.
void replaceFile(const Copy &copy, const std::function<std::string_view()> &nextBlock) {
  const std::string temporary = copy.path + "_";
  const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  require(file >= 0, temporary.c_str());
  for (auto block = nextBlock(); !block.empty(); block = nextBlock())
    require(write(file, block.data(), block.size()) == static_cast<ssize_t>(block.size()), "write");
  require(fsync(file) == 0, "fsync");
  close(file);
  require(std::rename(temporary.c_str(), copy.path.c_str()) == 0, "rename");
  sync(copy.folder);
}

constexpr std::size_t kBlock = 256 * 1024;

// Nothing is read or looked for: the bytes are at hand.
void justWrite(const Copy &copy, std::string_view bytes) {
  replaceFile(copy, [&bytes] {
    const std::string_view block = bytes.substr(0, kBlock);
    bytes.remove_prefix(block.size());
    return block;
  });
}

// Nothing is looked for.
void justCopy(const Copy &copy) {
  static std::vector<char> block(kBlock);
  const int file = open(copy.path.c_str(), O_RDONLY | O_CLOEXEC);
  replaceFile(copy, [&] {
    const ssize_t got = ::read(file, block.data(), block.size());
    require(got >= 0, "read");
    return std::string_view(block.data(), static_cast<std::size_t>(got));
  });
  close(file);
}

void withStreams(const Copy &copy, const char *text) {
  const std::string temporary = copy.path + "_";
  {
    std::ifstream in(copy.path, std::ios::binary);
    std::ofstream out(temporary, std::ios::binary);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
      if (number == copy.line) line.replace(line.rfind(',') + 1, std::string::npos, text) += '\r';
      out << line << '\n';
    }
  }
  sync(temporary);
  require(std::rename(temporary.c_str(), copy.path.c_str()) == 0, "rename");
  sync(copy.folder);
}

void run(std::vector<std::string> arguments) {
  std::vector<char *> pointers;
  for (std::string &one : arguments) pointers.push_back(one.data());
  pointers.push_back(nullptr);
  pid_t process = 0;
  require(posix_spawnp(&process, pointers[0], nullptr, nullptr, pointers.data(), environ) == 0,
          pointers[0]);
  int status = 0;
  require(waitpid(process, &status, 0) == process && status == 0, pointers[0]);
}

std::string sedProgram(const Copy &copy, const char *text) {
  std::ostringstream program;
  program << copy.line << "s|,[^,]*$|," << text << "\\r|";
  return program.str();
}

void withSed(const Copy &copy, const char *text) {
  run({"sed", "-i", sedProgram(copy, text), copy.path});
  sync(copy.path);
}

void withMawk(const Copy &copy, const char *text) {
  const std::string temporary = copy.path + "_";
  std::ostringstream command;
  command << "mawk 'NR == " << copy.line << " { sub(/,[^,]*$/, \"," << text
          << "\\r\") } { print }' " << copy.path << " > " << temporary;
  run({"sh", "-c", command.str()});
  sync(temporary);
  require(std::rename(temporary.c_str(), copy.path.c_str()) == 0, "rename");
  sync(copy.folder);
}

// --- Registration --------------------------------------------------------------------------------

// Whether the line now has the text and all else is as it was.
bool replaces(const Way &way, const Copy &copy, const Corpus &table) {
  std::string expected = read(table.path);
  const std::size_t line = expected.find("\n" + copy.before) + 1;
  expected.replace(expected.find(kOldText, line), std::string(kOldText).size(), kNewTexts[1]);
  way(copy, kNewTexts[1]);
  return read(copy.path) == expected;
}

auto *add(const std::string &workload, const std::string &who, const Corpus &table,
          const std::string &root, const Way &way) {
  return benchmark::RegisterBenchmark(
             (workload + "/" + who).c_str(),
             [=, &table](State &state) {
               std::snprintf(szVolumes, sizeof szVolumes, "%s", root.c_str());
               std::snprintf(szDirTables, sizeof szDirTables, "Data:edits");
               const Copy copy = copied(table, root);
               if (!replaces(way, copy, table)) return state.SkipWithError("wrong table");
               std::size_t round = 0;
               for (auto _ : state) way(copy, kNewTexts[round++ % std::size(kNewTexts)]);
             })
      ->UseRealTime();
}

void addLimits(const std::string &workload, const Corpus &table, const std::string &root) {
  const auto limit = [&](const char *who, const std::function<void(const Copy &)> &work) {
    benchmark::RegisterBenchmark((workload + "/" + who).c_str(), [=, &table](State &state) {
      const Copy copy = copied(table, root);
      for (auto _ : state) work(copy);
    })->UseRealTime();
  };
  limit("write", [bytes = read(table.path)](const Copy &copy) { justWrite(copy, bytes); });
  limit("copy", justCopy);
}

double seconds(const std::function<void()> &work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// What sed takes for an empty file is its start, and does not count.
void addSed(const std::string &workload, const Corpus &table, const std::string &root) {
  benchmark::RegisterBenchmark((workload + "/sed -i").c_str(), [=, &table](State &state) {
    const Copy copy = copied(table, root);
    Copy empty = copy;
    empty.path = copy.folder + "/empty";
    std::ofstream(empty.path).flush();
    if (!replaces(withSed, copy, table)) return state.SkipWithError("wrong table");
    std::size_t round = 0;
    for (auto _ : state) {
      const char *text = kNewTexts[round++ % std::size(kNewTexts)];
      const double start = seconds([&] {
        run({"sed", "-i", sedProgram(empty, text), empty.path});
      });
      const double whole = seconds([&] { withSed(copy, text); });
      state.SetIterationTime(std::max(whole - start, 1e-9));
    }
  })->UseManualTime();
}

void addAll(int lines, const std::string &name, const std::string &place, const std::string &root) {
  const Corpus &table = corpus(lines);
  const std::string workload = "replace " + name + ", " + place;
  add(workload, "korvel", table, root, withKorvel);
  addLimits(workload, table, root);
  add(workload, "streams", table, root, withStreams);
  addSed(workload, table, root);
  add(workload, "mawk", table, root, withMawk);
}

// A folder in memory, removed at the end.
class MemoryFolder {
 public:
  MemoryFolder() {
    if (mkdtemp(path_.data()) == nullptr) path_.clear();
  }
  ~MemoryFolder() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
  }
  const std::string &path() const { return path_; }

 private:
  std::string path_ = "/dev/shm/korvel-XXXXXX";
};

const MemoryFolder memory;

const bool registered = [] {
  constexpr struct {
    int lines;
    const char *name;
  } kTables[] = {{100, "100 lines"}, {36000, "36,000 lines"}, {1000000, "1,000,000 lines"}};
  for (const auto &table : kTables) {
    addAll(table.lines, table.name, "disk", BENCH_EDITS);
    if (!memory.path().empty()) addAll(table.lines, table.name, "memory", memory.path());
  }
  goal("replace 100 lines, disk", "write", 1.5);
  goal("replace 36,000 lines, disk", "write", 1.3);
  goal("replace 36,000 lines, disk", "sed -i", 1.0);
  goal("replace 36,000 lines, memory", "copy", 1.3);
  goal("replace 36,000 lines, memory", "streams", 0.5);
  goal("replace 1,000,000 lines, memory", "copy", 1.2);
  goal("replace 1,000,000 lines, memory", "streams", 0.5);
  goal("replace 1,000,000 lines, memory", "sed -i", 0.25);
  return true;
}();

}  // namespace

KORVEL_BENCH_MAIN()
