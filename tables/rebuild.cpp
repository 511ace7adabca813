// SPDX-License-Identifier: MIT
// Writes the text of an edited line: its fields, and what follows its first empty one.
#include "tables/rebuild.h"

#include <algorithm>
#include <optional>

namespace korvel::tables {
namespace {

constexpr std::string_view kWrittenSeparator = ",";

// The offset of the first empty field, which may be the end of the text; none: no field is empty.
std::optional<std::size_t> firstEmptyField(std::string_view text) {
  for (std::size_t begin = 0;;) {
    const std::size_t end = std::min(text.find_first_of(",+", begin), text.size());
    if (end == begin) return begin;
    if (end == text.size()) return std::nullopt;
    begin = end + 1;
  }
}

void writeWithCommas(std::string_view text, LineSink &sink) {
  for (std::size_t plus = text.find('+'); plus != std::string_view::npos; plus = text.find('+')) {
    sink.write(text.substr(0, plus));
    sink.write(kWrittenSeparator);
    text.remove_prefix(plus + 1);
  }
  sink.write(text);
}

}  // namespace

bool writeWithField(std::string_view text, FieldChoice choice, std::string_view value,
                    LineSink &sink) {
  const std::size_t restBegin = firstEmptyField(text).value_or(text.size());
  std::string_view list = text.substr(0, restBegin);
  const ChosenField replaced = chosenField(RawFields(text), choice);
  if (replaced.exists) {
    const auto begin = static_cast<std::size_t>(replaced.field.data() - text.data());
    writeWithCommas(list.substr(0, begin), sink);
    sink.write(value);
    list.remove_prefix(begin + replaced.field.size());
  }
  writeWithCommas(list, sink);
  sink.write(text.substr(restBegin));
  return replaced.exists;
}

void writeWithFields(std::string_view text, std::string_view fields, LineSink &sink) {
  sink.write(fields);
  const std::optional<std::size_t> restBegin = firstEmptyField(text);
  if (!restBegin) return;
  // An empty code is the field that the first of the new ones replaces.
  if (*restBegin > 0) sink.write(kWrittenSeparator);
  sink.write(text.substr(*restBegin));
}

}  // namespace korvel::tables
