kxui_room_bench(style SOURCES style.cpp)
