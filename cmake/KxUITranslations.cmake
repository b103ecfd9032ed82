# kxui_translations(CATALOG.ts... OUTPUT folder COMPONENT name)
# Compiles translation catalogs to `folder` and installs them. The target `update-translations` brings
# the catalogs up to date with the texts of the folder that calls this. Does nothing where Qt's tools for
# translators are not installed: the texts then are English.

find_package(Qt${KXUI_QT}LinguistTools QUIET)

function(kxui_translations)
  cmake_parse_arguments(arg "" "OUTPUT;COMPONENT" "" ${ARGN})
  if(NOT TARGET Qt${KXUI_QT}::lrelease)
    message(STATUS "No translations: the LinguistTools of Qt ${KXUI_QT} are not installed")
    return()
  endif()
  set(compiled)
  foreach(catalog IN LISTS arg_UNPARSED_ARGUMENTS)
    get_filename_component(catalog "${catalog}" ABSOLUTE)
    get_filename_component(name "${catalog}" NAME_WE)
    add_custom_command(OUTPUT "${arg_OUTPUT}/${name}.qm"
      COMMAND ${CMAKE_COMMAND} -E make_directory "${arg_OUTPUT}"
      COMMAND Qt${KXUI_QT}::lrelease -silent "${catalog}" -qm "${arg_OUTPUT}/${name}.qm"
      DEPENDS "${catalog}" VERBATIM)
    list(APPEND compiled "${arg_OUTPUT}/${name}.qm")

    # Without line numbers, which would change with every edit.
    add_custom_target(update-${name}
      COMMAND Qt${KXUI_QT}::lupdate -silent -no-obsolete -locations none -source-language en
        -I . -I .. . -ts "${catalog}"
      WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" VERBATIM)
    if(NOT TARGET update-translations)
      add_custom_target(update-translations)
    endif()
    add_dependencies(update-translations update-${name})
  endforeach()
  add_custom_target(translations-${arg_COMPONENT} ALL DEPENDS ${compiled})
  install(FILES ${compiled} DESTINATION "${CMAKE_INSTALL_DATADIR}/${KXUI_DATA_FOLDER}/translations"
    COMPONENT ${arg_COMPONENT})
endfunction()
