# SPDX-License-Identifier: MIT
# The texts of programs and plug-ins in other languages.
find_toolkit(LinguistTools)

# add_catalogues(TARGET NAME_CODE.ts...): gives TARGET the compiled catalogues, as resources that are
# called :/translations/NAME_CODE.qm. A static library has to initialise these itself: they are called
# TARGET_texts.
function(add_catalogues target)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}_texts)
  set(compiled)
  set(entries)
  foreach(catalogue IN LISTS ARGN)
    get_filename_component(source ${catalogue} ABSOLUTE)
    get_filename_component(name ${catalogue} NAME_WE)
    add_custom_command(OUTPUT ${folder}/${name}.qm
      COMMAND Qt${TARVEK_QT}::lrelease -silent ${source} -qm ${folder}/${name}.qm
      DEPENDS ${source}
      VERBATIM)
    list(APPEND compiled ${folder}/${name}.qm)
    string(APPEND entries "<file>${name}.qm</file>")
  endforeach()
  file(CONFIGURE OUTPUT ${folder}/texts.qrc
    CONTENT "<RCC><qresource prefix=\"/translations\">@entries@</qresource></RCC>\n")
  add_custom_command(OUTPUT ${folder}/texts.cpp
    COMMAND Qt${TARVEK_QT}::rcc --name ${target}_texts --output ${folder}/texts.cpp ${folder}/texts.qrc
    DEPENDS ${compiled} ${folder}/texts.qrc
    VERBATIM)
  set_source_files_properties(${folder}/texts.cpp PROPERTIES SKIP_AUTOMOC ON)
  target_sources(${target} PRIVATE ${folder}/texts.cpp)
endfunction()
