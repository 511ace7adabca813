// SPDX-License-Identifier: MIT
// For tables/: from a key or label to the bytes that a scan looks for.
#ifndef KORVEL_TABLES_PATTERN_H
#define KORVEL_TABLES_PATTERN_H

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "tables/scan.h"

namespace korvel::tables {

// Every byte as a comparison without regard to case sees it.
using Folding = std::array<std::uint8_t, 256>;

// A line whose code is `key`.
Pattern lineWithCode(std::string_view key);

// A line with a field `label`.
Pattern lineWithField(std::string_view label);

// The same without regard to case. label: folded
Pattern lineWithFoldedField(std::string_view label, const Folding &folding);

// A line with a field, or with `isCode` a code, that one of the labels matches by the rules of '?'
// and a final '*'. Not for lines that hold a '*' themselves.
Pattern lineWithOneOf(std::span<const char *const> labels, bool isCode);

// The number of characters of a label that are neither '?' nor a final '*'.
std::size_t fixedCharacters(std::string_view label);

}  // namespace korvel::tables

#endif
