# SPDX-License-Identifier: MIT
# korvel_check_names(<target>): the target's build fails when one of its objects defines a name that
# is reserved, the name of an exported variable of the library. The library would use the
# application's variable in place of its own; a static one, and one in a namespace, is nobody's
# affair.
#
# To be called in the folder where the target is made: an executable or a library of the
# application's, but no object library, to whose build CMake adds nothing.
function(korvel_check_names target)
  if(NOT CMAKE_NM)
    message(FATAL_ERROR "korvel_check_names(${target}): there is no nm to read objects with")
  endif()
  set(objects ${CMAKE_CURRENT_BINARY_DIR}/${target}-$<CONFIG>.objects)
  # CMake counts precompiled headers among them.
  set(compiled "$<FILTER:$<TARGET_OBJECTS:${target}>,EXCLUDE,\\.(gch|pch)$>")
  file(GENERATE OUTPUT ${objects} CONTENT "$<JOIN:${compiled},\n>\n")
  add_custom_command(TARGET ${target} PRE_LINK VERBATIM
    COMMAND ${CMAKE_COMMAND} -D NM=${CMAKE_NM} -D LIBRARY=$<TARGET_FILE:korvel::korvel>
      -D OBJECTS=${objects} -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/KorvelCheckObjects.cmake)
endfunction()
