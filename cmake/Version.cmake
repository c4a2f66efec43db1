# SPDX-License-Identifier: MIT
# Which versions get on with each other. Before 1.0 only the last number changes without breaking
# what was built against the libraries; from 1.0 on the second may change, too. Sets
#   GLIMMET_SOVERSION       which versions of a library can take each other's place
#   GLIMMET_COMPATIBILITY   the same, as CMake packages say it
#   TARVEK_PLUGIN_FOLDER    where plug-ins for this version of the interface and for TARVEK_QT are, below
#                           the libraries
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(GLIMMET_SOVERSION 0.${PROJECT_VERSION_MINOR})
  set(GLIMMET_COMPATIBILITY SameMinorVersion)
else()
  set(GLIMMET_SOVERSION ${PROJECT_VERSION_MAJOR})
  set(GLIMMET_COMPATIBILITY SameMajorVersion)
endif()

# A desktop never meets plug-ins for another interface or toolkit, which have another folder.
file(STRINGS host/include/tarvek/widget_interface.h interface REGEX "^Q_DECLARE_INTERFACE")
string(REGEX MATCH "WidgetInterface/([0-9.]+)\"" interface "${interface}")
if(NOT interface)
  message(FATAL_ERROR "host/include/tarvek/widget_interface.h declares no interface with a version")
endif()
set(TARVEK_PLUGIN_FOLDER tarvek/plugins-${CMAKE_MATCH_1}-qt${TARVEK_QT})
