# SPDX-License-Identifier: MIT
# How every target of the project is compiled.

# With these is linked whatever loads the library or is a part of it; a program in C brings the C++
# runtime, too, as the sanitizers ask it for the types of objects.
if(KORVEL_SANITIZE)
  set(korvel_sanitizers -fsanitize=address,undefined -fsanitize-link-c++-runtime -lstdc++)
endif()

# Language level, warnings and sanitizers of one target.
function(korvel_compile_settings target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF C_STANDARD 11 C_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden C_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wundef
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual
      -Wredundant-decls -Wzero-as-null-pointer-constant>
    # The real codec gives the same digits on every machine only without fused operations.
    -ffp-contract=off)
  if(KORVEL_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(KORVEL_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE ${korvel_sanitizers})
  endif()
endfunction()

# Under the sanitizers the hunting programs see where they get in the library, and get there sooner
# with its code optimised a little.
function(korvel_watch target)
  if(KORVEL_SANITIZE)
    target_compile_options(${target} PRIVATE -O1 -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# What makes a mistake of ours hard to exploit: checked stacks, returns and buffers, and no page that
# is writable once the loader is done. The sanitizers bring their own.
function(korvel_harden target)
  if(KORVEL_SANITIZE)
    return()
  endif()
  target_compile_options(${target} PRIVATE -fstack-protector-strong -fstack-clash-protection
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(${target} PRIVATE -fcf-protection)
  endif()
  target_link_options(${target} PRIVATE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endfunction()

# What is shipped makes no value narrower without saying so.
function(korvel_narrow_knowingly target)
  target_compile_options(${target} PRIVATE -Wconversion -Wno-sign-conversion)
endfunction()

# Each line of what is shipped is counted as it is written, whatever the tests are compiled for.
function(korvel_count_lines target)
  if(KORVEL_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -O0 -fprofile-update=atomic)
    target_link_options(${target} PUBLIC --coverage)
  endif()
endfunction()

# A library target of the project; further arguments are sources.
function(korvel_target target type)
  add_library(${target} ${type} ${ARGN})
  korvel_compile_settings(${target})
  korvel_watch(${target})
  korvel_narrow_knowingly(${target})
  korvel_harden(${target})
  korvel_count_lines(${target})
  # Public headers by <korvel/...>, private ones by their folder from the project's root.
  target_include_directories(${target} PRIVATE
    ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  if(CMAKE_SYSTEM_NAME STREQUAL Linux)
    target_link_options(${target} PRIVATE -Wl,--as-needed)
  endif()
endfunction()
