// SPDX-License-Identifier: MIT
// For shell/, strings/, codecs/, dates/, files/, profile/, tables/, draw/, messages/ and dialogs/:
// what a C caller passes as a pointer and a length, as a view.
#ifndef KORVEL_BASE_VIEWS_H
#define KORVEL_BASE_VIEWS_H

#include <cstddef>
#include <span>
#include <string_view>

namespace korvel::base {

// The n bytes at p. A null pointer or a negative length gives a view whose data() is null.
constexpr std::string_view bytesOf(const char *p, int n) {
  return p != nullptr && n >= 0 ? std::string_view(p, static_cast<std::size_t>(n))
                                : std::string_view();
}

// A buffer to fill; empty for a null pointer or a capacity below 1.
constexpr std::span<char> roomOf(char *p, int capacity) {
  return p != nullptr && capacity > 0 ? std::span(p, static_cast<std::size_t>(capacity))
                                      : std::span<char>();
}

// A null pointer counts as the empty text.
constexpr std::string_view textOf(const char *s) { return s != nullptr ? s : ""; }

}  // namespace korvel::base

#endif
