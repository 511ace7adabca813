// SPDX-License-Identifier: MIT
// The model of editing and upkeep: reads the old file line by line and writes the new one as text.
#include "tests/tables/edit_model.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace korvel::test {
namespace {

constexpr const char *kUnknown =
    "N\xE9"
    "ant";

// The lines of a file, as a reader with a buffer of that size keeps them.
std::vector<std::string> keptLines(const std::string &bytes, std::size_t size) {
  std::vector<std::string> all;
  ModelBytes source(bytes);
  std::vector<char> buffer(size);
  while (const auto length = modelReadLine(source, buffer.data(), size))
    all.emplace_back(buffer.data(), *length);
  return all;
}

// A line split in a buffer of its own: its fields up to the first empty one, and the rest of
// the line from there on, if there is one.
struct SplitLine {
  explicit SplitLine(const std::string &kept) {
    char buffer[1024] = {};
    std::memcpy(buffer, kept.data(), kept.size());
    modelSplit(buffer, sizeof buffer);
    std::size_t at = 0;
    while (buffer[at] != '\0') {
      fields.emplace_back(buffer + at);
      at += fields.back().size() + 1;
    }
    if (fields.empty()) fields.emplace_back();
    // The same line unsplit.
    std::string text = kept.substr(0, 1022);
    text = text.substr(0, text.find('\0'));
    if (text.empty()) {
      firstIsEmpty = true;
      rest = "";
    } else if (text[0] == ',' || text[0] == '+') {
      firstIsEmpty = true;
      rest = text;
    } else {
      for (std::size_t i = 1; i <= text.size(); ++i) {
        const bool separatorBefore = text[i - 1] == ',' || text[i - 1] == '+';
        const bool emptyHere = i == text.size() || text[i] == ',' || text[i] == '+';
        if (!separatorBefore || !emptyHere) continue;
        rest = text.substr(i);
        hasRest = true;
        break;
      }
    }
  }

  std::vector<std::string> fields;
  bool firstIsEmpty = false;  // then `rest` follows the first field directly
  bool hasRest = false;       // then `rest` follows a separator
  std::string rest;
};

// The line with the field replaced. had: whether it has that field.
std::string rebuilt(const SplitLine &line, int keyLength, int column, const std::string &text,
                    bool &had) {
  std::string result;
  const auto count = static_cast<long>(line.fields.size());
  if (keyLength == 0 && column == 0) {
    had = true;
    result = text;
    for (long i = 1; i < count; ++i) result += "," + line.fields[static_cast<std::size_t>(i)];
  } else {
    // Column 0 and below: more fields than there are.
    const long wanted = column <= 0 ? count : column;
    had = wanted < count;
    result = line.fields[0];
    for (long i = 1; i < count; ++i)
      result += "," + (i == wanted ? text : line.fields[static_cast<std::size_t>(i)]);
  }
  if (line.hasRest) result += ",";
  return result + line.rest;
}

}  // namespace

bool EditModel::isFile(const std::string &path) const {
  const auto found = files.find(path);
  return found != files.end() && found->second != kFolder;
}

bool EditModel::directoryExists(const std::string &path) const {
  const auto found = directories.find(path.substr(0, path.rfind(':')));
  return found != directories.end() && found->second;
}

// Opening a file that must exist.
int EditModel::openFile(const std::string &path) {
  const int handle = fileHandles.take();
  if (handle >= 0 && !isFile(path)) {
    fileHandles.used[static_cast<std::size_t>(handle)] = false;
    return -2;
  }
  return handle;
}

std::optional<EditModel::Rewriting> EditModel::beginRewriting(const char *table) {
  const std::optional<std::string> path = pathOf(table);
  if (!path) return std::nullopt;
  Rewriting rewriting = {*path, *path, -1, -1, "", ""};
  rewriting.temporary.back() = '_';
  rewriting.source = openFile(*path);
  if (rewriting.source < 0) return std::nullopt;
  rewriting.target = fileHandles.take();
  const bool blocked = files.contains(rewriting.temporary) && !isFile(rewriting.temporary);
  if (rewriting.target < 0 || blocked) {
    if (rewriting.target >= 0) fileHandles.used[static_cast<std::size_t>(rewriting.target)] = false;
    fileHandles.leftOpen.insert(rewriting.source);
    return std::nullopt;
  }
  rewriting.old = files[*path];
  return rewriting;
}

// What was written goes over what a left-over file holds; that replaces the table.
void EditModel::endRewriting(Rewriting &rewriting, const std::string &newPath) {
  std::string content;
  if (rewriting.temporary != rewriting.path) {
    content = files.contains(rewriting.temporary) ? files[rewriting.temporary] : "";
    files.erase(rewriting.temporary);
  }
  for (std::size_t i = 0; i < rewriting.written.size(); ++i) {
    if (i < content.size()) {
      content[i] = rewriting.written[i];
    } else {
      content += rewriting.written[i];
    }
  }
  files.erase(rewriting.path);
  files[newPath] = content;
  fileHandles.giveBack(rewriting.target);
  fileHandles.giveBack(rewriting.source);
}

