# SPDX-License-Identifier: MIT
# What `cmake --install` puts where, and how an application finds it: find_package(korvel) with the
# target korvel::korvel and the function korvel_check_names, or `pkg-config korvel`. The desktop
# module and the default resources are installed by platform/.
include(CMakePackageConfigHelpers)

install(TARGETS korvel EXPORT korvelTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/korvel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)

# Beside the library: tables of reference data.
set(tables_folder ${CMAKE_INSTALL_DATADIR}/korvel/tables)
install(DIRECTORY data/tables/ DESTINATION ${tables_folder}
  FILES_MATCHING PATTERN *.tab PATTERN *.md)
if(NOT KORVEL_BUILD_DOCS)
  install(FILES LICENSE CHANGELOG.md CONTRIBUTING.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/korvel)
install(EXPORT korvelTargets NAMESPACE korvel:: DESTINATION ${package_folder})
configure_package_config_file(cmake/korvelConfig.cmake.in korvelConfig.cmake
  INSTALL_DESTINATION ${package_folder} PATH_VARS tables_folder)
write_basic_package_version_file(korvelConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/korvelConfig.cmake
  ${PROJECT_BINARY_DIR}/korvelConfigVersion.cmake
  cmake/KorvelCheckNames.cmake cmake/KorvelCheckObjects.cmake DESTINATION ${package_folder})

# Written at install time, when the prefix is settled.
foreach(folder LIBDIR INCLUDEDIR)
  set(${folder} "${CMAKE_INSTALL_${folder}}")
  if(NOT IS_ABSOLUTE "${${folder}}")
    string(PREPEND ${folder} "\${prefix}/")
  endif()
endforeach()
install(CODE "
  set(prefix \"\${CMAKE_INSTALL_PREFIX}\")
  set(file \"${LIBDIR}/pkgconfig/korvel.pc\")
  set(LIBDIR [[${LIBDIR}]])
  set(INCLUDEDIR [[${INCLUDEDIR}]])
  set(PROJECT_DESCRIPTION [[${PROJECT_DESCRIPTION}]])
  set(PROJECT_VERSION [[${PROJECT_VERSION}]])
  configure_file([[${PROJECT_SOURCE_DIR}/cmake/korvel.pc.in]] \"\$ENV{DESTDIR}\${file}\" @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${file}\")")
