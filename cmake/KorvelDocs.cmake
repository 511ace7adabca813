# SPDX-License-Identifier: MIT
# The target `docs`: the reference, which Doxygen makes of the headers and the pages, the man pages of
# section 3, and the pages themselves as they are installed.
find_package(Doxygen 1.9 REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

file(GLOB headers CONFIGURE_DEPENDS include/korvel/*.h)
file(GLOB_RECURSE sources CONFIGURE_DEPENDS docs/*)
file(GLOB others CONFIGURE_DEPENDS *.md LICENSE)
set(reference ${PROJECT_BINARY_DIR}/docs)
add_custom_command(OUTPUT ${reference}/html/index.html
  COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/docs/reference/build.py
    ${DOXYGEN_EXECUTABLE} ${reference} ${PROJECT_VERSION} ${PROJECT_DESCRIPTION}
  COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/docs/reference/installed.py
    ${reference}/pages
  DEPENDS ${headers} ${sources} ${others} COMMENT "Writing the reference" VERBATIM)
add_custom_target(docs ALL DEPENDS ${reference}/html/index.html)

install(DIRECTORY ${reference}/html ${reference}/pages/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${reference}/man3 DESTINATION ${CMAKE_INSTALL_MANDIR})
