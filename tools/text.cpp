// SPDX-License-Identifier: MIT
// CP1252 to UTF-8 and back by the library, and texts as messages show them.
#include "tools/text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <korvel/strings.h>

namespace korvel::tools {
namespace {

// What the first byte of a character says: how many bytes it takes, which bits of the first are
// part of it, and from which number on that many bytes are needed.
struct Lead {
  std::size_t length;
  unsigned char bits;
  char32_t least;
};
Lead leadOf(unsigned char byte) {
  if (byte < 0x80) return {1, 0x7F, 0};
  if (byte >= 0xC0 && byte < 0xE0) return {2, 0x1F, 0x80};
  if (byte >= 0xE0 && byte < 0xF0) return {3, 0x0F, 0x800};
  if (byte >= 0xF0 && byte < 0xF8) return {4, 0x07, 0x10000};
  return {0, 0, 0};
}

bool isSurrogate(char32_t code) { return code >= 0xD800 && code < 0xE000; }

bool isControl(char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == 0x7F; }

// Also those that UTF-8 writes in two bytes.
bool isControl(std::string_view character) {
  return isControl(character[0]) || (character >= "\xC2\x80" && character < "\xC2\xA0");
}

std::string byNumber(std::string_view bytes) {
  std::string out;
  for (const char byte : bytes) {
    char number[8];
    std::snprintf(number, sizeof number, "\\x%02X", static_cast<unsigned char>(byte));
    out += number;
  }
  return out;
}

}  // namespace

std::size_t firstCharacter(std::string_view text) {
  if (text.empty()) return 0;
  const auto first = static_cast<unsigned char>(text[0]);
  const Lead lead = leadOf(first);
  if (lead.length == 0 || text.size() < lead.length) return 0;
  char32_t code = first & lead.bits;
  for (const char c : text.substr(1, lead.length - 1)) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) return 0;
    code = (code << 6) | (byte & 0x3F);
  }
  return code < lead.least || code > 0x10FFFF || isSurrogate(code) ? 0 : lead.length;
}

std::optional<char> byteOf(std::string_view character) {
  char byte[8];
  if (KorvelFromUtf8(std::string(character).c_str(), byte, sizeof byte) != 0) return std::nullopt;
  return byte[0];
}

bool isCharacter(char byte) {
  constexpr std::string_view kOpen = "\x81\x8D\x8F\x90\x9D";
  return kOpen.find(byte) == std::string_view::npos;
}

std::string toUtf8(std::string_view text) {
  constexpr std::size_t kLongest = 3;  // bytes of a character
  std::string out(text.size() * kLongest + 1, '\0');
  KorvelToUtf8(std::string(text).c_str(), out.data(), static_cast<int>(out.size()));
  out.resize(std::strlen(out.c_str()));
  return out;
}

std::string fromUtf8(std::string_view utf8, const Missing &missing) {
  std::string out(utf8.size() + 1, '\0');
  const std::string text(utf8);
  if (KorvelFromUtf8(text.c_str(), out.data(), static_cast<int>(out.size())) == 0) {
    out.resize(std::strlen(out.c_str()));
    return out;
  }
  out.clear();
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view character = rest.substr(0, firstCharacter(rest));
    if (character.empty()) throw NotUtf8();
    const std::optional<char> byte = byteOf(character);
    out += byte ? *byte : missing(character);
    rest.remove_prefix(character.size());
  }
  return out;
}

std::string quoted(std::string_view text) {
  constexpr std::size_t kRoom = 60;
  std::string out = "\"";
  for (const char byte : text.substr(0, kRoom)) {
    out += isControl(byte) ? byNumber({&byte, 1}) : toUtf8({&byte, 1});
  }
  return out + (text.size() > kRoom ? "\"..." : "\"");
}

std::string onOneLine(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const std::size_t length = firstCharacter(text);
    const std::string_view first = text.substr(0, std::max<std::size_t>(length, 1));
    out += length == 0 || isControl(first) ? byNumber(first) : std::string(first);
    text.remove_prefix(first.size());
  }
  return out;
}

std::string capitals(std::string_view text) {
  std::string out(text);
  for (char &byte : out) {
    const auto number = static_cast<unsigned char>(byte);
    const bool isSmall = (number >= 'a' && number <= 'z') || (number >= 0xE0 && number != 0xF7);
    if (number == 0xFF) {
      byte = '\x9F';
    } else if (isSmall) {
      byte = static_cast<char>(number - 0x20);
    } else if (number == 0x9A || number == 0x9C || number == 0x9E) {
      byte = static_cast<char>(number - 0x10);
    }
  }
  return out;
}

}  // namespace korvel::tools
