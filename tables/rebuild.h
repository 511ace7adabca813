// SPDX-License-Identifier: MIT
// For tables/: a line with one of its fields replaced, or all of them.
//
// From the first empty field of a line on there are no more fields, but an edit must not lose what
// is there: it is written back unchanged. Every separator before it becomes a ','.
#ifndef KORVEL_TABLES_REBUILD_H
#define KORVEL_TABLES_REBUILD_H

#include <string_view>

#include "tables/line.h"

namespace korvel::tables {

// Takes a line piece by piece.
class LineSink {
 public:
  virtual void write(std::string_view piece) = 0;

 protected:
  ~LineSink() = default;
};

// Writes a line's text with the field replaced by `value`. Returns false when the line does not
// have that field; its fields are then written unchanged.
bool writeWithField(std::string_view text, FieldChoice choice, std::string_view value,
                    LineSink &sink);

// Writes a line's text with all its fields replaced by `fields`.
void writeWithFields(std::string_view text, std::string_view fields, LineSink &sink);

}  // namespace korvel::tables

#endif
