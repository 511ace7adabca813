// SPDX-License-Identifier: MIT
// The text around a change is copied in stretches; odd lines in it are mended one by one.
#include "profile/rewrite.h"

#include <cstring>
#include <initializer_list>

#include "profile/find.h"
#include "strings/plain_lines.h"

namespace korvel::profile {
namespace {

// Whether a line has no characters. What follows the last line end is a line only with characters.
bool isEmptyLine(const Line &line) {
  return line.next != line.end && Characters(line, 1).takeRun().empty();
}

class Rewriter {
 public:
  Rewriter(std::string_view text, Output &output) : text_(stretchOf(text)), output_(output) {}

  Stretch text() const { return text_; }

  void putLine(std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) output_.write(part);
    output_.write(kLineEnd);
  }

  void copy(const char *begin, const char *end) {
    while (begin != end) {
      const auto plain = strings::plainLines(Stretch{begin, end}.bytes(), kRewriteLine);
      if (!plain.empty()) output_.write(plain);
      begin += plain.size();
      if (begin != end) begin = copyOddLine(begin, end);
    }
  }

  // Copies only the empty lines.
  void copyEmptyLines(const char *begin, const char *end) {
    while (begin != end) {
      const Line line = lineAt(begin, end);
      if (isEmptyLine(line)) putLine({});
      begin = line.next;
    }
  }

  // The place for a line to add before `place`: after the last line that is not empty.
  const char *behindLastText(const char *place) const {
    const char *textEnd = place;
    while (textEnd != text_.begin && (textEnd[-1] == '\r' || textEnd[-1] == '\n')) --textEnd;
    return textEnd == text_.begin ? textEnd : lineAt(textEnd, place).next;
  }

  void putHeader(std::string_view section) {
    if (text_.size() != 0) putLine({});
    putLine({"[", section, "]"});
  }

 private:
  const char *copyOddLine(const char *begin, const char *end) {
    const Line line = lineAt(begin, end);
    Characters characters(line, kRewriteLine);
    bool empty = true;
    for (std::string_view run = characters.takeRun(); !run.empty(); run = characters.takeRun()) {
      output_.write(run);
      empty = false;
    }
    if (!empty || isEmptyLine(line)) putLine({});
    return line.next;
  }

  Stretch text_;
  Output &output_;
};

// Where a text changes with a key.
struct KeyPlace {
  enum Kind {
    KeyLine,     // at the line with the key
    SectionEnd,  // at the end of the section, which lacks the key
    NoSection,
  };
  Kind kind;
  const char *begin;
  const char *next;  // after the line with the key, else as `begin`
};

// A new value is set in the first section of the name. The line to remove is the one that a reader
// finds, in any section of the name.
KeyPlace findPlace(Stretch text, std::string_view section, std::string_view key, bool removing) {
  KeyPlace place{KeyPlace::NoSection, text.end, text.end};
  const char *from = text.begin;
  while (const auto header = findSection(text, from, section, kRewriteLine)) {
    const KeySearch search = findKey(text, header->next, key, kRewriteLine);
    if (search.end == KeySearch::Found)
      return {KeyPlace::KeyLine, search.line.begin, search.line.next};
    if (search.end == KeySearch::EndOfText) return {KeyPlace::SectionEnd, text.end, text.end};
    place = {KeyPlace::SectionEnd, search.line.begin, search.line.begin};
    if (!removing) break;
    from = search.line.begin;
  }
  return place;
}

}  // namespace

void rewriteKey(std::string_view text, std::string_view section, std::string_view key,
                std::optional<std::string_view> value, Output &output) {
  Rewriter rewriter(text, output);
  const auto [begin, end] = rewriter.text();
  const KeyPlace place = findPlace({begin, end}, section, key, !value);
  if (!value) {
    rewriter.copy(begin, place.begin);
    rewriter.copy(place.next, end);
    return;
  }
  const char *cut =
      place.kind == KeyPlace::KeyLine ? place.begin : rewriter.behindLastText(place.begin);
  rewriter.copy(begin, cut);
  if (place.kind == KeyPlace::NoSection) rewriter.putHeader(section);
  rewriter.putLine({key, "=", *value});
  rewriter.copy(place.kind == KeyPlace::KeyLine ? place.next : cut, end);
}

void rewriteSection(std::string_view text, std::string_view section,
                    std::optional<std::string_view> content, Output &output) {
  Rewriter rewriter(text, output);
  const auto [begin, end] = rewriter.text();
  const auto header = findSection({begin, end}, begin, section, kRewriteLine);
  if (!header) {
    const char *cut = content ? rewriter.behindLastText(end) : end;
    rewriter.copy(begin, cut);
    if (content) {
      rewriter.putHeader(section);
      rewriter.putLine({*content});
    }
    rewriter.copy(cut, end);
    return;
  }
  rewriter.copy(begin, header->next);
  if (content) rewriter.putLine({*content});
  const char *nextHeader = findHeader({begin, end}, header->next);
  // Kept: the empty lines of a section that runs to the end of the file go with it.
  if (nextHeader == nullptr) return;
  rewriter.copyEmptyLines(header->next, nextHeader);
  rewriter.copy(nextHeader, end);
}

}  // namespace korvel::profile
