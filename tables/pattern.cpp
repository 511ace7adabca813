#include "tables/pattern.h"

#include <algorithm>
#include <cstring>

namespace korvel::tables {
namespace {

bool isWild(char c) { return c == '?'; }

bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// How often a character meets its like in French texts, roughly.
int frequency(char c) {
  constexpr std::string_view kFrequent = " -aeilnorstuAEILNORSTU";
  if (kFrequent.find(c) != std::string_view::npos) return 2;
  return isAsciiLetter(c) ? 1 : 0;
}

// Two characters of the text to look for, by position; the rarest ones, and of several as rare the
// last ones, since the codes and labels of neighbours differ there. The same twice if there is only
// one that is not '?'.
struct Places {
  std::size_t first = std::string_view::npos;
  std::size_t second = std::string_view::npos;

  bool none() const { return first == std::string_view::npos; }
};

std::size_t rarest(std::string_view text, std::size_t excluded) {
  std::size_t best = std::string_view::npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isWild(text[i]) || i == excluded) continue;
    if (best == std::string_view::npos || frequency(text[i]) <= frequency(text[best])) best = i;
  }
  return best;
}

Places placesToProbe(std::string_view text) {
  Places places;
  places.first = rarest(text, std::string_view::npos);
  places.second = rarest(text, places.first);
  if (places.second == std::string_view::npos) places.second = places.first;
  return places;
}

Pattern exactPattern(Pattern::Start start, std::string_view text) {
  Pattern pattern;
  pattern.start = start;
  const Places places = placesToProbe(text);
  if (places.none()) return pattern;
  pattern.bytes = Pattern::Bytes::Exact;
  pattern.pairCount = 1;
  pattern.pairs[0][0] = Probe::exact(places.first + 1, text[places.first]);
  pattern.pairs[0][1] = Probe::exact(places.second + 1, text[places.second]);
  return pattern;
}

// The bytes below 0x80 that fold to c differ by the case of a letter only, if at all. Bytes from
// 0x80 on are candidates in any case.
Probe foldedProbe(std::size_t offset, char c, const Folding &folding) {
  constexpr std::uint8_t kCase = 'a' ^ 'A';
  const auto folded = static_cast<std::uint8_t>(c);
  const auto other = static_cast<std::uint8_t>(folded ^ kCase);
  if (other < 0x80 && folding[other] == folded) {
    return {offset, kCase, static_cast<std::uint8_t>(folded | kCase)};
  }
  return Probe::exact(offset, c);
}

// What must stand at a place of a field for the label to match, as far as it can be said: nothing
// where the label is wild, from its final '*' on, or behind its end.
Probe prefixProbe(std::string_view label, std::size_t place) {
  if (label.ends_with('*')) label.remove_suffix(1);
  if (place >= label.size() || isWild(label[place])) return Probe::any(place + 1);
  return Probe::exact(place + 1, label[place]);
}

bool isAny(const Probe &probe) { return probe.ignore == 0xFF; }

int weight(const Probe &probe) {
  return isAny(probe) ? 0 : 4 - frequency(static_cast<char>(probe.value));
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
  for (Probe &probe : pattern.pairs[0]) {
    probe = foldedProbe(probe.offset, label[probe.offset - 1], folding);
  }
  return pattern;
}

Pattern lineWithOneOf(std::span<const char *const> labels, bool isCode) {
  Pattern pattern;
  pattern.start = isCode ? Pattern::Start::OfLine : Pattern::Start::OfField;
  if (labels.size() > Pattern::kMostPairs) return pattern;
  pattern.bytes = Pattern::Bytes::Prefixes;
  for (const char *label : labels) {
    Probe(&pair)[2] = pattern.pairs[pattern.pairCount++];
    pair[0] = prefixProbe(label, 0);
    pair[1] = prefixProbe(label, 1);
    if (isAny(pair[0]) && isAny(pair[1])) pattern.bytes = Pattern::Bytes::Any;
  }
  return pattern;
}

int selectivity(const Pattern &pattern) {
  if (pattern.bytes == Pattern::Bytes::Any) return 0;
  int least = weight(pattern.pairs[0][0]) + weight(pattern.pairs[0][1]);
  for (std::size_t i = 1; i < pattern.pairCount; ++i) {
    least = std::min(least, weight(pattern.pairs[i][0]) + weight(pattern.pairs[i][1]));
  }
  return least * static_cast<int>(Pattern::kMostPairs) - static_cast<int>(pattern.pairCount) + 1;
}

}  // namespace korvel::tables
