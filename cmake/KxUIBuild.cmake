# What every target of the tree shares: language level, warnings, sanitizers, deprecation fence.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set_property(GLOBAL PROPERTY AUTOGEN_TARGETS_FOLDER autogen)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

add_library(kxui_build_flags INTERFACE)
target_compile_options(kxui_build_flags INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Woverloaded-virtual
  # Vector and scalar float results must be the same bits, so nothing may be fused.
  -ffp-contract=off
  $<$<BOOL:${KXUI_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(kxui_build_flags INTERFACE
  QT_DISABLE_DEPRECATED_BEFORE=0x050F00
  QT_NO_CAST_TO_ASCII
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

if(KXUI_PRECOMPILE_HEADERS AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-fpch-preprocess) # which ccache asks for
endif()
if(KXUI_SANITIZE)
  add_compile_options(-fsanitize=${KXUI_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KXUI_SANITIZE})
  if(KXUI_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()

# The library for Qt 6 lies beside the one for Qt 5: it has a name of its own wherever it is installed.
if(KXUI_QT EQUAL 5)
  set(KXUI_QT_OLDEST 5.15)
  set(KXUI_NAME KxUI)
  set(KXUI_DATA_FOLDER kxui) # also the name of the pkg-config file
  set(KXUI_INCLUDE_DIR "${CMAKE_INSTALL_INCLUDEDIR}")
elseif(KXUI_QT EQUAL 6)
  set(KXUI_QT_OLDEST 6.4)
  set(KXUI_NAME KxUIQt6)
  set(KXUI_DATA_FOLDER kxui-qt6)
  set(KXUI_INCLUDE_DIR "${CMAKE_INSTALL_INCLUDEDIR}/KxUIQt6")
else()
  message(FATAL_ERROR "KXUI_QT is 5 or 6, not ${KXUI_QT}")
endif()

# The rooms, in the order of src/KxUI/rooms.txt; where there is no Qt, those that need none.
set(KXUI_ROOMS)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/KxUI/rooms.txt")
file(STRINGS "${PROJECT_SOURCE_DIR}/src/KxUI/rooms.txt" rooms REGEX "^[a-z]+[*]? *:")
foreach(room IN LISTS rooms)
  string(REGEX MATCH "^([a-z]+)([*]?)" unused "${room}")
  if(CMAKE_MATCH_2 OR NOT KXUI_WITHOUT_QT)
    list(APPEND KXUI_ROOMS ${CMAKE_MATCH_1})
  endif()
endforeach()

# kxui_moc_new_headers(TARGET): call when the target has all its sources. Ninja runs moc again when a
# file changed that moc knows, but not when a header is new to the target, as after an update of the
# tree; so a new list of files makes the last run of moc void.
function(kxui_moc_new_headers target)
  get_target_property(sources ${target} SOURCES)
  set(list "${CMAKE_CURRENT_BINARY_DIR}/${target}.sources")
  set(known "")
  if(EXISTS "${list}")
    file(READ "${list}" known)
  endif()
  if(NOT known STREQUAL sources)
    file(WRITE "${list}" "${sources}")
    file(REMOVE "${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp")
  endif()
endfunction()

# kxui_room(NAME SOURCES ... PUBLIC_HEADERS ... [PRIVATE_HEADERS ...] [PLAIN_SOURCES ...])
# Adds a room's files, named relative to its folder, to the library. Public headers are installed
# and tools/check compiles each alone. Plain sources know no Qt, so that they
# are built also where there is none.
function(kxui_room name)
  cmake_parse_arguments(room "" "" "SOURCES;PLAIN_SOURCES;PUBLIC_HEADERS;PRIVATE_HEADERS" ${ARGN})
  if(room_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "kxui_room(${name}): unexpected ${room_UNPARSED_ARGUMENTS}")
  endif()
  set(files ${room_PLAIN_SOURCES} ${room_PUBLIC_HEADERS} ${room_PRIVATE_HEADERS})
  if(NOT KXUI_WITHOUT_QT)
    list(APPEND files ${room_SOURCES})
  endif()
  foreach(file IN LISTS files)
    target_sources(kxui_objects PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
  endforeach()
  foreach(header IN LISTS room_PUBLIC_HEADERS)
    set_property(GLOBAL APPEND PROPERTY KXUI_PUBLIC_HEADERS "${name}/${header}")
  endforeach()
endfunction()

# kxui_precompile(TARGET HEADER...): where KXUI_PRECOMPILE_HEADERS is on, the target's sources begin with
# these headers and some of the standard ones. Sources with options of their own cannot.
function(kxui_precompile target)
  if(KXUI_PRECOMPILE_HEADERS)
    target_precompile_headers(${target} PRIVATE
      ${ARGN} <algorithm> <array> <cmath> <functional> <memory> <optional> <string> <vector>)
  endif()
endfunction()

# kxui_room_tests(ROOM Case... [SOURCES helper.cpp ...] [LIBS target ...] [HOST])
# One executable per room from Case.cpp files; each Case is a QtTest class of that name and becomes
# the ctest entry "room.Case". The executable links the library's objects, so that what is hidden
# in the shared library can be tested too; with HOST it does not, for what uses the library as a host.
function(kxui_room_tests room)
  cmake_parse_arguments(arg "HOST" "" "SOURCES;LIBS" ${ARGN})
  set(support kxui_test_support)
  if(arg_HOST)
    set(support kxui_test_main)
  endif()
  set(sources)
  foreach(case IN LISTS arg_UNPARSED_ARGUMENTS)
    list(APPEND sources "${case}.cpp")
  endforeach()
  add_executable(test_${room} ${sources} ${arg_SOURCES})
  set_target_properties(test_${room} PROPERTIES AUTOMOC ON)
  kxui_moc_new_headers(test_${room})
  target_link_libraries(test_${room} PRIVATE ${support} ${arg_LIBS})
  if(TARGET kxui_test_headers)
    target_precompile_headers(test_${room} REUSE_FROM kxui_test_headers)
  endif()
  foreach(case IN LISTS arg_UNPARSED_ARGUMENTS)
    add_test(NAME ${room}.${case} COMMAND test_${room} ${case})
    kxui_test_environment(${room}.${case})
  endforeach()
endfunction()

# kxui_plain_tests(ROOM Case... [LIBS target ...])
# Tests that know no Qt and are built also where there is none: see tests/support/Plain.h.
function(kxui_plain_tests room)
  cmake_parse_arguments(arg "" "" "LIBS" ${ARGN})
  list(TRANSFORM arg_UNPARSED_ARGUMENTS APPEND .cpp OUTPUT_VARIABLE sources)
  add_executable(test_${room}_plain ${sources})
  target_link_libraries(test_${room}_plain PRIVATE kxui_plain_main kxui_archive ${arg_LIBS})
  foreach(case IN LISTS arg_UNPARSED_ARGUMENTS)
    add_test(NAME ${room}.${case} COMMAND test_${room}_plain ${case})
    kxui_test_environment(${room}.${case})
  endforeach()
endfunction()

# Qt warns where there is no private run-time folder, and a warning fails a test.
set(KXUI_TEST_RUNTIME_DIR "${PROJECT_BINARY_DIR}/runtime")
file(MAKE_DIRECTORY "${KXUI_TEST_RUNTIME_DIR}")
file(CHMOD "${KXUI_TEST_RUNTIME_DIR}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)

# Windows programs run in a Wine folder of this build, with no screen, no questions and nothing
# written to the user's own folder.
set(KXUI_WINE_ENVIRONMENT
  "HOME=${PROJECT_BINARY_DIR}" "WINEPREFIX=${PROJECT_BINARY_DIR}/wine" DISPLAY=
  WINEDEBUG=-all "WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe=")

# The environment every test runs in: no screen, a UTF-8 locale. That an unexpected warning is a
# failure is tests/support/TestMain.cpp's work.
function(kxui_test_environment test)
  set_tests_properties(${test} PROPERTIES
    TIMEOUT 300
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TZ=UTC;XDG_RUNTIME_DIR=${KXUI_TEST_RUNTIME_DIR};ASAN_OPTIONS=detect_stack_use_after_return=1;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0;UBSAN_OPTIONS=print_stacktrace=1;TSAN_OPTIONS=halt_on_error=1")
  if(WIN32)
    set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT ${KXUI_WINE_ENVIRONMENT})
    set_tests_properties(${test} PROPERTIES FIXTURES_REQUIRED wine)
  endif()
endfunction()
