// For messages/ only: what the bits of a message's flags mean.
#ifndef KORVEL_MESSAGES_FLAGS_H
#define KORVEL_MESSAGES_FLAGS_H

#include <optional>

#include "platform/desktop.h"

namespace korvel::messages {

enum class Kind { Question, Note };

using platform::AlertIcon;

constexpr Kind kindOf(unsigned flags) { return (flags & 0x10) != 0 ? Kind::Question : Kind::Note; }

// Kept: 0x20 takes back what 0x40 says.
constexpr bool defaultsToNo(unsigned flags) { return (flags & 0x40) != 0 && (flags & 0x20) == 0; }

// Kept: a question knows no icon but the caution icon.
constexpr std::optional<AlertIcon> questionIcon(unsigned flags) {
  if ((flags & (0x02 | 0x08)) != 0) return AlertIcon::Caution;
  return std::nullopt;
}

constexpr std::optional<AlertIcon> noteIcon(unsigned flags) {
  if ((flags & 0x02) != 0) return AlertIcon::Caution;
  if ((flags & 0x04) != 0) return AlertIcon::Stop;
  if ((flags & 0x01) != 0) return AlertIcon::Note;
  return std::nullopt;
}

}  // namespace korvel::messages

#endif
