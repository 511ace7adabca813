// SPDX-License-Identifier: MIT
// The current line changed: in the table itself, or in the buffer first.
#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include <korvel/tables.h>

#include "strings/string_list.h"
#include "tables/line.h"
#include "tables/misuse.h"
#include "tables/path.h"
#include "tables/rebuild.h"
#include "tables/rewrite.h"
#include "tables/state.h"

// An edit of a table counts its lines as they are when it has the table's lock, and changes the
// shared state only once the new table is in place.

namespace korvel::tables {
namespace {

constexpr std::string_view kUnknownField =
    "N\xE9"
    "ant";
constexpr std::string_view kFurtherField =
    ",N\xE9"
    "ant";

// A line in the making, cut to what a reader would keep of it.
class NewLine final : public LineSink {
 public:
  void write(std::string_view piece) override {
    const std::size_t length = std::min(piece.size(), sizeof text_ - length_);
    if (length > 0) std::memcpy(text_ + length_, piece.data(), length);
    length_ += length;
  }
  void clear() { length_ = 0; }
  std::string_view text() const { return {text_, length_}; }
  std::size_t room() const { return sizeof text_ - length_; }

 private:
  std::size_t length_ = 0;
  char text_[kLineSize - 1];
};

// The fields of the line buffer, joined.
class BoundBuffer {
 public:
  BoundBuffer() {
    std::memcpy(text_, ZRV_Libelle_NC_szBuffer, kLineSize);
    strings::bindItems(text_, ',');
  }
  std::string_view text() const { return std::string_view(text_).substr(0, kLineSize - 1); }

 private:
  // An application may have filled the buffer to its last byte.
  char text_[kLineSize + 2] = {};
};

// An edit of the current line alone. write(kept, output) writes what takes its place.
template <typename Write>
class CurrentLineEdit final : public LineEdit {
 public:
  explicit CurrentLineEdit(Write write) : write_(write) {}

  void restart() override { isMet_ = false; }
  int nextAfter(int line) const override { return line < line_ ? line_ : kNoLine; }
  bool apply(int /*line*/, std::string_view kept, RewriteOutput &output) override {
    isMet_ = true;
    write_(kept, output);
    return true;
  }
  bool isMet() const { return isMet_; }

 private:
  const int line_ = ZRV_Libelle_NC_il;
  bool isMet_ = false;
  Write write_;
};

// Returns whether the table is rewritten and has the current line.
template <typename Write>
bool editCurrentLine(const char *table, Write write) {
  CurrentLineEdit<Write> edit(write);
  return TableRewrite(tablePath(table)).run(edit) == TableRewrite::Result::Done && edit.isMet();
}

// Returns whether the line had the field; nothing where the table is as it was.
std::optional<bool> replaceField(const char *table, FieldChoice choice, std::string_view value) {
  bool hadField = false;
  const bool done = editCurrentLine(table, [&](std::string_view kept, RewriteOutput &output) {
    // Kept: a line that does not have the column counts as replaced.
    hadField = writeWithField(textOf(kept), choice, value, output);
    output.write(kWrittenEnd);
  });
  return done ? std::optional(hadField) : std::nullopt;
}

int countFields(std::string_view text) {
  RawFields fields(text);
  int count = 1;
  while (fields.next()) ++count;
  return count;
}

// fields: their number; 0 for as many as the current line has.
bool insertLine(const char *table, int fields) {
  NewLine inserted;
  const bool done = editCurrentLine(table, [&](std::string_view kept, RewriteOutput &output) {
    const int count = fields == 0 ? countFields(textOf(kept)) : fields;
    inserted.clear();
    inserted.write(kUnknownField);
    for (int i = 1; i < count && inserted.room() >= kFurtherField.size(); ++i) {
      inserted.write(kFurtherField);
    }
    output.writeLine({kept});
    output.writeLine({inserted.text()});
  });
  if (!done) return false;
  storeSplit(inserted.text());
  // Kept: the current line's number remains the one of the line before the new one.
  ZRV_Libelle_NC_read = 1;
  return true;
}

bool deleteLine(const char *table) {
  return editCurrentLine(table, [](std::string_view /*kept*/, RewriteOutput & /*output*/) {});
}

bool setField(FieldChoice choice, std::string_view value) {
  const BoundBuffer line;
  NewLine changed;
  const bool hadField = writeWithField(textOf(line.text()), choice, value, changed);
  storeSplit(changed.text());
  return hadField;
}

bool flushLine(const char *table) {
  const BoundBuffer line;
  const bool done = editCurrentLine(table, [&](std::string_view kept, RewriteOutput &output) {
    writeWithFields(textOf(kept), line.text(), output);
    output.write(kWrittenEnd);
  });
  // Kept: the buffer stays joined.
  if (done) storeWhole(line.text());
  return done;
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel::tables;

int ZRV_Libelle_NC_idem_replace(const char *key, int keyLength, int column, const char *table,
                                const char *text) {
  const FieldChoice choice = currentLineChoice(keyLength, column);
  const auto work = [=] {
    return text == nullptr ? std::nullopt : replaceField(table, choice, text);
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldReplacement(Call("ZRV_Libelle_NC_idem_replace",
                                  {orNull(filled(key)), keyLength, column, table, text}),
                             {choice, text}, table, work);
    });
  return work().has_value() ? 1 : 0;
}

int ZRV_Libelle_NC_idem_insert(const char *key, int keyLength, const char *table, int fields) {
  const auto work = [=] { return fields >= 0 && insertLine(table, fields); };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldInsertion(
          Call("ZRV_Libelle_NC_idem_insert", {orNull(filled(key)), keyLength, table, fields}),
          fields, table, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Libelle_NC_idem_delete(const char *key, int keyLength, const char *table) {
  const auto work = [=] { return deleteLine(table); };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldEdit(Call("ZRV_Libelle_NC_idem_delete", {orNull(filled(key)), keyLength, table}),
                      table, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Libelle_NC_set(const char *key, int keyLength, int column, const char *table,
                       const char *text) {
  const FieldChoice choice = currentLineChoice(keyLength, column);
  lookForMisuse([=] {
    needsLineRoom(
        Call("ZRV_Libelle_NC_set", {orNull(filled(key)), keyLength, column, orNull(table), text}),
        choice, text);
  });
  return text != nullptr && setField(choice, text) ? 1 : 0;
}

int ZRV_Libelle_NC_idem_flush(const char *key, int keyLength, const char *table) {
  const auto work = [=] { return flushLine(table); };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldEdit(Call("ZRV_Libelle_NC_idem_flush", {orNull(filled(key)), keyLength, table}),
                      table, work);
    });
  return work() ? 1 : 0;
}
