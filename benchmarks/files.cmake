kxui_room_bench(files SOURCES files.cpp files_gather.cpp files_gather.h
  "${PROJECT_SOURCE_DIR}/tests/support/SlowCalls.cpp")
