# The pages of the reference, and the examples that they begin with, for hosts: installed with the
# headers. Without Doxygen there are the examples only. tools/docs builds the same pages and is strict
# about warnings.

set(doc_folder "${CMAKE_INSTALL_DATADIR}/doc/${KXUI_DATA_FOLDER}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/examples"
  DESTINATION "${doc_folder}" COMPONENT development)

find_program(KXUI_DOXYGEN doxygen)
if(NOT KXUI_DOXYGEN)
  message(STATUS "No reference pages: doxygen is not installed")
  return()
endif()
set(doxyfile "${PROJECT_SOURCE_DIR}/docs/reference/Doxyfile")
set(pages "${PROJECT_BINARY_DIR}/reference")
get_property(headers GLOBAL PROPERTY KXUI_PUBLIC_HEADERS)
list(TRANSFORM headers PREPEND "${PROJECT_SOURCE_DIR}/src/KxUI/")
file(GLOB_RECURSE texts CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/docs/reference/*" "${PROJECT_SOURCE_DIR}/docs/examples/*.cpp")
file(WRITE "${pages}.doxyfile"
  "@INCLUDE = \"${doxyfile}\"\nOUTPUT_DIRECTORY = \"${pages}\"\nWARNINGS = NO\nWARN_AS_ERROR = NO\n")
add_custom_command(OUTPUT "${pages}/html/index.html"
  COMMAND ${CMAKE_COMMAND} -E rm -rf "${pages}"
  COMMAND ${CMAKE_COMMAND} -E make_directory "${pages}"
  COMMAND "${KXUI_DOXYGEN}" "${pages}.doxyfile"
  DEPENDS ${texts} ${headers} WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
  COMMENT "Building the reference pages" VERBATIM)
add_custom_target(reference ALL DEPENDS "${pages}/html/index.html")
# Optional: who builds the library alone installs no pages.
install(DIRECTORY "${pages}/html" DESTINATION "${doc_folder}" COMPONENT development OPTIONAL)
