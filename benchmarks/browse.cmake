kxui_room_bench(browse SOURCES browse.cpp)
