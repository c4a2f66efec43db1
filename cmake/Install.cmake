# SPDX-License-Identifier: MIT
# What `cmake --install` puts where: a tree that works wherever it stands.
include(CMakePackageConfigHelpers)

# Each file finds the libraries from its own place.
file(RELATIVE_PATH lib_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(tarvek-desktop tarvek-robot zo-cli zo-record PROPERTIES
  INSTALL_RPATH "\$ORIGIN/${lib_from_bin}")
set_target_properties(tarvek PROPERTIES INSTALL_RPATH "\$ORIGIN")
set_target_properties(glimmet PROPERTIES INSTALL_RPATH "\$ORIGIN/../..")

set(TARVEK_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/${TARVEK_PLUGIN_FOLDER})
install(TARGETS tarvek-desktop tarvek-robot zo-cli zo-record)
install(TARGETS glimmet LIBRARY DESTINATION ${TARVEK_PLUGIN_DIR})
install(DIRECTORY buttons DESTINATION ${CMAKE_INSTALL_DATADIR}/tarvek
  FILES_MATCHING PATTERN "*.png")
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DATADIR}/tarvek)

install(FILES host/tarvek-desktop.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES host/icons/tarvek-desktop.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 22 24 32 48 64 128 256)
  install(FILES host/icons/tarvek-desktop-${size}.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
    RENAME tarvek-desktop.png)
endforeach()

# The two libraries, for robot tools and for plug-ins of others: find_package(zo) gives zo::zo,
# find_package(tarvek) gives tarvek::tarvek.
foreach(library zo tarvek)
  set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${library})
  install(TARGETS ${library} EXPORT ${library}Targets)
  install(EXPORT ${library}Targets NAMESPACE ${library}:: DESTINATION ${package_dir})
  configure_package_config_file(cmake/${library}Config.cmake.in
    ${PROJECT_BINARY_DIR}/${library}Config.cmake INSTALL_DESTINATION ${package_dir}
    PATH_VARS TARVEK_PLUGIN_DIR)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/${library}ConfigVersion.cmake
    COMPATIBILITY ${GLIMMET_COMPATIBILITY})
  install(FILES
    ${PROJECT_BINARY_DIR}/${library}Config.cmake
    ${PROJECT_BINARY_DIR}/${library}ConfigVersion.cmake
    DESTINATION ${package_dir})
endforeach()
install(DIRECTORY middleware/include/zo host/include/tarvek
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
