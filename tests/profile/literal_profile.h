// SPDX-License-Identifier: MIT
// For tests/profile/: a model that reads and rewrites profiles one character at a time, by states
// where the library searches.
#ifndef KORVEL_TESTS_PROFILE_LITERAL_PROFILE_H
#define KORVEL_TESTS_PROFILE_LITERAL_PROFILE_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::test {

// The lines of a file: ended by a carriage return or the file's end, line feeds ignored, cut.
inline std::vector<std::string> literalLines(std::string_view file, std::size_t limit) {
  std::vector<std::string> lines;
  std::string line;
  bool pending = false;
  for (const char c : file) {
    if (c == '\n') continue;
    if (c == '\r') {
      lines.push_back(line);
      line.clear();
      pending = false;
      continue;
    }
    pending = true;
    if (line.size() < limit) line += c;
  }
  if (pending) lines.push_back(line);
  return lines;
}

inline bool literalNames(const std::string &line, std::string_view section) {
  if (line.empty() || line[0] != '[') return false;
  for (std::size_t i = 0; i < section.size(); ++i) {
    if (i + 1 >= line.size() || line[i + 1] != section[i]) return false;
  }
  return section.size() + 1 < line.size() && line[section.size() + 1] == ']';
}

enum class LiteralMeaning { Other, Key, Bracket };

// The meaning of a line in the section. Sets `value` to the beginning of its value.
inline LiteralMeaning literalMeaning(const std::string &line, std::string_view key,
                                     std::size_t &value) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '=' && text == key) {
      value = i + 1;
      return LiteralMeaning::Key;
    }
    if (line[i] == '[') return LiteralMeaning::Bracket;
    text += line[i];
  }
  return LiteralMeaning::Other;
}

inline std::optional<std::string> literalRead(std::string_view file, std::string_view section,
                                              std::string_view key) {
  bool inSection = false;
  for (const std::string &whole : literalLines(file, file.size())) {
    const std::string line = whole.substr(0, 1023);
    if (inSection) {
      std::size_t value = 0;
      const LiteralMeaning meaning = literalMeaning(line, key, value);
      if (meaning == LiteralMeaning::Key) return whole.substr(value);
      if (meaning == LiteralMeaning::Bracket) inSection = false;
    }
    if (!inSection && literalNames(line, section)) inSection = true;
  }
  return std::nullopt;
}

// The file being built, with the empty lines held back.
class LiteralOutput {
 public:
  void emptyLine() { ++empty_; }
  void flush() {
    for (; empty_ > 0; --empty_) put("");
  }
  void put(const std::string &line) { bytes_ += line + "\r\n"; }
  const std::string &bytes() const { return bytes_; }

 private:
  std::string bytes_;
  int empty_ = 0;
};

inline std::string literalWriteKey(std::string_view file, const std::string &section,
                                   const std::string &key,
                                   const std::optional<std::string> &value) {
  enum { Looking, InSection, Done } state = Looking;
  LiteralOutput out;
  for (const std::string &line : literalLines(file, 16383)) {
    if (line.empty()) {
      out.emptyLine();
      continue;
    }
    if (state == InSection) {
      std::size_t at = 0;
      const LiteralMeaning meaning = literalMeaning(line, key, at);
      if (meaning == LiteralMeaning::Key) {
        state = Done;
        if (value) {
          out.flush();
          out.put(key + "=" + *value);
        }
        continue;
      }
      if (meaning == LiteralMeaning::Bracket) {
        if (value) out.put(key + "=" + *value);
        state = value ? Done : Looking;
      }
    }
    if (state == Looking && literalNames(line, section)) state = InSection;
    out.flush();
    out.put(line);
  }
  if (value && state == Looking) {
    if (!file.empty()) out.put("");
    out.put("[" + section + "]");
  }
  if (value && state != Done) out.put(key + "=" + *value);
  out.flush();
  return out.bytes();
}

inline std::string literalWriteSection(std::string_view file, const std::string &section,
                                       const std::optional<std::string> &text) {
  enum { Looking, InSection, Done } state = Looking;
  LiteralOutput out;
  for (const std::string &line : literalLines(file, 16383)) {
    if (line.empty()) {
      out.emptyLine();
      continue;
    }
    if (state == InSection) {
      if (line[0] != '[') continue;
      state = Done;
    }
    out.flush();
    out.put(line);
    if (state == Looking && literalNames(line, section)) {
      state = InSection;
      if (text) out.put(*text);
    }
  }
  if (state == InSection) return out.bytes();
  if (state == Looking && text) {
    if (!file.empty()) out.put("");
    out.put("[" + section + "]");
    out.put(*text);
  }
  out.flush();
  return out.bytes();
}

}  // namespace korvel::test

#endif
