kxui_room_bench(time SOURCES time.cpp)
