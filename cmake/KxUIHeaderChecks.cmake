# `header-checks` compiles every public header alone, with the flags of the library.

get_property(headers GLOBAL PROPERTY KXUI_PUBLIC_HEADERS)
set(units)
foreach(header IN LISTS headers)
  string(REGEX REPLACE "[/.]" "_" unit "${header}")
  set(path "${PROJECT_BINARY_DIR}/header-checks/${unit}.cpp")
  file(GENERATE OUTPUT "${path}" CONTENT "#include <KxUI/${header}>\n#include <KxUI/${header}>\n")
  list(APPEND units "${path}")
endforeach()
if(units)
  add_library(header-checks OBJECT EXCLUDE_FROM_ALL ${units})
  target_link_libraries(header-checks PRIVATE KxUI::KxUI kxui_build_flags)
endif()
