// For tables/ and its tests only: a line with one of its fields replaced, or all of them.
//
// What stands from the first empty field of a line on is no field, but nothing that an edit may
// lose: it is written back as it is. Every separator before that becomes a ','.
#ifndef KORVEL_TABLES_REBUILD_H
#define KORVEL_TABLES_REBUILD_H

#include <string_view>

namespace korvel::tables {

// Takes a line piece by piece.
class LineSink {
 public:
  virtual void write(std::string_view piece) = 0;

 protected:
  ~LineSink() = default;
};

// Which field of a line: its code or one of its columns.
struct FieldChoice {
  // As an editing function is told: without a key, column 0 is the code.
  static FieldChoice told(int keyLength, int column) {
    return {keyLength == 0 && column == 0, column};
  }

  bool isCode;
  int column;
};

// Writes a line's text with the field replaced by `value`. Returns false, the text written without
// a change to its fields, when it does not have that field.
bool writeWithField(std::string_view text, FieldChoice choice, std::string_view value,
                    LineSink &sink);

// Writes a line's text with all its fields replaced by `fields`.
void writeWithFields(std::string_view text, std::string_view fields, LineSink &sink);

}  // namespace korvel::tables

#endif
