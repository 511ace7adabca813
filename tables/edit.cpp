// The current line changed: in the table itself, or in the buffer first.
//
// An edit of a table counts its lines as they are when it gets hold of it, and touches the shared
// state only once the new table stands.
#include <algorithm>
#include <cstring>
#include <string_view>

#include <korvel/strings.h>
#include <korvel/tables.h>

#include "tables/line.h"
#include "tables/path.h"
#include "tables/rebuild.h"
#include "tables/rewrite.h"
#include "tables/state.h"

namespace korvel::tables {
namespace {

constexpr std::string_view kUnknownField =
    "N\xE9"
    "ant";
constexpr std::string_view kFurtherField =
    ",N\xE9"
    "ant";
constexpr char kBoundBy = ',';

// A line in the making, cut to what a reader would keep of it.
class NewLine final : public LineSink {
 public:
  void write(std::string_view piece) override {
    const std::size_t length = std::min(piece.size(), sizeof text_ - length_);
    if (length > 0) std::memcpy(text_ + length_, piece.data(), length);
    length_ += length;
  }
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
    ChCh_Bind_sep(text_, kBoundBy);
  }
  std::string_view text() const { return std::string_view(text_).substr(0, kLineSize - 1); }

 private:
  // An application may have filled the buffer to its last byte.
  char text_[kLineSize + 2] = {};
};

// An edit of the current line alone.
class CurrentLineEdit : public LineEdit {
 public:
  void restart() final { met_ = false; }
  int nextAfter(int line) const final { return line < line_ ? line_ : kNoLine; }
  bool apply(int /*line*/, std::string_view kept, RewriteOutput &output) final {
    met_ = true;
    write(kept, output);
    return true;
  }
  bool met() const { return met_; }

 protected:
  ~CurrentLineEdit() = default;

 private:
  virtual void write(std::string_view kept, RewriteOutput &output) = 0;

  const int line_ = ZRV_Libelle_NC_il;
  bool met_ = false;
};

class ReplaceField final : public CurrentLineEdit {
 public:
  ReplaceField(FieldChoice choice, std::string_view value) : choice_(choice), value_(value) {}

 private:
  void write(std::string_view kept, RewriteOutput &output) override {
    writeWithField(textOf(kept), choice_, value_, output);
    output.write(kWrittenEnd);
  }

  FieldChoice choice_;
  std::string_view value_;
};

class ReplaceFields final : public CurrentLineEdit {
 public:
  explicit ReplaceFields(std::string_view fields) : fields_(fields) {}

 private:
  void write(std::string_view kept, RewriteOutput &output) override {
    writeWithFields(textOf(kept), fields_, output);
    output.write(kWrittenEnd);
  }

  std::string_view fields_;
};

int countFields(std::string_view text) {
  RawFields fields(text);
  int count = 1;
  while (fields.next()) ++count;
  return count;
}

class InsertLine final : public CurrentLineEdit {
 public:
  // As many fields as the current line has.
  static constexpr int kAsMany = 0;

  explicit InsertLine(int fields) : fields_(fields) {}

  std::string_view text() const { return inserted_.text(); }

 private:
  void write(std::string_view kept, RewriteOutput &output) override {
    inserted_ = {};
    const int fields = fields_ == kAsMany ? countFields(textOf(kept)) : fields_;
    inserted_.write(kUnknownField);
    for (int i = 1; i < fields && inserted_.room() >= kFurtherField.size(); ++i) {
      inserted_.write(kFurtherField);
    }
    output.writeLine({kept});
    output.writeLine({inserted_.text()});
  }

  int fields_;
  NewLine inserted_;
};

class DeleteLine final : public CurrentLineEdit {
  void write(std::string_view /*kept*/, RewriteOutput & /*output*/) override {}
};

// Whether the table is rewritten; the current line need not have been met.
bool rewrite(const char *table, LineEdit &edit) {
  return TableRewrite(tablePath(table)).run(edit) == TableRewrite::Result::Done;
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel::tables;

int ZRV_Libelle_NC_idem_replace(const char * /*key*/, int keyLength, int column, const char *table,
                                const char *text) {
  if (text == nullptr) return 0;
  // Kept: a line that does not have the column counts as replaced.
  ReplaceField edit(FieldChoice::told(keyLength, column), text);
  return rewrite(table, edit) && edit.met() ? 1 : 0;
}

int ZRV_Libelle_NC_idem_insert(const char * /*key*/, int /*keyLength*/, const char *table,
                               int fields) {
  if (fields < 0) return 0;
  InsertLine edit(fields);
  if (!rewrite(table, edit) || !edit.met()) return 0;
  storeSplit(edit.text());
  // Kept: the current line's number stays that of the line before the new one.
  ZRV_Libelle_NC_read = 1;
  return 1;
}

int ZRV_Libelle_NC_idem_delete(const char * /*key*/, int /*keyLength*/, const char *table) {
  DeleteLine edit;
  return rewrite(table, edit) && edit.met() ? 1 : 0;
}

int ZRV_Libelle_NC_set(const char * /*key*/, int keyLength, int column, const char * /*table*/,
                       const char *text) {
  if (text == nullptr) return 0;
  const BoundBuffer line;
  NewLine changed;
  const bool hadField =
      writeWithField(textOf(line.text()), FieldChoice::told(keyLength, column), text, changed);
  storeSplit(changed.text());
  return hadField ? 1 : 0;
}

int ZRV_Libelle_NC_idem_flush(const char * /*key*/, int /*keyLength*/, const char *table) {
  const BoundBuffer line;
  ReplaceFields edit(line.text());
  if (!rewrite(table, edit) || !edit.met()) return 0;
  // Kept: the buffer stays joined.
  storeWhole(line.text());
  return 1;
}
