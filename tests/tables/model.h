// SPDX-License-Identifier: MIT
// For tests/tables/: what the table functions do, written down byte by byte and without regard to
// speed, on files that are texts in memory.
//
// A function of the model has the name of the library's and its arguments; it works on the model's
// state and leaves the library's alone.
#ifndef KORVEL_TESTS_TABLES_MODEL_H
#define KORVEL_TESTS_TABLES_MODEL_H

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace korvel::test {

// A line of bytes and the place in it, as a memory file or a file is read.
class ModelBytes {
 public:
  explicit ModelBytes(std::string_view bytes) : bytes_(bytes) {}

  // The next byte; none at the end.
  std::optional<char> get() {
    if (at_ == bytes_.size()) return std::nullopt;
    return bytes_[at_++];
  }

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;
};

// One of the two tables of handles.
struct ModelHandles {
  static constexpr int kCount = 5;

  // -1: none is free, nor one that stayed open. An opening that fails afterwards gives the slot
  // back, not the counter.
  int take();
  void giveBack(int handle);

  int highest = -1;
  std::array<bool, kCount> used = {};
  // Handles that stayed open after a failure. Closing one takes it out.
  std::set<int> leftOpen;
};

class TableModel {
 public:
  using Buffer = std::array<char, 1024>;

  // The files of the tables directories by their colon paths, and the directories that exist.
  std::map<std::string, std::string> files;
  std::map<std::string, bool> directories;

  // The exported state.
  std::string szDirTables;
  std::string ZRV_Libelle_NC_szDirTables;
  Buffer ZRV_Libelle_NC_szBuffer = {};
  int ZRV_Libelle_NC_il = 0;
  int ZRV_Libelle_NC_read = 0;
  ModelHandles fileHandles;
  ModelHandles memoryHandles;

  // The number of bytes of the buffer that hold the current line with its terminators. The bytes
  // after them are unspecified.
  std::size_t bufferUsed() const { return bufferUsed_; }

  int ZRV_Libelle_NC(std::string_view key, int column, const char *table, char *out, int outSize);
  int ZRV_Libelle_2(int code, int column, const char *table, char *out, int outSize);
  int ZRV_Libelle_NC_idem(int keyLength, int column, const char *table, char *out, int outSize);
  int ZRV_Libelle_NC_idem_0(int keyLength, int column, const char *table, char *out, int outSize);
  int ZRV_Libelle_NC_next(std::string_view key, int column, const char *table, char *out,
                          int outSize);
  int ZRV_Libelle_NC_dates(std::string_view key, int column, const char *table, char *out,
                           int outSize, int dateColumn, int date);
  void ZRV_Libelle_NC_set_ligne(int line);

  int ZRV_Code_NC(const char *label, int column, const char *table, char *out, int outSize);
  int ZRV_CodeNCS_NC(const char *label, int column, const char *table, char *out, int outSize);
  int ZRV_Code_NC_next(const char *label, int column, const char *table, char *out, int outSize);
  int ZRV_Code_NC_ex(const char *const *labels, const int *columns, const char *table, char *out,
                     int outSize);
  int ZRV_Code_NC_ex_next(const char *const *labels, const int *columns, const char *table,
                          char *out, int outSize);

 protected:
  // A walk over a loaded table; it holds the memory slot.
  class Walk;

  std::optional<std::string> pathOf(const char *table) const;
  bool load(const char *table, std::string &bytes);
  void split();
  std::size_t itemAt(std::size_t item, int column, bool &exists) const;
  std::string_view itemText(std::size_t item) const;
  bool giveColumn(int column, char *out, int outSize) const;
  void giveCode(char *out, int outSize) const;
  int dayOf(int keyLength, int column, const char *table);
  template <typename Match>
  int search(bool fromFirst, const char *table, char *out, int outSize, Match match);

  std::size_t bufferUsed_ = 2;
};

// The comparisons, character by character.
bool modelMatches(std::string_view a, std::string_view b);
bool modelMatchesWithStar(std::string_view a, std::string_view b);

// Reads one line into a buffer: at most size - 1 characters, ended by NUL and, where there is room,
// by a second one. Returns its length, or nothing at the end of the bytes.
std::optional<std::size_t> modelReadLine(ModelBytes &bytes, char *buffer, std::size_t size);

// Splits a terminated line in a buffer.
void modelSplit(char *buffer, std::size_t size);

}  // namespace korvel::test

#endif
