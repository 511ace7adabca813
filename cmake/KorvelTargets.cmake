# How every target of the project is compiled.

# Language level, warnings and sanitizers of one target.
function(korvel_compile_settings target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF C_STANDARD 11 C_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden C_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wundef
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
    # The real codec gives the same digits on every machine only without fused operations.
    -ffp-contract=off)
  if(KORVEL_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(KORVEL_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
endfunction()

# A library target of the project; further arguments are sources.
function(korvel_target target type)
  add_library(${target} ${type} ${ARGN})
  korvel_compile_settings(${target})
  # Public headers by <korvel/...>, private ones by their folder from the project's root.
  target_include_directories(${target} PRIVATE
    ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  if(CMAKE_SYSTEM_NAME STREQUAL Linux)
    target_link_options(${target} PRIVATE -Wl,--as-needed)
  endif()
endfunction()
