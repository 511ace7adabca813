# SPDX-License-Identifier: MIT
# The target `docs`: the reference, which Doxygen makes of the headers and the pages, and the man
# pages of section 3. They are installed with the guide and the other pages.
find_package(Doxygen 1.9 REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

file(GLOB headers CONFIGURE_DEPENDS include/korvel/*.h)
file(GLOB pages CONFIGURE_DEPENDS docs/*.md)
list(FILTER pages EXCLUDE REGEX "/(architecture|conventions|performance)\\.md$")
file(GLOB_RECURSE sources CONFIGURE_DEPENDS docs/guide/* docs/desktops/* docs/reference/*)
set(reference ${PROJECT_BINARY_DIR}/docs)
add_custom_command(OUTPUT ${reference}/html/index.html
  COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/docs/reference/build.py
    ${DOXYGEN_EXECUTABLE} ${reference} ${PROJECT_VERSION} ${PROJECT_DESCRIPTION}
  DEPENDS ${headers} ${pages} ${sources} COMMENT "Writing the reference" VERBATIM)
add_custom_target(docs ALL DEPENDS ${reference}/html/index.html)

install(DIRECTORY ${reference}/html docs/guide docs/desktops DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${reference}/man3 DESTINATION ${CMAKE_INSTALL_MANDIR})
