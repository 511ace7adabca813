// SPDX-License-Identifier: MIT
// Picks the bytes of a text that are worth looking for: the rare ones.
#include "tables/pattern.h"

#include <algorithm>
#include <cstring>

#include "tables/line.h"

namespace korvel::tables {
namespace {

bool isWild(char c) { return c == '?'; }

bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// How frequent a character is in French texts, roughly.
int frequency(char c) {
  constexpr std::string_view kFrequent = " -aeilnorstuAEILNORSTU";
  if (kFrequent.find(c) != std::string_view::npos) return 2;
  return isAsciiLetter(c) ? 1 : 0;
}

// The position of the rarest character; among equally rare ones the last, as the codes and labels
// of neighbours differ there. npos where all others are '?'.
std::size_t rarest(std::string_view text, std::size_t excluded) {
  std::size_t best = std::string_view::npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isWild(text[i]) || i == excluded) continue;
    if (best == std::string_view::npos || frequency(text[i]) <= frequency(text[best])) best = i;
  }
  return best;
}

// Adds the probes for the two rarest characters of a text, the same twice if only one is not '?'.
// In a text of '?' alone there is nothing to look for, and every place is a candidate.
void addPair(Pattern &pattern, std::string_view text) {
  const std::size_t first = rarest(text, std::string_view::npos);
  if (first == std::string_view::npos) {
    pattern.bytes = Pattern::Bytes::Any;
    return;
  }
  const std::size_t other = rarest(text, first);
  const std::size_t second = other == std::string_view::npos ? first : other;
  Probe(&pair)[2] = pattern.pairs[pattern.pairCount++];
  pair[0] = Probe::exact(first + 1, text[first]);
  pair[1] = Probe::exact(second + 1, text[second]);
}

void setBeginning(Pattern &pattern, std::string_view text) {
  std::uint8_t beginning[sizeof pattern.beginning] = {};
  std::uint8_t counted[sizeof pattern.counted] = {};
  for (std::size_t i = 0; i < std::min(text.size(), sizeof beginning); ++i) {
    beginning[i] = static_cast<std::uint8_t>(text[i]);
    counted[i] = isWild(text[i]) ? 0 : 0xFF;
  }
  std::memcpy(&pattern.beginning, beginning, sizeof beginning);
  std::memcpy(&pattern.counted, counted, sizeof counted);
}

Pattern exactPattern(Pattern::Start start, std::string_view text) {
  Pattern pattern;
  pattern.start = start;
  if (!canBeField(text)) return pattern;
  pattern.bytes = Pattern::Bytes::Exact;
  addPair(pattern, text);
  setBeginning(pattern, text);
  return pattern;
}

// Bytes below 0x80 that fold to c differ at most in the case of a letter. Bytes from 0x80 on are
// always candidates.
Probe foldedProbe(std::size_t offset, char c, const Folding &folding) {
  constexpr std::uint8_t kCase = 'a' ^ 'A';
  const auto folded = static_cast<std::uint8_t>(c);
  const auto other = static_cast<std::uint8_t>(folded ^ kCase);
  if (other < 0x80 && folding[other] == folded) {
    return {offset, kCase, static_cast<std::uint8_t>(folded | kCase)};
  }
  return Probe::exact(offset, c);
}

std::string_view withoutFinalStar(std::string_view label) {
  if (label.ends_with('*')) label.remove_suffix(1);
  return label;
}

}  // namespace

Pattern lineWithCode(std::string_view key) { return exactPattern(Pattern::Start::OfLine, key); }

Pattern lineWithField(std::string_view label) {
  return exactPattern(Pattern::Start::OfField, label);
}

Pattern lineWithFoldedField(std::string_view label, const Folding &folding) {
  Pattern pattern = lineWithField(label);
  if (pattern.bytes == Pattern::Bytes::Any) return pattern;
  pattern.bytes = Pattern::Bytes::Folded;
  pattern.counted = 0;
  for (Probe &probe : pattern.pairs[0]) {
    probe = foldedProbe(probe.offset, label[probe.offset - 1], folding);
  }
  return pattern;
}

Pattern lineWithOneOf(std::span<const char *const> labels, bool isCode) {
  Pattern pattern;
  pattern.start = isCode ? Pattern::Start::OfLine : Pattern::Start::OfField;
  if (labels.size() > Pattern::kMostPairs) return pattern;
  pattern.bytes = Pattern::Bytes::OneOf;
  for (const char *label : labels) {
    addPair(pattern, withoutFinalStar(label).substr(0, kLineSize - 2));
  }
  return pattern;
}

std::size_t fixedCharacters(std::string_view label) {
  label = withoutFinalStar(label);
  return label.size() - static_cast<std::size_t>(std::count_if(label.begin(), label.end(), isWild));
}

}  // namespace korvel::tables
