// SPDX-License-Identifier: MIT
// CP1252 to UTF-8 and back, and texts as messages show them.
#include "tools/text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace korvel::tools {
namespace {

constexpr unsigned char kFirstOfBlock = 0x80;
// The characters of 0x80 to 0x9F; those of all other bytes have the byte's number.
constexpr std::array<char32_t, 32> kBlock = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool isInBlock(char32_t number) {
  return number >= kFirstOfBlock && number < kFirstOfBlock + kBlock.size();
}

char32_t characterOf(char byte) {
  const auto number = static_cast<unsigned char>(byte);
  return isInBlock(number) ? kBlock[number - kFirstOfBlock] : number;
}

void appendUtf8(std::string &out, char32_t code) {
  const auto further = [&](int shift) {
    out += static_cast<char>(0x80 | ((code >> shift) & 0x3F));
  };
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    further(0);
  } else {
    out += static_cast<char>(0xE0 | (code >> 12));
    further(6);
    further(0);
  }
}

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

}  // namespace

Character firstCharacter(std::string_view text) {
  if (text.empty()) return {};
  const auto first = static_cast<unsigned char>(text[0]);
  const Lead lead = leadOf(first);
  if (lead.length == 0 || text.size() < lead.length) return {};
  char32_t code = first & lead.bits;
  for (const char c : text.substr(1, lead.length - 1)) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) return {};
    code = (code << 6) | (byte & 0x3F);
  }
  if (code < lead.least || code > 0x10FFFF || isSurrogate(code)) return {};
  return {code, lead.length};
}

std::optional<char> byteOf(char32_t code) {
  const auto inBlock = std::find(kBlock.begin(), kBlock.end(), code);
  if (inBlock != kBlock.end()) return static_cast<char>(kFirstOfBlock + (inBlock - kBlock.begin()));
  if (code > 0xFF || isInBlock(code)) return std::nullopt;
  return static_cast<char>(code);
}

bool isCharacter(char byte) {
  const auto number = static_cast<unsigned char>(byte);
  return !isInBlock(number) || characterOf(byte) != number;
}

std::string toUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 8);
  for (const char byte : text) appendUtf8(out, characterOf(byte));
  return out;
}

std::string fromUtf8(std::string_view utf8, const Missing &missing) {
  std::string out;
  out.reserve(utf8.size());
  while (!utf8.empty()) {
    const Character character = firstCharacter(utf8);
    if (character.length == 0) throw NotUtf8();
    const std::optional<char> byte = byteOf(character.code);
    out += byte ? *byte : missing(utf8.substr(0, character.length));
    utf8.remove_prefix(character.length);
  }
  return out;
}

std::string quoted(std::string_view text) {
  constexpr std::size_t kRoom = 60;
  std::string out = "\"";
  for (const char byte : text.substr(0, kRoom)) {
    if (isControl(byte)) {
      char number[8];
      std::snprintf(number, sizeof number, "\\x%02X", static_cast<unsigned char>(byte));
      out += number;
    } else {
      out += toUtf8({&byte, 1});
    }
  }
  return out + (text.size() > kRoom ? "\"..." : "\"");
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
