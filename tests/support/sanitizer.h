// SPDX-License-Identifier: MIT
// For tests/: whether the address sanitizer is there, which needs all the address space and more
// time.
#ifndef KORVEL_TESTS_SUPPORT_SANITIZER_H
#define KORVEL_TESTS_SUPPORT_SANITIZER_H

namespace korvel::test {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kUnderSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kUnderSanitizer = true;
#else
inline constexpr bool kUnderSanitizer = false;
#endif
#else
inline constexpr bool kUnderSanitizer = false;
#endif

// How many of a random test's rounds are run: the sanitizers make each several times as long, and
// see what they look for in a part of them.
constexpr int rounds(int all) { return kUnderSanitizer ? all / 8 : all; }

}  // namespace korvel::test

#endif
