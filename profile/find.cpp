// SPDX-License-Identifier: MIT
// Sections and keys are found line by line, past stretches of plain lines at once.
#include "profile/find.h"

#include <cstring>

namespace korvel::profile {
namespace {

// Whether `at` is the first character of a line, in the text that begins at textBegin.
bool isFirstCharacter(const char *at, const char *textBegin) {
  while (at != textBegin && at[-1] == '\n') --at;
  return at == textBegin || at[-1] == '\r';
}

bool takeKey(Characters &characters, std::string_view key) {
  return characters.take(key) && characters.take("=");
}

// Whether a line can begin with the key. '\r' ends a line, '\n' is not a character of one, and '['
// ends the section.
bool mayBeginALine(std::string_view key) {
  return key.find_first_of("\r\n[") == std::string_view::npos;
}

}  // namespace

const char *findHeader(Stretch text, const char *from) {
  for (;;) {
    const std::size_t rest = Stretch{from, text.end}.size();
    const auto *bracket = static_cast<const char *>(std::memchr(from, '[', rest));
    if (bracket == nullptr || isFirstCharacter(bracket, text.begin)) return bracket;
    from = bracket + 1;
  }
}

std::optional<Line> findSection(Stretch text, const char *from, std::string_view name,
                                std::size_t limit) {
  for (;;) {
    const char *header = findHeader(text, from);
    if (header == nullptr) return std::nullopt;
    const Line line = lineAt(header, text.end);
    Characters characters(line, limit);
    if (characters.take("[") && characters.take(name) && characters.take("]")) return line;
    from = line.next;
  }
}

KeySearch findKey(Stretch text, const char *from, std::string_view key, std::size_t limit) {
  const bool mayBeThere = mayBeginALine(key);
  for (;;) {
    if (mayBeThere) from = passPlainLines(text, from, key);
    if (from == text.end) return {KeySearch::EndOfText, {}};
    const Line line = lineAt(from, text.end);
    Characters characters(line, limit);
    if (mayBeThere && takeKey(characters, key)) return {KeySearch::Found, line};
    if (Characters(line, limit).takeToBracket()) return {KeySearch::Bracket, line};
    from = line.next;
  }
}

std::optional<Characters> findValue(std::string_view text, std::string_view section,
                                    std::string_view key) {
  const Stretch whole = stretchOf(text);
  const char *from = whole.begin;
  while (const auto header = findSection(whole, from, section, kReadLine)) {
    const KeySearch search = findKey(whole, header->next, key, kReadLine);
    if (search.end == KeySearch::EndOfText) break;
    if (search.end == KeySearch::Found) {
      Characters characters(search.line, search.line.size());
      takeKey(characters, key);
      return characters;
    }
    // The line that ends a section may be the header of the next one of the same name.
    from = search.line.begin;
  }
  return std::nullopt;
}

}  // namespace korvel::profile
