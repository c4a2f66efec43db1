# SPDX-License-Identifier: MIT
# What every target of the project has in common.
#
#   glimmet_target(TARGET)
#
# C++17 without extensions, hidden symbols, and the project's warnings.
function(glimmet_target target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
    $<$<BOOL:${GLIMMET_WERROR}>:-Werror>)
endfunction()

#
#   glimmet_exports(TARGET SCRIPT)
#
# The library shows its users only what the linker's version script SCRIPT names.
function(glimmet_exports target script)
  set(path ${CMAKE_CURRENT_SOURCE_DIR}/${script})
  target_link_options(${target} PRIVATE LINKER:--version-script=${path})
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${path})
endfunction()
