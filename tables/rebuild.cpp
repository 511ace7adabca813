#include "tables/rebuild.h"

#include <algorithm>
#include <optional>

#include "tables/line.h"

namespace korvel::tables {
namespace {

constexpr std::string_view kWrittenSeparator = ",";

// A part of a text.
struct Place {
  std::size_t begin;
  std::size_t end;
};

// Where the first empty field begins, which may be the end of the text; none: no field is empty.
std::optional<std::size_t> firstEmptyField(std::string_view text) {
  for (std::size_t begin = 0;;) {
    const auto end = static_cast<std::size_t>(
        std::find_if(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(), isSeparator) -
        text.begin());
    if (end == begin) return begin;
    if (end == text.size()) return std::nullopt;
    begin = end + 1;
  }
}

std::optional<Place> placeOf(std::string_view text, FieldChoice choice) {
  const RawFields fields(text);
  const Column chosen =
      choice.isCode ? Column{fields.field(), true} : lookedUpColumn(fields, choice.column);
  if (!chosen.exists) return std::nullopt;
  const auto begin = static_cast<std::size_t>(chosen.field.data() - text.data());
  return Place{begin, begin + chosen.field.size()};
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
  const std::string_view list = text.substr(0, restBegin);
  const std::optional<Place> replaced = placeOf(text, choice);
  if (replaced) {
    writeWithCommas(list.substr(0, replaced->begin), sink);
    sink.write(value);
    writeWithCommas(list.substr(replaced->end), sink);
  } else {
    writeWithCommas(list, sink);
  }
  sink.write(text.substr(restBegin));
  return replaced.has_value();
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
