# Installing: library, public headers, CMake package, pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS KxUI EXPORT ${KXUI_NAME}Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

get_property(headers GLOBAL PROPERTY KXUI_PUBLIC_HEADERS)
string(JOIN "\n" lines ${headers} Export.h Version.h)
file(WRITE "${PROJECT_BINARY_DIR}/public-headers" "${lines}\n") # for tools/check
foreach(header IN LISTS headers)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${PROJECT_SOURCE_DIR}/src/KxUI/${header}"
    DESTINATION ${KXUI_INCLUDE_DIR}/KxUI/${folder} COMPONENT development)
endforeach()
install(FILES
  "${PROJECT_SOURCE_DIR}/src/KxUI/Export.h"
  "${PROJECT_BINARY_DIR}/include/KxUI/Version.h"
  DESTINATION ${KXUI_INCLUDE_DIR}/KxUI COMPONENT development)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${KXUI_NAME})
install(EXPORT ${KXUI_NAME}Targets NAMESPACE KxUI:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KxUIConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/${KXUI_NAME}Config.cmake" INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/${KXUI_NAME}ConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/${KXUI_NAME}Config.cmake"
  "${PROJECT_BINARY_DIR}/${KXUI_NAME}ConfigVersion.cmake"
  DESTINATION ${package_dir} COMPONENT development)

# The prefix is found from where the file lies, so that an installed tree can be moved.
file(RELATIVE_PATH KXUI_PC_PREFIX
  "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
configure_file("${PROJECT_SOURCE_DIR}/cmake/kxui.pc.in" "${PROJECT_BINARY_DIR}/${KXUI_DATA_FOLDER}.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/${KXUI_DATA_FOLDER}.pc"
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
