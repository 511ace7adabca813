// For tests/: whether the address sanitizer is there, which needs all the address space.
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

}  // namespace korvel::test

#endif
