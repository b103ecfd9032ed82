# Debian packages of what is installed: libkxui1, libkxui-dev and kxui-workbench; tools/package makes
# them, in the preset `package`.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kxui)
set(CPACK_PACKAGE_VENDOR "KxUI developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGE_CONTACT "KxUI developers <kxui@example.org>")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# What the programs need is read from them; the library of this build is found beside them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src/KxUI")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_COMPONENTS_ALL "")
set(debian "${PROJECT_SOURCE_DIR}/cmake/debian")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${debian}/changelog.in" "${PROJECT_BINARY_DIR}/debian/changelog.Debian" @ONLY)
configure_file("${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${PROJECT_BINARY_DIR}/debian/changelog" COPYONLY)
execute_process(COMMAND gzip -9nfk changelog changelog.Debian
  WORKING_DIRECTORY "${PROJECT_BINARY_DIR}/debian" COMMAND_ERROR_IS_FATAL ANY)

# kxui_package(COMPONENT NAME SECTION SUMMARY TEXT [DEPENDS...])
macro(kxui_package component name section summary text)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}")
  string(REPLACE ";" ", " CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${ARGN}")
  install(FILES "${debian}/copyright"
    "${PROJECT_BINARY_DIR}/debian/changelog.gz" "${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endmacro()

set(library libkxui${PROJECT_VERSION_MAJOR})
set(this_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(about "KxUI is a library of widgets and models for node-based image
compositing hosts: timelines, image sequences, a docking workspace, a
profiler, help, colour, curves and undo.")
kxui_package(runtime ${library} libs "widgets for image compositing hosts"
  "${about}\n\nThis package holds the shared library.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${debian}/triggers")
kxui_package(development libkxui-dev libdevel "widgets for image compositing hosts (development)"
  "${about}\n\nThis package holds the headers, the CMake package and the\npkg-config file."
  "${library} ${this_version}" "qtbase5-dev (>= 5.15)" "libboost-dev (>= 1.74)")
kxui_package(workbench kxui-workbench video "player of image sequences"
  "The workbench opens folders of numbered frames, plays and scrubs them,
and shows what the KxUI library of widgets does."
  "${library} ${this_version}")
# What opens the help pages in the browser, and Qt's own texts in other languages.
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_RECOMMENDS "xdg-utils, qttranslations5-l10n")
install(CODE "execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND gzip -9nf
  \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/kxui-workbench.1\"
  \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/kxui-workbench-tool.1\")"
  COMPONENT workbench)

include(CPack)
