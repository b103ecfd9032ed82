kxui_room_bench(files SOURCES files.cpp)
