# SPDX-License-Identifier: MIT
# Run by what korvel_check_names adds to a target's build. NM: the program nm; LIBRARY: libkorvel.so;
# OBJECTS: a file that names one object a line.
cmake_minimum_required(VERSION 3.25)

# Lists the lines that nm has about a file: a name and its type each.
function(list_symbols result file)
  execute_process(COMMAND ${NM} --format=posix --defined-only ${ARGN} ${file}
    OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+" lines "${listing}")
  set(${result} ${lines} PARENT_SCOPE)
endfunction()

# Names that begin with an underscore are no application's, but the sanitizers' and the compiler's.
list_symbols(exported ${LIBRARY} --dynamic)
foreach(line IN LISTS exported)
  if(line MATCHES "^([A-Za-z][A-Za-z0-9_]*) [BDR] ")
    set(reserved_${CMAKE_MATCH_1} ON)
  endif()
endforeach()

set(clashes 0)
file(STRINGS ${OBJECTS} objects)
foreach(object IN LISTS objects)
  list_symbols(defined ${object} --extern-only)
  foreach(line IN LISTS defined)
    string(REGEX MATCH "^[^ ]+" name "${line}")
    if(reserved_${name})
      message(NOTICE "${object} defines ${name}, a variable of the library's")
      math(EXPR clashes "${clashes} + 1")
    endif()
  endforeach()
endforeach()
if(clashes)
  message(FATAL_ERROR "reserved names are defined")
endif()
