// For tables/ and its tests only: from a key or label to what is searched for in the file.
#ifndef KORVEL_TABLES_PATTERN_H
#define KORVEL_TABLES_PATTERN_H

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "tables/scan.h"

namespace korvel::tables {

// Every byte as it compares when case does not count.
using Folding = std::array<std::uint8_t, 256>;

// A line whose code is `key`.
Pattern lineWithCode(std::string_view key);

// A line with a field `label`.
Pattern lineWithField(std::string_view label);

// The same without regard to case; label is folded already.
Pattern lineWithFoldedField(std::string_view label, const Folding &folding);

// A line with a field that one of the labels stands for, '?' and a final '*' having their meaning;
// as its code, if `isCode`. Not for a file that has a '*' itself.
Pattern lineWithOneOf(std::span<const char *const> labels, bool isCode);

// How many characters of a label its field must have at least, if '?' and a final '*' are left out.
std::size_t fixedCharacters(std::string_view label);

}  // namespace korvel::tables

#endif
