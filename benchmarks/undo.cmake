kxui_room_bench(undo SOURCES undo.cpp)