void EditModel::dropRewriting(Rewriting &rewriting) {
  if (rewriting.temporary != rewriting.path) files.erase(rewriting.temporary);
  fileHandles.giveBack(rewriting.target);
  fileHandles.giveBack(rewriting.source);
}

bool EditModel::rewrite(
    const char *table,
    const std::function<std::string(int line, const std::string &kept)> &changed) {
  std::optional<Rewriting> rewriting = beginRewriting(table);
  if (!rewriting) return false;
  int line = 0;
  for (const std::string &kept : keptLines(rewriting->old, 1024)) {
    ++line;
    rewriting->written += line == ZRV_Libelle_NC_il ? changed(line, kept) : kept + "\r\n";
  }
  endRewriting(*rewriting, rewriting->path);
  return line >= ZRV_Libelle_NC_il && ZRV_Libelle_NC_il > 0;
}

std::string EditModel::boundBuffer() const {
  std::string text;
  std::size_t at = 0;
  const std::size_t size = ZRV_Libelle_NC_szBuffer.size();
  while (at < size && ZRV_Libelle_NC_szBuffer[at] != '\0') {
    if (at > 0) text += ',';
    const std::string_view item = itemText(at);
    text += item;
    at += item.size() + 1;
  }
  return text.substr(0, size - 1);
}

void EditModel::store(const std::string &text, bool splitting) {
  const std::string kept = text.substr(0, ZRV_Libelle_NC_szBuffer.size() - 1);
  std::memcpy(ZRV_Libelle_NC_szBuffer.data(), kept.data(), kept.size());
  ZRV_Libelle_NC_szBuffer[kept.size()] = '\0';
  if (kept.size() + 1 < ZRV_Libelle_NC_szBuffer.size())
    ZRV_Libelle_NC_szBuffer[kept.size() + 1] = '\0';
  bufferUsed_ = std::min(kept.size() + 2, ZRV_Libelle_NC_szBuffer.size());
  if (splitting) split();
}

int EditModel::ZRV_Libelle_NC_idem_replace(int keyLength, int column, const char *table,
                                           const char *text) {
  return rewrite(table, [&](int, const std::string &kept) {
    bool had = false;
    return rebuilt(SplitLine(kept), keyLength, column, text, had) + "\r\n";
  });
}

int EditModel::ZRV_Libelle_NC_idem_insert(const char *table, int fields) {
  if (fields < 0) return 0;
  std::string added;
  const bool met = rewrite(table, [&](int, const std::string &kept) {
    std::size_t count = static_cast<std::size_t>(fields);
    if (fields == 0) count = SplitLine(kept).fields.size();
    added = kUnknown;
    for (std::size_t i = 1; i < count && added.size() + 6 <= 1023; ++i) {
      added += ",";
      added += kUnknown;
    }
    return kept + "\r\n" + added + "\r\n";
  });
  if (!met) return 0;
  store(added, true);
  ZRV_Libelle_NC_read = 1;
  return 1;
}

int EditModel::ZRV_Libelle_NC_idem_delete(const char *table) {
  return rewrite(table, [](int, const std::string &) { return std::string(); });
}

int EditModel::ZRV_Libelle_NC_set(int keyLength, int column, const char *text) {
  bool had = false;
  // Bytes of the buffer after its fields are not part of it.
  store(rebuilt(SplitLine(boundBuffer()), keyLength, column, text, had), true);
  return had;
}

int EditModel::ZRV_Libelle_NC_idem_flush(const char *table) {
  const std::string bound = boundBuffer();
  const bool met = rewrite(table, [&](int, const std::string &kept) {
    const SplitLine line(kept);
    return bound + (line.hasRest ? "," : "") + line.rest + "\r\n";
  });
  if (met) store(bound, false);
  return met;
}

int EditModel::ZRV_Table_create(const char *name, const char *version, const char *title) {
  const std::optional<std::string> path = pathOf(name);
  if (!path) return 0;
  if (isFile(*path)) return 1;
  const int handle = fileHandles.take();
  if (handle < 0) return 0;
  if (files.contains(*path) || !directoryExists(*path)) {
    fileHandles.used[static_cast<std::size_t>(handle)] = false;
    return 0;
  }
  files[*path] = std::string(title) + "\r\nVersion: " + version + "\r\n#DEBUT\r\n#FIN\r\n";
  fileHandles.giveBack(handle);
  return 1;
}

int EditModel::ZRV_Table_remove(const char *name) {
  const std::optional<std::string> path = pathOf(name);
  if (!path || !isFile(*path)) return 0;
  files.erase(*path);
  return 1;
}

