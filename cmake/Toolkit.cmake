# SPDX-License-Identifier: MIT
# Which Qt the tree is built with: TARVEK_QT is its first number, 5 or 6. Sets
#   TARVEK_QT_MINIMUM   the oldest release of it that will do
set(TARVEK_QT 5 CACHE STRING "The first number of the Qt to build with: 5 or 6")
set_property(CACHE TARVEK_QT PROPERTY STRINGS 5 6)
if(TARVEK_QT EQUAL 5)
  set(TARVEK_QT_MINIMUM 5.15)
elseif(TARVEK_QT EQUAL 6)
  set(TARVEK_QT_MINIMUM 6.4)
else()
  message(FATAL_ERROR "TARVEK_QT is ${TARVEK_QT}: give 5 or 6")
endif()

#   find_toolkit(COMPONENT...)
#
# Gives targets Qt${TARVEK_QT}::COMPONENT. A macro: AUTOMOC wants variables that this leaves behind.
macro(find_toolkit)
  find_package(Qt${TARVEK_QT} ${TARVEK_QT_MINIMUM} REQUIRED COMPONENTS ${ARGN})
endmacro()
