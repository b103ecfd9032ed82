# Cross-compiles for Windows with Debian's MinGW-w64 and runs what was built under Wine.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
# Without run-time libraries to be found beside the program.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Boost's headers serve every system, but /usr/include beside them holds those of this one.
get_property(trying GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT trying)
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/boost-include")
  file(CREATE_LINK /usr/include/boost "${CMAKE_BINARY_DIR}/boost-include/boost" SYMBOLIC)
  set(Boost_INCLUDE_DIR "${CMAKE_BINARY_DIR}/boost-include" CACHE PATH "Boost's headers alone")
endif()

find_program(KXUI_WINE wine64 HINTS /usr/lib/wine REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR "${KXUI_WINE}")