int EditModel::ZRV_Table_sauvegarde(const char *name, int overwrite) {
  const std::optional<std::string> path = pathOf(name);
  if (!path || path->size() < 4) return 0;
  const std::string backUp = path->substr(0, path->size() - 4) + ".bak";
  if (backUp == *path || (isFile(backUp) && overwrite == 0)) return 0;
  const int source = openFile(*path);
  if (source < 0) return 0;
  const int target = fileHandles.take();
  if (target >= 0) {
    if (!files.contains(backUp) || isFile(backUp)) files[backUp] = files[*path];
    fileHandles.giveBack(target);
  }
  fileHandles.giveBack(source);
  return 0;
}

int EditModel::ZRV_Table_modify(const char *name, const char *newName, const char *version,
                                const char *title) {
  const std::optional<std::string> path = pathOf(name);
  const std::optional<std::string> newPath = pathOf(newName);
  if (!path || !newPath) return 0;
  const bool isTakenByFolder = files.contains(*newPath) && !isFile(*newPath);
  if (*newPath != *path && isTakenByFolder) return 0;
  std::optional<Rewriting> rewriting = beginRewriting(name);
  if (!rewriting) return 0;
  int line = 0;
  for (const std::string &kept : keptLines(rewriting->old, 1024)) {
    ++line;
    if (line == 1) {
      rewriting->written += std::string(title) + "\r\n";
    } else if (line == 2) {
      rewriting->written += std::string("Version: ") + version + "\r\n";
    } else {
      rewriting->written += kept + "\r\n";
    }
  }
  endRewriting(*rewriting, *newPath);
  return line >= 1;
}

int EditModel::ZRV_Table_liste(const char *name, char *out, int outSize) {
  if (outSize > 0) out[0] = '\0';
  const std::string chosen = std::exchange(ZRV_Libelle_NC_szDirTables, "");
  const std::optional<std::string> path = pathOf(name);
  ZRV_Libelle_NC_szDirTables = chosen;
  if (!path) return 0;
  const int handle = openFile(*path);
  if (handle < 0) return 0;
  const auto append = [&](const std::string &text) {
    if (outSize < 1) return;
    if (text.size() < static_cast<std::size_t>(outSize) - std::strlen(out))
      std::strcat(out, text.c_str());
  };
  int result = 0;
  bool collecting = false;
  for (const std::string &kept : keptLines(files[*path], 256)) {
    char buffer[256] = {};
    std::memcpy(buffer, kept.data(), kept.size());
    modelSplit(buffer, sizeof buffer);
    const std::string code = buffer;
    if (modelMatches(code, "#FIN")) {
      collecting = false;
    } else if (collecting) {
      if (outSize > 0 && out[0] != '\0') append("+");
      append(code);
    }
    if (modelMatches(code, "#DEBUT")) {
      result = 1;
      collecting = true;
    }
  }
  fileHandles.giveBack(handle);
  return result;
}

int EditModel::ZRV_Table_scan(const char *name, int *first, int *last,
                              const std::function<void(const char *)> &perLine) {
  const std::optional<std::string> path = pathOf(name);
  if (!path) return 0;
  const int handle = openFile(*path);
  if (handle < 0) return 0;
  const int memory = memoryHandles.take();
  fileHandles.giveBack(handle);
  if (memory < 0) return 0;
  int result = 0;
  bool active = false;
  int number = 0;
  for (const std::string &kept : keptLines(files[*path], 256)) {
    char buffer[256] = {};
    std::memcpy(buffer, kept.data(), kept.size());
    modelSplit(buffer, sizeof buffer);
    const std::string code = buffer;
    *last = number;
    if (modelMatches(code, "#FIN")) {
      active = false;
    } else if (active) {
      perLine(buffer);
    }
    if (modelMatches(code, "#DEBUT")) {
      result = 1;
      active = true;
      if (*first == 0) *first = number + 2;
    }
    ++number;
  }
  memoryHandles.giveBack(memory);
  return result;
}

int EditModel::ZRV_Table_repair(const char *name, const char *version, const char *title) {
  std::optional<Rewriting> rewriting = beginRewriting(name);
  if (!rewriting) return 1;
  int result = 1;
  bool restored = false;
  int line = 0;
  for (const std::string &kept : keptLines(rewriting->old, 1024)) {
    ++line;
    if (line == 1 && kept != title) {
      rewriting->written += std::string(title) + "\r\nVersion: " + version + "\r\n";
      restored = true;
    }
    if (line == 3 && !restored && kept != "#DEBUT") result = 0;
    rewriting->written += kept + "\r\n";
  }
  if (restored) {
    endRewriting(*rewriting, rewriting->path);
  } else {
    dropRewriting(*rewriting);
  }
  return result;
}

}  // namespace korvel::test
